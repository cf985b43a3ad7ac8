// Readings of the horizontal and the vertical circle.
#pragma once

#include <utils/Circle.h>
#include "records/TraverseDataInfo.h"

namespace kvn::detail {

/// Whether the vertical reading is that of the second face: above half a circle from the zenith.
inline bool isSecondFace(double verticalReading) { return verticalReading > utils::kPi; }

inline bool hasVertical(TraverseDataInfo const& row) { return row.angleMark != 0.0 && row.vertical_angle != 0.0; }

}  // namespace kvn::detail
