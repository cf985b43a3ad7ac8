// Merging of lines that were observed from both ends.
#pragma once

#include "adjust/TriangleHeightRecords.h"

#include <vector>

namespace kvn::detail {

/// Merges opposite lines into one with the mean height difference, in near-linear time.
///
/// The result is the one of these plain loops, in which a stays the same index when something before it is erased, so
/// that it then stands for the next line, and b steps on past the line that moved into the erased place:
///
///     for (a = 0; a + 1 < size; ++a)
///       for (b = 0; b < size; ++b)
///         if (start of a is end of b and end of a is start of b) { a = (a - b) / 2; erase b; }
///
/// Where such erasing leaves no line at a any more, the loops end.
void mergeOppositeViews(std::vector<TriangleViewData>& views);

}  // namespace kvn::detail
