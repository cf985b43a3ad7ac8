// Adjusting: the network of a job by its settings.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TraverseLines.h"
#include "adjust/traverse/TraverseSidePoints.h"
#include "core/DataException.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "job/detail/ObservedRounds.h"
#include "records/detail/Messages.h"
#include "records/detail/Recorded.h"
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

void append(std::vector<FieldFinding>& list, std::vector<FieldFinding> const& more) {
  list.insert(list.end(), more.begin(), more.end());
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
  } catch (DataException const& failure) {
    // A leg without a distance, which another way through the network may do without.
    std::throw_with_nested(JobException(state.file, QString::fromUtf8(failure.what())));
  }
  // The calls of the host are for the time of the run.
  adjustment->setProgressCall({});
  adjustment->setCancelCall({});
  return adjustment;
}

/// A calculator takes the inner stations of its chain for unknown, and would move a known one.
void requireKnownAtEnds(TraverseResult const& result, std::vector<KnownPoint> const& known, QString const& file) {
  std::unordered_set<std::string> names;
  for (KnownPoint const& point : known) names.insert(point.name);
  std::size_t const end = result.method == kOpen ? result.stations.size() : result.stations.size() - 1;
  for (std::size_t i = 1; i < end; ++i) {
    std::string const& name = result.stations[i].stationPoint.name;
    if (names.count(name) == 0) continue;
    throw JobException(file, Messages::tr("the traverse goes on over the known point %1, where it has to end: "
                                          "adjusted so, the point would be moved")
                                 .arg(recordText(name)));
  }
}

TraverseResult resultOf(AlgorithmAdjust const& adjustment, int method, Network const& network,
                        detail::JobState const& state) {
  TraverseResult result;
  result.method = method;
  result.stations = adjustment.getTraverseAdjustInfoList();
  result.summary = adjustment.getTraverseSummary();
  result.points = adjustment.getPointList();
  if (state.asRead) return result;
  requireKnownAtEnds(result, network.knownPoints, state.file);
  if (method == kOpen) detail::takeCheckShot(result, network.knownPoints);
  return result;
}

/// Distances from the ends of a chain to the known points that give it its azimuths, each the mean of its repetitions.
std::vector<detail::SideSight> markDistancesOf(TraverseResult const& result, Network const& network) {
  std::vector<std::pair<std::size_t, std::string>> marks{{0, result.stations.front().backPoint.name}};
  bool const isClosing = result.summary.hasMisclosure && result.closing == TraverseClosing::AtStation;
  if (isClosing) marks.emplace_back(result.stations.size() - 1, result.stations.back().forePoints.front().name);
  std::vector<detail::SideSight> list;
  for (auto const& [place, mark] : marks) {
    double sum = 0.0;
    int count = 0;
    for (NetworkDataInfo const& line : network.lines) {
      bool const isIt = line.start_name == result.stations[place].stationPoint.name && line.end_name == mark;
      if (!isIt || !(line.horizontal_distance > detail::kNotMeasured)) continue;
      sum += line.horizontal_distance;
      ++count;
    }
    if (count > 0) list.push_back({place, mark, 0.0, sum / count});
  }
  return list;
}

/// A traverse with the calculator that made it, null of one that none can make.
struct Single {
  TraverseResult result;
  std::unique_ptr<AlgorithmAdjust> run;
};

/// What a run makes.
struct Computed {
  std::unique_ptr<AlgorithmAdjust> plane;  ///< by least squares
  std::vector<Single> traverses;
  std::vector<FieldFinding> refused;  ///< of several traverses those that cannot be computed
  std::vector<std::string> refusedStations;
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
  Network const given = detail::networkOnOneCircle(state);
  done.network = prepared(given, configure.AdjustMethod, state.asRead);
  auto run = calculated(done.network, configure, state, cancel);
  if (configure.AdjustMethod == kByLeastSquares) {
    done.plane = std::move(run);
    return done;
  }
  TraverseResult result = resultOf(*run, configure.AdjustMethod, done.network, state);
  if (!state.asRead) {
    detail::ObservedRounds const observed(state);
    TraverseErrors const errors = detail::traverseErrors(state, result.stations, observed);
    bool const hasErrors = detail::faultOfErrors(configure, done.network).isEmpty();
    detail::TraverseWalk walk;
    walk.markDistances = markDistancesOf(result, given);
    for (detail::SideSight& mark : walk.markDistances) {
      std::string const& at = result.stations[mark.station].stationPoint.name;
      mark.distances = std::max(1.0, observed.distancesOneWay(at, mark.target));
    }
    detail::addChecks(result, walk, done.network.knownPoints, hasErrors ? &errors : nullptr);
    if (hasErrors) detail::addPointErrors(result, done.network.knownPoints, errors);
  }
  done.traverses.push_back({std::move(result), std::move(run)});
  return done;
}

/// A chain with all that is seen from its stations.
Single computedWalk(detail::TraverseWalk& walk, detail::JobState const& state, Configure configure,
                    detail::ObservedRounds const& observed, utils::IProcessCancel const& cancel) {
  std::vector<KnownPoint> const& known = state.project->getNetwork().knownPoints;
  Single made;
  TraverseResult& result = made.result;
  std::string const& fore = walk.stations.back().forePoints.front().name;
  if (walk.closing == TraverseClosing::OnItself) {
    result = detail::adjustedLoop(walk);
  } else if (walk.method == kOpen && fore == walk.stations.front().stationPoint.name) {
    try {
      result = detail::openChain(walk);
    } catch (DataException const& failure) {
      throw JobException(state.file, QString::fromUtf8(failure.what()));
    }
    detail::takeCheckShot(result, known);
  } else {
    configure.AdjustMethod = walk.method;
    Network const chain = detail::networkOf(walk, known);
    made.run = calculated(chain, configure, state, cancel);
    result = resultOf(*made.run, walk.method, chain, state);
  }
  result.isEndStation = walk.isEndStation;
  TraverseErrors errors = detail::traverseErrors(state, result.stations, observed);
  auto const stationOf = [&](std::size_t place) -> std::pair<std::string, std::string> {
    bool const isBehind = place == result.stations.size();
    TraverseInfo const& station = isBehind ? result.stations.back() : result.stations[place];
    if (!isBehind) return {station.stationPoint.name, station.backPoint.name};
    return {station.forePoints.front().name, station.stationPoint.name};
  };
  for (detail::SideSight& sight : walk.sideSights) {
    auto const [at, back] = stationOf(sight.station);
    auto const [ofBack, ofTarget] = observed.directions(at, back, sight.target);
    sight.rounds = ofTarget;
    sight.distances = std::max(1.0, observed.distancesOneWay(at, sight.target));
    if (sight.station < errors.rounds.size()) continue;
    errors.rounds.resize(sight.station + 1);
    errors.rounds.back().back = ofBack;
  }
  for (detail::SideSight& mark : walk.markDistances) {
    mark.distances = std::max(1.0, observed.distancesOneWay(stationOf(mark.station).first, mark.target));
  }
  bool const hasErrors = detail::faultOfErrors(configure, state.project->getNetwork()).isEmpty();
  detail::addSidePoints(result, walk.sideSights, known, hasErrors ? &errors : nullptr);
  detail::addChecks(result, walk, known, hasErrors ? &errors : nullptr);
  if (hasErrors) detail::addPointErrors(result, known, errors);
  return made;
}

/// Of several traverses one that cannot be computed, by its first and last station.
FieldFinding refusalOf(std::string const& first, std::string const& way, std::string const& last,
                       QString const& reason) {
  FieldFinding finding;
  finding.severity = FieldFinding::Error;
  finding.station = first;
  finding.targets = {last};
  finding.text = Messages::tr("the traverse over %1 is refused: %2").arg(recordText(way), reason);
  return finding;
}

/// By the sights between the stations, whatever else they sight.
Computed bySights(detail::JobState const& state, Configure const& configure, utils::IProcessCancel const& cancel) {
  Network const given = detail::networkOnOneCircle(state);
  // Validated first, so that the number of a reported line is that of the file.
  AlgorithmData().readNetworkData(given, MissingDirection::IsLeftOut);
  Computed done;
  done.network = turnedCircles(given);
  int const method = configure.AdjustMethod == kAnyTraverse ? 0 : configure.AdjustMethod;
  detail::ObservedRounds const observed(state);
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
    try {
      done.traverses.push_back(computedWalk(walk, state, configure, observed, cancel));
    } catch (JobException const& failure) {
      if (walks.size() == 1) throw;
      TraverseInfo const& first = walk.stations.front();
      done.refused.push_back(refusalOf(first.stationPoint.name, first.forePoints.front().name,
                                       walk.stations.back().stationPoint.name, failure.text));
      for (TraverseInfo const& station : walk.stations) done.refusedStations.push_back(station.stationPoint.name);
    }
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
    if (!found.traverses.empty() || !found.refused.empty()) return found;
    if (configure.AdjustMethod != kAnyTraverse) return byReadings(state, configure, cancel);
    throw JobException(
        state.file, Messages::tr("no traverse: no known station sights another known point and a point to go on to"));
  }
  Computed found;
  try {
    found = byReadings(state, configure, cancel);
    if (found.traverses.front().result.stations.size() == stations) return found;
  } catch (JobException const&) {
    Computed other;
    try {
      other = bySights(state, configure, cancel);
    } catch (JobException const&) {  // NOLINT(bugprone-empty-catch): the first failure tells more
    }
    std::unordered_set<std::string> reached;
    for (Single const& single : other.traverses) {
      for (std::string const& name : detail::namesOfStations(single.result)) reached.insert(name);
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

std::vector<std::string> detail::namesOfStations(TraverseResult const& result) {
  std::vector<std::string> names;
  for (TraverseInfo const& station : result.stations) names.push_back(station.stationPoint.name);
  if (result.isEndStation) names.push_back(result.stations.back().forePoints.front().name);
  return names;
}

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
  for (Single& single : found.traverses) {
    TraverseResult& traverse = single.result;
    judge(traverse, state, observed);
    std::vector<FieldFinding> told = findingsOnLegs(traverse, FieldFinding::kNoRow);
    append(told, findingsOnMisclosures(state, traverse, FieldFinding::kNoRow));
    if (found.traverses.size() > 1) nameWays(told, traverse);
    append(findings, told);
    append(findings, findingsOnChecks(traverse));
  }
  return findings;
}

namespace {

/// Takes those out that miss by far more than they may, and says why.
void refuseFarBeyond(Computed& done, detail::JobState const& state) {
  std::vector<FieldFinding> ofNetwork;
  bool const isBeyond = std::any_of(done.traverses.begin(), done.traverses.end(), [](Single const& single) {
    return single.result.judgement && single.result.judgement->excess() > 1.0;
  });
  if (isBeyond) ofNetwork = detail::findingsOnNetwork(state);
  bool const isOne = done.traverses.size() + done.refused.size() == 1;
  std::vector<Single> kept;
  std::vector<FieldFinding> sofar;
  QStringList reasons;
  for (Single& single : done.traverses) {
    QString const reason = detail::farBeyond(single.result, state, ofNetwork);
    if (reason.isEmpty()) {
      kept.push_back(std::move(single));
      continue;
    }
    append(sofar, detail::findingsOnLegs(single.result, FieldFinding::kNoRow));
    append(sofar, detail::findingsOnChecks(single.result));
    append(sofar, detail::findingsOnSidePoints(single.result));
    TraverseInfo const& first = single.result.stations.front();
    std::string const& way = first.forePoints.front().name;
    done.refused.push_back(refusalOf(first.stationPoint.name, way, detail::lastPointOf(single.result), reason));
    for (std::string const& name : detail::namesOfStations(single.result)) done.refusedStations.push_back(name);
    reasons << (isOne ? reason : worded(done.refused.back()));
  }
  if (kept.empty() && !reasons.isEmpty()) {
    for (std::size_t i = 0; i + static_cast<std::size_t>(reasons.size()) < done.refused.size(); ++i) {
      reasons << worded(done.refused[i]);
    }
    throw JobMisclosureException(state.file, reasons.join(". "), std::move(sofar));
  }
  done.traverses = std::move(kept);
  append(done.refused, sofar);
}

}  // namespace

void detail::adjust(JobState& state, utils::IProcessCancel const& cancel) {
  requireAdjustable(state);
  Project& project = *state.project;
  Configure const& configure = project.getConfigure();
  if (configure.AdjustMethod == kByLeastSquares && !state.asRead) return adjustPlane(state, cancel);
  Computed done = computed(state, cancel);
  if (!state.asRead) {
    ObservedRounds const observed(state);
    for (Single& single : done.traverses) judge(single.result, state, observed);
    refuseFarBeyond(done, state);
  }
  if (done.plane == nullptr && done.traverses.empty()) {
    FieldFinding const& first = done.refused.front();
    throw JobException(state.file, worded(first), 0, static_cast<int>(done.refused.size()) - 1);
  }
  FinishedHeights heights = heightsBeside(state, cancel);
  std::unique_ptr<AlgorithmAdjust> run = std::move(done.plane);
  state.traverses.clear();
  for (Single& single : done.traverses) {
    state.traverses.push_back(std::move(single.result));
    if (run == nullptr) run = std::move(single.run);
  }
  project.setAlgorithmAdjust(std::move(run));
  state.adjusted = std::move(done.network);
  state.planeRun.reset();
  state.runFindings = findingsOnCalculated(state, done.refusedStations);
  std::vector<FieldFinding> ofSidePoints;
  for (std::size_t t = 0; t < state.traverses.size(); ++t) {
    std::vector<FieldFinding> ofWhole = findingsOnMisclosures(state, state.traverses[t], t);
    if (state.traverses.size() + done.refused.size() > 1) nameWays(ofWhole, state.traverses[t]);
    append(state.runFindings, ofWhole);
    append(ofSidePoints, findingsOnSidePoints(state.traverses[t]));
    append(ofSidePoints, findingsOnChecks(state.traverses[t]));
  }
  for (QString const& line : warningLines(state.runFindings)) sendWarning(line);
  if (!state.asRead) append(ofSidePoints, findingsOnCommonPoints(state.traverses));
  for (QString const& line : warningLines(ofSidePoints)) sendWarning(line);
  for (QString const& line : warningLines(done.refused)) sendWarning(line);
  for (FieldFinding const& finding : done.refused) {
    if (finding.severity == FieldFinding::Error) send(worded(finding), Error);
  }
  append(state.runFindings, ofSidePoints);
  append(state.runFindings, done.refused);
  // Told before the run.
  bool const isSingle = project.getConfigure().AdjustMethod != kByLeastSquares;
  if (isSingle && !state.asRead) append(state.runFindings, oneCircle(state).findings);
  keepHeights(state, std::move(heights));
}

}  // namespace kvn
