// Vertical readings of a field book as elevations, ready for the height reduction.
#pragma once

#include "adjust/HeightNetwork.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

struct ElevationRows {
  std::vector<TraverseDataInfo> rows;
  std::vector<LeftOutSight> leftOut;  ///< in row order
};

/// A copy of the rows that the height reduction, made for `ElevationAngle`, turns into right heights.
///
/// The vertical reading V of each sight becomes the elevation π/2 - V on the first face (V below π) and V - 3π/2 on the
/// second; by the row's own type, so that a row of `ZenithAngle` is read as on the first face and one of
/// `ElevationAngle` stays. What the reduction cannot take is brought into a form that it can:
///
///   - a target seen once is seen twice, by a row of its own behind it with the same values;
///   - the index error of the occupation, from its targets on both faces, is taken off each reading, so that it does
///   not
///     stay in sights on one face;
///   - a sight without a distance takes the mean horizontal distance of the other sights to the target from the same
///     occupation of the station; without any, it is left out;
///   - the reduction knows one height of the instrument for a station name, that of its first station row, and one of
///     the target for a line, that of its first sight: further occupations and sights are turned into what would have
///     been observed with these heights, over the same horizontal distance.
///
/// Rows of other kinds are copied. Angles in radians, lengths in metres.
KELVANE_EXPORT ElevationRows elevationRows(std::vector<TraverseDataInfo> const& rows);
/// The same in place of the rows, of which a large job has no room for two lists.
KELVANE_EXPORT ElevationRows elevationRows(std::vector<TraverseDataInfo>&& rows);

}  // namespace kvn
