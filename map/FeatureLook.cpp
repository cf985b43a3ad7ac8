#include "map/FeatureLook.h"

#include "records/detail/Messages.h"

namespace kvn {
namespace {

QString iconStem(FeatureDataType type, TraversePointType pointType) {
  if (type == FeatureDataType::CoordData) return QStringLiteral("kvn_coordpoint");
  if (type != FeatureDataType::ViewPointData) return {};
  if (pointType == TraversePointType::StationPoint) return QStringLiteral("kvn_stationpoint");
  if (pointType == TraversePointType::PrismPoint) return QStringLiteral("kvn_prismpoint");
  return {};
}

QString iconFile(QString const& stem, char const* ending) {
  return stem.isEmpty() ? QString() : QStringLiteral("config\\earth\\img\\") + stem + QLatin1String(ending);
}

}  // namespace

QString GetColor(FeatureDataType type) {
  return type == FeatureDataType::NetworkData ? QStringLiteral("#9893D8FF") : QString();
}

QString GetSelectedColor(FeatureDataType /*type*/) { return {}; }

QString GetIcon(FeatureDataType type, TraversePointType pointType) {
  return iconFile(iconStem(type, pointType), ".png");
}

QString GetSelectedIcon(FeatureDataType type, TraversePointType pointType) {
  return iconFile(iconStem(type, pointType), "_2x.png");
}

QString Translation(FeatureDataType type) {
  switch (type) {
    case FeatureDataType::TraverseData:
      return Messages::tr("Traverse Point");
    case FeatureDataType::CoordData:
      return Messages::tr("Coordinate Point");
    case FeatureDataType::NetworkData:
      return Messages::tr("Network");
    default:
      return {};
  }
}

}  // namespace kvn
