// CloseTraverse: a traverse around a polygon.
#pragma once

#include "adjust/ClosingTraverse.h"

#include <utils/Export.h>

#include <string>
#include <vector>

namespace kvn {

/// The stations are the corners of a polygon, walked counter-clockwise as seen with x north and y east, so that the
/// angle of a station is the inner one and the angles add up to (n - 2) π. Walked clockwise the angles are the outer
/// ones, and the misclosure comes out near a full circle. Two neighbouring corners are known: the chain runs from the
/// one whose back point is the other, over n - 1 measured legs, to that other. The leg between the two is given by
/// their coordinates.
class KELVANE_EXPORT CloseTraverse : public ClosingTraverse {
 public:
  CloseTraverse();
  CloseTraverse(CloseTraverse const&);
  CloseTraverse& operator=(CloseTraverse const&);
  ~CloseTraverse() override;

  /// The chain begins at the known station whose back point is known too where there is exactly one, else at the first
  /// known station of the input, and takes in no station twice. Stations that it does not reach are left out without a
  /// failure: compare its length with that of the input. A station's first two directions count.
  ///
  /// @throws AlgorithmException StationNotEnough with the name of a station with fewer than two directions or two equal
  ///         ones; KnownPointNotEnough, name "No start data", when no station is known, with the name of the last
  ///         fore point when that is not the first station, and with the name of the last station when that is not
  ///         known.
  void readAlgorithmData(AlgorithmData const& data);

  /// Whether the angular misclosure is folded into ±π instead of ±2π; off by default. The sum of the outer angles of a
  /// polygon walked clockwise is off by two full circles, of which ±2π leaves one: with ±π its corrections are right.
  void setFoldToNearest(bool fold);

  /// Appends the stations: n points; false without stations.
  bool getPoints(std::vector<PointInfo>& list) const;

 protected:
  void calculateAngleCloseError() override;
  void calculateEachAzimuth() override;
  void calculateDeltaXY() override;
  void calculateCloseDeltaXY() override;
  void calculateXY() override;
  bool judgeStartStation(TraverseInfo const& station) const;
  bool judgeKnPoint(std::string const& name) const;
  /// Follows the fore points from the first station; whether the chain holds all stations of the input.
  bool getStations(std::vector<TraverseInfo> const& list);

 private:
  std::size_t findStart(std::vector<TraverseInfo> const& list) const;
  void requireClosed(std::vector<TraverseInfo> const& chain) const;
};

}  // namespace kvn
