// Walks over a network from its known points, which come before any other search for a start.
#pragma once

#include "adjust/plane/NumberedNetwork.h"

#include <vector>

namespace kvn::detail {

/// Coordinates of the points by number: x of point n at 2 n, y at 2 n + 1, metres. An x of `kMissing` is that of a
/// point without a place.
using Coordinates = std::vector<double>;

bool isPlaced(Coordinates const& at, int point);
void place(Coordinates& at, int point, double x, double y);
/// All but the known points lose their places.
void forgetUnknown(NumberedNetwork const& network, Coordinates& at);

/// Azimuth from point i to point j, radians, 0 to 2π; 0 for no difference.
double azimuthBetween(Coordinates const& at, int i, int j);
/// The first distance between two points, `kMissing` for none.
double observedDistance(NumberedNetwork const& network, int i, int j);
/// The angle from i to j at a point, of its first station that has seen both: radians, 0 to 2π; -1.0 for none.
double observedAngle(NumberedNetwork const& network, int point, int i, int j);

/// Every placed station that sights a placed point places its targets that have a distance. The places are those that
/// plain sweeps over the list of stations give.
///
/// @return false when points are left.
bool walkByDistances(NumberedNetwork const& network, Coordinates& at);

/// For networks without distances: a station is placed from two placed points by the three angles of their triangle,
/// all of them observed. @return false when points are left.
bool walkByTriangles(NumberedNetwork const& network, Coordinates& at);

/// A narrow form of the first walk: each station places only the point numbered one above itself, in as many passes as
/// there are points to place.
void walkByNumbers(NumberedNetwork const& network, Coordinates& at);

}  // namespace kvn::detail
