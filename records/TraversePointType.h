// Kind of an observation row.
#pragma once

#include <utils/Export.h>
#include <utils/NamedValue.h>

#include <QString>

namespace kvn {

struct TraversePointTypeTable {
  enum Value : std::int32_t {
    StationPoint,     ///< the instrument stands here; opens a set
    PrismPoint,       ///< a sighted target
    NetworkData,      ///< a line of the network
    CoordinatePoint,  ///< a point of the coordinate list
    CosaViewLine,
    CosaViewAngle,
    CosaKnowPoint,
    CosaAzimuth,
  };
  static constexpr std::array<char const*, 8> names{"StationPoint", "PrismPoint",    "NetworkData",   "CoordinatePoint",
                                                    "CosaViewLine", "CosaViewAngle", "CosaKnowPoint", "CosaAzimuth"};
};

/// Kind of a row; records hold the number, the project file the name.
using TraversePointType = utils::NamedValue<TraversePointTypeTable>;

/// Display text of a kind of row; empty for the kinds of the network format, which are never shown.
KELVANE_EXPORT QString translate(TraversePointType type);

/// How the vertical circle of the instrument is read.
enum VerticalAngleType {
  ZenithAngle,       ///< zenith reading; the horizontal is at 90° on both faces
  FullCircleZenith,  ///< zenith reading on a full circle; the horizontal is at 90° on the first face, 270° on the
                     ///< second
  ElevationAngle,    ///< angle above the horizontal
};

/// Meaning of a target row in the instrument job format.
enum SightType { BackSight, ForeSight };

}  // namespace kvn
