#include "map/PointDataTool.h"

#include "core/Project.h"
#include "map/FeatureLook.h"
#include "map/detail/Icons.h"
#include "map/detail/MapLog.h"

#include <mvz/ViewerManager.h>

namespace kvn {

PointDataTool::PointDataTool(MapScene* scene) : GeometryDataTool(scene, FeatureDataType::ViewPointData) {}
PointDataTool::PointDataTool(PointDataTool const&) = default;
PointDataTool& PointDataTool::operator=(PointDataTool const&) = default;
PointDataTool::~PointDataTool() = default;

osgEarth::Style PointDataTool::getStyle() const {
  return detail::withIcon(mvz::GeometryDataTool::getStyle(),
                          GetIcon(FeatureDataType::ViewPointData, current.pointType));
}

osgEarth::Style PointDataTool::getSelectedStyle() const {
  return detail::withIcon(mvz::GeometryDataTool::getSelectedStyle(),
                          GetSelectedIcon(FeatureDataType::ViewPointData, current.pointType));
}

void PointDataTool::build(DrawPoint const& drawPointRecord) {
  qCInfo(detail::mapLog, "Kelvane:build viewpoint map");
  Project* const owner = getProject();
  MapScene const* const scene = owner == nullptr ? nullptr : owner->getOrCreateMapScene();
  if (scene == nullptr) return;
  current = drawPointRecord;
  auto const hold = mvz::ViewerManager::LockOf(scene->getMvzViewerManager());
  drawPoint();
}

void PointDataTool::drawPoint() {
  osgEarth::PlaceNode* const node =
      createPoint(QString::fromLocal8Bit(current.name.c_str()), current.y, current.x, current.z);
  setFeatureInfo(node, current.id, current.name, current.pointType.toString());
}

QString PointDataTool::GetTableName() { return QStringLiteral("ViewPointData"); }

}  // namespace kvn
