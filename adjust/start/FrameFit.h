// The similarity that brings one frame onto another by their common points.
#pragma once

#include "adjust/start/Frame.h"

#include <optional>
#include <utility>
#include <vector>

namespace kvn::detail {

/// z lies at factor z + shift in the other frame.
struct Similarity {
  Place factor;
  Place shift;
};

/// From pairs of places, in the first frame and in the second; a rigid motion when `isRigid`. The one with which most
/// pairs agree; nothing for fewer than two different places.
std::optional<Similarity> similarityOf(std::vector<std::pair<Place, Place>> const& pairs, bool isRigid);

/// The places that both frames have, first those of `from`.
std::vector<std::pair<Place, Place>> commonPlaces(Frame const& from, Frame const& to);

/// Gives `to` what `from` has and it has not.
void transfer(Frame const& from, Frame& to, Similarity const& motion);

}  // namespace kvn::detail
