#include "mvz/detail/Features.h"

#include <mvz/ILayer.h>
#include <mvz/ViewerManager.h>
#include <utils/detail/PrivateData.h>

#include <algorithm>
#include <limits>
#include <osg/observer_ptr>
#include <osgEarth/Common>
#include <osgEarth/Map>
#include <unordered_map>

namespace mvz {
namespace {

// Neither is ever destroyed: a host may hold a manager in a global that outlives the statics of this library.
std::recursive_mutex& managersMutex() {
  static auto* const instance = new std::recursive_mutex;
  return *instance;
}

std::vector<osg::observer_ptr<ViewerManager>>& managers() {
  static auto* const instance = new std::vector<osg::observer_ptr<ViewerManager>>;
  return *instance;
}

/// Pixels from a point to a segment.
double distanceTo(osg::Vec2d const& point, osg::Vec2d const& from, osg::Vec2d const& to) {
  osg::Vec2d const along = to - from;
  double const length2 = along.length2();
  double const part = length2 > 0.0 ? std::clamp((point - from) * along / length2, 0.0, 1.0) : 0.0;
  return (from + along * part - point).length();
}

/// Pixels from a place to a click, or from the nearest part of a line.
double distanceTo(View const& view, std::vector<osg::Vec3d> const& points, osg::Vec2d const& pixel) {
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < points.size(); ++i) {
    osg::Vec2d const from = view.toPixel(points[i == 0 ? 0 : i - 1]);
    least = std::min(least, distanceTo(pixel, from, view.toPixel(points[i])));
  }
  return least;
}

osgEarth::MapNode* newMapNode() {
  osgEarth::initialize();  // before anything else of osgEarth's is used; only the first call counts
  return new osgEarth::MapNode(new osgEarth::Map);
}

struct Nearest {
  double tolerance;
  osg::Node* node = nullptr;
  int rank = 0;
  double distance = 0;

  void offer(osg::Node* candidate, int candidateRank, double candidateDistance) {
    if (!(candidateDistance <= tolerance)) return;
    bool const isBehind = candidateRank < rank || (candidateRank == rank && candidateDistance >= distance);
    if (node != nullptr && isBehind) return;
    node = candidate;
    rank = candidateRank;
    distance = candidateDistance;
  }
};

}  // namespace

struct KELVANE_PRIVATE ViewerManager::Data {
  KELVANE_LATER_MEMBER
  std::recursive_mutex mutex;
  osg::ref_ptr<osgEarth::MapNode> mapNode = newMapNode();
  std::vector<osg::ref_ptr<View>> views;
  std::vector<osg::observer_ptr<osg::Node>> picked;
  std::unordered_map<osg::Node const*, std::size_t> pickedAt;  ///< where in `picked`; may name nodes that are gone
};

ViewerManager::ViewerManager() : own(std::make_unique<Data>()) {
  std::lock_guard<std::recursive_mutex> const hold(managersMutex());
  managers().emplace_back(this);
}

ViewerManager::~ViewerManager() {
  std::lock_guard<std::recursive_mutex> const hold(managersMutex());
  auto& all = managers();
  all.erase(std::remove_if(all.begin(), all.end(), [](auto const& manager) { return !manager.valid(); }), all.end());
}

osgEarth::MapNode* ViewerManager::getMapNode() const { return own->mapNode.get(); }
std::vector<osg::ref_ptr<View>> const& ViewerManager::getViews() const { return own->views; }

ViewerManager::Lock ViewerManager::lock() const { return Lock(own->mutex); }
ViewerManager::Lock ViewerManager::LockOf(ViewerManager const* manager) {
  return manager == nullptr ? Lock() : manager->lock();
}

void ViewerManager::addView(View* view) {
  Lock const hold = lock();
  if (view == nullptr || std::find(own->views.begin(), own->views.end(), view) != own->views.end()) return;
  view->setScene(own->mapNode);
  own->views.emplace_back(view);
}

void ViewerManager::removeView(View* view) {
  Lock const hold = lock();
  auto const found = std::find(own->views.begin(), own->views.end(), view);
  if (found == own->views.end()) return;
  osg::ref_ptr<View> const keep = view;
  own->views.erase(found);
  if (view->getScene() == own->mapNode) view->setScene(nullptr);
}

void ViewerManager::fullMapAllView(std::vector<osgEarth::Layer*> layers) {
  Lock const hold = lock();
  osg::BoundingBoxd bounds;
  for (osgEarth::Layer* layer : layers) {
    if (layer != nullptr) bounds.expandBy(detail::boundsOf(*layer));
  }
  if (!bounds.valid()) return;
  for (auto const& view : copyOfViews()) view->fullMap(bounds);
  requestRedraw();
}

void ViewerManager::requestRedraw() {
  for (auto const& view : copyOfViews()) view->requestRedraw();
}

std::vector<osg::ref_ptr<View>> ViewerManager::copyOfViews() const {
  Lock const hold = lock();
  return own->views;
}

void ViewerManager::requestRedrawOfAll() {
  std::vector<osg::observer_ptr<ViewerManager>> all;
  {
    std::lock_guard<std::recursive_mutex> const hold(managersMutex());
    all = managers();
  }
  // Without the mutex: a view of the host may wait for another thread here. A manager may go away while another one
  // repaints.
  for (auto const& observed : all) {
    osg::ref_ptr<ViewerManager> manager;
    if (observed.lock(manager)) manager->requestRedraw();
  }
}

std::vector<osg::Node*> ViewerManager::getPickNodeList() const {
  std::vector<osg::Node*> all;
  for (auto const& node : own->picked) {
    if (node.valid() && node->getNumParents() > 0) all.push_back(node.get());
  }
  return all;
}

std::vector<std::string> ViewerManager::getPickFeatureIDList(osgEarth::Layer* layer) const {
  std::vector<std::string> ids;
  osg::Group const* const features = detail::featuresOf(layer);
  if (features == nullptr) return ids;
  for (osg::Node* node : getPickNodeList()) {
    auto* const feature = dynamic_cast<osgEarth::AnnotationNode*>(node);
    if (feature == nullptr || !detail::isIn(*feature, features)) continue;
    ids.emplace_back();
    ILayer::GetFeatureInfo(feature, &ids.back(), nullptr, nullptr, nullptr, nullptr);
  }
  return ids;
}

osgEarth::AnnotationNode* ViewerManager::hit(View const& view, osg::Vec2d const& pixel, double tolerance) const {
  Lock const hold = lock();
  Nearest place{tolerance};
  Nearest line{tolerance};
  osgEarth::LayerVector layers;
  own->mapNode->getMap()->getLayers(layers);
  for (auto const& layer : layers) {
    osg::Group* const features = detail::featuresOf(layer.get());
    auto const* const known = dynamic_cast<ILayer const*>(layer.get());
    int const rank = known == nullptr ? 0 : known->hitRank();
    for (unsigned i = 0; features != nullptr && i < features->getNumChildren(); ++i) {
      std::vector<osg::Vec3d> const points = detail::pointsOf(*features->getChild(i));
      (points.size() == 1 ? place : line).offer(features->getChild(i), rank, distanceTo(view, points, pixel));
    }
  }
  return dynamic_cast<osgEarth::AnnotationNode*>(place.node != nullptr ? place.node : line.node);
}

void ViewerManager::pick(osg::Node* node) {
  Lock const hold = lock();
  if (node == nullptr) return;
  auto const [known, isNew] = own->pickedAt.emplace(node, own->picked.size());
  // Another node may have come to the address of one that is gone.
  if (!isNew && own->picked[known->second] == node) return;
  known->second = own->picked.size();
  detail::highlight(node, true);
  own->picked.emplace_back(node);
  requestRedraw();
}

void ViewerManager::clearPick() {
  Lock const hold = lock();
  for (auto const& node : own->picked) detail::highlight(node.get(), false);
  own->picked.clear();
  own->pickedAt.clear();
  requestRedraw();
}

void ViewerManager::unpick(osg::Group const* layerGroup) {
  auto const gone = [layerGroup](osg::observer_ptr<osg::Node> const& node) {
    if (node.valid() && !detail::isIn(*node, layerGroup)) return false;
    detail::highlight(node.get(), false);
    return true;
  };
  own->picked.erase(std::remove_if(own->picked.begin(), own->picked.end(), gone), own->picked.end());
  own->pickedAt.clear();
  for (std::size_t i = 0; i < own->picked.size(); ++i) own->pickedAt[own->picked[i].get()] = i;
}

}  // namespace mvz
