// Places of all points at once where sights go both ways: orientations first, then places.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/start/PolarFit.h"

#include <vector>

namespace kvn::detail {

/// What `polarFit` gives where no sight is grossly wrong, in a third of its time and a tenth of its memory (measured on
/// 100,000 points): two systems of one unknown a station and one unknown a point in the place of one with four.
///
/// A line that is seen from both ends tells by how much the circles of both stations are turned against each other:
/// o_s + d_st = o_t + d_ts + 180°. Least squares of these differences give all orientations but a common turn, and with
/// them each sight is a difference of places, which least squares give again: p_t - p_s = t w, with one t for the
/// common turn. Orientations and places are then taken from each other in turn until they fit.
///
/// @param places, known, stations, sights, blockOrder, poll  as those of `polarFit`.
/// @return places of all points; empty where lines that are seen both ways do not hold all stations together, where
///         fewer than two points are known, or where a sight does not fit.
std::vector<Place> orientedFit(std::vector<Place> places, int known, int stations,
                               std::vector<PolarSight> const& sights, std::vector<int> const& blockOrder,
                               Poll const& poll = {});

}  // namespace kvn::detail
