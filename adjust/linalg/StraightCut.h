// StraightCut: separators of graphs whose blocks have places in the plane.
#pragma once

#include "adjust/linalg/BlockGraph.h"

#include <vector>

namespace kvn::sparse {

struct StraightCut {
  /// Of each block 0 or 1, its side, or 2 for one that separates the sides. Nothing where too many would: sights across
  /// the whole network, or places that are wrong.
  std::vector<int> sides;
  BlockPlace across;  ///< the direction across the line
};

/// A cut along a straight line into sides of like size, which is then moved, by a few blocks, to where the fewest
/// unknowns separate the sides. In networks whose sights are short against their extent it separates with fewer, and
/// is found sooner, than one that knows the graph alone.
///
/// @param places    of all blocks, finite.
/// @param expected  what was across a cut of a larger part: the sides of a regular network are cut best along it or at
///                  right angles. 0 where there was none.
StraightCut straightCut(BlockGraph const& graph, std::vector<BlockPlace> const& places, BlockPlace expected,
                        Poll const& poll = {});

}  // namespace kvn::sparse
