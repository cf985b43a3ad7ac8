#include "records/TraversePointType.h"

#include "records/detail/Messages.h"

namespace kvn {

QString translate(TraversePointType type) {
  switch (type) {
    case TraversePointType::StationPoint:
      return Messages::tr("Station Point");
    case TraversePointType::PrismPoint:
      return Messages::tr("Prism Point");
    case TraversePointType::NetworkData:
      return Messages::tr("NetworkDataInfo");
    case TraversePointType::CoordinatePoint:
      return Messages::tr("Coordinate Point");
    default:
      return {};
  }
}

}  // namespace kvn
