// Adjusting: the network of a job by its settings.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TraverseLines.h"
#include "adjust/traverse/TraverseSidePoints.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "job/detail/ObservedRounds.h"
#include "records/detail/Messages.h"
#include "reduction/CircleTurning.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kvn {
namespace {

// Of Configure::AdjustMethod: least squares, the three single traverses, and those that the data makes.
constexpr int kMethods = 5;
constexpr int kByLeastSquares = 0;
constexpr int kOpen = 1;
constexpr int kAnyTraverse = 4;
// What a file of coordinates shows, metres.
constexpr double kNoticed = 5e-5;

void requireUsableErrors(QString const& file, Configure const& configure, Network const& network) {
  QString const fault = detail::faultOfErrors(configure, network);
  if (!fault.isEmpty()) throw JobException(file, fault);
}

void requireAdjustable(detail::JobState const& state) {
  Project const& project = *state.project;
  int const method = project.getConfigure().AdjustMethod;
  detail::requireObservations(state);
  if (method == kAnyTraverse && state.asRead) {
    throw JobException(state.file,
                       Messages::tr("traverses are looked for in a file that is read with care alone, not to "
                                    "the letter"));
  }
  if (method < 0 || method >= kMethods) {
    throw JobException(state.file, Messages::tr("there is no method of adjustment of the number %1").arg(method));
  }
  if (method == kByLeastSquares) {
    requireUsableErrors(state.file, project.getConfigure(), project.getNetwork());
  } else {
    detail::requireWholeRounds(state.file, state.opened, state.opened.reduction);
    detail::OneCircle const circle = detail::oneCircle(state);
    detail::requireOneCircle(state.file, circle);
    for (QString const& line : warningLines(circle.findings)) detail::sendWarning(line);
    QString const repeated = detail::textOfRepeated(state);
    if (!repeated.isEmpty()) detail::sendWarning(repeated);
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

/// An open traverse that ends on a known point misses it by something.
void takeCheckShot(TraverseResult& result, Network const& network) {
  PointInfo& fore = result.stations.back().forePoints.front();
  PointInfo const& firstBack = result.stations.front().backPoint;
  for (KnownPoint const& point : network.knownPoints) {
    if (point.name != fore.name || point.name == firstBack.name) continue;
    TraverseSummary& summary = result.summary;
    result.closing = TraverseClosing::AtForePoint;
    summary.hasMisclosure = true;
    for (TraverseInfo const& station : result.stations) summary.sumDistance += station.distance;
    summary.fx = fore.x - point.x;
    summary.fy = fore.y - point.y;
    summary.fs = std::hypot(summary.fx, summary.fy);
    summary.relativeError = summary.fs / summary.sumDistance;
    for (PointInfo* held : {&fore, &result.points.back()}) {
      held->x = point.x;
      held->y = point.y;
    }
  }
}

TraverseResult resultOf(AlgorithmAdjust const& adjustment, int method, Network const& network, bool asRead) {
  TraverseResult result;
  result.method = method;
  result.stations = adjustment.getTraverseAdjustInfoList();
  result.summary = adjustment.getTraverseSummary();
  result.points = adjustment.getPointList();
  if (method == kOpen && !asRead) takeCheckShot(result, network);
  return result;
}

/// What a run makes.
struct Computed {
  std::unique_ptr<AlgorithmAdjust> first;  ///< of the calculators, null of a loop
  std::vector<TraverseResult> traverses;
  Network network;
};

/// How many there are, and whether each has two directions.
std::size_t stationsOf(Network const& network, bool& isPlain) {
  std::unordered_map<std::string, int> directions;
  for (NetworkDataInfo const& line : network.lines) directions[line.start_name] += line.horizontalAngleFlag ? 1 : 0;
  isPlain = std::all_of(directions.begin(), directions.end(), [](auto const& one) { return one.second == 2; });
  return directions.size();
}

/// A point of two chains, as where each of two stations alone sights it: they miss each other by what nothing adjusts.
std::vector<FieldFinding> findingsOnCommonPoints(std::vector<TraverseResult> const& traverses) {
  struct Given {
    double north;
    double east;
    std::size_t traverse;
  };
  std::vector<FieldFinding> findings;
  std::unordered_map<std::string, Given> first;
  for (std::size_t t = 0; t < traverses.size(); ++t) {
    for (PointInfo const& point : traverses[t].points) {
      Given const& known = first.try_emplace(point.name, Given{point.x, point.y, t}).first->second;
      double const off = std::hypot(point.x - known.north, point.y - known.east);
      if (known.traverse == t || !(off > kNoticed)) continue;
      FieldFinding finding;
      finding.targets = {point.name};
      finding.text = Messages::tr("the traverses give the point places %1 mm from each other; the first one counts")
                         .arg(1000.0 * off, 0, 'f', 1);
      finding.cost = off;
      findings.push_back(std::move(finding));
    }
  }
  return findings;
}

/// By the library's own rules for a chain: each station has two directions, the smaller reading looks back.
Computed byReadings(detail::JobState const& state, Configure const& configure, utils::IProcessCancel const& cancel) {
  Computed done;
  done.network = prepared(detail::networkOnOneCircle(state), configure.AdjustMethod, state.asRead);
  done.first = calculated(done.network, configure, state, cancel);
  if (configure.AdjustMethod != kByLeastSquares) {
    done.traverses.push_back(resultOf(*done.first, configure.AdjustMethod, done.network, state.asRead));
  }
  return done;
}

/// By the sights between the stations, whatever else they sight.
Computed bySights(detail::JobState const& state, Configure configure, utils::IProcessCancel const& cancel) {
  Network const given = detail::networkOnOneCircle(state);
  // Validated first, so that the number of a reported line is that of the file.
  AlgorithmData().readNetworkData(given, MissingDirection::IsLeftOut);
  Computed done;
  done.network = turnedCircles(given);
  int const method = configure.AdjustMethod == kAnyTraverse ? 0 : configure.AdjustMethod;
  detail::ObservedRounds const observed(state);
  bool const hasErrors = detail::faultOfErrors(configure, given).isEmpty();
  std::vector<detail::TraverseWalk> walks;
  try {
    walks = detail::traverseWalks(done.network, method);
  } catch (AlgorithmException const& failure) {
    QString const name = recordText(failure.name);
    bool const isBranch = failure.errorType == AlgorithmException::DataError;
    std::throw_with_nested(JobException(
        state.file,
        (isBranch ? Messages::tr("from %1 several ways lead on: no single traverse, but least squares adjusts it")
                  : Messages::tr("two sights of %1 have the same direction"))
            .arg(name)));
  }
  for (detail::TraverseWalk& walk : walks) {
    TraverseResult result;
    if (walk.closing == TraverseClosing::OnItself) {
      result = detail::adjustedLoop(walk);
    } else {
      configure.AdjustMethod = walk.method;
      Network const chain = detail::networkOf(walk, given.knownPoints);
      auto adjustment = calculated(chain, configure, state, cancel);
      result = resultOf(*adjustment, walk.method, chain, false);
      if (done.first == nullptr) done.first = std::move(adjustment);
    }
    TraverseErrors const errors = detail::traverseErrors(state, result.stations, observed);
    for (detail::SideSight& sight : walk.sideSights) {
      TraverseInfo const& at = result.stations[sight.station];
      sight.rounds = observed.directions(at.stationPoint.name, at.backPoint.name, sight.target).second;
      sight.distances = std::max(1.0, observed.distancesOneWay(at.stationPoint.name, sight.target));
    }
    detail::addSidePoints(result, walk.sideSights, given.knownPoints, hasErrors ? &errors : nullptr);
    done.traverses.push_back(std::move(result));
  }
  return done;
}

/// The library's rules hold where they give all that there is.
Computed computed(detail::JobState const& state, utils::IProcessCancel const& cancel) {
  Configure const& configure = state.project->getConfigure();
  if (configure.AdjustMethod == kByLeastSquares || state.asRead) return byReadings(state, configure, cancel);
  bool isPlain = false;
  std::size_t const stations = stationsOf(detail::networkOnOneCircle(state), isPlain);
  if (configure.AdjustMethod == kAnyTraverse || !isPlain) {
    Computed found = bySights(state, configure, cancel);
    if (!found.traverses.empty()) return found;
    if (configure.AdjustMethod != kAnyTraverse) return byReadings(state, configure, cancel);
    throw JobException(
        state.file, Messages::tr("no traverse: no known station sights another known point and a point to go on to"));
  }
  Computed found;
  try {
    found = byReadings(state, configure, cancel);
    if (found.traverses.front().stations.size() == stations) return found;
  } catch (JobException const&) {
    Computed other;
    try {
      other = bySights(state, configure, cancel);
    } catch (JobException const&) {  // NOLINT(bugprone-empty-catch): the first failure tells more
    }
    std::unordered_set<std::string> reached;
    for (TraverseResult const& traverse : other.traverses) {
      for (TraverseInfo const& station : traverse.stations) reached.insert(station.stationPoint.name);
    }
    if (other.traverses.empty() || reached.size() < stations) throw;
    return other;
  }
  Computed other;
  try {
    other = bySights(state, configure, cancel);
  } catch (JobException const&) {  // NOLINT(bugprone-empty-catch): there is one traverse at least
  }
  return other.traverses.size() > 1 ? std::move(other) : std::move(found);
}

}  // namespace

void detail::requireObservations(JobState const& state) {
  requireNoError(state.file, state.opened.findings());
  if (state.project->getFileType() != Project::CoordFile) return;
  throw JobException(state.file, Messages::tr("a coordinate file has no observations to adjust"));
}

QString detail::faultOfErrors(Configure const& configure, Network const& network) {
  auto const isBad = [](float value) { return !std::isfinite(value) || value < 0.0F; };
  if (isBad(configure.AngleError) || configure.AngleError == 0.0F) {
    return Messages::tr(
        "the a-priori error of a direction (in a network file the first number of line 1) must be a number above 0");
  }
  if (isBad(configure.LineFixedError) || isBad(configure.LineProportionError)) {
    return Messages::tr(
        "the a-priori errors of a distance (in a network file the second and third number of line 1) must be numbers "
        "of 0 or more");
  }
  // A distance without error would have a weight without bound.
  bool const hasDistances = std::any_of(network.lines.begin(), network.lines.end(),
                                        [](NetworkDataInfo const& line) { return line.horizontal_distance > 0.0; });
  bool const hasError = configure.LineFixedError > 0.0F || configure.LineProportionError > 0.0F;
  return hasDistances && !hasError ? Messages::tr("the a-priori errors of a distance are both 0") : QString();
}

std::vector<CoordinatePointInfo> detail::coordinatesOf(std::vector<TraverseResult> const& traverses) {
  std::vector<CoordinatePointInfo> list;
  std::unordered_set<std::string> names;
  auto const add = [&](PointInfo const& point, double north, double east) {
    if (!names.insert(point.name).second) return;
    CoordinatePointInfo coordinate;
    coordinate.name = point.name;
    coordinate.N = north;
    coordinate.E = east;
    list.push_back(std::move(coordinate));
  };
  for (TraverseResult const& traverse : traverses) {
    for (PointInfo const& point : traverse.points) add(point, point.x, point.y);
  }
  // A point of a chain stays what it is there, and a known one what is given.
  for (TraverseResult const& traverse : traverses) {
    for (TraverseSidePoint const& side : traverse.sidePoints) {
      add(side.point, side.point.x - (side.isKnown ? side.offNorth : 0.0),
          side.point.y - (side.isKnown ? side.offEast : 0.0));
    }
  }
  return list;
}

std::vector<FieldFinding> detail::misclosuresBeside(JobState const& state) {
  std::vector<FieldFinding> findings;
  if (state.asRead || state.opened.reduction.lostRound) return findings;
  Configure configure = state.project->getConfigure();
  configure.AdjustMethod = kAnyTraverse;
  Computed found;
  try {
    utils::IProcessCancel const nobody;
    found = bySights(state, configure, nobody);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
    return findings;  // no single traverse
  }
  ObservedRounds const observed(state);
  for (TraverseResult& traverse : found.traverses) {
    judge(traverse, state, observed);
    for (FieldFinding& finding : findingsOnMisclosures(state, traverse, FieldFinding::kNoRow)) {
      finding.station = traverse.stations.front().stationPoint.name;
      finding.targets = {traverse.stations.back().stationPoint.name};
      findings.push_back(std::move(finding));
    }
  }
  return findings;
}

void detail::adjust(JobState& state, utils::IProcessCancel const& cancel) {
  requireAdjustable(state);
  Project& project = *state.project;
  Configure const& configure = project.getConfigure();
  if (configure.AdjustMethod == kByLeastSquares && !state.asRead) return adjustPlane(state, cancel);
  Computed done = computed(state, cancel);
  ObservedRounds const observed(state);
  for (TraverseResult& traverse : done.traverses) {
    if (state.asRead) continue;
    judge(traverse, state, observed);
    requireNotFarBeyond(traverse, state);
  }
  FinishedHeights heights = heightsBeside(state, cancel);
  project.setAlgorithmAdjust(std::move(done.first));
  state.adjusted = std::move(done.network);
  state.planeRun.reset();
  state.traverses = std::move(done.traverses);
  state.runFindings = findingsOnCalculated(state);
  std::vector<FieldFinding> ofSidePoints;
  auto const append = [](std::vector<FieldFinding>& list, std::vector<FieldFinding> const& more) {
    list.insert(list.end(), more.begin(), more.end());
  };
  for (std::size_t t = 0; t < state.traverses.size(); ++t) {
    append(state.runFindings, findingsOnMisclosures(state, state.traverses[t], t));
    append(ofSidePoints, findingsOnSidePoints(state.traverses[t]));
  }
  for (FieldFinding const& finding : state.runFindings) sendWarning(finding.text);
  if (!state.asRead) append(ofSidePoints, findingsOnCommonPoints(state.traverses));
  for (QString const& line : warningLines(ofSidePoints)) sendWarning(line);
  append(state.runFindings, ofSidePoints);
  keepHeights(state, std::move(heights));
}

}  // namespace kvn
