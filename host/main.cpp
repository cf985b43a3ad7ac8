// The command-line host: parse, call the library, print.
#include "Commands.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextCodec>
#include <clocale>
#include <cstring>

namespace {

using namespace kvn::host;

struct Subcommand {
  char const* name;
  int (*run)(QStringList const& arguments);
};
constexpr Subcommand kSubcommands[] = {{"show", runShow},       {"check", runCheck},     {"adjust", runAdjust},
                                       {"heights", runHeights}, {"convert", runConvert}, {"map", runMap},
                                       {"exec", runExec}};

/// The C locale says nothing about the encoding of names and arguments; today they are UTF-8.
void readEncodingOfLocale() {
  std::setlocale(LC_ALL, "");
  char const* const locale = std::setlocale(LC_CTYPE, nullptr);
  if (locale == nullptr || std::strcmp(locale, "C") == 0 || std::strcmp(locale, "POSIX") == 0) {
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
  }
}

/// The library logs the time of every command and each feature that it draws; here that shows only on request.
void silenceLibraryLog() {
  if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) {
    QLoggingCategory::setFilterRules(QStringLiteral("kelvane.*.debug=false\nkelvane.*.info=false"));
  }
}

int dispatch(QStringList arguments) {
  if (arguments.size() < 2) {
    printLine(programUsage().trimmed());
    return WrongUsage;
  }
  QString const name = arguments.takeAt(1);
  for (Subcommand const& subcommand : kSubcommands) {
    if (name == QLatin1String(subcommand.name)) return subcommand.run(arguments);
  }
  bool const help = name == "--help" || name == "-h";
  if (!help && name != "--version" && name != "-v") throw UsageError("unknown subcommand: " + name);
  printText(help ? programUsage() : versionLine());
  return Done;
}

}  // namespace

int main(int argc, char** argv) {
  readEncodingOfLocale();
  QCoreApplication const application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kelvane"));
  silenceLibraryLog();
  try {
    return dispatch(QCoreApplication::arguments());
  } catch (UsageError const& failure) {
    printLine(printable(QString("kelvane: %1 (see kelvane --help)").arg(QString::fromUtf8(failure.what()))));
    return WrongUsage;
  } catch (std::exception const& failure) {
    printLine(printable(QString("kelvane: %1").arg(QString::fromUtf8(failure.what()))));
    return Refused;
  }
}
