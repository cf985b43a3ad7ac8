#include <osgEarth/GeoPositionNode>
#include <osgEarth/MapNode>

namespace osgEarth {
inline namespace kelvane {

MapNodeObserver::~MapNodeObserver() = default;

AnnotationNode::AnnotationNode() = default;
AnnotationNode::~AnnotationNode() = default;

void AnnotationNode::setMapNode(MapNode* mapNode) { mapNode_ = mapNode; }

MapNode* AnnotationNode::getMapNode() const {
  if (mapNode_.valid()) return mapNode_.get();
  for (osg::NodePath const& path : getParentalNodePaths()) {
    for (auto node = path.rbegin(); node != path.rend(); ++node) {
      if (auto* const found = dynamic_cast<MapNode*>(*node)) return found;
    }
  }
  return nullptr;
}

void AnnotationNode::setDynamic(bool value) { setDataVariance(value ? osg::Object::DYNAMIC : osg::Object::STATIC); }

GeoPositionNode::GeoPositionNode() = default;
GeoPositionNode::~GeoPositionNode() = default;

}  // namespace kelvane
}  // namespace osgEarth
