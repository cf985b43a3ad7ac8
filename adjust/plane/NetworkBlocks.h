// Blocks of unknowns of a plane network, and which of them meet in an observation.
#pragma once

#include "adjust/linalg/BlockGraph.h"
#include "adjust/plane/NumberedNetwork.h"

#include <vector>

namespace kvn::detail {

/// x and y of each point from `firstPoint` on, then the orientation of each station.
std::vector<int> blockSizesOf(NumberedNetwork const& network, int firstPoint);

/// One clique for each observation; -1 stands for a point before `firstPoint`, which has no block.
std::vector<sparse::Clique> cliquesOf(NumberedNetwork const& network, int firstPoint);

}  // namespace kvn::detail
