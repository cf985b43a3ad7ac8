// The iteration: error equations, normal equations, corrections, residuals.
#include "adjust/engine/PlaneEngine.h"

#include "adjust/linalg/Index.h"
#include "adjust/linalg/SparseCholesky.h"
#include "adjust/plane/CommonAngle.h"
#include "adjust/plane/NetworkBlocks.h"
#include "adjust/start/RoughPlaces.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

constexpr double kTurn = utils::kFullCircle;
using utils::kSecondsPerRadian;
// A diagonal element times that of the inverse says how much of its pivot the elimination took away. From here on what
// is left is rounding, since doubles carry 16 digits; a traverse of 300 legs of 1 km with 0.001 mm and 10" stays below.
constexpr double kLostPivot = 1e13;
// A step is halved at most this often.
constexpr int kHalvings = 10;

void namePoints(int i, int j, int* at) {
  at[0] = 2 * i;
  at[1] = 2 * i + 1;
  at[2] = 2 * j;
  at[3] = 2 * j + 1;
}

}  // namespace

std::vector<Place> placesOf(Coordinates const& coordinates) {
  std::vector<Place> places;
  places.reserve(coordinates.size() / 2);
  for (std::size_t i = 0; i < coordinates.size(); i += 2) places.emplace_back(coordinates[i], coordinates[i + 1]);
  return places;
}

void PlaneEngine::prepare() {
  network.buildLookups(poll);
  corrections.assign(index(unknowns()), 0.0);
  directionResiduals.assign(network.directions.size(), 0.0);
  lineResiduals.assign(network.lines.size(), 0.0);
  xy.resize(2 * index(network.points), 0.0);
  x0y0.assign(2 * index(network.points), 0.0);
  given = xy;
  given.resize(2 * index(network.known));
  fittedPlaces.clear();
  network.blockOrder.clear();
  normals.reset();
  isInverted = isFactored = false;
  iterations = 0;
  unplacedPoints.clear();
  suspects.clear();
  suspectNumbers.clear();
  trustedPlaces.clear();
  looseMotions.clear();
  coincidentPoints.clear();
}

/// A point that is held with a weight of its own adds two unknowns and the two observations of its coordinates.
int PlaneEngine::redundancy() const {
  auto const observations = static_cast<int>(network.directions.size() + network.lines.size() + idleUnknowns.size());
  if (!heldUnknowns.empty()) return observations - (unknowns() - static_cast<int>(heldUnknowns.size()));
  return observations - (network.stations() + 2 * (network.points - network.known));
}

void PlaneEngine::tellProgress(AdjustProgress::Stage stage) const {
  if (progress) progress({stage, iterations + 1, largestMove});
}

PlaneEngine::Outcome PlaneEngine::iterateUpTo(int rounds) {
  iterations = 0;
  largestMove = std::numeric_limits<double>::quiet_NaN();
  for (double limit = 2.0 * smallestMove; limit > smallestMove;) {
    if (poll) poll();
    tellProgress(AdjustProgress::Equations);
    buildNormals();
    holdKnownPoints();
    Coordinates const before = isDamped ? xy : Coordinates();
    if (!solve()) return Outcome::Singular;
    if (isDamped) shortenStep(before);
    limit = largestMove;
    if (++iterations >= rounds) return Outcome::Unsettled;
  }
  return Outcome::Settled;
}

/// Azimuth of the circle's zero: from the station's first direction, 0 to 2π, anew from the current coordinates.
double PlaneEngine::orientationOf(int station) const {
  NumberedNetwork::Direction const& first = network.direction(network.firstDirection(station));
  double const orientation = azimuthBetween(xy, network.pointOf(station), first.target) - first.value;
  if (hasCommonOrientations && !agrees(station, orientation)) return commonOrientation(xy, station);
  return orientation < 0.0 ? orientation + kTurn : orientation;
}

/// Whether no direction of the station is far from the orientation. As a misclosure of all by the same angle changes
/// nothing but the orientation unknown, any of them serves then.
bool PlaneEngine::agrees(int station, double orientation) const {
  constexpr double kFar = 0.5;  // radians
  for (int d = network.firstDirection(station); d < network.endDirection(station); ++d) {
    NumberedNetwork::Direction const& direction = network.direction(d);
    double const turn = azimuthBetween(xy, network.pointOf(station), direction.target) - direction.value;
    if (std::abs(std::remainder(turn - orientation, kTurn)) > kFar) return false;
  }
  return true;
}

/// The angle on which most directions of the station agree, 0 to 2π.
double PlaneEngine::commonOrientation(Coordinates const& at, int station) const {
  std::vector<SeenAngle> seen;
  for (int d = network.firstDirection(station); d < network.endDirection(station); ++d) {
    NumberedNetwork::Direction const& direction = network.direction(d);
    int const from = network.pointOf(station);
    double const length = std::hypot(at[2 * index(direction.target)] - at[2 * index(from)],
                                     at[2 * index(direction.target) + 1] - at[2 * index(from) + 1]);
    seen.push_back({azimuthBetween(at, from, direction.target) - direction.value, length});
  }
  double const orientation = std::fmod(commonAngle(seen), kTurn);
  return orientation < 0.0 ? orientation + kTurn : orientation;
}

/// Made here and not with the input: approximate coordinates alone need no matrix.
void PlaneEngine::clearNormals() {
  isInverted = isFactored = false;
  if (normals) {
    normals->clear();
    return;
  }
  NormalEquations::Soundness const soundness{PivotRule::NotZero, kLostPivot};
  if (unknowns() < sparseFrom) {
    normals = fullNormals(unknowns(), soundness);
    return;
  }
  auto cliques = cliquesOf(network, 0);
  for (NumberedNetwork::Line const& line : controlLines) cliques.push_back({line.start, line.end, -1});
  normals = sparseNormals({blockSizesOf(network, 0), std::move(cliques), eliminationOrder()}, soundness, poll);
}

void PlaneEngine::needNormals() {
  if (!normals) clearNormals();
}

/// Of the blocks. Found once: it takes as long as a factorisation.
std::vector<int> const& PlaneEngine::eliminationOrder() {
  if (network.blockOrder.empty()) {
    auto cliques = cliquesOf(network, 0);
    for (NumberedNetwork::Line const& line : controlLines) cliques.push_back({line.start, line.end, -1});
    network.blockOrder = sparse::eliminationOrder(blockSizesOf(network, 0), cliques, placesOfBlocks(), poll);
  }
  return network.blockOrder;
}

/// Of the points and, behind them, the stations: by a walk in a frame of its own, whose errors stay smaller than those
/// of a walk that gave the coordinates, or by these. Nothing where neither has all points.
std::vector<sparse::BlockPlace> PlaneEngine::placesOfBlocks() const {
  auto const areAll = [](std::vector<Place> const& some) { return std::all_of(some.begin(), some.end(), hasPlace); };
  std::vector<Place> places = roughPlaces(network, poll);
  if (!areAll(places)) {
    for (int n = 0; n < network.points; ++n) {
      if (!isPlaced(xy, n)) return {};
    }
    places = placesOf(xy);
    if (!areAll(places)) return {};
  }
  for (int s = 0; s < network.stations(); ++s) places.push_back(places[index(network.pointOf(s))]);
  return places;
}

void PlaneEngine::buildNormals() {
  clearNormals();
  Effort effort(poll);
  double a[5];
  int at[5];
  a[4] = -1.0;
  for (int s = 0; s < network.stations(); ++s) {
    if (network.firstDirection(s) == network.endDirection(s)) continue;
    at[4] = 2 * network.points + s;
    double const orientation = orientationOf(s);
    for (int d = network.firstDirection(s); d < network.endDirection(s); ++d) {
      effort.step();
      NumberedNetwork::Direction const& direction = network.direction(d);
      double const azimuth = azimuthFactors(network.pointOf(s), direction.target, a, at);
      double const oriented = azimuth - direction.value;
      // The difference of two orientations on the circle: one of them may lie just above 0 and the other just below 2π.
      double const l = std::remainder(oriented - orientation, kTurn) * kSecondsPerRadian;
      directionResiduals[index(d)] = l;
      normals->addEquation(a, at, 5, directionWeights[index(d)], l);
    }
  }
  for (std::size_t e = 0; e < network.lines.size(); ++e) {
    effort.step();
    NumberedNetwork::Line const& line = network.lines[e];
    double const distance = distanceFactors(line.start, line.end, a, at);
    normals->addEquation(a, at, 4, lineWeights[e], distance - line.value);
  }
}

void PlaneEngine::holdElements() {
  for (int const unknown : idleUnknowns) normals->add(unknown, unknown, 1.0);
  for (int const unknown : heldUnknowns) normals->add(unknown, unknown, kFixedWeight);
  if (!heldUnknowns.empty()) return;
  for (int k = 0; k < 2 * network.known; ++k) normals->add(k, k, holdingWeights[index(k / 2)]);
}

void PlaneEngine::holdKnownPoints() {
  holdElements();
  for (int k = 0; heldUnknowns.empty() && k < 2 * network.known; ++k) {
    double const weight = holdingWeights[index(k / 2)];
    // A fixed point has not moved from where it was given.
    if (weight < kFixedWeight) normals->addRight(k, -weight * (xy[index(k)] - given[index(k)]));
  }
}

bool PlaneEngine::solve() {
  linearised = xy;
  isFactored = normals->factor(poll);
  if (!isFactored) return false;
  corrections = normals->solution(poll);
  if (!std::all_of(corrections.begin(), corrections.end(), [](double x) { return std::isfinite(x); })) return false;
  largestMove = 0.0;
  for (std::size_t r = 0; r < xy.size(); ++r) {
    xy[r] += corrections[r];
    largestMove = std::max(largestMove, std::abs(corrections[r]));
  }
  return true;
}

/// Of residuals about the coordinates, each station being turned so that its directions fit best.
double PlaneEngine::sumOfSquares(Coordinates const& at) const {
  double sum = 0.0;
  std::vector<double> turns;
  for (int s = 0; s < network.stations(); ++s) {
    turns.clear();
    double const first = commonOrientation(at, s);
    double weights = 0.0;
    double mean = 0.0;
    for (int d = network.firstDirection(s); d < network.endDirection(s); ++d) {
      NumberedNetwork::Direction const& direction = network.direction(d);
      double const turn = azimuthBetween(at, network.pointOf(s), direction.target) - direction.value;
      turns.push_back(std::remainder(turn - first, kTurn) * kSecondsPerRadian);
      weights += directionWeights[index(d)];
      mean += directionWeights[index(d)] * turns.back();
    }
    mean /= weights;
    for (std::size_t i = 0; i < turns.size(); ++i) {
      double const v = turns[i] - mean;
      sum += directionWeights[index(network.firstDirection(s)) + i] * v * v;
    }
  }
  for (std::size_t e = 0; e < network.lines.size(); ++e) {
    NumberedNetwork::Line const& line = network.lines[e];
    double const dx = at[2 * index(line.end)] - at[2 * index(line.start)];
    double const dy = at[2 * index(line.end) + 1] - at[2 * index(line.start) + 1];
    double const v = std::hypot(dx, dy) - line.value;
    sum += lineWeights[e] * v * v;
  }
  for (std::size_t k = 0; heldUnknowns.empty() && k < given.size(); ++k) {
    double const v = at[k] - given[k];
    if (holdingWeights[k / 2] < kFixedWeight) sum += holdingWeights[k / 2] * v * v;
  }
  return sum;
}

/// Halves the step until the sum of squares is not larger than before it. The linear equations overshoot where a start
/// or an observation is far off; the direction of the step is one in which the sum falls, so that a short one helps.
void PlaneEngine::shortenStep(Coordinates const& before) {
  // Near the goal the sum no longer tells, and the linear step is right.
  constexpr double kNear = 0.01;
  if (largestMove <= kNear) return;
  double const old = sumOfSquares(before);
  double share = 1.0;
  for (int halving = 0; halving < kHalvings && !(sumOfSquares(xy) <= old); ++halving) {
    share *= 0.5;
    for (std::size_t r = 0; r < xy.size(); ++r) xy[r] = before[r] + share * corrections[r];
  }
  for (double& correction : corrections) correction *= share;
  // A shortened step says nothing of how near the goal is.
  if (share < 1.0) largestMove = std::max(share * largestMove, 2.0 * smallestMove);
}

bool PlaneEngine::invert() {
  tellProgress(AdjustProgress::Inverse);
  if (!keepsNormals) normals->releaseElements();
  isInverted = normals->invert(poll);
  return isInverted;
}

void PlaneEngine::needFactor() {
  if (normals->restartElements()) {
    Effort effort(poll);
    double a[5];
    int at[5];
    std::size_t const directions = network.directions.size();
    for (std::size_t i = 0; i < directions + network.lines.size(); ++i) {
      effort.step();
      int const count = solvedFactors(i, a, at);
      normals->addEquation(a, at, count, i < directions ? directionWeights[i] : lineWeights[i - directions], 0.0);
    }
    holdElements();
  }
  normals->needFactor(poll);
}

void PlaneEngine::needInverse() {
  needNormals();
  if (isFactored && !isInverted) isInverted = normals->invert(poll);
}

/// Directions from the linear equations of the last round and its corrections, distances from the coordinates.
double PlaneEngine::calculateResiduals() {
  Effort effort(poll);
  double sum = 0.0;
  double a[5];
  int at[5];
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    effort.step();
    equationFactors(d, a, at);
    double v = directionResiduals[d];
    for (int r = 0; r < 5; ++r) v += a[r] * corrections[index(at[r])];
    directionResiduals[d] = v;
    sum += v * v * directionWeights[d];
  }
  for (std::size_t e = 0; e < network.lines.size(); ++e) {
    effort.step();
    NumberedNetwork::Line const& line = network.lines[e];
    double const v = distanceFactors(line.start, line.end, a, at) - line.value;
    lineResiduals[e] = v;
    sum += v * v * lineWeights[e];
  }
  return sum;
}

int PlaneEngine::equationFactors(std::size_t observation, double* a, int* at) const {
  return factorsAbout(xy, observation, a, at);
}

int PlaneEngine::solvedFactors(std::size_t observation, double* a, int* at) const {
  return factorsAbout(linearised, observation, a, at);
}

int PlaneEngine::factorsAbout(Coordinates const& about, std::size_t observation, double* a, int* at) const {
  if (observation >= network.directions.size()) {
    NumberedNetwork::Line const& line = network.lines[observation - network.directions.size()];
    distanceFactors(about, line.start, line.end, a, at);
    return 4;
  }
  NumberedNetwork::Direction const& direction = network.directions[observation];
  azimuthFactors(about, network.pointOf(direction.station), direction.target, a, at);
  a[4] = -1.0;
  at[4] = 2 * network.points + direction.station;
  return 5;
}

double PlaneEngine::azimuthFactors(int i, int j, double* a, int* at) const { return azimuthFactors(xy, i, j, a, at); }

double PlaneEngine::distanceFactors(int i, int j, double* a, int* at) const { return distanceFactors(xy, i, j, a, at); }

double PlaneEngine::azimuthFactors(Coordinates const& about, int i, int j, double* a, int* at) {
  double const dx = about[2 * index(j)] - about[2 * index(i)];
  double const dy = about[2 * index(j) + 1] - about[2 * index(i) + 1];
  double const s2 = dx * dx + dy * dy;
  a[0] = dy / s2 * kSecondsPerRadian;
  a[1] = -dx / s2 * kSecondsPerRadian;
  a[2] = -dy / s2 * kSecondsPerRadian;
  a[3] = dx / s2 * kSecondsPerRadian;
  namePoints(i, j, at);
  double const azimuth = std::atan2(dy, dx);
  return azimuth < 0.0 ? azimuth + kTurn : azimuth;
}

double PlaneEngine::distanceFactors(Coordinates const& about, int i, int j, double* a, int* at) {
  double const dx = about[2 * index(j)] - about[2 * index(i)];
  double const dy = about[2 * index(j) + 1] - about[2 * index(i) + 1];
  double const s = std::sqrt(dx * dx + dy * dy);
  a[0] = -dx / s;
  a[1] = -dy / s;
  a[2] = dx / s;
  a[3] = dy / s;
  namePoints(i, j, at);
  return s;
}

}  // namespace kvn::detail
