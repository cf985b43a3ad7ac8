// Where the iteration starts: points that the walks do not place, and better coordinates than theirs.
#include "adjust/TraverseAdjust.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/GrossErrors.h"
#include "adjust/start/PolarFit.h"
#include "adjust/start/StartSearch.h"
#include "adjust/start/UnplacedReasons.h"

#include <algorithm>
#include <cmath>

namespace kvn {
namespace {

using detail::index;
using detail::kMissingFrom;
using detail::Place;

// From so many points on all places are fitted at once before anything is searched for point by point.
constexpr int kManyPoints = 300;
// A sight that misses its target by so much of its length keeps the iteration away from its goal, or long from it.
constexpr double kFarOff = 0.1;

}  // namespace

/// The directions that have a distance.
std::vector<detail::PolarSight> TraverseAdjust::polarSights() const {
  std::vector<detail::PolarSight> sights;
  sights.reserve(directionTarget.size());
  for (int s = 0; s < stationsCount; ++s) {
    int const from = stationPoint[index(s)];
    for (int d = directionStart[index(s)]; d < directionStart[index(s) + 1]; ++d) {
      int const target = directionTarget[index(d)];
      double const distance = getLine(from, target);
      if (distance > kMissingFrom || !(distance > 0.0)) continue;
      double const error = std::hypot(lineFixedError + lineProportionError * distance, angleError / rho * distance);
      sights.push_back({s, from, target, detail::polar(distance, directionValue[index(d)]), error});
    }
  }
  return sights;
}

/// NaN where the sights with distances do not determine a point.
std::vector<Place> const& TraverseAdjust::fitted() {
  if (fittedPlaces.empty()) {
    tellProgress(AdjustProgress::Start);
    fittedPlaces =
        detail::polarFit(placesOf(XY), knPointsCount, stationsCount, polarSights(), eliminationOrder(), cancelPoll());
  }
  return fittedPlaces;
}

/// Whether the network is large, and the fit places all its points.
bool TraverseAdjust::hasFit() {
  return pointsCount >= kManyPoints &&
         std::all_of(fitted().begin(), fitted().end(), [](Place p) { return std::isfinite(p.real()); });
}

/// Gives the points that `chosen` names the places of the fit, where it has some.
template <typename Chosen>
void TraverseAdjust::takeFit(Chosen const& chosen) {
  std::vector<Place> const& fit = fitted();
  for (int n = knPointsCount; n < pointsCount; ++n) {
    Place const at = fit[index(n)];
    if (std::isfinite(at.real()) && chosen(n)) place(n, {at.real(), at.imag()});
  }
}

/// Everything that the walks do not do; false when points are left.
bool TraverseAdjust::placeRemainingPoints() {
  if (pointsCount < kManyPoints) return searchRemainingPoints(true);
  std::vector<double> const walked = XY;
  takeFit([this](int n) { return !isPlaced(n); });
  bool isComplete = true;
  for (int n = 0; n < pointsCount; ++n) isComplete = isComplete && isPlaced(n);
  if (isComplete || searchRemainingPoints(false)) return true;
  XY = walked;  // the walk alone may lead further
  return searchRemainingPoints(true);
}

/// From the points that are placed. Points that are left are told when `tellsLeft`.
bool TraverseAdjust::searchRemainingPoints(bool tellsLeft) {
  detail::NumberedNetwork const network = planeNetwork();
  detail::StartSearch search(network, cancelPoll());
  for (int n = 0; n < pointsCount; ++n) {
    if (isPlaced(n)) search.place(n, Place(x(n), y(n)));
  }
  if (search.run()) {
    for (int n = 0; n < pointsCount; ++n) {
      if (!isPlaced(n)) place(n, {search.at(n).real(), search.at(n).imag()});
    }
    return true;
  }
  if (!tellsLeft) return false;
  unplacedPoints.clear();
  for (auto const& [n, reason] : detail::unplacedReasons(network, search)) {
    unplacedPoints.push_back({nameOf(n), reason});
  }
  tell(worded(unplacedPoints), Error);
  return false;
}

/// An attempt without the searches that take long. Most networks settle in a few rounds.
///
/// A walk hands its errors on from station to station: where two fronts of it meet far from the known points, it is off
/// by more than the iteration can take.
bool TraverseAdjust::settles() {
  if (redundancy() < 0) return false;
  int const rounds = std::min(iterationLimit, detail::attemptRounds(unknownsCount()));
  start = XY;
  bool const isFarOff = pointsCount >= kManyPoints &&
                        detail::largestMisfit(placesOf(XY), stationsCount, polarSights(), cancelPoll()) > kFarOff;
  if (!isFarOff && iterateUpTo(rounds) == Outcome::Settled) return true;
  if (pointsCount < kManyPoints) return false;
  XY = start;
  takeFit([](int) { return true; });
  start = XY;
  return iterateUpTo(rounds) == Outcome::Settled;
}

}  // namespace kvn
