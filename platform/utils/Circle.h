// The circle: its measures in radians, and how angles are brought onto it.
#pragma once

#include <cmath>

namespace utils {

constexpr double kPi = 3.141592653589793;  ///< the double next to π, which is also what `std::acos(-1.0)` gives
constexpr double kFullCircle = 2.0 * kPi;
constexpr double kRightAngle = kPi / 2.0;
constexpr double kSecondsPerRadian = 180.0 * 3600.0 / kPi;

/// An angle brought into 0 up to but not including 2π.
inline double onCircle(double angle) {
  double const turned = std::fmod(angle, kFullCircle);
  double const positive = turned < 0.0 ? turned + kFullCircle : turned;
  return positive >= kFullCircle ? 0.0 : positive;  // the sum rounds up to 2π just below 0
}

/// A difference of angles brought into -π to π.
inline double foldedAngle(double angle) { return std::remainder(angle, kFullCircle); }

}  // namespace utils
