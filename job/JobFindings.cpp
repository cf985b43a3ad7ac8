// Findings: what a surveyor should know about an opened job.
#include "adjust/AlgorithmData.h"
#include "adjust/TraverseAdjust.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/NetworkFindings.h"

#include <algorithm>
#include <utility>

namespace kvn {
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

std::vector<FieldFinding> detail::OpenedFile::findings() const {
  std::vector<FieldFinding> all = text.findings;
  std::vector<FieldFinding> const ofRows = placed(reduction.findings);
  all.insert(all.end(), ofRows.begin(), ofRows.end());
  return all;
}

std::vector<FieldFinding> detail::OpenedFile::placed(std::vector<FieldFinding> list) const {
  for (FieldFinding& finding : list) {
    if (finding.line == 0 && finding.row < text.rowLines.size()) finding.line = text.rowLines[finding.row];
  }
  return list;
}

std::vector<FieldFinding> detail::findingsOnStart(Project const& project) {
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
    if (!isTold && !isUsual) return {findingOn(FieldFinding::Error, {}, {}, worded(failure, project.getNetwork()))};
  }
  return findingsOf(adjustment);
}

void detail::requireNoError(QString const& file, std::vector<FieldFinding> const& findings) {
  auto const isError = [](FieldFinding const& finding) { return finding.severity == FieldFinding::Error; };
  auto const first = std::find_if(findings.begin(), findings.end(), isError);
  if (first == findings.end()) return;
  auto const further = static_cast<int>(std::count_if(first + 1, findings.end(), isError));
  throw JobException(file, worded(*first), first->line, further);
}

}  // namespace kvn
