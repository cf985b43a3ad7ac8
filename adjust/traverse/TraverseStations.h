// Stations of the single traverses: from observations to angles and legs, and from a list to a chain.
#pragma once

#include "adjust/AlgorithmData.h"
#include "adjust/NameIndex.h"
#include "core/AlgorithmException.h"
#include "records/CalculationRecords.h"

#include <vector>

namespace kvn::detail {

/// What the traverses differ in when they read a station.
struct StationRule {
  /// Failure for a station with fewer or more than two directions.
  AlgorithmException::ErrorType wrongCount;
  /// More than two directions pass, and the first two count.
  bool passesFurtherDirections;
  /// Of two distances the second counts; else neither does.
  bool takesSecondDistance;
};

/// Angle and leg of each station, in input order. Of the two targets the one with the smaller reading is the back
/// point, whatever their order; the angle runs clockwise from it to the fore point.
///
/// @param names  gives the points their numbers; those of the known points are in it already.
/// @throws AlgorithmException with the station's name: the rule's for a wrong count, StationNotEnough for two equal
///         directions, DataError for an angle that is none.
std::vector<TraverseInfo> readStations(AlgorithmData const& data, StationRule const& rule, NameIndex& names);

/// Lengthens the chain by the station that stands on the fore point of its last one, as long as there is one that the
/// chain does not hold yet. Near-linear, whatever the order of the list. Names of stations are unique in it.
///
/// @param chain  its first station, which is one of `stations`.
/// @return       false when the last station's fore point is a station of the chain.
///
/// Repeated walks over the list that go on to append would find the same order; where the chain comes back they would
/// go round and round, so that it grows longer than the list.
bool followForePoints(std::vector<TraverseInfo>& chain, std::vector<TraverseInfo> const& stations);

/// @throws DataException "Station name [%1] distance is 0".
[[noreturn]] void refuseWithoutDistance(TraverseInfo const& station);

}  // namespace kvn::detail
