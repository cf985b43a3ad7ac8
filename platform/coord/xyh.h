// coord::xyh: a plane point with its height.
#pragma once

namespace coord {

/// x is north, y is east, h the height; metres.
struct xyh {
  xyh() = default;
  xyh(double north, double east, double height) : x(north), y(east), h(height) {}

  double x = 0.0;
  double y = 0.0;
  double h = 0.0;
};

}  // namespace coord
