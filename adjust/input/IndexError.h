// The index error of the vertical circle, from the pairs of faces of an occupation.
#pragma once

#include "records/TraverseDataInfo.h"

#include <vector>

namespace kvn::detail {

/// What each row's vertical reading is too large by, radians: the median of (V1 + V2 - 2π) / 2 over the targets that
/// its occupation sighted on both faces at one target height. 0 for rows that have no reading of a full circle, and for
/// occupations on one face.
///
/// The mean of both faces is free of it; a sight on one face, or a distance that was measured on one face, is not: at
/// 45° 10" move the horizontal distance of 200 m by 7 mm. Pairs off by more than 0.1 degrees are no pairs.
std::vector<double> indexErrors(std::vector<TraverseDataInfo> const& rows);

}  // namespace kvn::detail
