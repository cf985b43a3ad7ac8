#include "PlaceIcon.h"

#include "Declutter.h"
#include "SharedCache.h"

#include <cmath>
#include <osg/Math>
#include <osg/Texture2D>
#include <tuple>

namespace osgEarth {
inline namespace kelvane {
namespace {

class RankedIcon : public osg::Geometry, public Ranked {};

osg::ref_ptr<osg::StateSet> makeState(osg::Image& image) {
  osg::ref_ptr<osg::Texture2D> const texture = new osg::Texture2D(&image);
  texture->setResizeNonPowerOfTwoHint(false);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
  texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
  osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
  state->setTextureAttributeAndModes(0, texture);
  setDeclutterState(*state);
  return state;
}

/// Left, centre, right or bottom, centre, top as 0, 0.5, 1: the part of the image before the position.
osg::Vec2f anchorOf(IconSymbol::Alignment alignment) {
  // Top, centre, bottom follow each other in the enumeration, for left, then centre, then right.
  constexpr int kRows = 3;
  int const column = alignment / kRows;
  int const row = alignment % kRows;
  return {0.5f * static_cast<float>(column), 1.0f - 0.5f * static_cast<float>(row)};
}

osg::ref_ptr<osg::Vec3Array> cornersOf(osg::Vec2f const& size, osg::Vec2f const& anchor, float headingDegrees) {
  float const angle = -osg::DegreesToRadians(headingDegrees);
  osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
  for (osg::Vec2f const& corner : {osg::Vec2f(0, 0), osg::Vec2f(1, 0), osg::Vec2f(0, 1), osg::Vec2f(1, 1)}) {
    float const x = (corner.x() - anchor.x()) * size.x();
    float const y = (corner.y() - anchor.y()) * size.y();
    corners->push_back({x * std::cos(angle) - y * std::sin(angle), x * std::sin(angle) + y * std::cos(angle), 0.0f});
  }
  return corners;
}

osg::ref_ptr<osg::Vec2Array> textureCornersOf(osg::Image const& image) {
  bool const topFirst = image.getOrigin() == osg::Image::TOP_LEFT;
  float const bottom = topFirst ? 1.0f : 0.0f;
  osg::ref_ptr<osg::Vec2Array> corners = new osg::Vec2Array;
  for (float const t : {bottom, 1.0f - bottom}) {
    corners->push_back({0.0f, t});
    corners->push_back({1.0f, t});
  }
  return corners;
}

struct Settings {
  IconSymbol::Alignment alignment = IconSymbol::ALIGN_CENTER_BOTTOM;
  float scale = 1.0f;
  float heading = 0.0f;
};

Settings settingsOf(IconSymbol const* symbol) {
  if (symbol == nullptr) return {};
  return {symbol->alignment().get(), symbol->scale().get().eval(), symbol->heading().get().eval()};
}

void build(osg::Geometry& quad, osg::Image& image, Settings const& settings) {
  // Never destroyed: nodes of a host may outlive the statics of this library.
  static auto* const states = new SharedCache<osg::Image*, osg::StateSet>;
  osg::Vec2f const size(static_cast<float>(image.s()), static_cast<float>(image.t()));
  osg::ref_ptr<osg::Vec4Array> const white = new osg::Vec4Array(1);
  white->front().set(1.0f, 1.0f, 1.0f, 1.0f);
  quad.setUseDisplayList(false);
  quad.setUseVertexBufferObjects(true);
  quad.setVertexArray(cornersOf(size * settings.scale, anchorOf(settings.alignment), settings.heading));
  quad.setTexCoordArray(0, textureCornersOf(image));
  quad.setColorArray(white, osg::Array::BIND_OVERALL);
  quad.addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, 4));
  // The state holds its image by the texture, so that the address stays that image's as long as the state is there.
  quad.setStateSet(states->get(&image, [&] { return makeState(image); }));
}

}  // namespace

osg::ref_ptr<osg::Geometry> makeIcon(osg::Image& image, IconSymbol const* symbol) {
  Settings const settings = settingsOf(symbol);
  if (symbol != nullptr && symbol->declutter().isSetTo(true)) {
    osg::ref_ptr<RankedIcon> icon = new RankedIcon;
    icon->givesWay = true;
    build(*icon, image, settings);
    return icon;
  }
  using Key = std::tuple<osg::Image*, IconSymbol::Alignment, float, float>;
  static auto* const quads = new SharedCache<Key, osg::Geometry>;
  return quads->get({&image, settings.alignment, settings.scale, settings.heading}, [&] {
    osg::ref_ptr<osg::Geometry> quad = new osg::Geometry;
    build(*quad, image, settings);
    return quad;
  });
}

}  // namespace kelvane
}  // namespace osgEarth
