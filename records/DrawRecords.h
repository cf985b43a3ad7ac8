// Points and lines for the map.
#pragma once

#include "records/CalculationRecords.h"
#include "records/TraversePointType.h"

#include <utils/Export.h>

#include <string>

namespace kvn {

/// A point to draw; `name` is the label, `x`, `y`, `z` north, east and height in metres.
class KELVANE_EXPORT DrawPoint : public PointInfo {
 public:
  DrawPoint();
  DrawPoint(double x, double y, double z);
  DrawPoint(double x, double y, double z, std::string const& name);

  TraversePointType pointType = TraversePointType::PrismPoint;  ///< decides icon and colour
  std::string id;                                               ///< identity of the source row

  bool operator==(DrawPoint const& other) const;  ///< names alone
};

class KELVANE_EXPORT DrawLine {
 public:
  DrawLine();
  DrawLine(DrawPoint const& start, DrawPoint const& end);

  DrawPoint start;
  DrawPoint end;

  bool operator==(DrawLine const& other) const;  ///< the ends match in either direction
};

}  // namespace kvn
