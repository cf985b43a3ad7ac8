// Random numbers that are the same with every standard library: its engines are fixed, its distributions are not.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>

namespace bench {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine(seed) {}

  /// 0 to below 1.
  double uniform() { return static_cast<double>(engine() >> 11) * 0x1p-53; }
  double between(double least, double most) { return least + (most - least) * uniform(); }
  /// A whole number from 0 to below `count`, which is far below 2^53.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(uniform() * static_cast<double>(count)); }

  /// Of mean 0 and standard deviation 1, by Box and Muller (1958): two for two uniform ones.
  double normal() {
    if (hasSpare) {
      hasSpare = false;
      return spare;
    }
    double const radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    double const angle = 2.0 * std::acos(-1.0) * uniform();
    spare = radius * std::sin(angle);
    hasSpare = true;
    return radius * std::cos(angle);
  }

 private:
  std::mt19937_64 engine;
  double spare = 0.0;
  bool hasSpare = false;
};

}  // namespace bench
