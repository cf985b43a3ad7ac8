#include "adjust/Networks.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <set>

namespace test {
namespace {

double const kFullCircle = 2.0 * std::acos(-1.0);

double ontoCircle(double angle) {
  double const rest = std::fmod(angle, kFullCircle);
  return rest < 0.0 ? rest + kFullCircle : rest;
}

kvn::PointInfo namedPoint(int number, double x, double y) {
  kvn::PointInfo point;
  point.name = "P" + std::to_string(number);
  point.x = x;
  point.y = y;
  return point;
}

std::vector<kvn::PointInfo> scatter(int count, std::mt19937& random) {
  std::uniform_real_distribution<double> place(0.0, 1000.0);
  std::vector<kvn::PointInfo> points;
  while (static_cast<int>(points.size()) < count) {
    kvn::PointInfo const next = namedPoint(static_cast<int>(points.size()), place(random), place(random));
    bool const apart = std::all_of(points.begin(), points.end(), [&next](kvn::PointInfo const& other) {
      return std::hypot(next.x - other.x, next.y - other.y) > 30.0;
    });
    if (apart) points.push_back(next);
  }
  return points;
}

}  // namespace

double azimuth(kvn::PointInfo const& a, kvn::PointInfo const& b) {
  return ontoCircle(std::atan2(b.y - a.y, b.x - a.x));
}

kvn::NetworkDataInfo line(std::string const& from, std::string const& to, double direction, double distance) {
  kvn::NetworkDataInfo result;
  result.start_name = from;
  result.end_name = to;
  result.horizontal_angle = direction;
  result.horizontal_distance = distance;
  return result;
}

namespace {

using Targets = std::function<std::set<int>(int station)>;

SyntheticNetwork observe(std::vector<kvn::PointInfo> const& points, std::vector<int> const& known,
                         Targets const& targetsOf, NetworkPlan const& plan, std::mt19937& random) {
  std::normal_distribution<double> noise;
  std::uniform_real_distribution<double> share(0.0, 1.0);
  SyntheticNetwork made;
  for (kvn::PointInfo const& point : points) made.truth[point.name] = point;
  for (int const i : known) {
    auto const& point = points[static_cast<std::size_t>(i)];
    made.network.knownPoints.emplace_back(point.name, point.x, point.y, 0.0);
  }
  for (int s = 0; s < static_cast<int>(points.size()); ++s) {
    std::set<int> const targets = targetsOf(s);
    double const zero = plan.circleZero < 0.0 ? share(random) * kFullCircle : plan.circleZero;
    auto const& station = points[static_cast<std::size_t>(s)];
    for (int const t : targets) {
      auto const& target = points[static_cast<std::size_t>(t)];
      double const distance = std::hypot(target.x - station.x, target.y - station.y);
      double const error = plan.distanceFixed + plan.distanceProportion * distance;
      double const direction =
          azimuth(station, target) - zero + noise(random) * plan.directionNoise / kSecondsPerRadian;
      bool const measured = share(random) < plan.distances && (plan.bothEnds || s < t);
      made.network.lines.push_back(
          line(station.name, target.name, ontoCircle(direction), measured ? distance + noise(random) * error : 0.0));
    }
  }
  return made;
}

}  // namespace

SyntheticNetwork makeNetwork(NetworkPlan const& plan, std::mt19937& random) {
  std::vector<kvn::PointInfo> const points = scatter(plan.points, random);
  std::vector<int> known(static_cast<std::size_t>(plan.known));
  std::iota(known.begin(), known.end(), 0);
  std::uniform_int_distribution<int> anyPoint(0, plan.points - 1);
  auto const targetsOf = [&](int s) {
    std::set<int> targets{s > 0 ? s - 1 : 1, s + 1 < plan.points ? s + 1 : s - 1};
    while (static_cast<int>(targets.size()) < std::min(plan.sights, plan.points - 1)) {
      int const target = anyPoint(random);
      if (target != s) targets.insert(target);
    }
    return targets;
  };
  return observe(points, known, targetsOf, plan, random);
}

SyntheticNetwork makeGrid(int side, NetworkPlan const& plan, std::mt19937& random) {
  std::uniform_real_distribution<double> offset(-20.0, 20.0);
  std::vector<kvn::PointInfo> points;
  for (int i = 0; i < side * side; ++i) {
    int const row = i / side;
    double const north = 100.0 * row + offset(random);
    points.push_back(namedPoint(i, north, 100.0 * (i % side) + offset(random)));
  }
  auto const targetsOf = [side](int s) {
    std::set<int> targets;
    for (int row = std::max(0, s / side - 1); row <= std::min(side - 1, s / side + 1); ++row) {
      for (int column = std::max(0, s % side - 1); column <= std::min(side - 1, s % side + 1); ++column) {
        if (row * side + column != s) targets.insert(row * side + column);
      }
    }
    return targets;
  };
  return observe(points, {0, side - 1, side * (side - 1), side * side - 1}, targetsOf, plan, random);
}

kvn::AlgorithmData loaded(kvn::Network const& network, kvn::MissingDirection missing) {
  kvn::AlgorithmData data;
  data.readNetworkData(network, missing);
  return data;
}

kvn::TraverseAdjust adjusted(kvn::Network const& network) {
  kvn::TraverseAdjust adjustment;
  adjustment.Adjust(loaded(network));
  return adjustment;
}

}  // namespace test
