// SingleTraverse: what the open, the connecting and the closed traverse share.
#pragma once

#include "adjust/AlgorithmData.h"
#include "records/CalculationRecords.h"

#include <utils/Export.h>
#include <utils/IProcessCancel.h>

#include <memory>
#include <string>
#include <vector>

namespace kvn {

/// A traverse is a chain of stations. Each looks back to one point and forward to the next, and the angle between the
/// two is counted clockwise from the back line to the fore line, so that the azimuth is carried along by
///
///     fore azimuth = back azimuth + angle - π
///
/// The circle of a station must read less on the back point than on the fore point: that alone tells the two apart. Leg
/// i runs from station i forward and has the distance of station i.
///
/// Call `readAlgorithmData`, then `calculateAdjust` once, then the result operations. A `readAlgorithmData` that fails
/// leaves no chain. Names of stations and known points are unique in the input, as its own checks see to.
///
/// A known point that no observation mentions stays in the list of known points, and one `Warning` lists all of them.
class KELVANE_EXPORT SingleTraverse : public utils::IProcessCancel {
 public:
  ~SingleTraverse() override;

  /// Appends the azimuths of `TraverseSummary` in sexagesimal fields; false when there is none.
  bool getAzimuth(std::vector<Degree>& list) const;
  /// Replaces the list by the known points, each with its place in the list as its `number`, those that nothing
  /// observes included; false when there is none.
  bool getKnPoints(std::vector<PointInfo>& list) const;
  /// The azimuths; no misclosure.
  TraverseSummary getSummary() const;

  /// @throws QLogicError "User Cancel" when the cancel query says so.
  void checkCancelAndThrow() const;

 protected:
  SingleTraverse();
  SingleTraverse(SingleTraverse const&);
  SingleTraverse& operator=(SingleTraverse const&);

  /// Number of a name; a new name gets the next number.
  int getPointNumber(std::string const& name);
  /// From coordinates, radians, 0 to 2π. @throws AlgorithmException (DataError, name of q) for two points at one place,
  /// which give no azimuth.
  double calculateAzimuth(PointInfo const& p, PointInfo const& q) const;

  /// Counts and known points, which get the first numbers: a number below `knPoints.size()` is the index of its point.
  void readKnownPoints(AlgorithmData const& data);
  /// The end of reading: the chain, with a `Warning` that lists the known points that no observation mentions.
  void takeChain(std::vector<TraverseInfo> chain, AlgorithmData const& data);
  bool isKnown(PointInfo const& point) const;
  /// The known point of that number in its place, if there is one.
  void takeKnown(PointInfo& point) const;
  /// Both the station and its back point are known.
  bool isOrientedStart(TraverseInfo const& station) const;
  /// Gives each start its known coordinates; the first of them, the size of the list without any.
  std::size_t takeOrientedStarts(std::vector<TraverseInfo>& list) const;
  /// Fore azimuth behind the last azimuth so far, 0 to 2π, both ends included.
  double foreAzimuth(double angle) const;
  void calculateDelta(std::size_t station);
  /// The fore point of a station by a coordinate difference.
  void placeForePoint(std::size_t station, double dx, double dy);
  /// The fore point of the station before becomes the station, and that station its back point.
  void moveForward(std::size_t station);
  /// Appends the first back point, the stations and the last fore point; false without stations.
  bool appendAllPoints(std::vector<PointInfo>& list) const;

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
