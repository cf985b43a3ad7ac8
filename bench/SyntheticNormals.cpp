#include "SyntheticNormals.h"

#include <cmath>
#include <set>
#include <utility>

namespace bench {
namespace {

double const kPi = std::acos(-1.0);
double const kSecondsOfRadian = 180.0 * 3600.0 / kPi;

// As in the adjustment: a standard error of 1e-10 m.
constexpr double kKnownPointWeight = 1e20;

using Equation = SyntheticNormals::Equation;

Equation between(Sight const& sight, double byX, double byY, double misclosure, double error) {
  int const from = 2 * static_cast<int>(sight.from);
  int const to = 2 * static_cast<int>(sight.to);
  return {{-byX, -byY, byX, byY, 0.0}, {from, from + 1, to, to + 1, 0}, 4, 1.0 / (error * error), misclosure};
}

}  // namespace

SyntheticNormals::SyntheticNormals(SyntheticNetwork const& network)
    : points(network.points.size()), blockSizes(points, 2) {
  blockSizes.insert(blockSizes.end(), points, 1);  // every point is a station
  std::vector<double> orientation(points, 0.0);
  std::vector<bool> isOriented(points, false);
  std::set<std::pair<std::uint32_t, std::uint32_t>> measured;
  for (Sight const& sight : network.sights) {
    double const dx = network.points[sight.to].x - network.points[sight.from].x;
    double const dy = network.points[sight.to].y - network.points[sight.from].y;
    double const s = std::hypot(dx, dy);
    auto const station = static_cast<int>(points + sight.from);
    cliques.push_back({static_cast<int>(sight.from), static_cast<int>(sight.to), station});

    // The first direction orients its station, as in the adjustment.
    double const circleZero = std::atan2(dy, dx) - sight.direction;
    if (!isOriented[sight.from]) orientation[sight.from] = circleZero;
    isOriented[sight.from] = true;
    double const turned = std::remainder(circleZero - orientation[sight.from], 2.0 * kPi);
    Equation direction = between(sight, -dy / (s * s) * kSecondsOfRadian, dx / (s * s) * kSecondsOfRadian,
                                 turned * kSecondsOfRadian, kDirectionErrorSeconds);
    direction.factor[4] = -1.0;
    direction.unknown[4] = static_cast<int>(2 * points + sight.from);
    direction.count = 5;
    equations.push_back(direction);

    // A line that both ends measure is one observation.
    if (!measured.insert(std::minmax(sight.from, sight.to)).second) continue;
    double const error = kDistanceErrorMm * 1e-3 + kDistanceErrorPpm * 1e-6 * sight.distance;
    equations.push_back(between(sight, dx / s, dy / s, s - sight.distance, error));
  }
  for (std::size_t const point : network.known) {
    for (int const coordinate : {0, 1}) {
      int const unknown = 2 * static_cast<int>(point) + coordinate;
      equations.push_back({{1.0}, {unknown}, 1, kKnownPointWeight, 0.0});
    }
  }
}

std::vector<double> SyntheticNormals::rightSide() const {
  std::vector<double> right(unknowns(), 0.0);
  for (Equation const& q : equations) {
    for (int r = 0; r < q.count; ++r) {
      auto const at = static_cast<std::size_t>(r);
      right[static_cast<std::size_t>(q.unknown[at])] -= q.weight * q.factor[at] * q.misclosure;
    }
  }
  return right;
}

}  // namespace bench
