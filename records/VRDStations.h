// A field job grouped by station: what the adjustment input and the whole-file reader hold the sightings in.
#pragma once

#include <string>
#include <vector>

namespace kvn {

/// A station of a grouped job. One that is not known carries 1e30 in both coordinates, to be told by threshold.
struct VRDStationInfo {
  std::string name;
  double x = 0.0;  ///< north, metres
  double y = 0.0;  ///< east, metres
  bool isKnown = false;
};

/// A sighting of a grouped job.
struct VRDSightInfo {
  std::string name;                 ///< target
  double horizontalAngle = 0.0;     ///< circle reading, radians
  double verticalAngle = 0.0;       ///< from the zenith, radians
  double slantDistance = 0.0;       ///< metres, 0 when none was measured
  double horizontalDistance = 0.0;  ///< metres: |slantDistance sin(verticalAngle)|
};

/// A station with its sightings in measuring order: first face, then second face backward.
struct VRDStations : VRDStationInfo {
  std::vector<VRDSightInfo> sights;
};

}  // namespace kvn
