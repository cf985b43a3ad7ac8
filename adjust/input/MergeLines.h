// Merging of distances that were measured more than once.
#pragma once

#include "adjust/linalg/Poll.h"
#include "records/CalculationRecords.h"

#include <vector>

namespace kvn::detail {

/// Adds repeated distances into their first occurrence, `value` and `count`, in near-linear time.
///
/// The result is the one of these plain loops, in which j steps on past the line that moved into the erased place:
///
///     for i in lines: for j > i: if the ends of i and j match in either order { add j to i; erase j; }
///
/// so of a run of neighbouring repeats every second one stays and is merged again on its own turn.
void mergeRepeatedLines(std::vector<LineInfo>& lines, Poll const& poll = {});

}  // namespace kvn::detail
