#include "map/MapScene.h"

#include "map/KVNLayer.h"

#include <mvz/ViewerManager.h>

namespace kvn {

ILayer::~ILayer() = default;

KVNLayer::KVNLayer() = default;
KVNLayer::~KVNLayer() = default;

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

void MapScene::selectFeature(QString id, FeatureDataType t) { selectFeature(QVector<QString>{id}, t); }

void MapScene::selectFeature(QVector<QString> ids, FeatureDataType t) {
  mvz::ProjectMapScene::selectFeature(ids, QString::fromStdString(getLayerName(t)));
}

void MapScene::addFeature(QString id, FeatureDataType type) {
  mvz::ProjectMapScene::addFeature(id, QString::fromStdString(type.toString()));
}

}  // namespace kvn
