#include "Declutter.h"
#include "SharedCache.h"

#include <osgEarth/FeatureNode>

#include <algorithm>
#include <osg/Geometry>
#include <osg/LineStipple>
#include <osg/LineWidth>
#include <osg/MatrixTransform>
#include <osg/Point>
#include <tuple>

namespace osgEarth {
inline namespace kelvane {
namespace {

constexpr std::uint16_t kFullLine = 0xFFFF;

float pixelsOf(Stroke const& stroke) {
  Distance const& width = stroke.width().get().literal();
  float const pixels =
      width.getUnits() == Units::PIXELS ? static_cast<float>(width.getValue()) : stroke.minPixels().get();
  return std::max(pixels, 1.0f);
}

osg::ref_ptr<osg::StateSet> stateOf(Stroke const& stroke) {
  using Key = std::tuple<float, std::uint16_t, unsigned>;
  // Never destroyed: nodes of a host may outlive the statics of this library.
  static auto* const cache = new SharedCache<Key, osg::StateSet>;
  Key const key{pixelsOf(stroke), stroke.stipplePattern().get(), stroke.stippleFactor().get()};
  return cache->get(key, [&] {
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    auto const [width, pattern, factor] = key;
    state->setAttribute(new osg::LineWidth(width));
    state->setAttribute(new osg::Point(width));
    if (pattern != kFullLine) state->setAttributeAndModes(new osg::LineStipple(static_cast<int>(factor), pattern));
    setLineState(*state);
    return state;
  });
}

GLenum modeOf(Geometry const& geometry) {
  switch (geometry.getType()) {
    case Geometry::TYPE_LINESTRING:
      return GL_LINE_STRIP;
    case Geometry::TYPE_RING:
    case Geometry::TYPE_POLYGON:
      return GL_LINE_LOOP;
    default:
      return GL_POINTS;
  }
}

osg::ref_ptr<osg::Geometry> drawableOf(Geometry const& geometry, Stroke const& stroke) {
  osg::ref_ptr<osg::Vec3Array> const vertices = new osg::Vec3Array;
  vertices->reserve(geometry.size());
  for (osg::Vec3d const& point : geometry) vertices->push_back(osg::Vec3(point - geometry.front()));
  osg::ref_ptr<osg::Vec4Array> const colors = new osg::Vec4Array;
  colors->push_back(stroke.color());

  osg::ref_ptr<osg::Geometry> drawable = new osg::Geometry;
  drawable->setUseDisplayList(false);
  drawable->setUseVertexBufferObjects(true);
  drawable->setVertexArray(vertices);
  drawable->setColorArray(colors, osg::Array::BIND_OVERALL);
  drawable->addPrimitiveSet(new osg::DrawArrays(modeOf(geometry), 0, static_cast<int>(vertices->size())));
  drawable->setStateSet(stateOf(stroke));
  return drawable;
}

Stroke strokeOf(Feature const& feature, Style const& nodeStyle) {
  Style const* const style = nodeStyle.empty() ? feature.style() : &nodeStyle;
  auto const* const line = style != nullptr ? style->get<LineSymbol>() : nullptr;
  return line != nullptr ? line->stroke().get() : Stroke();
}

}  // namespace

FeatureNode::FeatureNode(Feature* feature, Style const& style, GeometryCompilerOptions const&, StyleSheet*) {
  if (feature != nullptr) features_.emplace_back(feature);
  FeatureNode::setStyle(style);
}

FeatureNode::FeatureNode(FeatureList const& features, Style const& style, GeometryCompilerOptions const&, StyleSheet*)
    : features_(features) {
  FeatureNode::setStyle(style);
}

FeatureNode::~FeatureNode() = default;

void FeatureNode::setFeature(Feature* feature) {
  features_.clear();
  if (feature != nullptr) features_.emplace_back(feature);
  dirty();
}

void FeatureNode::setStyle(Style const& value) {
  AnnotationNode::setStyle(value);
  dirty();
}

void FeatureNode::dirty() {
  removeChildren(0, getNumChildren());
  for (auto const& feature : features_) {
    Geometry const* const geometry = feature->getGeometry();
    if (geometry == nullptr || !geometry->isValid()) continue;
    osg::ref_ptr<osg::MatrixTransform> const place =
        new osg::MatrixTransform(osg::Matrixd::translate(geometry->front()));
    place->addChild(drawableOf(*geometry, strokeOf(*feature, getStyle())));
    addChild(place);
  }
}

}  // namespace kelvane
}  // namespace osgEarth
