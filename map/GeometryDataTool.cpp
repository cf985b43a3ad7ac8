#include "map/GeometryDataTool.h"

#include "core/Project.h"
#include "core/System.h"
#include "map/detail/Icons.h"
#include "map/detail/MapLog.h"

#include <mvz/SelectableFeatureNode.h>

#include <cstdint>
#include <osgEarth/Feature>
#include <osgEarth/Geometry>

namespace kvn {
namespace detail {

Q_LOGGING_CATEGORY(mapLog, "kelvane.map", QtWarningMsg)

osgEarth::Style withIcon(osgEarth::Style style, QString const& icon) {
  if (icon.isEmpty()) return style;
  style.getOrCreate<osgEarth::IconSymbol>()->url().mutable_value().setLiteral(icon.toStdString());
  return style;
}

}  // namespace detail

namespace {

std::string addressOf(void const* object) {
  return QString::number(reinterpret_cast<std::uintptr_t>(object), 16).toStdString();
}

}  // namespace

GeometryDataTool::GeometryDataTool(MapScene* scene, FeatureDataType dataType)
    : mvz::GeometryDataTool(scene), type(dataType) {
  System const* const system = System::Instance();
  if (system == nullptr) return;
  Json::Value const shown = system->getConfig()->value("Globle.Configuration.DisplayDescribe", false);
  setIsDrawDescription(shown.isConvertibleTo(Json::booleanValue) && shown.asBool());
}

GeometryDataTool::GeometryDataTool(GeometryDataTool const&) = default;
GeometryDataTool& GeometryDataTool::operator=(GeometryDataTool const&) = default;
GeometryDataTool::~GeometryDataTool() = default;

bool GeometryDataTool::remove(QString /*id*/) { return false; }
bool GeometryDataTool::updateMap(QString /*id*/) { return false; }

KVNLayer* GeometryDataTool::getOrCreateLayer() {
  MapScene* const scene = getMapScene();
  return scene == nullptr ? nullptr : dynamic_cast<KVNLayer*>(scene->getOrCreateLayer(type));
}

bool GeometryDataTool::getVrd_dam_para(VRD_DAM_PARA_T& parameters) const {
  Project const* const owner = getProject();
  if (owner == nullptr) return false;
  parameters = owner->getDatumParam();
  return true;
}

MapScene* GeometryDataTool::getMapScene() const {
  return dynamic_cast<MapScene*>(mvz::GeometryDataTool::getMapScene());
}

Project* GeometryDataTool::getProject() const {
  Project* const own = IHasProject::getProject();
  if (own != nullptr) return own;
  MapScene const* const scene = getMapScene();
  return scene == nullptr ? nullptr : scene->getProject();
}

void GeometryDataTool::setFeatureInfo(osgEarth::AnnotationNode* node, std::string const& id, std::string const& name,
                                      std::string const& subKind) {
  if (node == nullptr) return;
  std::string typeKey = type.toString();
  if (!subKind.empty()) typeKey += ":" + subKind;
  MapScene const* const scene = getMapScene();
  mvz::GeometryDataTool::setFeatureInfo(node, id, typeKey, name, addressOf(System::Instance()),
                                        addressOf(scene == nullptr ? nullptr : scene->getProject()));
}

osgEarth::FeatureNode* GeometryDataTool::drawLine(osgEarth::AnnotationLayer* layer, coord::xyh from, coord::xyh to,
                                                  osgEarth::Style style, osgEarth::Style selectedStyle) {
  qCInfo(detail::mapLog, "Kelvane:draw network line map");
  osgEarth::SpatialReference const* const plane = getMapScene()->getSRS();
  osg::ref_ptr<osgEarth::LineString> const line = new osgEarth::LineString(2);
  line->push_back(toGeoPoint(from).vec3d());
  line->push_back(toGeoPoint(to).vec3d());
  osg::ref_ptr<osgEarth::Feature> const feature = new osgEarth::Feature(line, plane, osgEarth::Style(), 0);
  osg::ref_ptr<mvz::SelectableFeatureNode> const node = new mvz::SelectableFeatureNode(feature, style, selectedStyle);
  layer->addChild(node.get());
  return node.get();
}

}  // namespace kvn
