// The height differences of a field book, with a surveyor's care.
#pragma once

#include "Session.h"

namespace kvn::host {

/// The height lines of the rows, by the elevations of both faces, or `asRead` as the library takes the rows. What gives
/// no height is told as a `Warning`.
TriangleHeightDataConvert observeHeights(Session& session, double refraction, bool asRead);

/// @throws Refusal without a known height, and with the names of points that no line connects to one.
void requireSolvable(QString const& file, TriangleHeightDataConvert const& observations);

}  // namespace kvn::host
