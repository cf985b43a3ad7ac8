// Adjusting: the network of a job by its settings.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TraverseLines.h"
#include "core/Project.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "reduction/CircleTurning.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace kvn {
namespace {

constexpr int kMethods = 4;  // of Configure::AdjustMethod: least squares, and the three single traverses
constexpr int kByLeastSquares = 0;

void requireUsableErrors(QString const& file, Configure const& configure, Network const& network) {
  QString const fault = detail::faultOfErrors(configure, network);
  if (!fault.isEmpty()) throw JobException(file, fault);
}

void requireAdjustable(detail::JobState const& state) {
  Project const& project = *state.project;
  int const method = project.getConfigure().AdjustMethod;
  detail::requireNoError(state.file, state.opened.findings());
  if (project.getFileType() == Project::CoordFile) {
    throw JobException(state.file, "a coordinate file has no observations to adjust");
  }
  if (method < 0 || method >= kMethods) {
    throw JobException(state.file, QString("there is no method of adjustment of the number %1").arg(method));
  }
  if (method == kByLeastSquares) {
    requireUsableErrors(state.file, project.getConfigure(), project.getNetwork());
  } else {
    detail::requireWholeRounds(state.file, state.opened, state.opened.reduction);
    detail::tellRepeatedObservations(state);
  }
}

/// The network as the method wants it.
Network prepared(Network const& network, int method, bool asRead) {
  if (method == kByLeastSquares || asRead) return network;
  // Validated before the lines are changed, so that the number of a reported line is that of the file.
  AlgorithmData().readNetworkData(network, MissingDirection::IsLeftOut);
  return withForwardDistances(turnedCircles(network));
}

/// A network and settings in, results out: the one place that knows the engine.
std::unique_ptr<AlgorithmAdjust> calculated(Network const& network, Configure const& configure,
                                            detail::JobState const& state, utils::IProcessCancel const& cancel) {
  auto adjustment = std::make_unique<AlgorithmAdjust>();
  adjustment->setConfigure(configure);
  // A line of which the file has the distance alone has no direction of 0.
  adjustment->setFoldToNearest(!state.asRead);
  adjustment->setNetworkData(network, state.asRead ? MissingDirection::IsZero : MissingDirection::IsLeftOut);
  adjustment->setProgressCall(state.progress);
  adjustment->setCancelCall(cancel.getCancelCall());
  try {
    adjustment->calculateAdjust();
  } catch (AlgorithmException const& failure) {
    if (configure.AdjustMethod == kByLeastSquares) throw;
    std::throw_with_nested(JobException(state.file, detail::explained(failure, configure.AdjustMethod)));
  }
  // The calls of the host are for the time of the run.
  adjustment->setProgressCall({});
  adjustment->setCancelCall({});
  return adjustment;
}

TraverseResult resultOf(AlgorithmAdjust const& adjustment, int method) {
  TraverseResult result;
  result.method = method;
  result.stations = adjustment.getTraverseAdjustInfoList();
  result.summary = adjustment.getTraverseSummary();
  result.points = adjustment.getPointList();
  return result;
}

}  // namespace

QString detail::faultOfErrors(Configure const& configure, Network const& network) {
  auto const isBad = [](float value) { return !std::isfinite(value) || value < 0.0F; };
  if (isBad(configure.AngleError) || configure.AngleError == 0.0F) {
    return "the a-priori error of a direction (first number of line 1) must be above 0";
  }
  if (isBad(configure.LineFixedError) || isBad(configure.LineProportionError)) {
    return "the a-priori errors of a distance (second and third number of line 1) must be 0 or more";
  }
  // A distance without error would have a weight without bound.
  bool const hasDistances = std::any_of(network.lines.begin(), network.lines.end(),
                                        [](NetworkDataInfo const& line) { return line.horizontal_distance > 0.0; });
  bool const hasError = configure.LineFixedError > 0.0F || configure.LineProportionError > 0.0F;
  return hasDistances && !hasError ? QString("the a-priori errors of a distance are both 0") : QString();
}

void detail::adjust(JobState& state, utils::IProcessCancel const& cancel) {
  requireAdjustable(state);
  Project& project = *state.project;
  Configure const& configure = project.getConfigure();
  if (configure.AdjustMethod == kByLeastSquares && !state.asRead) return adjustPlane(state, cancel);
  Network network = prepared(project.getNetwork(), configure.AdjustMethod, state.asRead);
  auto adjustment = calculated(network, configure, state, cancel);
  std::vector<TraverseResult> traverses;
  if (configure.AdjustMethod != kByLeastSquares) {
    traverses.push_back(resultOf(*adjustment, configure.AdjustMethod));
    if (!state.asRead) judge(traverses.back(), state);
    requireNotFarBeyond(traverses.back(), state);
  }
  project.setAlgorithmAdjust(std::move(adjustment));
  state.adjusted = std::move(network);
  state.planeRun.reset();
  state.traverses = std::move(traverses);
  state.runFindings = findingsOnCalculated(state);
  for (TraverseResult const& traverse : state.traverses) {
    std::vector<FieldFinding> const found = findingsOnMisclosures(traverse, state);
    state.runFindings.insert(state.runFindings.end(), found.begin(), found.end());
  }
  for (FieldFinding const& finding : state.runFindings) sendWarning(finding.text);
}

}  // namespace kvn
