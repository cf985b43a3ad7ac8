// The one azimuth rule: from north (x) toward east (y).
#pragma once

#include "adjust/CommonFunction.h"

#include <cmath>

namespace kvn::detail {

/// Onto the circle, radians; 0 and 2π both stay as they are.
inline double ontoCircle(double angle) {
  while (angle < 0.0) angle += 2.0 * CommonFunction::m_PI;
  while (angle > 2.0 * CommonFunction::m_PI) angle -= 2.0 * CommonFunction::m_PI;
  return angle;
}

/// Azimuth of a coordinate difference, radians, 0 to 2π; 0 for no difference.
inline double azimuthOf(double dx, double dy) { return ontoCircle(std::atan2(dy, dx)); }

}  // namespace kvn::detail
