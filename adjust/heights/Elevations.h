// What a row of a field book tells of a height difference.
#pragma once

#include "adjust/input/Missing.h"
#include "records/TraverseDataInfo.h"
#include "records/detail/Recorded.h"

#include <utils/Circle.h>

#include <cmath>
#include <optional>

namespace kvn::detail {

inline bool hasDistance(TraverseDataInfo const& row) {
  return row.isSlantDistanceHave && row.slant_distance > 0.0 && isPresent(row.slant_distance);
}

/// Radians above the horizon, by the row's own type; none without a reading, or for one outside the circle.
inline std::optional<double> elevationOf(TraverseDataInfo const& row) {
  // How far a reading may lie outside the circle, or an elevation beyond the zenith: rounding of texts, radians.
  constexpr double kRounding = 1e-6;
  if (row.angleMark == 0.0 || !isPresent(row.vertical_angle)) return std::nullopt;
  double elevation = row.vertical_angle;
  if (row.verticalAngleType == FullCircleZenith) {
    if (!(elevation >= -kRounding && elevation <= utils::kFullCircle + kRounding)) return std::nullopt;
    elevation = elevation < utils::kPi ? utils::kRightAngle - elevation : elevation - 3 * utils::kRightAngle;
  } else if (row.verticalAngleType == ZenithAngle) {
    elevation = utils::kRightAngle - elevation;
  }
  if (std::abs(elevation) > utils::kRightAngle + kRounding) return std::nullopt;
  return elevation;
}

inline bool isAlongVertical(TraverseDataInfo const& row, double elevation) {
  double const distance = hasDistance(row) ? row.slant_distance : 1.0;
  return distance * std::cos(elevation) < kNotMeasured;
}

}  // namespace kvn::detail
