#include "Session.h"

#include "Failures.h"
#include "Output.h"

#include <utils/ByteStream.h>
#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <QTextCodec>
#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace kvn::host {
namespace {

/// The library opens a file that is missing as an empty one, so that the reason is found here.
std::string bytesOf(QString const& path) {
  utils::FileBytes file = utils::readFile(path);
  if (!file.isWhole()) throw Refusal(path, file.reason);
  return std::move(file.bytes);
}

/// Names of a coordinate file in another encoding would become question marks, and several points one.
void requireEncoding(QString const& path, std::string const& bytes) {
  if (bytes.empty()) throw Refusal(path, "the file is empty");
  constexpr char const* kByteOrderMark = "\xEF\xBB\xBF";  // which the reader passes over
  int number = 0;
  for (std::size_t at = bytes.rfind(kByteOrderMark, 0) == 0 ? 3 : 0; at < bytes.size(); ++number) {
    std::size_t const end = std::min(bytes.find('\n', at), bytes.size());
    std::string const line = bytes.substr(at, end - at);
    at = end + 1;
    if (isPlainAscii(line) || HTextCodec::ToLocal8Bit(HTextCodec::FromLocal8Bit(line)) == line) continue;
    throw Refusal(path, QString("line %1 is no text in the encoding %2; --encoding names another one")
                            .arg(number + 1)
                            .arg(QString::fromLatin1(QTextCodec::codecForLocale()->name())));
  }
}

/// The library passes over a suffix that it does not know.
void requireKnownKind(QString const& path) {
  QString const suffix = QFileInfo(path).suffix().toLower();
  if (!QStringList{"in2", "kvn", "txt", "dat", "lqf"}.contains(suffix)) {
    throw Refusal(path,
                  "unknown kind of file; what can be read: .in2 (COSA network), .txt (traverse file), "
                  ".lqf (instrument job), .dat (coordinates), .kvn (project)");
  }
}

int refuse(QString const& file, QString const& text, bool json) {
  printLine(printable(file.isEmpty() ? QString("kelvane: %1").arg(text) : QString("kelvane: %1: %2").arg(file, text)));
  if (json) {
    Json::Value failure;
    failure["code"] = 0;  // unknown, as the commands tell a failure that has no number of its own
    failure["message"] = text.toStdString();
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
  } catch (Refusal const& failure) {
    return refuse(failure.file, QString::fromUtf8(failure.what()), json);
  } catch (AlgorithmException const& failure) {
    return refuse(session.file(), describe(failure, session.project().getNetwork()), json);
  } catch (std::bad_alloc const&) {
    return refuse(session.file(), "not enough memory", json);
  } catch (std::exception const& failure) {
    return refuse(session.file(), QString::fromUtf8(failure.what()), json);
  }
}

void useEncoding(QString const& name) {
  if (name.isEmpty()) return;
  QTextCodec* const codec = QTextCodec::codecForName(name.toLatin1());
  if (codec == nullptr) throw UsageError("unknown encoding: " + name);
  if (codec->fromUnicode("A") != "A") throw UsageError("not an 8-bit encoding: " + name);
  QTextCodec::setCodecForLocale(codec);
}

}  // namespace

Session::Session() : received(system), current(system.createProject()) {
  system.init();
  system.setConfigFile(QString());
  system.setCurrentProject(current);
}

Session::~Session() { system.setSendMessageFunc({}); }

void Session::open(QString const& path, bool asRead) {
  openFile = path;
  std::string const bytes = bytesOf(path);
  requireKnownKind(path);
  QString const suffix = QFileInfo(path).suffix().toLower();
  openedAsRead = asRead;
  if (suffix == "txt" || suffix == "lqf" || suffix == "kvn") {
    if (asRead) {
      openFieldJobAsRead(*current, path, bytes);
    } else {
      fieldJob = openFieldJob(*current, path, bytes);
    }
  } else if (suffix == "in2") {
    openNetwork(path, bytes);
  } else {
    requireEncoding(path, bytes);
    current->readContents(path, bytes);
  }
}

void Session::openNetwork(QString const& path, std::string const& bytes) {
  CosaCollection plain;
  CarefulCosaCollection careful;
  CosaCollection& collection = openedAsRead ? plain : careful;
  utils::ByteStream stream(bytes);
  collection.read(stream);
  Network network = collection.takeNetwork();
  bool const isEmpty = network.lines.empty() && network.knownPoints.empty();
  if (isEmpty) {
    current->readContents(path, bytes);  // refuses an empty file, but not one of lines without an observation
    current->setNetwork(std::move(network));
  } else {
    current->importCosaNetwork(path, std::move(network));
    current->setFileType(Project::CosaFile);
    current->setName(path);
  }
  current->setConfigure(collection.getConfigure());  // which the project does not take from a network file
}

void sortFindings(std::vector<FieldFinding>& findings) {
  std::stable_sort(findings.begin(), findings.end(), [](FieldFinding const& a, FieldFinding const& b) {
    return std::pair(a.line, a.severity) < std::pair(b.line, b.severity);
  });
}

/// Everything that there is to say about what the session has opened.
std::vector<FieldFinding> findingsOn(Session& session) {
  Project const& project = session.project();
  FieldJob const& job = session.job();
  std::vector<FieldFinding> all = job.findings();
  auto const add = [&all](std::vector<FieldFinding> const& more) { all.insert(all.end(), more.begin(), more.end()); };
  add(job.placed(inspectRows(project.getTraverseDataList(), job.reduction)));
  add(inspectNetwork(project.getNetwork(), project.getConfigure()));
  sortFindings(all);
  return all;
}

namespace {

FieldFinding findingOn(FieldFinding::Severity severity, std::string station, std::vector<std::string> targets,
                       QString text) {
  FieldFinding finding;
  finding.severity = severity;
  finding.station = std::move(station);
  finding.targets = std::move(targets);
  finding.text = std::move(text);
  return finding;
}

std::vector<FieldFinding> findingsOf(TraverseAdjust const& adjustment) {
  std::vector<FieldFinding> findings;
  for (UnplacedPoint const& point : adjustment.getUnplacedPoints()) {
    findings.push_back(findingOn(FieldFinding::Error, {}, {point.name}, "cannot be placed: " + worded(point.reason)));
  }
  for (auto const& [a, b] : adjustment.getCoincidentPoints()) {
    findings.push_back(findingOn(FieldFinding::Error, a, {b}, "an observation between points at one place"));
  }
  for (LooseMotion const& motion : adjustment.getLooseMotions()) {
    findings.push_back(findingOn(FieldFinding::Error, {}, {}, worded(std::vector<LooseMotion>{motion})));
  }
  for (SuspectObservation const& suspect : adjustment.getSuspects()) {
    QString const kind = suspect.isDirection ? "direction" : "distance";
    findings.push_back(findingOn(FieldFinding::Warning, suspect.from, {suspect.to},
                                 QString("suspected gross error of the %1: %2").arg(kind, wordedSize(suspect))));
  }
  return findings;
}

}  // namespace

std::vector<FieldFinding> findingsOnStart(Project const& project) {
  Configure const configure = project.getConfigure();
  TraverseAdjust adjustment(double(configure.AngleError), double(configure.LineFixedError) / 1000.0,
                            double(configure.LineProportionError) / 1e6, configure.LineCalculateExpression);
  adjustment.setTellFindings(false);
  adjustment.setCountControlDistances(true);
  try {
    AlgorithmData data;
    data.readNetworkData(project.getNetwork(), MissingDirection::IsLeftOut);
    adjustment.readAlgorithmData(data);
    adjustment.calculateApproximate();
    adjustment.checkDetermination();
    adjustment.checkObservations();
  } catch (AlgorithmException const& failure) {
    bool const isTold = !adjustment.getUnplacedPoints().empty();
    // A job without its control points, or without an unknown one, is looked at for its own sake.
    bool const isUsual = failure.errorType == AlgorithmException::KnownPointNotEnough ||
                         failure.errorType == AlgorithmException::AllStationKnown || project.getNetwork().lines.empty();
    if (!isTold && !isUsual) return {findingOn(FieldFinding::Error, {}, {}, describe(failure, project.getNetwork()))};
  }
  return findingsOf(adjustment);
}

QString describe(AlgorithmException const& failure, Network const& network) {
  QString const text = QString::fromUtf8(failure.what());
  if (failure.index >= 0) {
    auto const index = static_cast<std::size_t>(failure.index);
    if (index >= network.lines.size()) return QString("%1: item %2").arg(text).arg(failure.index + 1);
    NetworkDataInfo const& line = network.lines[index];
    return QString("%1: line from %2 to %3").arg(text, textOf(line.start_name), textOf(line.end_name));
  }
  QString const name = textOf(failure.name);
  // The text of a repeated station has the name in it; "Data error" stands for no point and says what the text says.
  bool const isTold =
      name.isEmpty() || name == "Data error" || failure.errorType == AlgorithmException::StationNameRepeat;
  return isTold ? text : QString("%1: %2").arg(text, name);
}

int runInSession(CommonOptions const& options, std::function<int(Session&)> const& run) {
  useEncoding(options.encoding);
  Session session;
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
