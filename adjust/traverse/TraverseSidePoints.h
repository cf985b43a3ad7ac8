// Points beside a traverse, polar from its adjusted stations.
#pragma once

#include "adjust/traverse/TraverseWalks.h"

namespace kvn::detail {

/// Computes the side sights that have a distance, in their order, by the azimuth of the back line once the angular
/// misclosure is distributed.
/// @param errors  null where there are none that can be used; the points have no errors then.
void addSidePoints(TraverseResult& result, std::vector<SideSight> const& sights, TraverseErrors const* errors);

}  // namespace kvn::detail
