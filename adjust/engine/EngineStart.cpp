// Where the iteration starts: points that the walks do not place, and better coordinates than theirs.
#include "adjust/engine/PlaneEngine.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/GrossErrors.h"
#include "adjust/start/OrientedFit.h"
#include "adjust/start/StartSearch.h"
#include "adjust/start/UnplacedReasons.h"

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

// From this many points on all places are fitted at once before anything is searched for point by point.
constexpr int kManyPoints = 300;
// A sight that misses its target by this share of its length keeps the iteration away from its goal, or long from it.
constexpr double kFarOff = 0.1;

}  // namespace

/// The directions that have a distance.
std::vector<PolarSight> PlaneEngine::polarSights() const {
  std::vector<PolarSight> sights;
  sights.reserve(network.directions.size());
  for (NumberedNetwork::Direction const& d : network.directions) {
    int const from = network.pointOf(d.station);
    int const l = network.lineBetween(from, d.target);
    if (l < 0 || !(network.line(l).value > 0.0) || network.line(l).value > kMissingFrom) continue;
    double const distance = network.line(l).value;
    double const error = std::hypot(network.line(l).error, d.error * distance);
    sights.push_back({d.station, from, d.target, polar(distance, d.value), error});
  }
  return sights;
}

/// NaN where the sights with distances do not determine a point.
std::vector<Place> const& PlaneEngine::fitted() {
  if (fittedPlaces.empty()) {
    tellProgress(AdjustProgress::Start);
    std::vector<PolarSight> const sights = polarSights();
    if (fitsByOrientations) {
      fittedPlaces = orientedFit(placesOf(xy), network.known, network.stations(), sights, eliminationOrder(), poll);
    }
    if (fittedPlaces.empty()) {
      fittedPlaces = polarFit(placesOf(xy), network.known, network.stations(), sights, eliminationOrder(), poll);
    }
  }
  return fittedPlaces;
}

/// Whether the network is large, and the fit places all its points.
bool PlaneEngine::hasFit() {
  return network.points >= kManyPoints &&
         std::all_of(fitted().begin(), fitted().end(), [](Place p) { return std::isfinite(p.real()); });
}

/// Gives the points that `chosen` names the places of the fit, where it has some.
template <typename Chosen>
void PlaneEngine::takeFit(Chosen const& chosen) {
  std::vector<Place> const& fit = fitted();
  for (int n = network.known; n < network.points; ++n) {
    Place const at = fit[index(n)];
    if (std::isfinite(at.real()) && chosen(n)) place(xy, n, at.real(), at.imag());
  }
}

bool PlaneEngine::placePoints(Walk walk) {
  bool const isComplete = walk == Walk::ByDistances ? walkByDistances(network, xy) : walkByTriangles(network, xy);
  return isComplete || placeRemainingPoints();
}

/// Everything that the walks do not do; false when points are left.
bool PlaneEngine::placeRemainingPoints() {
  if (network.points < kManyPoints) return searchRemainingPoints(true);
  Coordinates const walked = xy;
  takeFit([this](int n) { return !isPlaced(xy, n); });
  bool isComplete = true;
  for (int n = 0; n < network.points; ++n) isComplete = isComplete && isPlaced(xy, n);
  if (isComplete || searchRemainingPoints(false)) return true;
  xy = walked;  // the walk alone may lead further
  return searchRemainingPoints(true);
}

/// From the points that are placed. Points that are left are told when `tellsLeft`.
bool PlaneEngine::searchRemainingPoints(bool tellsLeft) {
  if (hints.empty()) return searchOnce(tellsLeft, false);
  return searchOnce(false, true) || searchOnce(tellsLeft, false);
}

/// With hints, the points that the search does not place lie where the hints say; but not those that these leave
/// between two places.
bool PlaneEngine::searchOnce(bool tellsLeft, bool usesHints) {
  StartSearch search(network, poll);
  if (usesHints) search.setHints(&hints);
  for (int n = 0; n < network.points; ++n) {
    if (isPlaced(xy, n)) search.place(n, Place(xy[2 * index(n)], xy[2 * index(n) + 1]));
  }
  if (search.run()) {
    for (int n = 0; n < network.points; ++n) {
      if (!isPlaced(xy, n)) place(xy, n, search.at(n).real(), search.at(n).imag());
    }
    return true;
  }
  if (usesHints) {
    std::vector<bool> isUndecided(index(network.points), false);
    for (int const n : search.frame().undecided()) isUndecided[index(n)] = true;
    for (int n = 0; n < network.points; ++n) {
      if (isPlaced(xy, n)) continue;
      Place const hint = isUndecided[index(n)] ? kNoPlace : hints[index(n)];
      Place const at = search.isPlaced(n) ? search.at(n) : hint;
      if (hasPlace(at)) place(xy, n, at.real(), at.imag());
    }
  }
  if (!tellsLeft) return false;
  unplacedPoints.clear();
  for (auto const& [n, reason] : unplacedReasons(network, search)) unplacedPoints.push_back({nameOf(n), reason});
  say(worded(unplacedPoints), Error);
  return false;
}

/// A walk hands its errors on from station to station: where two fronts of it meet far from the known points, it is off
/// by more than the iteration can take.
bool PlaneEngine::tryToSettle() {
  if (redundancy() < 0) return false;
  int const rounds = std::min(iterationLimit, attemptRounds(unknowns()));
  start = xy;
  bool const isFarOff =
      network.points >= kManyPoints && largestMisfit(placesOf(xy), network.stations(), polarSights(), poll) > kFarOff;
  if (!isFarOff && iterateUpTo(rounds) == Outcome::Settled) return true;
  if (network.points < kManyPoints) return false;
  xy = start;
  takeFit([](int) { return true; });
  start = xy;
  return iterateUpTo(rounds) == Outcome::Settled;
}

}  // namespace kvn::detail
