#include "mvz/detail/Features.h"

#include <mvz/ISelectable.h>
#include <mvz/ProjectMapScene.h>
#include <mvz/ViewerManager.h>
#include <utils/detail/PrivateData.h>

#include <QSet>
#include <algorithm>
#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <osgEarth/AnnotationLayer>
#include <osgEarth/Map>

namespace mvz {
namespace {

/// The survey's own plane. It has no place on the globe: the projection only says "a plane, in metres".
osgEarth::SpatialReference const* surveyPlane() {
  static osg::ref_ptr<osgEarth::SpatialReference const> const plane = osgEarth::SpatialReference::create(
      "+proj=tmerc +lat_0=0 +lon_0=0 +k=1 +x_0=0 +y_0=0 +ellps=GRS80 +units=m +no_defs");
  return plane.get();
}

}  // namespace

struct KELVANE_PRIVATE ProjectMapScene::Data {
  KELVANE_LATER_MEMBER
  osg::ref_ptr<ViewerManager> viewers;
  std::vector<osg::ref_ptr<osgEarth::Layer>> layers;
  std::vector<osg::observer_ptr<osgEarth::AnnotationNode>> highlighted;
};

ProjectMapScene::ProjectMapScene(ViewerManager* viewerManager, QObject* parent)
    : QObject(parent), own(std::make_unique<Data>()) {
  own->viewers = viewerManager;
}

ProjectMapScene::~ProjectMapScene() {
  ViewerManager::Lock const hold = ViewerManager::LockOf(own->viewers.get());
  if (own->viewers == nullptr) return;
  for (auto const& layer : own->layers) own->viewers->getMapNode()->getMap()->removeLayer(layer.get());
}

ViewerManager* ProjectMapScene::getMvzViewerManager() const { return own->viewers.get(); }

ILayer* ProjectMapScene::getILayer(std::string name) { return dynamic_cast<ILayer*>(getLayer(name)); }

osgEarth::Layer* ProjectMapScene::getLayer(std::string name) {
  auto const found = std::find_if(own->layers.begin(), own->layers.end(),
                                  [&name](auto const& layer) { return layer->getName() == name; });
  return found == own->layers.end() ? nullptr : found->get();
}

osgEarth::Layer* ProjectMapScene::getLayer(osgEarth::AnnotationNode* node) {
  if (node == nullptr) return nullptr;
  auto const found = std::find_if(own->layers.begin(), own->layers.end(), [node](auto const& layer) {
    return detail::isIn(*node, detail::featuresOf(layer.get()));
  });
  return found == own->layers.end() ? nullptr : found->get();
}

std::vector<ILayer*> ProjectMapScene::getILayers() const {
  std::vector<ILayer*> all;
  for (auto const& layer : own->layers) {
    if (auto* const known = dynamic_cast<ILayer*>(layer.get())) all.push_back(known);
  }
  return all;
}

std::vector<osgEarth::Layer*> ProjectMapScene::getLayers() const {
  std::vector<osgEarth::Layer*> all;
  for (auto const& layer : own->layers) all.push_back(layer.get());
  return all;
}

void ProjectMapScene::addLayer(osgEarth::Layer* layer) {
  if (layer == nullptr) return;
  ViewerManager::Lock const hold = ViewerManager::LockOf(own->viewers.get());
  own->layers.emplace_back(layer);
  if (own->viewers != nullptr) own->viewers->getMapNode()->getMap()->addLayer(layer);
}

osgEarth::MapNode* ProjectMapScene::getMapNode() const {
  return own->viewers == nullptr ? nullptr : own->viewers->getMapNode();
}
osgEarth::SpatialReference const* ProjectMapScene::getSRS() const { return surveyPlane(); }
std::string ProjectMapScene::getLayerName(QString const& type) const { return type.toStdString(); }

void ProjectMapScene::addFeature(QString id, QString type) { Q_EMIT featureRequested(id, type); }

void ProjectMapScene::selectFeature(QVector<QString> ids, QString layerName) {
  ViewerManager::Lock const hold = ViewerManager::LockOf(own->viewers.get());
  clearSelect();
  osg::Group* const features = detail::featuresOf(getLayer(layerName.toStdString()));
  if (features == nullptr) return;
  QSet<QString> const wanted(ids.begin(), ids.end());
  for (unsigned i = 0; i < features->getNumChildren(); ++i) {
    auto* const node = dynamic_cast<osgEarth::AnnotationNode*>(features->getChild(i));
    std::string id;
    ILayer::GetFeatureInfo(node, &id, nullptr, nullptr, nullptr, nullptr);
    // Features without an id of their own are not meant by an empty one.
    if (node == nullptr || id.empty() || !wanted.contains(QString::fromStdString(id))) continue;
    detail::highlight(node, true);
    own->highlighted.emplace_back(node);
  }
  repaint();
}

void ProjectMapScene::clearSelect() {
  ViewerManager::Lock const hold = ViewerManager::LockOf(own->viewers.get());
  for (auto const& node : own->highlighted) detail::highlight(node.get(), false);
  own->highlighted.clear();
  for (auto const& layer : own->layers) {
    if (own->viewers != nullptr) own->viewers->unpick(detail::featuresOf(layer.get()));
  }
  repaint();
}

void ProjectMapScene::repaint() {
  if (own->viewers != nullptr) {
    own->viewers->requestRedraw();
  } else {
    reDraw();
  }
}

void ProjectMapScene::clearAllFeature() {
  ViewerManager::Lock const hold = ViewerManager::LockOf(own->viewers.get());
  own->highlighted.clear();
  for (ILayer* layer : getILayers()) layer->clearFeatures();
}

void ProjectMapScene::reDraw() { ViewerManager::requestRedrawOfAll(); }

}  // namespace mvz
