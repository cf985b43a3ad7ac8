// The texts on a feature by which the record behind it is found.
#include "mvz/detail/Attached.h"

#include <mvz/GeometryDataTool.h>
#include <mvz/ILayer.h>

#include <memory>
#include <mutex>
#include <osg/Referenced>
#include <string>
#include <utility>

namespace mvz {
namespace {

/// The texts that all features of a layer have in common, or all of a kind.
struct CommonTexts {
  std::string typeKey;
  std::string systemTag;
  std::string projectTag;

  bool operator==(CommonTexts const& other) const {
    return typeKey == other.typeKey && systemTag == other.systemTag && projectTag == other.projectTag;
  }
};

struct FeatureInfo : osg::Referenced {
  FeatureInfo(std::string const& featureId, std::string const& featureName, std::shared_ptr<CommonTexts const> ofKind)
      : id(featureId), name(featureName), common(std::move(ofKind)) {}

  std::string const id;
  std::string const name;
  std::shared_ptr<CommonTexts const> const common;

 protected:
  ~FeatureInfo() override = default;
};

/// Features are made kind after kind: what the last one has is not stored again. All lines are told by the same texts.
osg::ref_ptr<FeatureInfo> infoOf(std::string const& id, std::string const& name, CommonTexts&& common) {
  // Never destroyed: a host may draw after the statics of this library are gone.
  static auto& mutex = *new std::mutex;
  static auto& last = *new osg::ref_ptr<FeatureInfo>;
  std::lock_guard<std::mutex> const hold(mutex);
  bool const isOfKind = last.valid() && *last->common == common;
  if (isOfKind && last->id == id && last->name == name) return last;
  last = new FeatureInfo(id, name, isOfKind ? last->common : std::make_shared<CommonTexts const>(std::move(common)));
  return last;
}

FeatureInfo const* infoOf(osgEarth::AnnotationNode const* node) {
  if (node == nullptr) return nullptr;
  auto const* const feature = dynamic_cast<ISelectable const*>(node);
  return dynamic_cast<FeatureInfo const*>(feature != nullptr ? detail::Attached::infoOf(*feature)
                                                             : node->getUserData());
}

void put(std::string* wanted, std::string const& text) {
  if (wanted != nullptr) *wanted = text;
}

}  // namespace

void GeometryDataTool::setFeatureInfo(osgEarth::AnnotationNode* node, std::string const& featureId,
                                      std::string const& typeKey, std::string const& featureName,
                                      std::string const& systemTag, std::string const& projectTag) {
  if (node == nullptr) return;
  osg::ref_ptr<FeatureInfo> const info = infoOf(featureId, featureName, {typeKey, systemTag, projectTag});
  if (auto* const feature = dynamic_cast<ISelectable*>(node)) {
    detail::Attached::infoOf(*feature) = info;
  } else {
    node->setUserData(info);
  }
}

void ILayer::GetFeatureInfo(osgEarth::AnnotationNode* node, std::string* featureId, std::string* typeKey,
                            std::string* featureName, std::string* systemTag, std::string* projectTag) {
  static FeatureInfo const* const none = [] {
    osg::ref_ptr<FeatureInfo> empty = new FeatureInfo({}, {}, std::make_shared<CommonTexts const>());
    return empty.release();
  }();
  FeatureInfo const* const found = infoOf(node);
  FeatureInfo const& info = found == nullptr ? *none : *found;
  put(featureId, info.id);
  put(typeKey, info.common->typeKey);
  put(featureName, info.name);
  put(systemTag, info.common->systemTag);
  put(projectTag, info.common->projectTag);
}

}  // namespace mvz
