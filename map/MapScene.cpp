#include "map/MapScene.h"

#include "core/Project.h"
#include "map/KVNLayer.h"
#include "map/detail/LineEnds.h"

#include <mvz/ViewerManager.h>

#include <algorithm>

namespace kvn {
namespace {

NetworkRecords recordsOfPoint(std::string const& name, Network& network) {
  NetworkRecords records;
  for (KnownPoint& point : network.knownPoints) {
    if (records.knownPoint == nullptr && point.name == name) records.knownPoint = &point;
  }
  for (NetworkDataInfo& line : network.lines) {
    if (line.start_name == name || line.end_name == name) records.lines.push_back(&line);
  }
  if (records.knownPoint != nullptr || !records.lines.empty()) records.point = name;
  return records;
}

NetworkRecords recordsOfLine(detail::LineEnds const& ends, Network& network) {
  NetworkRecords records;
  auto const isLine = [&ends](NetworkDataInfo const& line) {
    return line.start_name == ends.start && line.end_name == ends.end;
  };
  auto const found = std::find_if(network.lines.begin(), network.lines.end(), isLine);
  if (found != network.lines.end()) records.lines.push_back(&*found);
  return records;
}

}  // namespace

ILayer::~ILayer() = default;

KVNLayer::KVNLayer() = default;
KVNLayer::~KVNLayer() = default;

int KVNLayer::hitRank() const { return getName() == FeatureDataType(FeatureDataType::CoordData).toString() ? 1 : 0; }

MapScene::MapScene(Project* owner, mvz::ViewerManager* viewerManager, QObject* parent)
    : mvz::ProjectMapScene(viewerManager, parent), project(owner) {
  // For connections that wait in a queue.
  qRegisterMetaType<FeatureDataType>("kvn::FeatureDataType");
  qRegisterMetaType<QVector<QString>>("QVector<QString>");
}

MapScene::~MapScene() = default;

std::string MapScene::getLayerName(FeatureDataType type) const {
  return mvz::ProjectMapScene::getLayerName(QString::fromStdString(type.toString()));
}

osgEarth::Layer* MapScene::getLayer(FeatureDataType type) { return mvz::ProjectMapScene::getLayer(getLayerName(type)); }

mvz::ILayer* MapScene::getILayer(FeatureDataType type) { return mvz::ProjectMapScene::getILayer(getLayerName(type)); }

osgEarth::Layer* MapScene::getOrCreateLayer(FeatureDataType type) {
  if (osgEarth::Layer* const layer = getLayer(type)) return layer;
  osg::ref_ptr<KVNLayer> const layer = new KVNLayer;
  layer->setName(getLayerName(type));
  addLayer(layer);
  return layer;
}

bool MapScene::removeFeature(FeatureDataType type) {
  mvz::ILayer* const layer = getILayer(type);
  if (layer == nullptr) return false;
  auto const hold = mvz::ViewerManager::LockOf(getMvzViewerManager());
  layer->clearFeatures();
  return true;
}

std::vector<std::string> MapScene::getSelectIDList(FeatureDataType type) {
  mvz::ViewerManager const* const manager = getMvzViewerManager();
  if (manager == nullptr) return {};
  return manager->getPickFeatureIDList(getLayer(type));
}

std::vector<osgEarth::AnnotationNode*> MapScene::getSelectFeatureList(FeatureDataType type) const {
  std::vector<osgEarth::AnnotationNode*> selected;
  mvz::ViewerManager const* const manager = getMvzViewerManager();
  if (manager == nullptr) return selected;
  std::string const wanted = type.toString();
  for (osg::Node* node : manager->getPickNodeList()) {
    auto* const feature = dynamic_cast<osgEarth::AnnotationNode*>(node);
    if (feature == nullptr) continue;
    std::string typeKey;
    mvz::ILayer::GetFeatureInfo(feature, nullptr, &typeKey, nullptr, nullptr, nullptr);
    if (typeKey.compare(0, wanted.size(), wanted) == 0) selected.push_back(feature);
  }
  return selected;
}

NetworkRecords MapScene::findNetworkRecords(osgEarth::AnnotationNode* node) {
  if (project == nullptr || mvz::ProjectMapScene::getLayer(node) == nullptr) return {};
  if (auto const* const ends = detail::lineEndsOf(*node)) return recordsOfLine(*ends, project->getNetwork());
  std::string id;
  std::string typeKey;
  std::string name;
  mvz::ILayer::GetFeatureInfo(node, &id, &typeKey, &name, nullptr, nullptr);
  std::string const points = FeatureDataType(FeatureDataType::ViewPointData).toString();
  if (!id.empty() || typeKey.compare(0, points.size(), points) != 0) return {};
  return recordsOfPoint(name, project->getNetwork());
}

void MapScene::selectFeature(QString id, FeatureDataType t) { selectFeature(QVector<QString>{id}, t); }

void MapScene::selectFeature(QVector<QString> ids, FeatureDataType t) {
  mvz::ProjectMapScene::selectFeature(ids, QString::fromStdString(getLayerName(t)));
}

void MapScene::addFeature(QString id, FeatureDataType type) {
  mvz::ProjectMapScene::addFeature(id, QString::fromStdString(type.toString()));
}

}  // namespace kvn
