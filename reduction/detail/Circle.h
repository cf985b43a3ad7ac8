// Angles on the circle.
#pragma once

#include <cmath>

namespace kvn::detail {

constexpr double kPi = 3.141592653589793;
constexpr double kFullCircle = 6.283185307179586;

/// An angle brought into 0 up to but not including 2π.
inline double onCircle(double angle) {
  double const turned = std::fmod(angle, kFullCircle);
  double const positive = turned < 0 ? turned + kFullCircle : turned;
  return positive >= kFullCircle ? 0.0 : positive;
}

/// A difference of two angles brought into -π to π.
inline double difference(double angle) { return std::remainder(angle, kFullCircle); }

/// Whether the vertical reading is that of the second face: above half a circle from the zenith.
inline bool isSecondFace(double verticalReading) { return verticalReading > kPi; }

}  // namespace kvn::detail
