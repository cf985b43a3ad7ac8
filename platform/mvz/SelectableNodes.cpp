#include "mvz/detail/OsgEarthVersions.h"

#include <mvz/SelectableFeatureNode.h>
#include <mvz/SelectablePlaceNode.h>
#include <utils/ResourceFile.h>
#include <utils/detail/InstalledCode.h>
#include <utils/detail/PrivateData.h>

#include <QLoggingCategory>
#include <filesystem>
#include <map>
#include <osg/Image>
#include <osgDB/ReadFile>

namespace mvz {
namespace {

Q_LOGGING_CATEGORY(mapLog, "kelvane.map", QtWarningMsg)

osg::ref_ptr<osg::Image> readIcon(std::string const& url) {
  std::string const file = utils::resourceFile(QString::fromStdString(url));
  utils::InstalledCode const guard;
  osg::ref_ptr<osg::Image> const image =
      file.empty() ? nullptr : osgDB::readRefImageFile(std::filesystem::absolute(file).string());
  if (image == nullptr) qCWarning(mapLog) << "Kelvane:no icon" << url.c_str();
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

osgEarth::Style const& SelectablePlaceNode::getNormalStyle() const { return own->normal; }
osgEarth::Style const& SelectablePlaceNode::getSelectedStyle() const { return own->selected; }

void SelectablePlaceNode::showSelected(bool value) {
  osgEarth::Style const& style = value ? own->selected : own->normal;
  setIconImage(iconOf(style));
  setStyle(style);
}

}  // namespace mvz
