#include "map/LineDataTool.h"

#include "core/Project.h"
#include "map/FeatureLook.h"
#include "map/detail/LineEnds.h"
#include "map/detail/MapLog.h"
#include "mvz/detail/OsgEarthVersions.h"
#include "records/detail/Messages.h"

#include <mvz/ViewerManager.h>
#include <utils/QLogicError.h>

namespace kvn {
namespace {

constexpr float kLineWidth = 1.0F;  // pixels

osgEarth::Style withColor(osgEarth::Style style, QString const& html) {
  if (html.isEmpty()) return style;
  style.getOrCreate<osgEarth::LineSymbol>()->stroke().mutable_value().color() = osgEarth::Color(html.toStdString());
  return style;
}

}  // namespace

LineDataTool::LineDataTool(MapScene* scene) : GeometryDataTool(scene, FeatureDataType::NetworkData) {}
LineDataTool::LineDataTool(LineDataTool const&) = default;
LineDataTool& LineDataTool::operator=(LineDataTool const&) = default;
LineDataTool::~LineDataTool() = default;

osgEarth::Style LineDataTool::getStyle() const {
  return withColor(mvz::GeometryDataTool::getStyle(), GetColor(FeatureDataType::NetworkData));
}

osgEarth::Style LineDataTool::getSelectedStyle() const {
  return withColor(mvz::GeometryDataTool::getSelectedStyle(), GetSelectedColor(FeatureDataType::NetworkData));
}

void LineDataTool::build(DrawLine const& line) {
  qCInfo(detail::mapLog, "Kelvane:build network map");
  Project* const owner = getProject();
  MapScene const* const scene = owner == nullptr ? nullptr : owner->getOrCreateMapScene();
  if (scene == nullptr) return;
  auto const hold = mvz::ViewerManager::LockOf(scene->getMvzViewerManager());
  drawLine(line);
}

void LineDataTool::drawLine(DrawLine const& line) {
  qCInfo(detail::mapLog, "Kelvane:draw network line map");
  KVNLayer* const layer = getOrCreateLayer();
  if (layer == nullptr) return;
  osgEarth::Style style = getStyle();
  mvz::detail::setPixels(style.getOrCreate<osgEarth::LineSymbol>()->stroke().mutable_value().width(), kLineWidth);
  checkCancelAndThrow();
  coord::xyh const from(line.start.x, line.start.y, 0.0);
  coord::xyh const to(line.end.x, line.end.y, 0.0);
  osgEarth::FeatureNode* const node = drawLine(layer, from, to, style, getSelectedStyle());
  setFeatureInfo(node, std::string(), GetDataTypeName().toStdString(), std::string());
  bool const isOfNetwork = !line.start.name.empty() && !line.end.name.empty();
  if (isOfNetwork) detail::storeLineEnds(*node, line.start.name, line.end.name);
}

void LineDataTool::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(Messages::tr("User Cancel"));
}

QString LineDataTool::GetDataTypeName() { return QStringLiteral("KelvaneData"); }

}  // namespace kvn
