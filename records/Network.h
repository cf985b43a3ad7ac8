// The adjustment network: control points and observed lines.
#pragma once

#include "records/CalculationRecords.h"

#include <utils/Export.h>

#include <string>
#include <vector>

namespace kvn {

/// One observed line from a station to a target.
class KELVANE_EXPORT NetworkDataInfo {
 public:
  NetworkDataInfo();

  std::string start_name;  ///< station
  std::string end_name;    ///< target
  std::string id;          ///< a new UUID text
  bool startFlag = false;
  double horizontal_angle = 0;      ///< direction, radians; 0 on a line that carries only a distance
  bool horizontalAngleFlag = true;  ///< false when the source told that no direction was observed
  bool endFlag = false;
  double horizontal_distance = 0;  ///< metres; 0 when the line has no measured distance
  bool horizontalDistanceFlag = true;

  /// Order by `horizontal_angle` alone: a set of lines holds one line for each distinct angle.
  bool operator<(NetworkDataInfo const& other) const;
  /// True when station and target match; A to B differs from B to A.
  bool operator==(NetworkDataInfo const& other) const;
  /// True when `id` equals the text.
  bool operator==(std::string const& otherId) const;
};

/// A control point with fixed coordinates.
class KELVANE_EXPORT KnownPoint : public PointInfo {
 public:
  KnownPoint();                                                                            ///< empty name, new `id`
  KnownPoint(std::string const& name, double const& x, double const& y, double const& z);  ///< `id` stays empty

  std::string id;
};

class KELVANE_EXPORT Network {
 public:
  std::vector<KnownPoint> knownPoints;
  std::vector<NetworkDataInfo> lines;

  bool isEmpty() const;  ///< no lines; control points alone do not count
  void clear();          ///< empties both lists
};

}  // namespace kvn
