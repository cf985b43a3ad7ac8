// TraverseOptions: how single traverses are judged.
#pragma once

#include <utils/Circle.h>

#include <cmath>
#include <cstddef>

namespace kvn {

/// Beside the a-priori errors, which are in the project's `Configure`; centring and the form of distance errors are in
/// `PlaneOptions`. A misclosure beyond a limit is told as a `Warning`.
struct TraverseOptions {
  /// Limit of the angular misclosure: this times the root of the number of angles, seconds of arc, 0 to 100000; 0 sets
  /// none.
  double allowedAngle = 0.0;
  /// Limit of the closing error: the sum of the legs over this, 0 to 1e9; 0 sets none.
  double allowedRelative = 0.0;
  /// Whether a traverse is computed that misses by more than ten times what the a-priori errors allow.
  bool isForced = false;

  /// Limit of the misclosure of so many angles, radians.
  double angleLimit(std::size_t angles) const {
    return allowedAngle / utils::kSecondsPerRadian * std::sqrt(static_cast<double>(angles));
  }
  /// @param relative  closing error over the sum of the legs.
  bool isBeyondRelative(double relative) const { return relative * allowedRelative > 1.0; }
};

}  // namespace kvn
