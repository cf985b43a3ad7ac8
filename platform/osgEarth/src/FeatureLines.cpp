#include "FeatureLines.h"

#include "Declutter.h"
#include "SharedCache.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <osg/Array>
#include <osg/AttributeDispatchers>
#include <osg/LineStipple>
#include <osg/LineWidth>
#include <osg/Point>
#include <osg/State>
#include <osgUtil/CullVisitor>
#include <tuple>
#include <utility>
#include <vector>

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

/// All of a form with as many points draw them by the same object.
osg::ref_ptr<osg::DrawArrays> primitivesOf(Geometry const& geometry) {
  using Key = std::pair<GLenum, GLsizei>;
  static auto* const cache = new SharedCache<Key, osg::DrawArrays>;
  Key const key{modeOf(geometry), static_cast<GLsizei>(geometry.size())};
  return cache->get(key,
                    [&key] { return osg::ref_ptr<osg::DrawArrays>(new osg::DrawArrays(key.first, 0, key.second)); });
}

void addToView(osgUtil::CullVisitor& view, osg::Drawable& drawable) {
  osg::BoundingBox const& box = drawable.getBoundingBox();
  if (drawable.isCullingActive() && view.isCulled(box)) return;
  osg::RefMatrix& toEye = *view.getModelViewMatrix();
  bool const isDepthWanted = view.getComputeNearFarMode() != osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR;
  if (isDepthWanted && !view.updateCalculatedNearFar(toEye, box)) return;
  view.pushStateSet(drawable.getStateSet());
  view.addDrawableAndDepth(&drawable, &toEye, view.getDistanceFromEyePoint(box.center(), false));
  view.popStateSet();
}

}  // namespace

FeatureLines::FeatureLines(Geometry const& geometry, Stroke const& stroke)
    : geometry_(&geometry), primitives_(primitivesOf(geometry)), color_(stroke.color()) {
  setUseDisplayList(false);
  setUseVertexBufferObjects(false);
  setStateSet(stateOf(stroke));
}

FeatureLines::~FeatureLines() = default;

void FeatureLines::accept(osg::NodeVisitor& visitor) {
  if (!visitor.validNodeMask(*this)) return;
  if (auto* const view = visitor.asCullVisitor()) {
    addToView(*view, *this);
    return;
  }
  osg::Drawable::accept(visitor);
}

void FeatureLines::accept(osg::PrimitiveFunctor& functor) const {
  std::vector<osg::Vec3> const points(geometry_->begin(), geometry_->end());
  functor.setVertexArray(static_cast<unsigned>(points.size()), points.data());
  primitives_->accept(functor);
}

void FeatureLines::drawImplementation(osg::RenderInfo& info) const {
  osg::State& state = *info.getState();
  // The matrix is that of the parent: the next drawable brings its own.
  osg::Matrixd toEye = state.getModelViewMatrix();
  toEye.preMult(osg::Matrixd::translate(geometry_->front()));
  state.applyModelViewMatrix(toEye);
  if (state.getUseModelViewAndProjectionUniforms()) state.applyModelViewAndProjectionUniformsIfRequired();

  // As osg::Geometry does it with arrays that are in no buffer.
  static thread_local osg::ref_ptr<osg::Vec4Array> const colors = new osg::Vec4Array(osg::Array::BIND_OVERALL, 1);
  colors->front() = color_;
  osg::AttributeDispatchers& dispatchers = state.getAttributeDispatchers();
  dispatchers.reset();
  dispatchers.setUseVertexAttribAlias(state.getUseVertexAttributeAliasing());
  dispatchers.activateColorArray(colors.get());  // bound for all at once

  static thread_local osg::ref_ptr<osg::Vec3Array> const points = new osg::Vec3Array;
  points->clear();
  for (osg::Vec3d const& point : *geometry_) points->push_back(osg::Vec3(point - geometry_->front()));
  // A context tells arrays apart by their address and this count, and the address may come again in another thread.
  static std::atomic<unsigned> drawings{0};
  points->setModifiedCount(++drawings);
  state.unbindVertexBufferObject();
  state.lazyDisablingOfVertexAttributes();
  state.setVertexPointer(points.get());
  state.applyDisablingOfVertexAttributes();
  primitives_->draw(state, false);
}

osg::BoundingBox FeatureLines::computeBoundingBox() const {
  osg::BoundingBoxd const bounds = geometry_->getBounds();
  // Single precision must not leave out what lies at the rim of a view: a step at 4,000 km is a quarter of a metre.
  double largest = 0.0;
  for (unsigned axis = 0; axis < 3; ++axis) {
    largest = std::max({largest, std::abs(bounds._min[axis]), std::abs(bounds._max[axis])});
  }
  double const step = largest * std::numeric_limits<float>::epsilon();
  osg::Vec3d const slack(step, step, step);
  return {osg::Vec3(bounds._min - slack), osg::Vec3(bounds._max + slack)};
}

}  // namespace kelvane
}  // namespace osgEarth
