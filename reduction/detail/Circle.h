// Readings of the horizontal and the vertical circle.
#pragma once

#include <utils/Circle.h>

namespace kvn::detail {

/// Whether the vertical reading is that of the second face: above half a circle from the zenith.
inline bool isSecondFace(double verticalReading) { return verticalReading > utils::kPi; }

}  // namespace kvn::detail
