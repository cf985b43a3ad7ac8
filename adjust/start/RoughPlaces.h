// Where points lie, told so roughly that it serves for nothing but which of them are near each other.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/plane/NumberedNetwork.h"

#include <vector>

namespace kvn::detail {

/// Places in a frame of their own, whatever points are known: a walk by sights with distances, which hands orientations
/// on by sights from both ends, so that errors grow with the square root of its length. A point that this does not
/// reach lies at one that it sights or is sighted from; `kNoPlace` where the walk does not lead at all.
std::vector<Place> roughPlaces(NumberedNetwork const& network, Poll const& poll = {});

}  // namespace kvn::detail
