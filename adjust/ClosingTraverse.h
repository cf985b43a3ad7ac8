// ClosingTraverse: what the connecting and the closed traverse share, which both close on known values.
#pragma once

#include "adjust/SingleTraverse.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// The angular misclosure is spread equally over the angles, the coordinate misclosure in proportion to the legs
/// (compass rule). The last station is known; the n - 1 legs before it count, and its own distance does not.
/// Misclosures are reported and compared with no tolerance.
class KELVANE_EXPORT ClosingTraverse : public SingleTraverse {
 public:
  ~ClosingTraverse() override;

  /// Misclosure and correction of the angles, azimuths, legs, misclosure and correction of the coordinates,
  /// coordinates. Always true.
  ///
  /// @throws DataException "Station name [%1] distance is 0" with the first station, when there are legs and all are 0.
  /// @throws AlgorithmException DataError with the name of a known station that lies on its known neighbour;
  ///         KnownPointNotEnough, no name, unless exactly one station of a closed chain is known with its back point.
  /// @throws QLogicError "User Cancel", asked for at each leg.
  bool calculateAdjust();

  /// Replaces the list by the chain, with `angleDms` and `adjustedAngleDms`; false, the list left alone, without
  /// stations.
  bool getStationsInfo(std::vector<TraverseInfo>& list) const;
  /// Azimuths and misclosure.
  TraverseSummary getSummary() const;
  /// The values of `getSummary` one by one.
  ///
  /// @param closeError  correction of one angle, radians.
  /// @param unused      comes out 0.
  /// @param sum         not 0.0 on entry; total of the legs, metres.
  /// @param x, y        computed minus known last station, metres.
  /// @param s           root of x² + y², metres.
  /// @param relative    s / sum.
  /// @return false, nothing written, when `sum` comes in as 0.0.
  bool getErrorInfo(double& closeError, double& unused, double& sum, double& x, double& y, double& s,
                    double& relative) const;

 protected:
  ClosingTraverse();
  ClosingTraverse(ClosingTraverse const&);
  ClosingTraverse& operator=(ClosingTraverse const&);

  // The steps in which the two differ.
  virtual void calculateAngleCloseError() = 0;
  virtual void calculateEachAzimuth() = 0;
  virtual void calculateDeltaXY() = 0;
  virtual void calculateCloseDeltaXY() = 0;
  virtual void calculateXY() = 0;

  /// Counts, known points, and nothing left of an earlier input.
  void beginInput(AlgorithmData const& data);
  double sumOfAngles() const;  ///< radians
  /// Distributes the angular misclosure, which is the correction of one angle afterwards.
  void calculateEachAngle();
  /// Appends the fore azimuth of each station, 0 to 2π without 2π.
  void carryAzimuths();
  /// @throws DataException "Station name [%1] distance is 0" with the first station, when all legs are 0 together.
  void calculateSumDistance();
  /// Coordinate differences of the legs, and their sums.
  void addLegs();
  /// From the end of the legs to the misclosure at the last station.
  void closeOnLastStation();
  void calculateRelativeError();
  /// Shares of the coordinate misclosure that fall to a leg, metres.
  double correctionOfX(std::size_t leg) const;
  double correctionOfY(std::size_t leg) const;
};

}  // namespace kvn
