// From the sightings of grouped stations to directions and distances: face means, and which distances stay.
#pragma once

#include "records/CalculationRecords.h"
#include "records/VRDStations.h"

#include <vector>

namespace kvn::detail {

/// Directions and distances of one station, each the mean of its two faces.
///
/// @param station  an even number of sights, at least two: the first half on the first face, the second half on the
///                 second face backward, so that sight k pairs with sight n - k - 1.
/// @return         directions as circle readings of the first face, radians, not reduced to the first one, which may
///                 come out a little below 0; horizontal distances above 1e-8 m. The mean of a pair that is no pair of
///                 faces, 10° and 120°, is that of the two numbers once the second is brought onto the first face:
///                 155°.
StationInfo faceMeans(VRDStations const& station);

/// A distance measured from both ends becomes the mean, at both stations.
void meanOfBothEnds(std::vector<StationInfo>& stations);

/// Drops the distances to the first target of each station: a distance stays with the station that looks forward along
/// it. What stands behind a dropped one stays, whatever it is.
void dropBackSightDistances(std::vector<StationInfo>& stations);

/// Drops the distances from an earlier to a later known point, in the order of `knPoints`. What stands behind a dropped
/// one stays, whatever it is.
void dropControlDistances(std::vector<StationInfo>& stations, std::vector<PointInfo> const& knPoints);

/// The three above in order. Nothing happens to a job in which a station has a target twice: it is refused by its
/// names, and many repeats would make very many pairs.
void reduceDistances(std::vector<StationInfo>& stations, std::vector<PointInfo> const& knPoints);

}  // namespace kvn::detail
