// One row of a field book.
#pragma once

#include "records/Network.h"
#include "records/TraversePointType.h"

#include <utils/Export.h>

#include <QString>
#include <string>
#include <vector>

namespace kvn {

/// A station row or a sighted target row. Angles in radians, lengths in metres, texts as bytes of their source.
///
/// The row list of a project is in field-book order: a station row opens a set, and the target rows up to the next
/// station row belong to it. Nothing else links a target row to its station but `groupId`.
class KELVANE_EXPORT TraverseDataInfo {
 public:
  TraverseDataInfo();
  TraverseDataInfo(VerticalAngleType type);

  std::string id;       ///< identity, unique within the project; a new UUID text, copied by copies
  std::string groupId;  ///< `id` of the station row that opened the set; starts as the row's own `id`
  std::string name;     ///< the station on a station row, the target on a target row
  bool isNameValid = true;
  TraversePointType pointType = TraversePointType::PrismPoint;
  bool isKnown = false;   ///< the row carries the fixed coordinates of a control point
  double instrument = 0;  ///< instrument height on a station row, target height on a target row, metres
  bool instrumentFlag = true;
  double slant_distance = 0;  ///< metres
  bool isSlantDistanceHave = true;
  bool isSlantDistanceValid = true;
  double horizontal_distance = 0;  ///< metres
  bool horizontalDistanceFlag = true;
  double horizontal_angle = 0;          ///< circle reading, radians
  double reduced_horizontal_angle = 0;  ///< written by the station reduction, radians
  bool isHorizontalAngleValid = true;
  double vertical_angle = 0;          ///< circle reading, radians, by `verticalAngleType`
  double reduced_vertical_angle = 0;  ///< written by the station reduction, radians
  bool isVerticalAngleValid = true;
  double angleMark = 1.0;  ///< 1.0 when the row holds angle readings, 0.0 when its source record had none
  VerticalAngleType verticalAngleType;
  SightType sightType = ForeSight;
  double azimuth = 0;  ///< radians
  double N = 0;        ///< north, metres
  double E = 0;        ///< east, metres
  double Z = 0;        ///< height, metres
  bool hasCoordinate = false;
  std::string code;  ///< point code or remark

  /// True when `id` equals the text: rows are found by identity, never by name.
  bool operator==(std::string const& otherId) const;
  /// Order by name alone, byte by byte: two rows of one name are one key of a map.
  bool operator<(TraverseDataInfo const& other) const;

  /// Horizontal distance in metres of the slant distance S under the vertical reading V: S cos(|V - π/2|) for
  /// ZenithAngle, |S sin V| for FullCircleZenith, S cos(|V|) for ElevationAngle, 0 for any other type.
  double getHorizontalDisance(VerticalAngleType type) const;
  /// The same with the row's own `verticalAngleType`.
  double getHorizontalDisance() const;

  /// True when the whole text is a floating-point number.
  bool adjustRight(QString const& text) const;
};

/// A `KnownPoint` without `id` for each row with `isKnown`, in list order.
KELVANE_EXPORT std::vector<KnownPoint> getKnownPoint(std::vector<TraverseDataInfo> const& rows);

}  // namespace kvn
