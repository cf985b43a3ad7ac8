// Preparing a network for the single traverses.
#pragma once

#include "records/Network.h"

#include <utils/Export.h>

namespace kvn {

/// The network with just one distance left at each station with two directions or more: the one forward.
///
/// The single traverses take the distance of a station for that of its leg, and most of them only when it is the only
/// one, while a field job has distances to both sides. Of the first two directions of a station the one with the
/// smaller reading looks back, the other forward, as the traverses have it. The line forward gets the mean of the
/// distance measured along it and the one measured back from its far end, or the one of the two that there is; each is
/// itself the mean of what was measured that way. All other distances of the station become 0.
///
/// Lines without a direction (`horizontalAngleFlag` false) join the means and are left out. A distance that is none, up
/// to 1e-6 m, negative or a marker, stays as it is for the checks of the input and joins no mean. A station with one
/// direction, or with two equal ones, which no traverse computes, keeps its distances. Lines keep their order.
KELVANE_EXPORT Network withForwardDistances(Network const& network);

}  // namespace kvn
