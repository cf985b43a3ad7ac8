// What stands in the way of an adjustment: points without a place, gross errors, points that nothing holds.
#include "adjust/TraverseAdjust.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/GrossErrors.h"
#include "adjust/plane/LooseGroups.h"
#include "adjust/plane/NumberedNetwork.h"
#include "adjust/start/StartSearch.h"
#include "core/AlgorithmException.h"
#include "core/System.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <optional>
#include <set>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::Place;

// The smallest a-priori errors that a test can divide by: 1e-6" and 0.1 nm.
constexpr double kSmallestSeconds = 1e-6;
constexpr double kSmallestDistanceError = 1e-10;
// A distance between known points is suspected from here on, in its a-priori errors, as all other observations are.
constexpr double kCritical = 5.0;
// An observation that so small a share of its errors would show in its residual is not checked by the others.
constexpr double kUnchecked = 1e-4;
// As the iteration of the adjustment; metres.
constexpr double kSmallestMove = 0.01;
// Pivots of the normal equations, in metres and with equal weights, as a share of their diagonal elements, below which
// a motion counts as not felt; the second when the system has failed and the first finds nothing.
constexpr double kWeakness = 1e-10;
constexpr double kWeaknessOfFailure = 1e-8;
// The centre of a turn is a point's place when it lies this near, as a share of the distance to what turns.
constexpr double kAtPoint = 1e-3;

}  // namespace

detail::NumberedNetwork TraverseAdjust::planeNetwork() const {
  detail::NumberedNetwork network;
  network.points = pointsCount;
  network.known = knPointsCount;
  network.stationPoint = stationPoint;
  network.directionStart = directionStart;
  network.blockOrder = blockOrder;
  network.directionError = std::max(angleError, kSmallestSeconds) / rho;
  network.distanceFixed = std::max(lineFixedError, kSmallestDistanceError);
  network.distanceProportion = lineProportionError;
  network.directions.reserve(directionTarget.size());
  for (int s = 0; s < stationsCount; ++s) {
    for (int d = directionStart[index(s)]; d < directionStart[index(s) + 1]; ++d) {
      network.directions.push_back({s, directionTarget[index(d)], directionValue[index(d)]});
    }
  }
  for (std::size_t e = 0; e < lineValue.size(); ++e) network.lines.push_back({lineStart[e], lineEnd[e], lineValue[e]});
  network.buildLookups();
  return network;
}

void TraverseAdjust::setTellFindings(bool tellThem) { tellFindings = tellThem; }

void TraverseAdjust::tell(QString const& text, MessType type) const {
  System const* const system = System::Instance();
  if (tellFindings && system != nullptr) system->sendMessage(text, type);
}

void TraverseAdjust::checkObservations() { findSuspects(XY, false); }

std::vector<Place> TraverseAdjust::placesOf(std::vector<double> const& coordinates) {
  std::vector<Place> places;
  for (std::size_t i = 0; i < coordinates.size(); i += 2) places.emplace_back(coordinates[i], coordinates[i + 1]);
  return places;
}

/// Where plain least squares do not settle about the coordinates of the walk, a search from the known points alone may
/// give better ones: it weighs all that is observed to a point.
void TraverseAdjust::findSuspects(std::vector<double> const& coordinates, bool improveStart) {
  tellProgress(AdjustProgress::Check);
  detail::Poll const poll = cancelPoll();
  detail::NumberedNetwork const network = planeNetwork();
  std::vector<Place> const places = placesOf(coordinates);
  auto const searched = [&network, &places, &poll] {
    detail::StartSearch search(network, poll);
    for (int n = 0; n < network.known; ++n) search.place(n, places[index(n)]);
    std::vector<Place> found;
    if (!search.run()) return found;
    for (int n = 0; n < network.points; ++n) found.push_back(search.at(n));
    return found;
  };
  if (improveStart && !detail::settles(network, places, kSmallestMove, poll)) {
    std::vector<Place> const better = searched();
    if (!better.empty() && detail::settles(network, better, kSmallestMove, poll)) {
      for (int n = knPointsCount; n < pointsCount; ++n) place(n, {better[index(n)].real(), better[index(n)].imag()});
    }
  }
  suspects.clear();
  // The fit looks at all sights at once. A gross error hardly leads it astray, and no other start need be tried.
  std::optional<std::vector<detail::GrossError>> errors;
  if (hasFit()) errors = detail::grossErrors(network, fitted(), {}, poll);
  if (!errors) errors = detail::grossErrors(network, places, searched, poll);
  for (detail::GrossError const& error : errors.value_or(std::vector<detail::GrossError>())) {
    suspects.push_back(suspectOf(error.observation, error.difference));
  }
  addControlSuspects();
  if (!suspects.empty()) tell(worded(suspects), Warning);
}

/// About the finished adjustment. Where each observation fits the others within its errors nothing is searched for.
void TraverseAdjust::judgeObservations() {
  if (hasMisfits()) {
    findSuspects(start, false);
    return;
  }
  suspects.clear();
  addControlSuspects();
  if (!suspects.empty()) tell(worded(suspects), Warning);
}

/// The test of `detail::grossErrors`, with the residuals of all observations taken together.
bool TraverseAdjust::hasMisfits() const {
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  double const critical = detail::criticalTest(index(directionsCount + linesCount));
  auto const isMisfit = [critical](double residual, double error, double variance) {
    double const checked = 1.0 - variance / (error * error);
    return checked >= kUnchecked && !(std::abs(residual) <= critical * error * std::sqrt(checked));
  };
  double a[5];
  int at[5];
  double const seconds = std::max(angleError, kSmallestSeconds);
  a[4] = -1.0;
  for (int i = 0; i < stationsCount; ++i) {
    at[4] = 2 * pointsCount + i;
    for (int d = directionStart[index(i)]; d < directionStart[index(i) + 1]; ++d) {
      effort.step();
      calculateAB(stationPoint[index(i)], directionTarget[index(d)], a, at);
      if (isMisfit(directionV[index(d)], seconds, cofactor(a, at, 5))) return true;
    }
  }
  for (std::size_t e = 0; e < lineValue.size(); ++e) {
    effort.step();
    calculateCD(lineStart[e], lineEnd[e], a, at);
    double const error = std::max(lineFixedError, kSmallestDistanceError) + lineProportionError * lineValue[e];
    if (isMisfit(lineV[e], error, cofactor(a, at, 4))) return true;
  }
  return false;
}

/// @param observation  number of the direction or, behind all directions, of the distance.
SuspectObservation TraverseAdjust::suspectOf(int observation, double difference) const {
  SuspectObservation suspect;
  suspect.isDirection = observation < directionsCount;
  if (suspect.isDirection) {
    auto const next = std::upper_bound(directionStart.begin(), directionStart.end(), observation);
    suspect.from = nameOf(stationPoint[index(static_cast<int>(next - directionStart.begin()) - 1)]);
    suspect.to = nameOf(directionTarget[index(observation)]);
    suspect.difference = -difference * rho;
  } else {
    suspect.from = nameOf(lineStart[index(observation - directionsCount)]);
    suspect.to = nameOf(lineEnd[index(observation - directionsCount)]);
    suspect.difference = -difference;
  }
  return suspect;
}

std::string const& TraverseAdjust::nameOf(int point) const { return pointNames.names()[index(point)]; }

void TraverseAdjust::addControlSuspects() {
  if (!countControlDistances) return;
  for (ControlDistance const& line : controlDistances) {
    double const difference = line.value - std::hypot(x(line.end) - x(line.start), y(line.end) - y(line.start));
    if (!(std::abs(difference) > kCritical * (lineFixedError + lineProportionError * line.value))) continue;
    suspects.push_back({false, nameOf(line.start), nameOf(line.end), difference});
  }
}

/// The system has no solution: what the points can do tells more than that it failed.
void TraverseAdjust::failIteration() {
  determine(true);
  // Gross errors that have been told may be the reason.
  if (coincidentPoints.empty() && looseMotions.empty() && suspects.empty()) {
    tell(System::tr("The normal equations lose their digits: the a-priori errors or the lengths of the sights are too "
                    "different in size"),
         Error);
  }
  throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
}

void TraverseAdjust::checkDetermination() { determine(false); }

void TraverseAdjust::determine(bool hasFailed) {
  findCoincidentPoints();
  looseMotions.clear();
  if (coincidentPoints.empty()) findLooseMotions(hasFailed);
  if (!coincidentPoints.empty()) {
    QStringList pairs;
    for (auto const& [a, b] : coincidentPoints) {
      pairs << QStringLiteral("%1, %2").arg(QString::fromStdString(a), QString::fromStdString(b));
    }
    tell(System::tr("Observations between points at one place: %1").arg(pairs.join(QStringLiteral("; "))), Error);
  }
  if (!looseMotions.empty()) tell(worded(looseMotions), Error);
}

void TraverseAdjust::findCoincidentPoints() {
  std::set<std::pair<std::string, std::string>> pairs;
  auto const look = [&](int a, int b) {
    bool const isOnePlace =
        X0Y0[2 * index(a)] == X0Y0[2 * index(b)] && X0Y0[2 * index(a) + 1] == X0Y0[2 * index(b) + 1];
    if (isOnePlace) pairs.insert(std::minmax(nameOf(a), nameOf(b)));
  };
  for (int s = 0; s < stationsCount; ++s) {
    for (int d = directionStart[index(s)]; d < directionStart[index(s) + 1]; ++d) {
      look(stationPoint[index(s)], directionTarget[index(d)]);
    }
  }
  for (std::size_t e = 0; e < lineStart.size(); ++e) look(lineStart[e], lineEnd[e]);
  coincidentPoints.assign(pairs.begin(), pairs.end());
}

/// About the approximate coordinates, since those of a failed iteration may be anything.
void TraverseAdjust::findLooseMotions(bool hasFailed) {
  detail::NumberedNetwork const network = planeNetwork();
  std::vector<Place> const places = placesOf(X0Y0);
  detail::Poll const poll = cancelPoll();
  detail::NetworkState const state = detail::orientedState(network, places, poll);
  std::vector<detail::LooseGroup> groups = detail::looseGroups(network, state, kWeakness, poll);
  if (groups.empty() && hasFailed) groups = detail::looseGroups(network, state, kWeaknessOfFailure, poll);
  for (detail::LooseGroup const& group : groups) {
    LooseMotion motion;
    motion.kind = group.motion;
    motion.azimuth = group.azimuth;
    motion.x = group.centre.real();
    motion.y = group.centre.imag();
    bool const hasCentre = group.motion == LooseMotion::Turn || group.motion == LooseMotion::Scale;
    double nearest = kAtPoint * std::abs(places[index(group.points.front())] - group.centre);
    for (int n = 0; hasCentre && n < pointsCount; ++n) {
      if (std::abs(places[index(n)] - group.centre) >= nearest) continue;
      nearest = std::abs(places[index(n)] - group.centre);
      motion.centre = nameOf(n);
    }
    for (int const point : group.points) motion.names.push_back(nameOf(point));
    looseMotions.push_back(std::move(motion));
  }
}

std::vector<UnplacedPoint> const& TraverseAdjust::getUnplacedPoints() const { return unplacedPoints; }
std::vector<SuspectObservation> const& TraverseAdjust::getSuspects() const { return suspects; }
std::vector<LooseMotion> const& TraverseAdjust::getLooseMotions() const { return looseMotions; }
std::vector<std::pair<std::string, std::string>> const& TraverseAdjust::getCoincidentPoints() const {
  return coincidentPoints;
}

}  // namespace kvn
