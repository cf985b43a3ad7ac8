// ConnectTraverse: a traverse between two pairs of known points.
#pragma once

#include "adjust/ClosingTraverse.h"
#include "core/AlgorithmException.h"

#include <utils/Export.h>

#include <string>
#include <vector>

namespace kvn {

/// KnownPointNotEnough without a name, which still tells where the traverse broke off: at a station that should be
/// known and whose fore point should be.
class KELVANE_EXPORT TraverseEndException : public AlgorithmException {
 public:
  TraverseEndException(std::string station, std::string fore);
  ~TraverseEndException() override;

  std::string lastStation;
  std::string forePoint;
};

/// From a known back point and a known first station over unknown stations to a known last station with a known fore
/// point. Both ends give an azimuth from coordinates, so that the angles close on the azimuth of the end and the
/// coordinates on the last station. A leg without a distance counts as 0 and is not refused.
class KELVANE_EXPORT ConnectTraverse : public ClosingTraverse {
 public:
  ConnectTraverse();
  ConnectTraverse(ConnectTraverse const&);
  ConnectTraverse& operator=(ConnectTraverse const&);
  ~ConnectTraverse() override;

  /// The chain begins at the first station of the input that is known with its back point, and ends where no station
  /// stands on the fore point. Of two distances of a station the second counts; with three or more it has none.
  ///
  /// @throws AlgorithmException StationNameRepeat with the name of a station that has not exactly two directions;
  ///         StationNotEnough with the name of one with two equal directions, without a name when no station is known
  ///         with its back point; DataError, name "Data error", for a chain that comes to a station a second time;
  ///         KnownPointNotEnough, no name (a `TraverseEndException`), when its last station or that one's fore point is
  ///         not known.
  void readAlgorithmData(AlgorithmData const& data);

  /// Appends the first back point, the stations, the last fore point: n + 2 points; false without stations.
  bool getPoints(std::vector<PointInfo>& list) const;

 protected:
  void calculateAngleCloseError() override;
  void calculateEachAzimuth() override;
  void calculateDeltaXY() override;
  void calculateCloseDeltaXY() override;
  void calculateXY() override;
  bool judgeStartStation(TraverseInfo const& station) const;

 private:
  void takeEnd(TraverseInfo& last) const;
  double startAzimuth() const;
  double endAzimuth() const;
};

}  // namespace kvn
