// What an adjustment's result says that a surveyor should look at, with what it may cost.
#include "adjust/engine/FreeDatum.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/detail/JobSteps.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kvn {
namespace {

// Known points fit exchanged where the unit weight error is smaller by this factor then.
constexpr double kFitsBetter = 10.0;
// Rounds of the trial with exchanged coordinates: a network that fits settles in a few.
constexpr int kTrialRounds = 30;
// Two known points can be exchanged without a trace: the network turns. From three on it would have to be mirrored.
constexpr std::size_t kLeastOfMirror = 3;
// Approximate coordinates farther from the adjusted place are those of another place, metres.
constexpr double kFarOff = 1000.0;

// Marks that are farther from each other are two, metres.
constexpr double kOneMark = 0.1;
// Of a point in the plane 99.7 % are within this many standard errors of its true place: the root of 11.83.
constexpr double kWithinErrors = 3.44;
constexpr double kWithoutErrors = 0.02;  // where nothing tells the errors, metres
// Known points of a free network that fit lie within this of it, however coarse their coordinates are, metres.
constexpr double kNear = 1.0;
// A shift of a known point of this many standard errors is not that of the network's own.
constexpr double kFarShift = 5.0;
// Coordinates beyond are none, metres: they would not be told apart in a square of the size above.
constexpr double kFarthest = 1e12;

FieldFinding warning(std::string station, std::vector<std::string> targets, QString text, double cost = 0.0) {
  FieldFinding finding;
  finding.station = std::move(station);
  finding.targets = std::move(targets);
  finding.text = std::move(text);
  finding.cost = std::isfinite(cost) ? cost : 0.0;
  return finding;
}

/// An observation by its points, as in the network.
struct Sight {
  std::string const& from;
  std::string const& to;
  PlaneNetwork::Origin origin;
};

Sight sightOf(PlaneNetwork const& network, bool isDirection, std::size_t number) {
  auto const nameOf = [&network](int point) -> std::string const& {
    return network.points[static_cast<std::size_t>(point)].name;
  };
  if (!isDirection) {
    PlaneNetwork::Distance const& distance = network.distances[number];
    return {nameOf(distance.from), nameOf(distance.to), distance.origin};
  }
  PlaneNetwork::Direction const& direction = network.directions[number];
  int const station = network.setUps[static_cast<std::size_t>(direction.setUp)].station;
  return {nameOf(station), nameOf(direction.target), direction.origin};
}

/// What the gross error that an observation seems to have moves a coordinate by.
double costOf(PlaneObservation const& observation) {
  if (observation.weight == 0.0) return 0.0;
  return std::abs(observation.residual) / observation.redundancy * observation.effect / observation.detectable;
}

/// Of suspects that had to lose their weight nobody knows whether they are wrong: what they miss the others by, metres.
double costOfLost(PlaneObservation const& observation, SuspectObservation const& suspect) {
  double const size = std::abs(suspect.difference);
  return suspect.isDirection ? size / utils::kSecondsPerRadian * observation.length : size;
}

/// Of a run that has failed there is no result, and no cost.
FieldFinding suspicionOf(PlaneAdjustment const& run, SuspectObservation const& suspect) {
  FieldFinding finding = warning(suspect.from, {suspect.to}, detail::textOfSuspect(suspect));
  finding.isOfDistance = !suspect.isDirection;
  if (suspect.number < 0) return finding;
  auto const number = static_cast<std::size_t>(suspect.number);
  finding.line = sightOf(run.network(), suspect.isDirection, number).origin.line;
  PlaneResult const& result = run.result();
  std::vector<PlaneObservation> const& list = suspect.isDirection ? result.directions : result.distances;
  double cost = 0.0;
  if (number < list.size()) cost = result.isWithoutSuspects ? costOfLost(list[number], suspect) : costOf(list[number]);
  finding.cost = std::isfinite(cost) ? cost : 0.0;
  return finding;
}

/// An observation that is out has no mark any more: what it was too large by, and what that moved.
FieldFinding leavingOf(PlaneAdjustment const& run, PlaneLeftOut const& left) {
  Sight const sight = sightOf(run.network(), left.isDirection, left.observation);
  SuspectObservation size;
  size.isDirection = left.isDirection;
  size.difference = left.isDirection ? left.gross * utils::kSecondsPerRadian : left.gross;
  QString const text = left.isDirection
                           ? Messages::tr("left out: the direction, %1; that moves coordinates by up to %2 m")
                           : Messages::tr("left out: the distance, %1; that moves coordinates by up to %2 m");
  FieldFinding finding =
      warning(sight.from, {sight.to}, text.arg(wordedSize(size)).arg(left.largestMove, 0, 'f', 4), left.largestMove);
  finding.line = sight.origin.line;
  finding.isOfDistance = !left.isDirection;
  return finding;
}

QString nameOf(Sight const& sight, bool isDirection) {
  QString const text = isDirection ? Messages::tr("%1 to %2 (direction)") : Messages::tr("%1 to %2 (distance)");
  return text.arg(recordText(sight.from), recordText(sight.to));
}

/// Nothing but the choice of the adjustment speaks against the one that is in.
FieldFinding alternativeTo(PlaneAdjustment const& run, PlaneAlternative const& other, QString const& suspect) {
  Sight const sight = sightOf(run.network(), other.isDirection, other.observation);
  QString const text =
      other.isDirection
          ? Messages::tr(
                "the direction may be the wrong one in the place of that from %1, which is out: no residual tells "
                "them apart, and coordinates would be elsewhere by up to %2 m")
          : Messages::tr(
                "the distance may be the wrong one in the place of that from %1, which is out: no residual tells "
                "them apart, and coordinates would be elsewhere by up to %2 m");
  FieldFinding finding =
      warning(sight.from, {sight.to}, text.arg(suspect, QString::number(other.apart, 'f', 4)), other.apart);
  finding.line = sight.origin.line;
  finding.isOfDistance = !other.isDirection;
  return finding;
}

QString wordedMove(PlaneControl const& control) {
  return Messages::tr("it would lie %1 m north and %2 m east of its coordinates")
      .arg(control.north, 0, 'f', 3)
      .arg(control.east, 0, 'f', 3);
}

void addControl(PlaneAdjustment const& run, std::vector<FieldFinding>& findings) {
  PlaneResult const& result = run.result();
  QString text = result.suspectedControl.size() == 1
                     ? Messages::tr("the known point does not fit the observations: %1")
                     : Messages::tr("the known point, or another of these, does not fit the observations: %1");
  if (!result.isControlAlone) {
    text = Messages::tr("the known point does not fit, or another one, or an observation, and nothing tells which: %1");
  }
  for (PlaneControl const& control : result.control) {
    auto const& suspected = result.suspectedControl;
    if (std::find(suspected.begin(), suspected.end(), control.point) == suspected.end()) continue;
    findings.push_back(warning({}, {run.network().points[control.point].name}, text.arg(wordedMove(control)),
                               std::hypot(control.north, control.east)));
  }
}

/// Residuals that are too large as a whole have a reason, and some known points cannot be tested.
void addUnexplained(PlaneAdjustment const& run, std::vector<FieldFinding>& findings) {
  PlaneResult const& result = run.result();
  if (!result.hasRedundancy || !(result.unitError > result.upperBound) || !run.suspects().empty()) return;
  auto const isLowered = [](PlaneObservation const& o) { return o.weight < 1.0; };
  bool const hasLowered = std::any_of(result.directions.begin(), result.directions.end(), isLowered) ||
                          std::any_of(result.distances.begin(), result.distances.end(), isLowered);
  if (!result.suspectedControl.empty() || hasLowered) return;
  std::vector<std::string> untested;
  for (PlaneControl const& control : result.control) {
    if (!control.isDetermined) untested.push_back(run.network().points[control.point].name);
  }
  QString const text =
      untested.empty()
          ? Messages::tr(
                "the residuals are larger as a whole than the a-priori errors allow, and no single observation "
                "or known point explains it: the errors may be too small, or several things wrong")
          : Messages::tr(
                "the residuals are larger as a whole than the a-priori errors allow, and no single observation "
                "explains it: the errors may be too small, or one of the known points wrong, which nothing tests");
  findings.push_back(warning({}, std::move(untested), text));
}

FieldFinding twinsOf(std::string const& first, std::string const& second, double apart) {
  QString const text = Messages::tr("perhaps one point under two names, %1 mm from each other");
  return warning({}, {first, second}, text.arg(QString::number(1000.0 * apart, 'f', 1)), apart);
}

void addTwins(PlaneAdjustment const& run, std::vector<FieldFinding>& findings) {
  auto const nameOf = [&run](std::size_t point) { return run.network().points[point].name; };
  for (PlaneTwins const& twins : run.result().twins) {
    findings.push_back(twinsOf(nameOf(twins.first), nameOf(twins.second), twins.apart));
  }
}

/// Known points that nothing observes take no part in the run: a new point may be one of them.
void addUnobservedTwins(Project const& project, PlaneAdjustment const& run, std::vector<FieldFinding>& findings) {
  std::unordered_set<std::string> observed;
  for (PlaneNetwork::Point const& point : run.network().points) observed.insert(point.name);
  std::map<std::pair<std::int64_t, std::int64_t>, std::vector<KnownPoint const*>> squares;
  auto const squareOf = [](double x) { return static_cast<std::int64_t>(std::floor(x / kOneMark)); };
  for (KnownPoint const& point : project.getNetwork().knownPoints) {
    bool const isCandidate = observed.count(point.name) == 0 && std::abs(point.x) + std::abs(point.y) < kFarthest;
    if (isCandidate) squares[{squareOf(point.x), squareOf(point.y)}].push_back(&point);
  }
  for (std::size_t p = 0; !squares.empty() && p < run.network().points.size(); ++p) {
    PlanePoint const& point = run.result().points[p];
    if (run.network().points[p].isKnown) continue;
    double const allowed = std::isfinite(point.semiMajor) ? kWithinErrors * point.semiMajor : kWithoutErrors;
    for (int near = 0; near < 9; ++near) {
      auto const square = squares.find({squareOf(point.x) + near / 3 - 1, squareOf(point.y) + near % 3 - 1});
      if (square == squares.end()) continue;
      for (KnownPoint const* known : square->second) {
        double const apart = std::hypot(point.x - known->x, point.y - known->y);
        if (apart > std::min(kOneMark, allowed)) continue;
        findings.push_back(twinsOf(known->name, run.network().points[p].name, apart));
      }
    }
  }
}

/// Against the coordinates that the network gives for a point, else those of the project's list. A known point is far
/// off in a free network alone.
void addFarOff(Project const& project, PlaneAdjustment const& run, std::vector<FieldFinding>& findings) {
  std::unordered_map<std::string, CoordinatePointInfo const*> listed;
  for (CoordinatePointInfo const& point : project.getCoordinatePointList()) listed.emplace(point.name, &point);
  for (std::size_t p = 0; p < run.network().points.size(); ++p) {
    PlaneNetwork::Point const& point = run.network().points[p];
    double x = point.x;
    double y = point.y;
    if (!std::isfinite(x + y)) {
      auto const found = listed.find(point.name);
      if (found == listed.end()) continue;
      x = found->second->N;
      y = found->second->E;
    }
    double const off = std::hypot(run.result().points[p].x - x, run.result().points[p].y - y);
    if (!(off > kFarOff)) continue;
    QString const text = Messages::tr("lies %1 km from the coordinates that are given for it");
    findings.push_back(warning({}, {point.name}, text.arg(QString::number(off / 1000.0, 'f', 1)), off));
  }
}

/// A free network is laid onto its known points, and fits itself whatever these are: their shifts tell.
void addShifts(PlaneAdjustment const& run, std::vector<FieldFinding>& findings) {
  PlaneNetwork const& network = run.network();
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    if (!network.points[p].isKnown) continue;
    PlanePoint const& point = run.result().points[p];
    double const shift = std::hypot(point.x - network.points[p].x, point.y - network.points[p].y);
    if (!(shift > (std::isfinite(point.mp) ? std::max(kFarShift * point.mp, kWithoutErrors) : kNear))) continue;
    QString const text = Messages::tr("the known point does not fit the free network: its place is %1 m off");
    findings.push_back(warning({}, {network.points[p].name}, text.arg(QString::number(shift, 'f', 3)), shift));
  }
}

/// Whether the way in which an adjustment failed may come from its known points.
bool mayFailByControl(PlaneAdjustment const& run) {
  if (!run.looseMotions().empty() || !run.coincidentPoints().empty()) return false;
  auto const isMissing = [](UnplacedPoint const& point) { return point.reason <= UnplacedPoint::OnUnplaced; };
  auto const& unplaced = run.unplacedPoints();
  return unplaced.empty() || !std::all_of(unplaced.begin(), unplaced.end(), isMissing);
}

}  // namespace

QString detail::textOfSuspect(SuspectObservation const& suspect) {
  QString const text = suspect.isDirection ? Messages::tr("suspected gross error of the direction: %1")
                                           : Messages::tr("suspected gross error of the distance: %1");
  return text.arg(wordedSize(suspect));
}

std::vector<FieldFinding> detail::findingsToldBy(PlaneAdjustment const& run) {
  std::vector<FieldFinding> findings;
  PlaneResult const& result = run.result();
  for (SuspectObservation const& suspect : run.suspects()) findings.push_back(suspicionOf(run, suspect));
  double largest = 0.0;
  for (FieldFinding const& finding : findings) largest = std::max(largest, finding.cost);
  for (PlaneLeftOut const& left : result.leftOut) {
    findings.push_back(leavingOf(run, left));
    QString const name = nameOf(sightOf(run.network(), left.isDirection, left.observation), left.isDirection);
    for (PlaneAlternative const& other : left.alternatives) findings.push_back(alternativeTo(run, other, name));
  }
  addControl(run, findings);
  for (std::size_t const point : result.commonControl) {
    findings.push_back(
        warning({}, {run.network().points[point].name},
                Messages::tr("most of the suspected observations are those of this known point, whose coordinates may "
                             "be wrong"),
                largest));
  }
  for (PlaneAlternative const& other : result.alternatives) {
    if (other.apart > 0.0) {
      SuspectObservation const& suspect = run.suspects()[other.suspect];
      auto const number = static_cast<std::size_t>(suspect.number);
      QString const name = nameOf(sightOf(run.network(), suspect.isDirection, number), suspect.isDirection);
      findings.push_back(alternativeTo(run, other, name));
      continue;
    }
    Sight const sight = sightOf(run.network(), other.isDirection, other.observation);
    PlaneObservation const& observation =
        other.isDirection ? result.directions[other.observation] : result.distances[other.observation];
    findings.push_back(warning(sight.from, {sight.to},
                               other.isDirection
                                   ? Messages::tr("the direction cannot be told apart from a suspected observation")
                                   : Messages::tr("the distance cannot be told apart from a suspected observation"),
                               costOf(observation)));
    findings.back().line = sight.origin.line;
    findings.back().isOfDistance = !other.isDirection;
  }
  addUnexplained(run, findings);
  if (!result.untreated.isEmpty()) findings.push_back(warning({}, {}, result.untreated));
  if (result.isWithoutSuspects) {
    findings.push_back(warning(
        {}, {}, Messages::tr("the adjustment does not settle with the suspected observations, which have no weight")));
  }
  std::vector<std::string> unchecked;
  for (std::size_t p = 0; p < result.points.size(); ++p) {
    if (!result.points[p].isChecked) unchecked.push_back(run.network().points[p].name);
  }
  if (!unchecked.empty()) {
    QString const text =
        unchecked.size() == 1 ? Messages::tr("nothing checks the point") : Messages::tr("nothing checks the points");
    findings.push_back(warning({}, std::move(unchecked), text));
  }
  return findings;
}

std::vector<FieldFinding> detail::findingsOnResult(JobState const& state, PlaneAdjustment const& run) {
  std::vector<FieldFinding> findings;
  if (run.result().hasRedundancy && run.result().unitError > kDoubtfulUnitError) {
    findings.push_back(warning(
        {}, {}, Messages::tr("The unit weight error is far above 1: a gross error, or known points that do not fit")));
  }
  if (state.plane.datum == PlaneSettings::Datum::Free) addShifts(run, findings);
  addTwins(run, findings);
  addUnobservedTwins(*state.project, run, findings);
  addFarOff(*state.project, run, findings);
  return findings;
}

/// A free network fits itself whatever its known points are; how far these are from it tells.
std::optional<FieldFinding> detail::findingOnExchangeOfFree(PlaneAdjustment const& run) {
  PlaneResult const& result = run.result();
  std::vector<double> adjusted;
  std::vector<double> given;
  std::vector<double> exchanged;
  std::vector<int> points;
  for (std::size_t p = 0; p < result.points.size(); ++p) {
    PlaneNetwork::Point const& point = run.network().points[p];
    if (!point.isKnown) continue;
    points.push_back(static_cast<int>(points.size()));
    adjusted.insert(adjusted.end(), {result.points[p].x, result.points[p].y});
    given.insert(given.end(), {point.x, point.y});
    exchanged.insert(exchanged.end(), {point.y, point.x});
  }
  if (points.size() < kLeastOfMirror) return std::nullopt;
  auto const largestShift = [&](std::vector<double> const& wanted) {
    std::vector<double> laid = adjusted;
    layOn(laid, wanted, points, run.network().distances.empty());
    double largest = 0.0;
    for (std::size_t i = 0; i < laid.size(); i += 2) {
      largest = std::max(largest, std::hypot(laid[i] - wanted[i], laid[i + 1] - wanted[i + 1]));
    }
    return largest;
  };
  double const asGiven = largestShift(given);
  double const asExchanged = largestShift(exchanged);
  bool const fits = asExchanged <= kNear && asExchanged * kFitsBetter < asGiven;
  if (!(asGiven > kOneMark && fits)) return std::nullopt;
  QString const text =
      Messages::tr("The known points fit with north and east exchanged: shifts of up to %1 m instead of %2 m");
  return warning({}, {}, text.arg(QString::number(asExchanged, 'f', 3), QString::number(asGiven, 'f', 3)), asGiven);
}

std::optional<FieldFinding> detail::findingOnExchange(PlaneAdjustment const& run, PlaneSettings settings,
                                                      std::function<bool()> const& isCancelled) {
  if (settings.datum == PlaneSettings::Datum::Free) return findingOnExchangeOfFree(run);
  PlaneNetwork network = run.network();
  // Without some of the observations the rest may fit anywhere.
  bool const hasResult = !run.result().points.empty() && !run.result().isWithoutSuspects;
  double const asGiven = run.result().unitError;
  bool const isBad = hasResult ? run.result().hasRedundancy && asGiven > kDoubtfulUnitError : mayFailByControl(run);
  auto const known = static_cast<std::size_t>(std::count_if(
      network.points.begin(), network.points.end(), [](PlaneNetwork::Point const& point) { return point.isKnown; }));
  if (!isBad || known < kLeastOfMirror) return std::nullopt;
  double cost = 0.0;
  for (PlaneNetwork::Point& point : network.points) {
    std::swap(point.x, point.y);
    if (point.isKnown) cost = std::max(cost, std::hypot(point.x - point.y, point.x - point.y));
  }
  settings.leavesOutSuspects = settings.weighsDownSuspects = false;
  settings.iterationLimit = kTrialRounds;
  PlaneAdjustment exchanged(std::move(network), settings);
  exchanged.setTellFindings(false);
  exchanged.setCancelCall(isCancelled);
  try {
    exchanged.adjust();
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
    if (isCancelled && isCancelled()) throw;
    return std::nullopt;  // it does not fit that way either
  }
  PlaneResult const& result = exchanged.result();
  double const most = hasResult ? std::min(asGiven / kFitsBetter, kDoubtfulUnitError) : kDoubtfulUnitError;
  if (!result.hasRedundancy || result.isWithoutSuspects || !(result.unitError <= most)) return std::nullopt;
  QString const unitError = QString::number(result.unitError, 'f', 2);
  QString const text =
      hasResult
          ? Messages::tr("The known points fit with north and east exchanged: unit weight error %1 instead of %2")
                .arg(unitError, QString::number(asGiven, 'f', 2))
          : Messages::tr("The known points fit with north and east exchanged: unit weight error %1").arg(unitError);
  return warning({}, {}, text, cost);
}

}  // namespace kvn
