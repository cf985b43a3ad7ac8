// OpenTraverse: a traverse that starts on known points and ends free.
#pragma once

#include "adjust/SingleTraverse.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// From a known back point over a known station the azimuth is carried along and the legs are added up. Nothing closes
/// on a known point, so that there is no misclosure, nothing is corrected, and no fault in an angle or a leg shows.
/// Every station, the last one too, has a distance to its fore point.
class KELVANE_EXPORT OpenTraverse : public SingleTraverse {
 public:
  OpenTraverse();
  OpenTraverse(OpenTraverse const&);
  OpenTraverse& operator=(OpenTraverse const&);
  ~OpenTraverse() override;

  /// The chain begins at the first station of the input that is known with its back point.
  ///
  /// @throws AlgorithmException StationNotEnough with the name of a station that has not exactly two directions, or two
  ///         equal ones; KnownPointNotEnough, name "No start data", without a start; DataError, name "Data error", when
  ///         the chain does not hold every station exactly once: a target misspelled, a circle that reads less on the
  ///         fore point than on the back point.
  void readAlgorithmData(AlgorithmData const& data);
  /// Azimuths, coordinate differences, coordinates; always true.
  ///
  /// @throws DataException "Station name [%1] distance is 0" for a station with no or more than one distance.
  /// @throws QLogicError "User Cancel", asked for twice at each station.
  bool calculateAdjust();

  /// Replaces the list by the chain, with `angleDms`; always true.
  bool getStationInfo(std::vector<TraverseInfo>& list) const;
  /// Appends the first back point, the stations, the last fore point: n + 2 points; false without stations.
  bool getPoints(std::vector<PointInfo>& list) const;

 protected:
  void calculateEachAzimuth();
  void calculateDeltaXY();
  void calculateXY();
  bool judgeStartStation(TraverseInfo const& station) const;
};

}  // namespace kvn
