// TraverseDataManage: marks the rows of a field book that cannot be right.
#pragma once

#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// Row checks. They clear the validity flags of the rows, throw nothing and send no message. The tolerances are fixed:
/// angles from -1e-6 to 2π, distances from -1e-6 m, and 30" by which the faces of a target may differ from half a
/// circle.
class KELVANE_EXPORT TraverseDataManage {
 public:
  /// Both checks, each over all rows; true when nothing is wrong.
  static bool checkData(std::vector<TraverseDataInfo>& rows);

  /// Names and ranges: clears `isNameValid` of stations that come twice and of a station with a target of its own name
  /// in its group, and the flags of readings out of range.
  static bool checkDataUsually(std::vector<TraverseDataInfo>& rows);

  /// The faces: clears `isHorizontalAngleValid` of two sights of one target in one group whose readings do not differ
  /// by half a circle. One sight on each face is expected, so that a third one is never right.
  static bool checkDataStationAngle(std::vector<TraverseDataInfo>& rows);

  /// Sets the flags back, but for `isNameValid` of targets.
  static void resetVRDDataState(std::vector<TraverseDataInfo>& rows);
};

}  // namespace kvn
