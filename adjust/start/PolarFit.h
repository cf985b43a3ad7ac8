// Places of all points at once from the sights that have a direction and a distance.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/plane/NumberedNetwork.h"

#include <vector>

namespace kvn::detail {

/// What a station sees of a target: `polar(distance, direction)`, before its circle is oriented.
struct PolarSight {
  int station;
  int from;  ///< point number
  int target;
  Place seen;
  double error;  ///< a-priori standard error, metres in either direction
};

/// With p for the places and u for the turn of a station's circle, e^(i z), each sight says p_t - p_s = seen u. That is
/// linear when u may be any complex number, and so least squares give all places without approximate values, wherever
/// the known points are and however far. The scale of each station is free then; the sights that it shares with others
/// hold it. Sights that fit the others badly lose their weight.
///
/// @param places      of all points; those from `known` on are not looked at.
/// @param blockOrder  order of elimination of all points and, behind their number, all stations.
/// @param poll        called again and again; may throw to end the work.
/// @return places of all points, NaN for those that the sights do not determine.
std::vector<Place> polarFit(std::vector<Place> places, int known, int stations, std::vector<PolarSight> const& sights,
                            std::vector<int> const& blockOrder, Poll const& poll = {});

/// Largest misfit of a sight at the given places, as a share of its length, each station being turned as its sights ask
/// for together. Infinite where no turn can be told.
double largestMisfit(std::vector<Place> const& places, int stations, std::vector<PolarSight> const& sights,
                     Poll const& poll = {});

}  // namespace kvn::detail
