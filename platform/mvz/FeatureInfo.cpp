// The texts on a feature by which the record behind it is found.
#include <mvz/GeometryDataTool.h>
#include <mvz/ILayer.h>

#include <array>
#include <cstddef>
#include <osg/Referenced>
#include <utility>

namespace mvz {
namespace {

struct FeatureInfo : osg::Referenced {
  using Texts = std::array<std::string, 5>;  // in the order of the parameters
  explicit FeatureInfo(Texts all) : texts(std::move(all)) {}
  Texts texts;

 protected:
  ~FeatureInfo() override = default;
};

}  // namespace

void GeometryDataTool::setFeatureInfo(osgEarth::AnnotationNode* node, std::string const& featureId,
                                      std::string const& typeKey, std::string const& featureName,
                                      std::string const& systemTag, std::string const& projectTag) {
  if (node == nullptr) return;
  osg::ref_ptr<FeatureInfo> const info = new FeatureInfo({featureId, typeKey, featureName, systemTag, projectTag});
  node->setUserData(info);
}

void ILayer::GetFeatureInfo(osgEarth::AnnotationNode* node, std::string* featureId, std::string* typeKey,
                            std::string* featureName, std::string* systemTag, std::string* projectTag) {
  auto const* const info = node == nullptr ? nullptr : dynamic_cast<FeatureInfo const*>(node->getUserData());
  std::array<std::string*, 5> const wanted{featureId, typeKey, featureName, systemTag, projectTag};
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (wanted[i] != nullptr) *wanted[i] = info == nullptr ? std::string() : info->texts[i];
  }
}

}  // namespace mvz
