// convert: the same job in another format.
#include "Commands.h"
#include "Failures.h"
#include "FieldJob.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <iterator>

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
  if (kind != "txt") return;
  auto const hasCode = [](TraverseDataInfo const& row) { return !row.code.empty(); };
  if (std::any_of(rows.begin(), rows.end(), hasCode)) warn("A traverse file has no place for point codes");
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
  utils::createFolderOf(path);
  if (kindOf(path) == "lqf" && project.getFileType() == Project::LqfFile) {
    // The project keeps the names of the job.
    project.setTraverseDataList(rows);
    project.exportLQFFile(path);
    return;
  }
  LQFTraverseDataCollection job;
  job.readJob(project.getName().simplified().replace(' ', '_').toStdString());
  VRDTraverseDataCollcetion traverse;
  ITraverseDataCollcetion& collection = kindOf(path) == "lqf" ? static_cast<ITraverseDataCollcetion&>(job) : traverse;
  collection.setTraverseDataList(rows);
  collection.write(HTextCodec::ToLocal8Bit(path));
}

/// Known points of a job or of a network; the points of a coordinate file as they are.
std::vector<CoordinatePointInfo> coordinatesOf(Project const& project) {
  if (project.getFileType() == Project::CoordFile) return project.getCoordinatePointList();
  std::vector<KnownPoint> known = getKnownPoint(project.getTraverseDataList());
  if (project.getFileType() == Project::CosaFile) known = project.getNetwork().knownPoints;
  std::vector<CoordinatePointInfo> points;
  for (KnownPoint const& point : known) {
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
  if (session.project().getFileType() != Project::CoordFile) warn("Only the known points have coordinates to write");
  utils::createFolderOf(path);
  collection.write(HTextCodec::ToLocal8Bit(path));
}

void writeNetworkOf(Session& session, QString const& path) {
  if (session.project().getFileType() == Project::CoordFile) {
    Network network;
    for (CoordinatePointInfo const& point : session.project().getCoordinatePointList()) {
      network.knownPoints.emplace_back(point.name, point.N, point.E, point.Z);
    }
    session.project().setNetwork(network);
  }
  requireNoError(session.file(), session.job().findings());
  writeNetwork(session, path);
}

void write(Session& session, QString const& path) {
  QString const kind = kindOf(path);
  if (kind == "in2") return writeNetworkOf(session, path);
  if (kind == "dat") return writeCoordinates(session, path);
  if (session.project().getTraverseDataList().empty()) {
    throw Refusal(path, "a file of this kind holds the readings of a field book, which " + session.file() + " has not");
  }
  requireNoError(session.file(), session.job().text.findings);
  writeRows(session, path);
}

}  // namespace

int runConvert(QStringList const& arguments) {
  auto const options = parseConvert(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    requireWritableKind(options->outFile, {"txt", "lqf", "in2", "dat"});
    session.open(options->file);
    tellWarnings(session.job().text.findings);
    bool const saved = save(session, options->outFile, write);
    if (options->json) {
      Json::Value json;
      json["file"] = options->outFile.toStdString();
      json["ok"] = saved;
      json["messages"] = session.messages().take();
      printJson(json);
    }
    return saved ? Done : Refused;
  });
}

}  // namespace kvn::host
