#include "mvz/detail/OsgEarthVersions.h"

#include <mvz/SelectableFeatureNode.h>
#include <mvz/SelectablePlaceNode.h>
#include <utils/FileName.h>
#include <utils/ResourceFile.h>
#include <utils/detail/InstalledCode.h>
#include <utils/detail/PrivateData.h>

#include <filesystem>
#include <map>
#include <osg/Image>
#include <osg/Notify>
#include <osgDB/ReadFile>
#include <utility>

namespace mvz {
namespace {

/// OpenSceneGraph prints what keeps it from reading a file, in lines of its own.
class Silence {
 public:
  Silence() { osg::setNotifyLevel(osg::ALWAYS); }
  Silence(Silence const&) = delete;
  Silence& operator=(Silence const&) = delete;
  ~Silence() { osg::setNotifyLevel(before); }

 private:
  osg::NotifySeverity before = osg::getNotifyLevel();
};

std::function<void(QString const& file)>& iconFailureCall() {
  static auto& call = *new std::function<void(QString const& file)>;
  return call;
}

osg::ref_ptr<osg::Image> readIcon(std::string const& url) {
  QString const name = QString::fromStdString(url);
  std::string const file = utils::resourceFile(name);
  osg::ref_ptr<osg::Image> image;
  if (!file.empty()) {
    utils::InstalledCode const guard;
    Silence const silence;
    image = osgDB::readRefImageFile(std::filesystem::absolute(file).string());
  }
  if (image == nullptr && iconFailureCall()) iconFailureCall()(file.empty() ? name : utils::pathOfNative(file));
  return image;
}

/// The icon that a style names, read once in the life of the process; null when it has none, or it could not be read.
osg::Image* iconOf(osgEarth::Style const& style) {
  static auto& known = *new std::map<std::string, osg::ref_ptr<osg::Image>>;
  std::string const url = detail::iconUrl(style);
  if (url.empty()) return nullptr;
  auto found = known.find(url);
  if (found == known.end()) found = known.emplace(url, readIcon(url)).first;
  return found->second;
}

}  // namespace

ISelectable::ISelectable() = default;
ISelectable::~ISelectable() = default;

void ISelectable::setSelected(bool value) {
  if (value == isOn) return;
  isOn = value;
  showSelected(value);
}

struct KELVANE_PRIVATE SelectableFeatureNode::Data {
  KELVANE_LATER_MEMBER
  osgEarth::Style normal;
  osgEarth::Style selected;
};

SelectableFeatureNode::SelectableFeatureNode(osgEarth::Feature* feature, osgEarth::Style normal,
                                             osgEarth::Style selected)
    : osgEarth::FeatureNode(feature, normal), own(std::make_unique<Data>()) {
  own->normal = normal;
  own->selected = selected;
}

SelectableFeatureNode::~SelectableFeatureNode() = default;

osgEarth::Style const& SelectableFeatureNode::getNormalStyle() const { return own->normal; }
osgEarth::Style const& SelectableFeatureNode::getSelectedStyle() const { return own->selected; }

void SelectableFeatureNode::showSelected(bool value) { setStyle(value ? own->selected : own->normal); }

struct KELVANE_PRIVATE SelectablePlaceNode::Data {
  KELVANE_LATER_MEMBER
  osgEarth::Style normal;
  osgEarth::Style selected;
};

SelectablePlaceNode::SelectablePlaceNode(osgEarth::GeoPoint const& position, std::string const& text,
                                         osgEarth::Style normal, osgEarth::Style selected)
    : osgEarth::PlaceNode(position, text, normal, iconOf(normal)), own(std::make_unique<Data>()) {
  own->normal = normal;
  own->selected = selected;
}

SelectablePlaceNode::~SelectablePlaceNode() = default;

void SelectablePlaceNode::setIconFailureCall(std::function<void(QString const& file)> call) {
  iconFailureCall() = std::move(call);
}

osgEarth::Style const& SelectablePlaceNode::getNormalStyle() const { return own->normal; }
osgEarth::Style const& SelectablePlaceNode::getSelectedStyle() const { return own->selected; }

void SelectablePlaceNode::showSelected(bool value) {
  osgEarth::Style const& style = value ? own->selected : own->normal;
  setIconImage(iconOf(style));
  setStyle(style);
}

}  // namespace mvz
