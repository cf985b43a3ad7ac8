// Points that lie where one could: names written in two ways.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/linalg/Index.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;

// Marks that are farther from each other are two, however badly they are known; metres.
constexpr double kOneMark = 0.1;
// Quantile of chi-square with two degrees of freedom for the probability of three standard errors, 99.73 %.
constexpr double kWithinErrors = 11.83;
// Pairs that are looked at, for each point: a network of a few decimetres has no end of them.
constexpr std::size_t kPairsOfPoint = 50;

}  // namespace

bool PlaneAdjustment::Data::isFixed(int point) const {
  return point < engine.network.known && !isFree() &&
         !(engine.holdingWeights[index(point)] < PlaneEngine::kFixedWeight);
}

bool PlaneAdjustment::Data::isObservedBetween(int a, int b) const {
  NumberedNetwork const& net = engine.network;
  for (int const l : net.linesAt(a)) {
    if (net.otherEnd(l, a) == b) return true;
  }
  auto const isSeenFrom = [&net](int target, int station) {
    for (int const d : net.sightingsOf(target)) {
      if (net.pointOf(net.stationOf(d)) == station) return true;
    }
    return false;
  };
  return isSeenFrom(a, b) || isSeenFrom(b, a);
}

/// Whether the difference of their places is within what the errors of both allow. That they may be correlated is
/// neglected: neighbours mostly move together, so that the bound is rather too wide.
bool PlaneAdjustment::Data::isTwinOf(int a, int b) const {
  double sum[4] = {};
  for (int const point : {a, b}) {
    if (isFixed(point)) continue;
    int const at[2] = {2 * point, 2 * point + 1};
    double q[4];
    engine.normals->block(at, 2, q);
    datum.transform(at, 2, q);
    for (int i = 0; i < 4; ++i) sum[i] += q[i];
  }
  // The a-priori errors, or what they have turned out to be where that is more.
  double const unit = result.hasRedundancy ? std::max(1.0, result.unitError) : 1.0;
  double const dx = engine.xy[2 * index(a)] - engine.xy[2 * index(b)];
  double const dy = engine.xy[2 * index(a) + 1] - engine.xy[2 * index(b) + 1];
  double const determinant = sum[0] * sum[3] - sum[1] * sum[2];
  if (!(determinant > 0.0)) return false;
  double const square = (sum[3] * dx * dx - (sum[1] + sum[2]) * dx * dy + sum[0] * dy * dy) / determinant;
  return square <= kWithinErrors * unit * unit;
}

/// Points in squares of the size of the bound, so that each is compared with those of nine squares.
void PlaneAdjustment::Data::findTwins() {
  result.twins.clear();
  auto const squareOf = [this](int point, int axis) {
    return static_cast<std::int64_t>(std::floor(engine.xy[2 * index(point) + index(axis)] / kOneMark));
  };
  // Beyond this a square has no number, and places no digits for one.
  constexpr double kFarthest = 1e12;
  auto const keyOf = [](std::int64_t x, std::int64_t y) {
    return (static_cast<std::uint64_t>(x) << 32U) ^ (static_cast<std::uint64_t>(y) & 0xffffffffU);
  };
  std::unordered_map<std::uint64_t, std::vector<int>> squares;
  std::size_t pairs = kPairsOfPoint * index(engine.network.points);
  detail::Effort effort(engine.poll);
  for (int point = 0; point < engine.network.points; ++point) {
    effort.step();
    if (!(std::abs(engine.xy[2 * index(point)]) + std::abs(engine.xy[2 * index(point) + 1]) < kFarthest)) continue;
    std::int64_t const x = squareOf(point, 0);
    std::int64_t const y = squareOf(point, 1);
    for (int near = 0; near < 9; ++near) {
      auto const square = squares.find(keyOf(x + near / 3 - 1, y + near % 3 - 1));
      if (square == squares.end()) continue;
      for (int const other : square->second) {
        if (pairs == 0) return;
        --pairs;
        double const apart = std::hypot(engine.xy[2 * index(point)] - engine.xy[2 * index(other)],
                                        engine.xy[2 * index(point) + 1] - engine.xy[2 * index(other) + 1]);
        if (apart > kOneMark || (isFixed(point) && isFixed(other))) continue;
        if (isObservedBetween(point, other) || !isTwinOf(point, other)) continue;
        auto const numbers = std::minmax(pointOfNumber[index(point)], pointOfNumber[index(other)]);
        result.twins.push_back({numbers.first, numbers.second, apart});
      }
    }
    squares[keyOf(x, y)].push_back(point);
  }
  std::stable_sort(result.twins.begin(), result.twins.end(),
                   [](PlaneTwins const& a, PlaneTwins const& b) { return a.apart < b.apart; });
}

}  // namespace kvn
