// Points beside a traverse, polar from its adjusted stations.
#pragma once

#include "adjust/traverse/TraverseWalks.h"

namespace kvn::detail {

/// Computes the side sights that have a distance, in their order, by the azimuth of the back line once the angular
/// misclosure is distributed.
/// @param known   those of the targets that are known are compared with their coordinates.
/// @param errors  null where there are none that can be used; the points have no errors then.
void addSidePoints(TraverseResult& result, std::vector<SideSight> const& sights, std::vector<KnownPoint> const& known,
                   TraverseErrors const* errors);

/// Compares the directions to known points that have no distance, and the distances to marks, with what is computed.
void addChecks(TraverseResult& result, TraverseWalk const& walk, std::vector<KnownPoint> const& known,
               TraverseErrors const* errors);

/// Gives the points of the chain their errors.
void addPointErrors(TraverseResult& result, std::vector<KnownPoint> const& known, TraverseErrors const& errors);

}  // namespace kvn::detail
