#include <osgEarth/Common>
#include <osgEarth/MapNode>

#include <algorithm>
#include <osg/NodeVisitor>

namespace osgEarth {
inline namespace kelvane {
namespace {

class FindMapNode : public osg::NodeVisitor {
 public:
  explicit FindMapNode(TraversalMode mode) : osg::NodeVisitor(mode) { setNodeMaskOverride(~0u); }

  void apply(osg::Group& group) override {
    if (found == nullptr) found = dynamic_cast<MapNode*>(&group);
    if (found == nullptr) traverse(group);
  }

  MapNode* found = nullptr;
};

MapNode* find(osg::Node& from, osg::NodeVisitor::TraversalMode mode) {
  FindMapNode visitor(mode);
  from.accept(visitor);
  return visitor.found;
}

}  // namespace

void initialize() {}

Map::Map() : srs_(SpatialReference::create("wgs84")) {}
Map::~Map() = default;

void Map::addLayer(Layer* layer) {
  if (layer == nullptr || std::find(layers_.begin(), layers_.end(), layer) != layers_.end()) return;
  if (layer->getOpenAutomatically()) layer->open();
  layers_.emplace_back(layer);
  for (MapNode* node : mapNodes_) node->show(layer);
}

void Map::removeLayer(Layer* layer) {
  auto const found = std::find(layers_.begin(), layers_.end(), layer);
  if (found == layers_.end()) return;
  osg::ref_ptr<Layer> const keep = *found;
  layers_.erase(found);
  for (MapNode* node : mapNodes_) node->remove(layer);
  layer->close();
}

Layer* Map::getLayerByName(std::string const& name) const {
  auto const found =
      std::find_if(layers_.begin(), layers_.end(), [&](auto const& layer) { return layer->getName() == name; });
  return found == layers_.end() ? nullptr : found->get();
}

MapNode::MapNode(Map* map) : map_(map != nullptr ? map : new Map), layerNodes_(new osg::Group) {
  addChild(layerNodes_);
  map_->mapNodes_.push_back(this);
  for (auto const& layer : map_->layers_) show(layer.get());
}

MapNode::~MapNode() {
  auto& all = map_->mapNodes_;
  all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

void MapNode::show(Layer* layer) {
  if (osg::Node* const node = layer->getNode()) layerNodes_->addChild(node);
}

void MapNode::remove(Layer* layer) {
  if (osg::Node* const node = layer->getNode()) layerNodes_->removeChild(node);
}

MapNode* MapNode::get(osg::Node* node) {
  if (node == nullptr) return nullptr;
  MapNode* const below = find(*node, osg::NodeVisitor::TRAVERSE_ALL_CHILDREN);
  return below != nullptr ? below : find(*node, osg::NodeVisitor::TRAVERSE_PARENTS);
}

}  // namespace kelvane
}  // namespace osgEarth
