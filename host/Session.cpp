#include "Session.h"

#include "CommandLine.h"
#include "Failures.h"
#include "FindingsText.h"
#include "Output.h"

#include <QFileInfo>
#include <QTextCodec>
#include <new>
#include <stdexcept>

namespace kvn::host {
namespace {

int refuse(QString const& file, QString const& reason, bool json, std::vector<FieldFinding> const& findings = {}) {
  QString const text = utils::readablePath(reason);  // which may name a file
  printLine(printable(file.isEmpty() ? QString("kelvane: %1").arg(text) : QString("kelvane: %1: %2").arg(file, text)));
  if (json) {
    Json::Value failure;
    failure["version"] = kJsonVersion;
    failure["code"] = 0;  // unknown, as the commands tell a failure that has no number of its own
    failure["message"] = text.toStdString();
    if (!file.isEmpty()) failure["file"] = file.toStdString();
    if (!findings.empty()) failure["findings"] = findingsJson(findings);
    try {
      printJson(failure);
    } catch (std::runtime_error const&) {  // NOLINT(bugprone-empty-catch): the failure itself has been told
    }
  }
  return Refused;
}

int runGuarded(Session& session, bool json, std::function<int(Session&)> const& run) {
  try {
    return run(session);
  } catch (JobMisclosureException const& failure) {
    return refuse(session.shown(failure.file), refusalText(failure), json, failure.findings);
  } catch (JobException const& failure) {
    return refuse(session.shown(failure.file), refusalText(failure), json);
  } catch (AlgorithmException const& failure) {
    return refuse(session.file(), worded(failure, session.project().getNetwork()), json);
  } catch (std::bad_alloc const&) {
    return refuse(session.file(), System::tr("not enough memory"), json);
  } catch (std::exception const& failure) {
    return refuse(session.file(), QString::fromUtf8(failure.what()), json);
  }
}

void useEncoding(QString const& name) {
  if (name.isEmpty()) return;
  // The converters of the system print a line of their own about a name that they do not know.
  QtMessageHandler const before = qInstallMessageHandler([](QtMsgType, QMessageLogContext const&, QString const&) {});
  QTextCodec* const codec = QTextCodec::codecForName(name.toLatin1());
  qInstallMessageHandler(before);
  if (codec == nullptr) {
    QStringList known;
    for (QByteArray const& one : QTextCodec::availableCodecs()) known << QString::fromLatin1(one);
    throw UsageError(System::tr("unknown encoding: %1").arg(name) + suggestion(name.toUpper(), known));
  }
  if (codec->fromUnicode("A") != "A") throw UsageError(System::tr("not an 8-bit encoding: %1").arg(name));
  QTextCodec::setCodecForLocale(codec);
}

}  // namespace

QString refusalText(JobException const& failure) {
  if (dynamic_cast<JobEncodingException const*>(&failure) != nullptr)
    return failure.text + System::tr("; --encoding names another one");
  if (failure.further == 0) return failure.text;
  return failure.text + System::tr(" (and %1 more; kelvane check tells all)").arg(failure.further);
}

Session::Session(CommonOptions const& options)
    : received(system), opened(system.createProject()), kindOfInput(options.kind), kindOfOutput(options.to) {
  received.setErrorsOnly(options.quiet);
  system.init();
  system.setConfigFile(QString());
  system.setCurrentProject(opened.project());
}

Session::~Session() { system.setSendMessageFunc({}); }

void Session::open(QString const& path, Job::Reading reading) {
  openFile = path == kStream ? System::tr("standard input") : utils::readablePath(path);
  opened.open(streams.inputOf(path, kindOfInput), reading);
}

QString Session::outputFor(QString const& path) {
  if (path == kStream) return streams.outputOf(path, kindOfOutput);
  QFileInfo const folder(QFileInfo(path).path());
  if (!folder.exists()) throw JobException(path, System::tr("there is no folder %1").arg(folder.filePath()));
  if (!folder.isDir()) throw JobException(path, System::tr("%1 is no folder").arg(folder.filePath()));
  return path;
}

void tellWarnings(std::vector<FieldFinding> const& findings) {
  for (QString const& line : warningLines(findings)) System::Instance()->sendMessage(line, Warning);
}

int runInSession(CommonOptions const& options, std::function<int(Session&)> const& run) {
  useEncoding(options.encoding);
  Session session(options);
  try {
    return runGuarded(session, options.json, run);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const& failure) {  // the failure itself could not be printed
    printLine(QString("kelvane: %1").arg(QString::fromUtf8(failure.what())));
    return Refused;
  }
}

}  // namespace kvn::host
