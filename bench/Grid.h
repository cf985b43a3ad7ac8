// A grid of points with known truth, of any size.
#pragma once

#include <Kelvane.h>
#include <cmath>
#include <random>
#include <string>

namespace bench {

/// `side` by `side` points 100 m apart, moved by up to 20 m. Each is a station that sights its four neighbours, with
/// distances where `distances` says so; two corner points are known.
inline kvn::Network grid(int side, bool distances) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> jitter(-20.0, 20.0);
  std::vector<double> x;
  std::vector<double> y;
  for (int i = 0; i < side * side; ++i) {
    x.push_back(100.0 * (i / side) + jitter(random));
    y.push_back(100.0 * (i % side) + jitter(random));
  }
  auto const name = [](int i) { return "P" + std::to_string(i); };
  kvn::Network network;
  for (int const i : {0, 1}) {
    network.knownPoints.emplace_back(name(i), x[static_cast<std::size_t>(i)], y[static_cast<std::size_t>(i)], 0.0);
  }
  double const fullCircle = 2.0 * std::acos(-1.0);
  for (int i = 0; i < side * side; ++i) {
    for (int const step : {-1, 1, -side, side}) {
      int const j = i + step;
      bool const sameRow = j / side == i / side;
      if (j < 0 || j >= side * side || (std::abs(step) == 1 && !sameRow)) continue;
      double const dx = x[static_cast<std::size_t>(j)] - x[static_cast<std::size_t>(i)];
      double const dy = y[static_cast<std::size_t>(j)] - y[static_cast<std::size_t>(i)];
      double const azimuth = std::atan2(dy, dx);
      kvn::NetworkDataInfo line;
      line.start_name = name(i);
      line.end_name = name(j);
      line.horizontal_angle = azimuth < 0.0 ? azimuth + fullCircle : azimuth;
      line.horizontal_distance = distances ? std::hypot(dx, dy) : 0.0;
      network.lines.push_back(line);
    }
  }
  return network;
}

}  // namespace bench
