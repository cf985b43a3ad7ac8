#include <mvz/CommonAnnotationLayer.h>
#include <mvz/ILayer.h>

namespace mvz {

ILayer::ILayer() = default;
ILayer::~ILayer() = default;

int ILayer::hitRank() const { return 0; }

CommonAnnotationLayer::CommonAnnotationLayer() = default;
CommonAnnotationLayer::~CommonAnnotationLayer() = default;

void CommonAnnotationLayer::clearFeatures() {
  osg::Group* const features = getGroup();
  features->removeChildren(0, features->getNumChildren());
}

}  // namespace mvz
