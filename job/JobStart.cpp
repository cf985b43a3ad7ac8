// What a least-squares adjustment would run into, found before it is asked for.
#include "adjust/AlgorithmData.h"
#include "adjust/TraverseAdjust.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

#include <algorithm>
#include <exception>
#include <new>
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

/// What keeps an adjustment from an end.
struct Found {
  std::vector<UnplacedPoint> const& unplaced;
  std::vector<std::pair<std::string, std::string>> const& coincident;
  std::vector<LooseMotion> const& motions;
};

Found foundBy(TraverseAdjust const& adjustment) {
  return {adjustment.getUnplacedPoints(), adjustment.getCoincidentPoints(), adjustment.getLooseMotions()};
}

Found foundBy(PlaneAdjustment const& adjustment) {
  return {adjustment.unplacedPoints(), adjustment.coincidentPoints(), adjustment.looseMotions()};
}

/// Of what keeps it from an end.
std::vector<FieldFinding> findingsOf(Found const& found) {
  std::vector<FieldFinding> findings;
  for (UnplacedPoint const& point : found.unplaced) {
    findings.push_back(findingOn(FieldFinding::Error, {}, {point.name},
                                 Messages::tr("cannot be placed: %1").arg(worded(point.reason))));
  }
  for (auto const& [a, b] : found.coincident) {
    findings.push_back(
        findingOn(FieldFinding::Error, a, {b}, Messages::tr("an observation between points at one place")));
  }
  for (LooseMotion const& motion : found.motions) {
    findings.push_back(findingOn(FieldFinding::Error, {}, {}, worded(std::vector<LooseMotion>{motion})));
  }
  return findings;
}

/// A job without its control points, or without an unknown one, may be looked at for its own sake.
bool isUsual(AlgorithmException const& failure, Project const& project) {
  return failure.errorType == AlgorithmException::KnownPointNotEnough ||
         failure.errorType == AlgorithmException::AllStationKnown || project.getNetwork().lines.empty();
}

/// Whether heights come out of a field book, for which the plane is not needed.
bool givesHeights(detail::JobState const& state) {
  utils::IProcessCancel const nobody;
  return detail::heightsBeside(state, nobody).run != nullptr;
}

/// Why no adjustment of the plane comes about. The heights of a field book can be computed all the same.
FieldFinding refusalOf(detail::JobState const& state, QString const& reason) {
  bool const isOfHeights = givesHeights(state);
  return findingOn(isOfHeights ? FieldFinding::Warning : FieldFinding::Error, {}, {},
                   isOfHeights ? Messages::tr("The plane cannot be adjusted: %1").arg(reason) : reason);
}

std::vector<FieldFinding> findingsOfLiteral(Project const& project) {
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
    if (!isTold && !isUsual(failure, project)) {
      return {findingOn(FieldFinding::Error, {}, {}, worded(failure, project.getNetwork()))};
    }
  }
  std::vector<FieldFinding> findings = findingsOf(foundBy(adjustment));
  for (SuspectObservation const& suspect : adjustment.getSuspects()) {
    findings.push_back(findingOn(FieldFinding::Warning, suspect.from, {suspect.to}, detail::textOfSuspect(suspect)));
  }
  return findings;
}

/// What the adjustment has found out, whether it came to an end or not.
std::vector<FieldFinding> findingsOf(detail::JobState const& state, PlaneAdjustment const& run,
                                     PlaneSettings const& settings) {
  std::vector<FieldFinding> findings = findingsOf(foundBy(run));
  auto const add = [&findings](std::vector<FieldFinding> const& more) {
    findings.insert(findings.end(), more.begin(), more.end());
  };
  if (auto const exchange = detail::findingOnExchange(run, settings, {})) add({*exchange});
  if (!run.result().points.empty()) add(detail::findingsOnResult(state, run));
  add(detail::findingsToldBy(run));
  return findings;
}

std::vector<FieldFinding> findingsOfPlane(detail::JobState const& state) {
  Project const& project = *state.project;
  if (project.getFileType() == Project::CoordFile) {
    return {refusalOf(state, Messages::tr("a coordinate file has no observations to adjust"))};
  }
  QString const fault = detail::faultOfErrors(project.getConfigure(), project.getNetwork());
  if (!fault.isEmpty()) return {findingOn(FieldFinding::Error, {}, {}, fault)};
  if (project.getNetwork().lines.empty()) {
    return {refusalOf(state, Messages::tr("there are no observations to adjust"))};
  }
  PlaneAdjustment adjustment{PlaneNetwork()};
  PlaneSettings const settings = detail::settingsOf(state.plane);
  try {
    adjustment = PlaneAdjustment(detail::weighedObservations(state), settings);
    adjustment.setTellFindings(false);
    adjustment.adjust();
  } catch (AlgorithmException const& failure) {
    std::vector<FieldFinding> findings = findingsOf(state, adjustment, settings);
    bool const isExplained = std::any_of(findings.begin(), findings.end(), [](FieldFinding const& finding) {
      return finding.severity == FieldFinding::Error;
    });
    if (!isExplained) findings.insert(findings.begin(), refusalOf(state, worded(failure, project.getNetwork())));
    return findings;
  } catch (JobException const& failure) {
    return {refusalOf(state, failure.text)};
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const& failure) {  // an iteration that does not settle
    std::vector<FieldFinding> findings = findingsOf(state, adjustment, settings);
    findings.insert(findings.begin(), findingOn(FieldFinding::Error, {}, {}, QString::fromUtf8(failure.what())));
    return findings;
  }
  std::vector<FieldFinding> findings = findingsOf(state, adjustment, settings);
  PlaneResult const& result = adjustment.result();
  // Far above 1 it is told as doubtful.
  if (!result.isPassed && result.unitError > result.upperBound && result.unitError <= detail::kDoubtfulUnitError) {
    QString const text = Messages::tr(
        "the observations do not agree with their a-priori errors: unit weight error %1, at most %2 expected");
    findings.push_back(findingOn(FieldFinding::Warning, {}, {},
                                 text.arg(result.unitError, 0, 'f', 2).arg(result.upperBound, 0, 'f', 2)));
  }
  std::vector<FieldFinding> const ofTraverses = detail::misclosuresBeside(state);
  findings.insert(findings.end(), ofTraverses.begin(), ofTraverses.end());
  return findings;
}

}  // namespace

std::vector<FieldFinding> detail::findingsOnStart(JobState const& state) {
  return state.asRead ? findingsOfLiteral(*state.project) : findingsOfPlane(state);
}

}  // namespace kvn
