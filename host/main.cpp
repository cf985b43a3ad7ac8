// The command-line host: parse, call the library, print.
#include "Commands.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"

#include <utils/FileText.h>
#include <utils/ResourceFile.h>

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

/// Not those of QCoreApplication, which cannot hold a file name that is no text.
QStringList argumentsOf(int argc, char const* const* argv) {
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments << utils::pathOfNative(argv[i]);
  return arguments;
}

extern "C" void endBySignal(int signal) {
  utils::removeUnfinishedFile();
  std::raise(signal);  // ends the program as if there had been no handler: it is reset when it is called
}

/// What asks the program to end must not leave half a file about; what it was told to pass over, as by nohup, stays so.
void handleSignals() {
  struct sigaction action {};
  action.sa_handler = endBySignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
  for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU, SIGUSR1, SIGUSR2, SIGALRM, SIGVTALRM, SIGPROF}) {
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
    printLine(printable(QString("kelvane: %1 (see kelvane --help)").arg(QString::fromUtf8(failure.what()))));
    return WrongUsage;
  } catch (std::exception const& failure) {
    printLine(printable(QString("kelvane: %1").arg(QString::fromUtf8(failure.what()))));
    return Refused;
  }
}
