#include "OptionValues.h"

#include "Failures.h"
#include "Output.h"
#include "Streams.h"

#include <cmath>
#include <cstdlib>

namespace kvn::host {
namespace {

QString languageOption(QCommandLineParser const& parser) {
  QString language = parser.value("language");
  if (!parser.isSet("language") || language == "en" || language == "zh") return language;
  throw UsageError(System::tr("--language is en or zh, not %1").arg(language));
}

/// The kind of what is on standard input; empty for a file.
QString inputKind(CommandLine const& parser, QStringList const& files) {
  QString kind = parser.value("kind").toLower();
  bool const isStream = files.contains(kStream);
  if (files.count(kStream) > 1) throw UsageError(System::tr("standard input can be read once"));
  if (isStream && kind.isEmpty()) throw UsageError(System::tr("- needs --kind, such as --kind in2"));
  if (!isStream && !kind.isEmpty()) throw UsageError(System::tr("--kind is for standard input, -"));
  if (isStream && !Job::readableKinds().contains(kind)) {
    throw UsageError(unknownValue(System::tr("unknown kind: %1"), kind, Job::readableKinds()));
  }
  return kind;
}

}  // namespace

void prepare(CommandLine& parser, QString const& description) {
  parser.setApplicationDescription(description);
  parser.addOption({{"h", "help"}, System::tr("Print this help.")});
  parser.addOption({{"v", "version"}, System::tr("Print the version.")});
  parser.addOption({{"q", "quiet"},
                    System::tr("Print no tables and no notes or warnings, only errors and what a saved file lacks.")});
  parser.addOption({"json", System::tr("Print one JSON value and nothing else.")});
  parser.addOption(
      {"encoding",
       System::tr("Encoding of files that are not UTF-8, such as GBK; that of the locale if not given. Coordinates "
                  "(.dat) are always in it. With --as-read networks and traverse files are UTF-8."),
       "NAME"});
  parser.addOption(
      {"language", System::tr("Language of the texts: en or zh; that of the locale if not given."), "en|zh"});
}

bool goesOn(CommandLine& parser, QStringList const& arguments, char const* usage, int positionals) {
  if (!parser.parse(arguments)) throw UsageError(parser.problem());
  if (parser.isSet("help")) {
    printText(System::tr("Usage: kelvane %1").arg(QLatin1String(usage)) + "\n\n" + parser.help());
    return false;
  }
  if (parser.isSet("version")) {
    printText(versionLine());
    return false;
  }
  QStringList const given = parser.positionalArguments();
  if (given.size() < std::abs(positionals) || (positionals != 0 && given.contains(QString())))
    throw UsageError(System::tr("FILE is missing"));
  if (positionals != kAnyNumber && given.size() > positionals)
    throw UsageError(System::tr("too many arguments: %1").arg(given.at(positionals)));
  return true;
}

void addInputKind(CommandLine& parser) {
  parser.addOption(
      {"kind", System::tr("What is on standard input, where FILE is -: in2, txt, lqf, dat or kvn."), "KIND"});
}

void addOutputKind(CommandLine& parser) {
  parser.addOption(
      {"to", System::tr("What is written to standard output, where the file is -, by its suffix."), "KIND"});
}

void takeCommonOptions(CommandLine const& parser, CommonOptions& options, int inputs) {
  options.json = parser.isSet("json");
  options.quiet = parser.isSet("quiet");
  options.encoding = parser.value("encoding");
  options.language = languageOption(parser);
  if (parser.isSet("encoding") && options.encoding.isEmpty()) throw UsageError(System::tr("--encoding needs a name"));
  if (parser.has("kind")) options.kind = inputKind(parser, parser.positionalArguments().mid(0, inputs));
}

QString takeOutputKind(CommandLine const& parser, QString const& file, CommonOptions& options,
                       QStringList const& kinds) {
  options.to = parser.value("to").toLower();
  bool const isStream = file == kStream;
  if (isStream && options.to.isEmpty())
    throw UsageError(System::tr("- needs --to, such as --to %1").arg(kinds.contains("dat") ? "dat" : kinds.first()));
  if (!isStream && !options.to.isEmpty()) throw UsageError(System::tr("--to is for standard output, -"));
  if (isStream && options.json) throw UsageError(System::tr("--json does not go with standard output, -"));
  if (isStream && !kinds.contains(options.to)) {
    throw UsageError(unknownValue(System::tr("unknown kind: %1"), options.to, kinds));
  }
  return isStream ? "output." + options.to : file;
}

std::optional<double> numberOption(QCommandLineParser const& parser, QString const& name) {
  if (!parser.isSet(name)) return std::nullopt;
  bool isNumber = false;
  double const value = parser.value(name).toDouble(&isNumber);
  if (!isNumber || !std::isfinite(value)) {
    throw UsageError(System::tr("--%1 needs a number: %2").arg(name, parser.value(name)));
  }
  return value;
}

std::optional<float> errorOption(QCommandLineParser const& parser, QString const& name, bool mayBeZero) {
  std::optional<double> const number = numberOption(parser, name);
  if (!number) return std::nullopt;
  auto const value = static_cast<float>(*number);
  if (!std::isfinite(value)) throw UsageError(System::tr("--%1 needs a number: %2").arg(name, parser.value(name)));
  if (value < 0.0F || (value == 0.0F && !mayBeZero)) {
    throw UsageError(System::tr("--%1 must be %2: %3")
                         .arg(name, mayBeZero ? System::tr("0 or more") : System::tr("above 0"), parser.value(name)));
  }
  return value;
}

std::optional<double> boundedOption(QCommandLineParser const& parser, QString const& name, double least,
                                    double largest) {
  std::optional<double> const value = numberOption(parser, name);
  if (!value || (*value >= least && *value <= largest)) return value;
  throw UsageError(System::tr("--%1 goes from %2 to %3: %4").arg(name).arg(least).arg(largest).arg(parser.value(name)));
}

QString fileOption(QCommandLineParser const& parser, QString const& name) {
  if (parser.isSet(name) && parser.value(name).isEmpty()) throw UsageError(System::tr("--%1 needs a file").arg(name));
  return parser.value(name);
}

}  // namespace kvn::host
