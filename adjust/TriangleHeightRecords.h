// The records of the trigonometric heights.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace kvn {

struct TriangleStationData {
  std::string name;
  double instrumentHeight = 0;  ///< metres
  double height = 0;            ///< metres; means something for a known station only
  std::int32_t state = 1;       ///< 0 for a station with a known height, 1 otherwise
};

/// One observed line, or after the reduction the mean of all observations of it.
struct TriangleViewData {
  std::string start_name;         ///< station
  std::string end_name;           ///< target
  double slantDistance = 0;       ///< metres, as observed
  double horizontalDistance = 0;  ///< metres; 0 until it is worked out
  double verticalAngle = 0;       ///< radians, as read, then reduced in place
  double targetHeight = 0;        ///< metres
  double heightDifference = 0;    ///< metres, from `start_name` to `end_name`
};

struct TriangleHeightPointInfo {
  std::string name;
  double height = 0;  ///< metres
  /// Standard error of an adjusted height, metres. NaN where there is none: without redundancy, and in the list of
  /// approximate heights.
  double heightError = std::numeric_limits<double>::quiet_NaN();
};

}  // namespace kvn
