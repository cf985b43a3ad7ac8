#include "FieldJob.h"

#include "Failures.h"
#include "Output.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>
#include <utils/QLogicError.h>

#include <QFileInfo>
#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

namespace kvn::host {
namespace {

constexpr int kNamedPlaces = 3;

bool isJobFile(QString const& path) { return QFileInfo(path).suffix().toLower() == "lqf"; }

/// A job file has no known points but those that are told to the project.
void takeKnownStations(Project& project) {
  markKnownStations(project.getTraverseDataList());
  for (KnownPoint const& point : getKnownPoint(project.getTraverseDataList())) project.addKnownPoint(point);
}

void readRows(Project& project, QString const& path) {
  std::string const native = HTextCodec::ToLocal8Bit(path);
  if (isJobFile(path)) {
    LQFTraverseDataCollection rows;
    readNamingTheLine(rows, native);
    project.read(path);  // again, so that the project can export it
    takeKnownStations(project);
  } else {
    VRDTraverseDataCollcetion rows;
    readNamingTheLine(rows, native);
    if (rows.getTraverseDataList().empty()) throw QLogicError(System::tr("The import file data is empty"));
    project.setTraverseDataList(rows.getTraverseDataList());
    project.setFileType(Project::VrdFile);
    project.setVerticalAngleType(FullCircleZenith);
    project.setName(path);
  }
  project.checkVRDData();
}

QString namesOf(FieldFinding const& finding) {
  QStringList targets;
  for (std::string const& target : finding.targets) targets << textOf(target);
  if (finding.station.empty()) return targets.join(", ");
  QString const station = textOf(finding.station);
  return targets.isEmpty() ? station : station + " to " + targets.join(", ");
}

QString placeOf(FieldFinding const& finding) {
  if (finding.line > 0) return QString("line %1").arg(finding.line);
  return finding.row == FieldFinding::kNoRow ? QString() : QString("row %1").arg(finding.row + 1);
}

}  // namespace

std::vector<FieldFinding> FieldJob::findings() const {
  std::vector<FieldFinding> all = text.findings;
  std::vector<FieldFinding> const ofRows = placed(reduction.findings);
  all.insert(all.end(), ofRows.begin(), ofRows.end());
  return all;
}

std::vector<FieldFinding> FieldJob::placed(std::vector<FieldFinding> list) const {
  for (FieldFinding& finding : list) {
    if (finding.line == 0 && finding.row < text.rowLines.size()) finding.line = text.rowLines[finding.row];
  }
  return list;
}

FieldJob openFieldJob(Project& project, QString const& path) {
  readRows(project, path);
  FieldJob job;
  std::ifstream stream(utils::nativePath(HTextCodec::ToLocal8Bit(path)));
  job.text = isJobFile(path) ? inspectJobText(stream, project.getTraverseDataList()) : inspectTraverseText(stream);
  job.reduction = reduceField(project.getTraverseDataList());
  project.setNetwork(job.reduction.network);
  return job;
}

void openFieldJobAsRead(Project& project, QString const& path) {
  project.read(path);
  if (isJobFile(path)) {
    takeKnownStations(project);
    project.buildStationMap();
  }
  project.generateNetworkData();
}

QString worded(FieldFinding const& finding) {
  QStringList parts{placeOf(finding), namesOf(finding), finding.text};
  parts.removeAll(QString());
  return parts.join(": ");
}

void tellWarnings(std::vector<FieldFinding> const& findings) {
  std::vector<std::pair<QString, QStringList>> placesOf;
  for (FieldFinding const& finding : findings) {
    if (finding.severity != FieldFinding::Warning) continue;
    auto kind = std::find_if(placesOf.begin(), placesOf.end(),
                             [&finding](auto const& entry) { return entry.first == finding.text; });
    if (kind == placesOf.end()) kind = placesOf.insert(placesOf.end(), {finding.text, {}});
    QString const names = namesOf(finding);
    kind->second << (names.isEmpty() ? placeOf(finding) : names);
  }
  for (auto const& [text, places] : placesOf) {
    QString message = text + ": " + places.mid(0, kNamedPlaces).join("; ");
    if (places.size() > kNamedPlaces) message += QString("; and %1 more").arg(places.size() - kNamedPlaces);
    System::Instance()->sendMessage(message, Warning);
  }
}

void requireNoError(QString const& file, std::vector<FieldFinding> const& findings) {
  auto const isError = [](FieldFinding const& finding) { return finding.severity == FieldFinding::Error; };
  auto const first = std::find_if(findings.begin(), findings.end(), isError);
  if (first == findings.end()) return;
  auto const count = std::count_if(first, findings.end(), isError);
  QString text = worded(*first);
  if (count > 1) text += QString(" (and %1 more; kelvane check tells all)").arg(count - 1);
  throw Refusal(file, text);
}

}  // namespace kvn::host
