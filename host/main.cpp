// The command-line host: parse, call the library, print.
#include "CommandLine.h"
#include "Commands.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"
#include "Usage.h"

#include <utils/FileText.h>
#include <utils/ResourceFile.h>
#include <utils/ScratchFolder.h>

#include <QCoreApplication>
#include <QTextCodec>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>

namespace {

using namespace kvn::host;

struct Subcommand {
  char const* name;
  int (*run)(QStringList const& arguments);
};
constexpr Subcommand kSubcommands[] = {{"show", runShow},       {"check", runCheck}, {"adjust", runAdjust},
                                       {"report", runReport},   {"plan", runPlan},   {"heights", runHeights},
                                       {"convert", runConvert}, {"map", runMap},     {"exec", runExec}};

/// The C locale says nothing about the encoding of names and arguments; today they are UTF-8.
void readEncodingOfLocale() {
  std::setlocale(LC_ALL, "");
  char const* const locale = std::setlocale(LC_CTYPE, nullptr);
  if (locale == nullptr || std::strcmp(locale, "C") == 0 || std::strcmp(locale, "POSIX") == 0) {
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
  }
}

int (*findSubcommand(QString const& name))(QStringList const&) {
  for (Subcommand const& subcommand : kSubcommands) {
    if (name == QLatin1String(subcommand.name)) return subcommand.run;
  }
  return nullptr;
}

UsageError unknownSubcommand(QString const& name) {
  QStringList known{"help", "--help", "--version"};
  for (Subcommand const& subcommand : kSubcommands) known << subcommand.name;
  return UsageError(kvn::System::tr("unknown subcommand: %1").arg(name) + suggestion(name, known));
}

int runHelp(QStringList arguments) {
  QString const name = arguments.value(1);
  if (name.isEmpty() || name == "help" || name == "--help" || name == "-h") {
    printText(programUsage());
    return Done;
  }
  auto* const run = findSubcommand(name);
  if (run == nullptr) throw unknownSubcommand(name);
  if (arguments.size() > 2) throw UsageError(kvn::System::tr("too many arguments: %1").arg(arguments.at(2)));
  return run({arguments.first(), "--help"});
}

/// The options of all subcommands may stand before the name as well; behind it they are read.
QStringList withNameFirst(QStringList const& arguments) {
  int name = 1;
  for (; name < arguments.size(); ++name) {
    QString const& word = arguments.at(name);
    bool const hasValue = word == "--encoding" || word == "--language";
    bool const isOption = hasValue || word == "-q" || word == "--quiet" || word == "--json" ||
                          word.startsWith("--encoding=") || word.startsWith("--language=");
    if (!isOption) break;
    if (hasValue) ++name;
  }
  if (name >= arguments.size()) return arguments;
  QString const& word = arguments.at(name);
  bool const isName = word == "-h" || word == "--help" || word == "-v" || word == "--version" || !word.startsWith('-');
  if (!isName) return arguments;
  QStringList sorted = arguments;
  sorted.move(name, 1);
  return sorted;
}

int dispatch(QStringList arguments) {
  useLanguageOf(arguments);
  arguments = withNameFirst(arguments);
  if (arguments.size() < 2) {
    printLine(programUsage().trimmed());
    return WrongUsage;
  }
  QString const name = arguments.takeAt(1);
  if (name == "help" || name == "--help" || name == "-h") return runHelp(withoutLanguage(arguments));
  if (name == "--version" || name == "-v") {
    printText(versionLine());
    return Done;
  }
  auto* const run = findSubcommand(name);
  if (run == nullptr) throw unknownSubcommand(name);
  try {
    return run(arguments);
  } catch (UsageError const& failure) {
    throw UsageError(QString::fromUtf8(failure.what()), name);
  }
}

/// Not those of QCoreApplication, which cannot hold a file name that is no text.
QStringList argumentsOf(int argc, char const* const* argv) {
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments << utils::pathOfNative(argv[i]);
  return arguments;
}

extern "C" void endBySignal(int signal) {
  utils::removeUnfinishedFile();
  utils::removeScratchFiles();
  std::raise(signal);  // ends the program as if there had been no handler: it is reset when it is called
}

/// What asks the program to end must not leave half a file about; what it was told to pass over, as by nohup, stays so.
void handleSignals() {
  struct sigaction action {};
  action.sa_handler = endBySignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
  for (int const signal :
       {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGXCPU, SIGUSR1, SIGUSR2, SIGALRM, SIGVTALRM, SIGPROF}) {
    struct sigaction before {};
    bool const isDefault = ::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL;
    if (isDefault) ::sigaction(signal, &action, nullptr);
  }
  std::signal(SIGXFSZ, SIG_IGN);  // a limit to the size of files is told like any other failure
}

}  // namespace

int main(int argc, char** argv) {
  readEncodingOfLocale();
  handleSignals();
  QCoreApplication const application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kelvane"));
  utils::setResourcesFromWorkingDirectory(false);
  try {
    return dispatch(argumentsOf(argc, argv));
  } catch (std::bad_alloc const&) {
    std::fputs("kelvane: not enough memory\n", stderr);
    return Refused;
  } catch (UsageError const& failure) {
    QString const help =
        failure.subcommand().isEmpty() ? QString("kelvane help") : "kelvane help " + failure.subcommand();
    QString const text = kvn::System::tr("%1 (see %2)").arg(QString::fromUtf8(failure.what()), help);
    printLine(printable("kelvane: " + text));
    return WrongUsage;
  } catch (std::exception const& failure) {
    printLine(printable(QString("kelvane: %1").arg(QString::fromUtf8(failure.what()))));
    return Refused;
  }
}
