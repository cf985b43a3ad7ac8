// Saving: what a job holds, as a file of any kind.
#include "core/Project.h"
#include "formats/CarefulCosaCollection.h"
#include "formats/CoordinateDataCollection.h"
#include "formats/LQFTraverseDataCollection.h"
#include "formats/VRDTraverseDataCollcetion.h"
#include "job/FindingTexts.h"
#include "job/Job.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "job/detail/WriteWhole.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"
#include "reduction/FieldReduction.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>
#include <utils/ScratchFolder.h>

#include <QFileInfo>
#include <QTextCodec>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace kvn {
namespace {

using Rows = std::vector<TraverseDataInfo>;
using detail::JobState;
using detail::requireNoError;
using detail::sendWarning;
using detail::suffixOf;

// Heights of instrument and target have six digits in a traverse file: from here on less than a millimetre is lost.
constexpr double kSixDigits = 100.0;

/// A name that the format gives back as it is.
bool canStand(std::string const& name, QString const& kind) {
  if (name.empty() || name.find_first_of(",\r\n") != std::string::npos) return false;
  if (kind == "lqf") return name.find(' ') == std::string::npos;
  return kind == "dat" || QString::fromStdString(name).simplified().toStdString() == name;
}

void requireName(QString const& path, std::string const& name) {
  if (canStand(name, suffixOf(path))) return;
  throw JobException(path, Messages::tr("the name \"%1\" cannot stand in a file of this kind").arg(recordText(name)));
}

void requireWritable(QString const& path, TraverseDataInfo const& row) {
  requireName(path, row.name);
  double const numbers[] = {row.instrument, row.horizontal_angle, row.vertical_angle, row.slant_distance, row.N, row.E,
                            row.Z};
  if (!std::all_of(std::begin(numbers), std::end(numbers), [](double number) { return std::isfinite(number); })) {
    throw JobException(path, Messages::tr("a number of %1 is not finite").arg(recordText(row.name)));
  }
}

bool isSameFile(QString const& a, QString const& b) {
  QString const place = QFileInfo(a).canonicalFilePath();  // empty where there is no file
  return !place.isEmpty() && place == QFileInfo(b).canonicalFilePath();
}

/// The file will lack something, which is lost for good where it takes the place of the one that was read.
/// @throws JobException there; else a `Warning` tells it.
void tellLack(JobState const& state, QString const& path, QString const& text) {
  if (!isSameFile(path, state.file)) return sendWarning(text);
  throw JobException(path, Messages::tr("the file would lose what it holds; another name keeps it: %1").arg(text));
}

void tellRepeated(JobState const& state, QString const& path) {
  QString const repeated = detail::textOfRepeated(state);
  if (!repeated.isEmpty()) tellLack(state, path, repeated);
}

/// A line that was passed over has been told, and stands in the file that was read.
void requireNothingPassedOver(JobState const& state, QString const& path) {
  if (!isSameFile(path, state.file)) return;
  for (auto const* findings : {&state.opened.toldFindings, &state.opened.text.findings}) {
    for (FieldFinding const& finding : *findings) {
      if (finding.isNotTaken) tellLack(state, path, worded(finding));
    }
  }
}

/// What the traverse file has no place for, and what a reader would take for something else.
void tellLoss(Rows const& rows, QString const& kind) {
  if (kind == "lqf") return;
  auto const hasCode = [](TraverseDataInfo const& row) { return !row.code.empty(); };
  if (std::any_of(rows.begin(), rows.end(), hasCode)) {
    sendWarning(kind == "kvn" ? Messages::tr("A project file has no place for point codes")
                              : Messages::tr("A traverse file has no place for point codes"));
  }
  if (kind != "txt") return;
  auto const isHigh = [](TraverseDataInfo const& row) { return std::abs(row.instrument) >= kSixDigits; };
  if (std::any_of(rows.begin(), rows.end(), isHigh)) {
    sendWarning(
        Messages::tr("A traverse file holds heights of instrument and target of 100 m and above to six digits only"));
  }
}

/// The rows that the format can hold; both have a reading in every sight.
Rows writable(JobState const& state, QString const& path) {
  Rows const& rows = state.project->getTraverseDataList();
  Rows kept;
  for (TraverseDataInfo const& row : rows) {
    bool const isStation = row.pointType == TraversePointType::StationPoint;
    requireWritable(path, row);
    if (isStation || row.angleMark != 0.0) {
      kept.push_back(row);
    } else {
      tellLack(state, path, Messages::tr("The sight to %1 has no angles and is left out").arg(recordText(row.name)));
    }
  }
  return kept;
}

/// Lends the project rows in the place of its own.
class LentRows {
 public:
  LentRows(Project& borrower, Rows rows) : project(borrower), own(std::move(borrower.getTraverseDataList())) {
    project.setTraverseDataList(std::move(rows));
  }
  LentRows(LentRows const&) = delete;
  LentRows& operator=(LentRows const&) = delete;
  ~LentRows() { project.setTraverseDataList(std::move(own)); }

 private:
  Project& project;
  Rows own;
};

/// UTF-8 in the local 8-bit encoding. @throws JobException for what it cannot express.
std::string localText(QString const& path, std::string const& utf8) {
  QString const text = QString::fromStdString(utf8);
  std::string local = HTextCodec::ToLocal8Bit(text);
  if (HTextCodec::FromLocal8Bit(local) == text) return local;
  QString const codec = QString::fromLatin1(QTextCodec::codecForLocale()->name());
  throw JobException(path, Messages::tr("a name cannot be written in the encoding %1").arg(codec));
}

/// An instrument job that was read in the local 8-bit encoding is given back in it.
void writeJobInLocalText(Project& project, QString const& path) {
  utils::ScratchFolder folder;
  QString const inUtf8 = folder.filePath("job.lqf");
  project.exportLQFFile(inUtf8);
  utils::FileBytes const written = utils::readFile(inUtf8);
  if (!written.isWhole()) throw JobException(path, written.reason);
  std::string const local = localText(path, written.bytes);
  detail::writeWhole(path, [&local](std::ostream& stream) { stream << local; });
}

void writeRows(JobState const& state, QString const& path) {
  Project& project = *state.project;
  QString const kind = suffixOf(path);
  Rows rows = writable(state, path);
  tellLoss(rows, kind);
  if (kind == "lqf" && suffixOf(state.file) == "lqf") {
    LentRows const lent(project, std::move(rows));
    if (state.opened.isLocalText) return writeJobInLocalText(project, path);
    utils::createFolderOf(path);
    project.exportLQFFile(path);  // the project keeps the names of the job
    return;
  }
  LQFTraverseDataCollection job;
  job.readJob(project.getName().simplified().replace(' ', '_').toStdString());
  VRDTraverseDataCollcetion traverse;
  ITraverseDataCollcetion& collection = kind == "lqf" ? static_cast<ITraverseDataCollcetion&>(job) : traverse;
  collection.setTraverseDataList(rows);
  detail::writeWhole(path, [&collection](std::ostream& stream) { collection.write(stream); });
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

void writeCoordinates(JobState const& state, QString const& path) {
  CoordinateDataCollection collection;
  std::vector<CoordinatePointInfo> points = coordinatesOf(*state.project);
  if (suffixOf(state.file) != "dat") {
    for (CoordinatePointInfo& point : points) {
      point.name = localText(path, recordText(point.name).toStdString());
      point.signal = localText(path, recordText(point.signal).toStdString());
    }
  }
  collection.setCoordinateDataList(std::move(points));
  if (collection.getCoordinateDataList().empty())
    throw JobException(path, Messages::tr("there is no point with coordinates to write"));
  for (CoordinatePointInfo const& point : collection.getCoordinateDataList()) requireName(path, point.name);
  if (!state.project->isCoordinateData()) sendWarning(Messages::tr("Only the known points have coordinates to write"));
  detail::writeWhole(path, [&collection](std::ostream& stream) { collection.write(stream); });
}

/// The network as it is now.
struct WrittenNetwork {
  Network network;
  std::optional<PlaneNetwork> observations;  ///< each by itself, where they are known; else those of the lines
};

/// Of rows their set-ups. A list of coordinates alone becomes known points.
WrittenNetwork networkOf(JobState const& state) {
  Project const& project = *state.project;
  Network const& network = project.getNetwork();
  if (!project.getTraverseDataList().empty()) {
    if (state.asRead) return {network, {}};
    FieldReduction reduction = reduceField(detail::rowsWithKnownStations(project));
    requireNoError(state.file, state.opened.placed(reduction.findings));
    return {std::move(reduction.network), std::move(reduction.observations)};
  }
  if (detail::hasObservationsOfFile(state)) {
    for (QString const& line : warningLines(detail::findingsOnEdits(state))) sendWarning(line);
    return {network, *detail::observationsNow(state)};
  }
  if (!network.isEmpty() || !network.knownPoints.empty()) return {network, {}};
  Network points;
  for (CoordinatePointInfo const& point : project.getCoordinatePointList()) {
    points.knownPoints.emplace_back(recordText(point.name).toStdString(), point.N, point.E, point.Z);
  }
  return {std::move(points), {}};
}

void writeNetwork(JobState const& state, QString const& path) {
  WrittenNetwork written = networkOf(state);
  Network const& network = written.network;
  bool const hasObservations = written.observations.has_value();
  if (network.isEmpty() && network.knownPoints.empty() && !hasObservations)
    throw JobException(path, Messages::tr("there is no network to write"));
  if (!hasObservations) tellRepeated(state, path);
  CarefulCosaCollection collection;
  // Without the a-priori errors of its file the network would be adjusted with other weights.
  collection.setConfigure(state.project->getConfigure());
  collection.setKnownPointList(network.knownPoints);
  collection.setNetworkDataList(network.lines);
  if (hasObservations) collection.setObservations(*std::move(written.observations));
  detail::writeWhole(path, [&collection](std::ostream& stream) { collection.write(stream); });
}

/// A project file cannot distinguish a direction of 0 from a missing one.
void requireDirections(QString const& path, Network const& network) {
  for (NetworkDataInfo const& line : network.lines) {
    if (line.horizontalAngleFlag) continue;
    throw JobException(
        path, Messages::tr("a project file cannot tell that no direction was observed from %1 to %2; a .in2 file can")
                  .arg(recordText(line.start_name), recordText(line.end_name)));
  }
}

/// The lines as a project file keeps them: one set-up a station, of which all lines follow each other.
/// @throws JobException for set-ups that cannot be one.
Network linesForProject(JobState const& state, QString const& path) {
  detail::OneCircle circle = detail::oneCircle(state);
  if (!circle.lost.empty()) {
    QStringList names;
    for (FieldFinding const& finding : circle.lost) names << recordText(finding.station);
    names.removeDuplicates();
    throw JobException(path,
                       Messages::tr("a project file keeps one set-up a station, and those of %1 cannot be one (%2); "
                                    "a .in2 file keeps them all")
                           .arg(listedNames(names), worded(circle.lost.front())));
  }
  for (QString const& line : warningLines(circle.findings)) sendWarning(line);
  if (!circle.stations.empty()) {
    QStringList names;
    for (std::string const& station : circle.stations) names << recordText(station);
    sendWarning(
        Messages::tr("A project file keeps one set-up a station: those of %1 are turned onto the first one, and "
                     "what is observed again counts once; a .in2 file keeps them all")
            .arg(listedNames(names)));
  }
  tellRepeated(state, path);
  if (detail::hasObservationsOfFile(state)) detail::groupByStation(circle.network);
  return std::move(circle.network);
}

/// Written as the network that it is: a project that came from a field book would be written with its rows, of which
/// a network command has left none.
void saveNetwork(Project const& project, QString const& path) {
  Project plain;
  plain.setFileType(Project::CosaFile);
  plain.setConfigure(project.getConfigure());
  plain.setNetwork(project.getNetwork());
  plain.setCoordinatePointList(project.getCoordinatePointList());
  plain.saveAs(path);
}

/// Lends the project a network in the place of its own.
class LentNetwork {
 public:
  LentNetwork(Project& borrower, Network lines) : project(borrower), own(std::move(lines)) { swap(); }
  LentNetwork(LentNetwork const&) = delete;
  LentNetwork& operator=(LentNetwork const&) = delete;
  ~LentNetwork() { swap(); }

 private:
  void swap() { std::swap(own, project.getNetwork()); }

  Project& project;
  Network own;
};

/// Lends the project its coordinate list with names in UTF-8, which XML asks for; those of a coordinate file are not.
class LentPoints {
 public:
  explicit LentPoints(Project& borrower) : project(borrower), own(borrower.getCoordinatePointList()) {
    for (CoordinatePointInfo& point : own) {
      point.name = recordText(point.name).toStdString();
      point.signal = recordText(point.signal).toStdString();
    }
    own.swap(project.getCoordinatePointList());  // at the end: want of memory before leaves the list as it was
  }
  LentPoints(LentPoints const&) = delete;
  LentPoints& operator=(LentPoints const&) = delete;
  ~LentPoints() { project.setCoordinatePointList(std::move(own)); }

 private:
  Project& project;
  std::vector<CoordinatePointInfo> own;
};

void writeProject(JobState const& state, QString const& path) {
  Project& project = *state.project;
  tellLoss(project.getTraverseDataList(), "kvn");
  bool const hasRows = !project.getTraverseDataList().empty();
  std::optional<LentNetwork> lentNetwork;
  if (!hasRows) {
    requireDirections(path, project.getNetwork());
    lentNetwork.emplace(project, linesForProject(state, path));
  }
  utils::createFolderOf(path);
  LentPoints const lent(project);
  bool const hasLostRows = project.isUsingViewData() && project.getTraverseDataList().empty();
  if (hasLostRows && !project.getNetwork().isEmpty()) {
    saveNetwork(project, path);
  } else {
    project.saveAs(path);
  }
  QStringList const options = detail::optionsBesideProject(state);
  if (options.isEmpty()) return;
  sendWarning(Messages::tr("A project file does not keep these options, without which the numbers are others: %1")
                  .arg(options.join("; ")));
}

}  // namespace

void detail::write(JobState const& state, QString const& path) {
  QString const kind = suffixOf(path);
  requireNoError(state.file, state.opened.text.findings);
  requireNothingPassedOver(state, path);
  if (kind == "kvn") return writeProject(state, path);
  if (kind == "in2") return writeNetwork(state, path);
  if (kind == "dat") return writeCoordinates(state, path);
  if (state.project->getTraverseDataList().empty()) {
    throw JobException(path,
                       Messages::tr("a file of this kind holds the readings of a field book, which there are none of"));
  }
  writeRows(state, path);
}

}  // namespace kvn
