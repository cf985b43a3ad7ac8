#include "records/TraversePointType.h"

#include "core/System.h"

namespace kvn {

QString translate(TraversePointType type) {
  switch (type) {
    case TraversePointType::StationPoint:
      return System::tr("Station Point");
    case TraversePointType::PrismPoint:
      return System::tr("Prism Point");
    case TraversePointType::NetworkData:
      return System::tr("NetworkDataInfo");
    case TraversePointType::CoordinatePoint:
      return System::tr("Coordinate Point");
    default:
      return {};
  }
}

}  // namespace kvn
