#include "JobWriter.h"

#include "Failures.h"
#include "FieldJob.h"
#include "Output.h"
#include "Saving.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace kvn::host {
namespace {

using Rows = std::vector<TraverseDataInfo>;

// Heights of instrument and target have six digits in a traverse file: from here on less than a millimetre is lost.
constexpr double kSixDigits = 100.0;

QString kindOf(QString const& path) { return QFileInfo(path).suffix().toLower(); }

void warn(QString const& text) { System::Instance()->sendMessage(text, Warning); }

/// A name that the format gives back as it is.
bool canStand(std::string const& name, QString const& kind) {
  if (name.empty() || name.find_first_of(",\r\n") != std::string::npos) return false;
  if (kind == "lqf") return name.find(' ') == std::string::npos;
  return kind == "dat" || QString::fromStdString(name).simplified().toStdString() == name;
}

void requireName(QString const& path, std::string const& name) {
  if (canStand(name, kindOf(path))) return;
  throw Refusal(path, QString("the name \"%1\" cannot stand in a file of this kind").arg(textOf(name)));
}

void requireWritable(QString const& path, TraverseDataInfo const& row) {
  requireName(path, row.name);
  double const numbers[] = {row.instrument, row.horizontal_angle, row.vertical_angle, row.slant_distance, row.N, row.E,
                            row.Z};
  if (!std::all_of(std::begin(numbers), std::end(numbers), [](double number) { return std::isfinite(number); })) {
    throw Refusal(path, QString("a number of %1 is not finite").arg(textOf(row.name)));
  }
}

/// What the traverse file has no place for, and what a reader would take for something else.
void tellLoss(Rows const& rows, QString const& kind) {
  if (kind == "lqf") return;
  auto const hasCode = [](TraverseDataInfo const& row) { return !row.code.empty(); };
  if (std::any_of(rows.begin(), rows.end(), hasCode)) {
    warn(QString("A %1 file has no place for point codes").arg(kind == "kvn" ? "project" : "traverse"));
  }
  if (kind != "txt") return;
  auto const isHigh = [](TraverseDataInfo const& row) { return std::abs(row.instrument) >= kSixDigits; };
  if (std::any_of(rows.begin(), rows.end(), isHigh)) {
    warn("A traverse file holds heights of instrument and target of 100 m and above to six digits only");
  }
}

/// The rows that the format can hold; both have a reading in every sight.
Rows writable(QString const& path, Rows const& rows) {
  Rows kept;
  for (TraverseDataInfo const& row : rows) {
    bool const isStation = row.pointType == TraversePointType::StationPoint;
    requireWritable(path, row);
    if (isStation || row.angleMark != 0.0) {
      kept.push_back(row);
    } else {
      warn(QString("The sight to %1 has no angles and is left out").arg(textOf(row.name)));
    }
  }
  return kept;
}

void writeRows(Session& session, QString const& path) {
  Project& project = session.project();
  Rows const rows = writable(path, project.getTraverseDataList());
  tellLoss(rows, kindOf(path));
  if (kindOf(path) == "lqf" && kindOf(session.file()) == "lqf") {
    // The project keeps the names of the job.
    project.setTraverseDataList(rows);
    utils::createFolderOf(path);
    project.exportLQFFile(path);
    return;
  }
  LQFTraverseDataCollection job;
  job.readJob(project.getName().simplified().replace(' ', '_').toStdString());
  VRDTraverseDataCollcetion traverse;
  ITraverseDataCollcetion& collection = kindOf(path) == "lqf" ? static_cast<ITraverseDataCollcetion&>(job) : traverse;
  collection.setTraverseDataList(rows);
  writeWhole(path, [&collection](std::ostream& stream) { collection.write(stream); });
}

/// The coordinate list; without one the known points of a job or of a network.
std::vector<CoordinatePointInfo> coordinatesOf(Project const& project) {
  if (project.isCoordinateData()) return project.getCoordinatePointList();
  bool const hasRows = !project.getTraverseDataList().empty();
  std::vector<CoordinatePointInfo> points;
  for (KnownPoint const& point :
       hasRows ? getKnownPoint(project.getTraverseDataList()) : project.getNetwork().knownPoints) {
    CoordinatePointInfo coordinate;
    coordinate.name = point.name;
    coordinate.N = point.x;
    coordinate.E = point.y;
    coordinate.Z = point.z;
    points.push_back(std::move(coordinate));
  }
  return points;
}

void writeCoordinates(Session& session, QString const& path) {
  CoordinateDataCollection collection;
  collection.setCoordinateDataList(coordinatesOf(session.project()));
  if (collection.getCoordinateDataList().empty()) throw Refusal(path, "there is no point with coordinates to write");
  for (CoordinatePointInfo const& point : collection.getCoordinateDataList()) requireName(path, point.name);
  if (!session.project().isCoordinateData()) warn("Only the known points have coordinates to write");
  writeWhole(path, [&collection](std::ostream& stream) { collection.write(stream); });
}

/// A list of coordinates alone becomes known points; the network of rows is made of them as they are now.
void makeNetwork(Session& session) {
  Project& project = session.project();
  if (!project.getTraverseDataList().empty()) {
    if (session.isAsRead()) return;
    // The rows of a job that a command has opened: stations with coordinates are known, as when the program opens it.
    bool const isJob = project.getFileType() == Project::LqfFile;
    if (isJob && getKnownPoint(project.getTraverseDataList()).empty()) markKnownStations(project.getTraverseDataList());
    FieldReduction const reduction = reduceField(project.getTraverseDataList());
    requireNoError(session.file(), session.job().text.findings);
    requireNoError(session.file(), session.job().placed(reduction.findings));
    project.setNetwork(reduction.network);
  } else if (project.getNetwork().isEmpty() && project.getNetwork().knownPoints.empty()) {
    Network network;
    for (CoordinatePointInfo const& point : project.getCoordinatePointList()) {
      network.knownPoints.emplace_back(point.name, point.N, point.E, point.Z);
    }
    project.setNetwork(network);
  }
}

void writeNetwork(Session& session, QString const& path) {
  makeNetwork(session);
  Network const& network = session.project().getNetwork();
  if (network.isEmpty() && network.knownPoints.empty()) throw Refusal(path, "there is no network to write");
  CarefulCosaCollection collection;
  // Without the a-priori errors of its file the network would be adjusted with other weights.
  collection.setConfigure(session.project().getConfigure());
  collection.setKnownPointList(network.knownPoints);
  collection.setNetworkDataList(network.lines);
  writeWhole(path, [&collection](std::ostream& stream) { collection.write(stream); });
}

/// A project file tells a direction of 0 from none by nothing.
void requireDirections(QString const& path, Network const& network) {
  for (NetworkDataInfo const& line : network.lines) {
    if (line.horizontalAngleFlag) continue;
    throw Refusal(path,
                  QString("a project file cannot tell that no direction was observed from %1 to %2; a .in2 file can")
                      .arg(textOf(line.start_name), textOf(line.end_name)));
  }
}

/// Written as the network that it is: a project that came from a field book would be written with its rows, of which
/// a network command has left none.
void saveNetwork(Project const& project, QString const& path) {
  auto const plain = System::Instance()->createProject();
  plain->setFileType(Project::CosaFile);
  plain->setConfigure(project.getConfigure());
  plain->setNetwork(project.getNetwork());
  plain->setCoordinatePointList(project.getCoordinatePointList());
  plain->saveAs(path);
}

void writeProject(Session& session, QString const& path) {
  Project& project = session.project();
  tellLoss(project.getTraverseDataList(), "kvn");
  if (project.getTraverseDataList().empty()) requireDirections(path, project.getNetwork());
  requireNoError(session.file(), session.job().text.findings);
  utils::createFolderOf(path);
  bool const hasLostRows = project.isUsingViewData() && project.getTraverseDataList().empty();
  if (hasLostRows && !project.getNetwork().isEmpty()) return saveNetwork(project, path);
  project.saveAs(path);
}

}  // namespace

QStringList writableKinds() { return {"txt", "lqf", "in2", "dat", "kvn"}; }

void writeJob(Session& session, QString const& path) {
  QString const kind = kindOf(path);
  if (kind == "kvn") return writeProject(session, path);
  if (kind == "in2") return writeNetwork(session, path);
  if (kind == "dat") return writeCoordinates(session, path);
  if (session.project().getTraverseDataList().empty()) {
    throw Refusal(path, "a file of this kind holds the readings of a field book, which there are none of");
  }
  requireNoError(session.file(), session.job().text.findings);
  writeRows(session, path);
}

}  // namespace kvn::host
