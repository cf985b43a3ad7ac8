// The one azimuth rule: from north (x) toward east (y).
#pragma once

#include <utils/Circle.h>

#include <cmath>

namespace kvn::detail {

/// Onto the circle, radians; 0 and 2π both stay as they are. Not `utils::onCircle`, which makes 0 of 2π and divides
/// once: the azimuths of traverses are given to the last bit as repeated additions make them.
inline double ontoCircle(double angle) {
  while (angle < 0.0) angle += utils::kFullCircle;
  while (angle > utils::kFullCircle) angle -= utils::kFullCircle;
  return angle;
}

/// Azimuth of a coordinate difference, radians, 0 to 2π; 0 for no difference.
inline double azimuthOf(double dx, double dy) { return ontoCircle(std::atan2(dy, dx)); }

}  // namespace kvn::detail
