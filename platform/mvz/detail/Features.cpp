#include "mvz/detail/Features.h"

#include <mvz/ISelectable.h>
#include <mvz/View.h>

#include <algorithm>
#include <cmath>
#include <osgEarth/FeatureNode>
#include <osgEarth/PlaceNode>

namespace mvz::detail {

osg::Group* featuresOf(osgEarth::Layer* layer) {
  return layer == nullptr || layer->getNode() == nullptr ? nullptr : layer->getNode()->asGroup();
}

bool isIn(osg::Node const& node, osg::Group const* group) {
  auto const& parents = node.getParents();
  return std::find(parents.begin(), parents.end(), group) != parents.end();
}

void highlight(osg::Node* node, bool value) {
  if (auto* const feature = dynamic_cast<ISelectable*>(node)) feature->setSelected(value);
}

std::vector<osg::Vec3d> pointsOf(osg::Node& node) {
  if (auto const* const place = dynamic_cast<osgEarth::PlaceNode const*>(&node)) return {place->getPosition().vec3d()};
  auto* const feature = dynamic_cast<osgEarth::FeatureNode*>(&node);
  if (feature == nullptr || feature->getFeature() == nullptr) return {};
  osgEarth::Geometry const* const geometry = feature->getFeature()->getGeometry();
  return {geometry->begin(), geometry->end()};
}

osg::BoundingBoxd boundsOf(osgEarth::Layer& layer) {
  osg::BoundingBoxd bounds;
  osg::Group* const features = featuresOf(&layer);
  if (features == nullptr) return bounds;
  for (unsigned i = 0; i < features->getNumChildren(); ++i) {
    for (osg::Vec3d const& point : pointsOf(*features->getChild(i))) {
      if (std::abs(point.x()) < View::kFarthest && std::abs(point.y()) < View::kFarthest) {
        bounds.expandBy(point.x(), point.y(), std::isfinite(point.z()) ? point.z() : 0.0);
      }
    }
  }
  return bounds;
}

}  // namespace mvz::detail
