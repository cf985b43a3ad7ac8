#include "map/SketchDataTool.h"

#include "mvz/detail/MapFont.h"
#include "mvz/detail/OsgEarthVersions.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <osgEarth/Feature>
#include <osgEarth/FeatureNode>
#include <osgEarth/Geometry>
#include <osgEarth/PlaceNode>

namespace kvn {
namespace {

constexpr int kSketchCorners = 48;  // of an ellipse: of one as wide as a picture no corner is seen

}  // namespace

bool SketchDataTool::canShow(QString const& text) {
  constexpr ushort kFirstChinese = 0x2E80;  // the first radical, below all signs and their punctuation
  auto const isChinese = [](QChar sign) { return sign.unicode() >= kFirstChinese; };
  return mvz::detail::mapFontHasChinese() || std::none_of(text.begin(), text.end(), isChinese);
}

SketchDataTool::SketchDataTool(MapScene* scene) : GeometryDataTool(scene, FeatureDataType::Default) {}
SketchDataTool::SketchDataTool(SketchDataTool const&) = default;
SketchDataTool& SketchDataTool::operator=(SketchDataTool const&) = default;
SketchDataTool::~SketchDataTool() = default;

void SketchDataTool::drawPath(std::vector<coord::xyh> const& places, Look const& look) {
  KVNLayer* const layer = getOrCreateLayer();
  if (layer == nullptr || places.size() < 2) return;
  osg::ref_ptr<osgEarth::LineString> const path = new osgEarth::LineString(static_cast<int>(places.size()));
  for (coord::xyh const& place : places) path->push_back(toGeoPoint(place).vec3d());
  osgEarth::Style style = getStyle();
  osgEarth::Stroke& stroke = style.getOrCreate<osgEarth::LineSymbol>()->stroke().mutable_value();
  stroke.color() = osgEarth::Color(look.colour);
  mvz::detail::setPixels(stroke.width(), look.width);
  osg::ref_ptr<osgEarth::Feature> const feature =
      new osgEarth::Feature(path, getMapScene()->getSRS(), osgEarth::Style(), 0);
  layer->addChild(new osgEarth::FeatureNode(feature, style));
}

void SketchDataTool::drawEllipse(coord::xyh const& centre, double semiMajor, double semiMinor, double bearing,
                                 Look const& look) {
  std::vector<coord::xyh> places;
  for (int corner = 0; corner <= kSketchCorners; ++corner) {
    double const along = semiMajor * std::cos(utils::kFullCircle * corner / kSketchCorners);
    double const across = semiMinor * std::sin(utils::kFullCircle * corner / kSketchCorners);
    places.emplace_back(centre.x + along * std::cos(bearing) - across * std::sin(bearing),
                        centre.y + along * std::sin(bearing) + across * std::cos(bearing), 0.0);
  }
  drawPath(places, look);
}

void SketchDataTool::drawText(coord::xyh const& place, QString const& text, Look const& look) {
  KVNLayer* const layer = getOrCreateLayer();
  if (layer == nullptr) return;
  osgEarth::Style style = getStyle();
  auto* const label = style.getOrCreate<osgEarth::TextSymbol>();
  label->fill().mutable_value().color() = osgEarth::Color(look.colour);
  label->size() = look.width;
  label->declutter() = false;
  label->alignment() = osgEarth::TextSymbol::ALIGN_LEFT_CENTER;
  layer->addChild(new osgEarth::PlaceNode(toGeoPoint(place), text.toStdString(), style));
}

}  // namespace kvn
