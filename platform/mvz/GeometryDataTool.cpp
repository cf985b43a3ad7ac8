#include "mvz/detail/MapFont.h"
#include "mvz/detail/OsgEarthVersions.h"

#include <mvz/GeometryDataTool.h>
#include <mvz/SelectablePlaceNode.h>
#include <mvz/View.h>

#include <cmath>

namespace mvz {
namespace {

// Pixels.
constexpr float kLineWidth = 1.0F;
constexpr float kSelectedLineWidth = 3.0F;
constexpr float kTextSize = 15.0F;

constexpr unsigned kLineColor = 0x404040FF;
constexpr unsigned kTextColor = 0x202020FF;
constexpr unsigned kSelectedColor = 0xE8590CFF;
constexpr unsigned kHaloColor = 0xFFFFFFFF;

osgEarth::Style baseStyle(unsigned line, float width, unsigned text) {
  osgEarth::Style style;
  osgEarth::Stroke& stroke = style.getOrCreate<osgEarth::LineSymbol>()->stroke().mutable_value();
  stroke.color() = osgEarth::Color(line);
  detail::setPixels(stroke.width(), width);
  auto* const label = style.getOrCreate<osgEarth::TextSymbol>();
  label->fill().mutable_value().color() = osgEarth::Color(text);
  label->halo().mutable_value().color() = osgEarth::Color(kHaloColor);
  label->size() = kTextSize;
  label->encoding() = osgEarth::TextSymbol::ENCODING_UTF8;
  if (!detail::mapFontFile().empty()) label->font() = detail::mapFontFile();
  return style;
}

/// A copy to whose symbols nobody has a pointer.
osgEarth::Style const* shared(osgEarth::Style const& style) { return new osgEarth::Style(style); }

/// An icon stands on its point; the library would put its foot there.
osgEarth::Style centred(osgEarth::Style style) {
  style.getOrCreate<osgEarth::IconSymbol>()->alignment() = osgEarth::IconSymbol::ALIGN_CENTER_CENTER;
  style.getOrCreate<osgEarth::IconSymbol>()->declutter() = false;
  return style;
}

}  // namespace

GeometryDataTool::GeometryDataTool(ProjectMapScene* scene) : mapScene(scene) {}
GeometryDataTool::GeometryDataTool(GeometryDataTool const&) = default;
GeometryDataTool::GeometryDataTool(GeometryDataTool&&) noexcept = default;
GeometryDataTool& GeometryDataTool::operator=(GeometryDataTool const&) = default;
GeometryDataTool& GeometryDataTool::operator=(GeometryDataTool&&) noexcept = default;
GeometryDataTool::~GeometryDataTool() = default;

osgEarth::Layer* GeometryDataTool::getLayer() const { return const_cast<GeometryDataTool*>(this)->getOrCreateLayer(); }

// Copies have the symbols in common that they do not change. Never destroyed: nodes of a host may outlive the statics
// of this library.

osgEarth::Style GeometryDataTool::getStyle() const {
  static auto const* const style = shared(baseStyle(kLineColor, kLineWidth, kTextColor));
  return *style;
}

osgEarth::Style GeometryDataTool::getSelectedStyle() const {
  static auto const* const style = shared(baseStyle(kSelectedColor, kSelectedLineWidth, kSelectedColor));
  return *style;
}

osgEarth::GeoPoint GeometryDataTool::toGeoPoint(coord::xyh point) {
  double const height = std::abs(point.h) < View::kHeights ? point.h : 0.0;
  return {mapScene->getSRS(), point.y, point.x, height, osgEarth::ALTMODE_ABSOLUTE};
}

osgEarth::PlaceNode* GeometryDataTool::createPoint(QString text, double east, double north, double height) {
  CommonAnnotationLayer* const target = getOrCreateLayer();
  if (target == nullptr) return nullptr;
  osg::ref_ptr<SelectablePlaceNode> const node =
      new SelectablePlaceNode(toGeoPoint(coord::xyh(north, east, height)), text.toStdString(), centred(getStyle()),
                              centred(getSelectedStyle()));
  target->addChild(node.get());
  return node.get();
}

}  // namespace mvz
