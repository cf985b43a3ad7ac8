// Observations that are out: without weight in an adjustment that keeps their rows.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/linalg/Index.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;

// Each costs a solution of the system; a round costs a factorisation.
constexpr std::size_t kFewChanges = 8;

}  // namespace

/// It stays in the equations without a weight, so that its residual tells how far it is off.
void PlaneAdjustment::Data::leaveOut(int suspect) {
  std::size_t const directions = engine.network.directions.size();
  std::size_t const number = index(suspect);
  bool const isDirection = number < directions;
  isLeftOut[number] = true;
  (isDirection ? engine.network.directions[number].error : engine.network.lines[number - directions].error) *=
      kLeftOutFactor;
  (isDirection ? engine.directionWeights[number] : engine.lineWeights[number - directions]) = 0.0;
  if (!isDirection) return;
  int const station = engine.network.stationOf(suspect);
  if (isIdle(station)) engine.idleUnknowns.push_back(2 * engine.network.points + station);
}

/// What is left has other numbers: the run is over.
void PlaneAdjustment::Data::forgetLeftOut() {
  NumberedNetwork& numbered = engine.network;
  std::size_t const directions = numbered.directions.size();
  std::vector<NumberedNetwork::Direction> kept;
  std::vector<int> stations;
  std::vector<int> starts = {0};
  for (int s = 0; s < numbered.stations(); ++s) {
    if (isIdle(s)) continue;
    for (int d = numbered.firstDirection(s); d < numbered.endDirection(s); ++d) {
      if (isLeftOut[index(d)]) continue;
      kept.push_back(numbered.direction(d));
      kept.back().station = static_cast<int>(stations.size());
    }
    stations.push_back(numbered.pointOf(s));
    starts.push_back(static_cast<int>(kept.size()));
  }
  std::vector<NumberedNetwork::Line> lines;
  for (std::size_t e = 0; e < numbered.lines.size(); ++e) {
    if (!isLeftOut[directions + e]) lines.push_back(numbered.lines[e]);
  }
  numbered.directions = std::move(kept);
  numbered.stationPoint = std::move(stations);
  numbered.directionStart = std::move(starts);
  numbered.lines = std::move(lines);
  numbered.blockOrder.clear();
  numbered.buildLookups(engine.poll);
}

int PlaneAdjustment::Data::leftOutCount() const {
  return static_cast<int>(std::count(isLeftOut.begin(), isLeftOut.end(), true));
}

/// What the host has taken out, and nothing else.
void PlaneAdjustment::Data::takeOut() {
  leftOut.clear();
  robustWeights.clear();
  hasLostSuspects = false;
  isLeftOut.assign(engine.network.directions.size() + engine.network.lines.size(), false);
  engine.idleUnknowns.clear();
  for (std::size_t d = 0; d < directionOf.size() && !isDirectionOut.empty(); ++d) {
    if (isDirectionOut[directionOf[d]]) leaveOut(static_cast<int>(d));
  }
  for (std::size_t e = 0; e < isDistanceOut.size(); ++e) {
    if (isDistanceOut[e]) leaveOut(static_cast<int>(directionOf.size() + e));
  }
}

/// Errors and weights as the network has them, about the current lengths of the sights.
void PlaneAdjustment::Data::weigh() {
  for (std::size_t d = 0; d < directionOf.size(); ++d) {
    double const error = network.directions[directionOf[d]].error;
    engine.network.directions[d].error = error;
    engine.directionWeights[d] = 1.0 / (error * error * kSecondsPerRadian * kSecondsPerRadian);
  }
  for (std::size_t e = 0; e < network.distances.size(); ++e) {
    double const error = network.distances[e].error;
    engine.network.lines[e].error = error;
    engine.lineWeights[e] = 1.0 / (error * error);
  }
  takeOut();
  addCentring();
  engine.suspects.clear();
  engine.suspectNumbers.clear();
}

bool PlaneAdjustment::Data::isIdle(int station) const {
  for (int d = engine.network.firstDirection(station); d < engine.network.endDirection(station); ++d) {
    if (!isLeftOut[index(d)]) return false;
  }
  return true;
}

/// False where the rounds do not settle, or without what was taken out nothing holds the network.
bool PlaneAdjustment::Data::iterateAgain() {
  std::vector<bool> const wasLeftOut = isLeftOut;
  std::size_t const idle = engine.idleUnknowns.size();
  weigh();
  if (engine.redundancy() - leftOutCount() < 0) return false;
  std::vector<std::size_t> changed;
  for (std::size_t i = 0; i < isLeftOut.size(); ++i) {
    if (isLeftOut[i] != wasLeftOut[i]) changed.push_back(i);
  }
  if (changed.size() <= kFewChanges && engine.idleUnknowns.size() == idle) moveFor(changed);
  if (engine.iterateUpTo(engine.iterationLimit) != PlaneEngine::Outcome::Settled) return false;
  if (isFree()) layOnDatum();
  return engine.invert();
}

/// Saves a round. From the least sum of squares, with the inverse Q of the normal equations there, the change of the
/// weights by D of observations with the equations A x + l moves the unknowns by -Q A' (D⁻¹ + A Q A')⁻¹ l (Woodbury
/// 1950).
void PlaneAdjustment::Data::moveFor(std::vector<std::size_t> const& changed) {
  auto const count = static_cast<Eigen::Index>(changed.size());
  Eigen::MatrixXd middle = Eigen::MatrixXd::Zero(count, count);
  Eigen::VectorXd misclosures(count);
  std::vector<std::vector<double>> moved;
  double a[5];
  int at[5];
  for (Eigen::Index c = 0; c < count; ++c) {
    std::size_t const number = changed[static_cast<std::size_t>(c)];
    std::vector<double> right(index(engine.unknowns()), 0.0);
    int const size = engine.solvedFactors(number, a, at);
    for (int r = 0; r < size; ++r) right[index(at[r])] = a[r];
    moved.push_back(engine.normals->solved(std::move(right), engine.poll));
    double const variance = std::pow(scaledErrorOf(number), 2);
    middle(c, c) = isLeftOut[number] ? -variance : variance;
    std::size_t const directions = engine.directionResiduals.size();
    misclosures(c) =
        number < directions ? engine.directionResiduals[number] : engine.lineResiduals[number - directions];
  }
  for (Eigen::Index c = 0; c < count; ++c) {
    int const size = engine.solvedFactors(changed[static_cast<std::size_t>(c)], a, at);
    for (Eigen::Index d = 0; d < count; ++d) {
      for (int r = 0; r < size; ++r) middle(c, d) += a[r] * moved[static_cast<std::size_t>(d)][index(at[r])];
    }
  }
  Eigen::VectorXd const factors = middle.fullPivLu().solve(misclosures);
  if (!factors.allFinite()) return;
  for (Eigen::Index c = 0; c < count; ++c) {
    for (std::size_t r = 0; r < engine.xy.size(); ++r) {
      engine.xy[r] -= factors(c) * moved[static_cast<std::size_t>(c)][r];
    }
  }
}

}  // namespace kvn
