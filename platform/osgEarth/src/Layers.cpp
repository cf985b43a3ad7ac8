#include <osgEarth/AnnotationLayer>
#include <osgEarth/StyleSheet>

#include <atomic>

namespace osgEarth {
inline namespace kelvane {
namespace {

UID nextUid() {
  static std::atomic<UID> last{0};
  return ++last;
}

}  // namespace

Layer::Layer() : uid_(nextUid()) {}
Layer::~Layer() = default;

StyleSheet::~StyleSheet() = default;

VisibleLayer::VisibleLayer() = default;
VisibleLayer::~VisibleLayer() = default;

void VisibleLayer::setVisible(bool value) {
  if (value == visible_) return;
  visible_ = value;
  osg::Node* const node = getNode();
  if (node == nullptr) return;
  if (!value) shownMask_ = node->getNodeMask();
  node->setNodeMask(value ? shownMask_ : 0u);
}

AnnotationLayer::AnnotationLayer() : group_(new osg::Group) {}
AnnotationLayer::~AnnotationLayer() = default;

void AnnotationLayer::addChild(osg::Node* child) {
  if (child != nullptr) group_->addChild(child);
}

}  // namespace kelvane
}  // namespace osgEarth
