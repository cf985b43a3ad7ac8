// Turning the circles of a job, so that no target lies in the seam between 360° and 0°.
#pragma once

#include "records/Network.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// A copy of the rows in which the circle of each occupation is turned as a whole, both faces alike, so that the first
/// sight of its zero target reads 0°01' on the first face. The zero target is the one that reads within 1' of zero on
/// either side, else the first one. Readings end up from 0 to 2π.
///
/// Turning a circle changes no angle. It does change what the face means, the bounds of a direction and the rule that
/// the smaller reading is the back sight make of a target that reads a little below zero: those are right then. A
/// target just left of the zero target, by 1' within the differences of its readings, comes into the seam instead.
KELVANE_EXPORT std::vector<TraverseDataInfo> turnedCircles(std::vector<TraverseDataInfo> const& rows);

/// The same for the lines of a network, by station. Lines without an observed direction (`horizontalAngleFlag` false)
/// stay as they are.
KELVANE_EXPORT Network turnedCircles(Network const& network);

}  // namespace kvn
