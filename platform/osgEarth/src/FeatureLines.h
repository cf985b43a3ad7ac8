// FeatureLines: what is drawn of a feature.
#pragma once

#include "LeanDrawable.h"

#include <osgEarth/Geometry>
#include <osgEarth/Stroke>

#include <osg/PrimitiveSet>
#include <osg/Vec3>

namespace osgEarth {
inline namespace kelvane {

/// A drawable at its place in the scene, without a transform above it: a map has hundreds of thousands of them, and
/// each would have a matrix in every frame too. Points are drawn relative to the first one, so that single precision,
/// which is what graphics cards have, shows kilometres to a tenth of a millimetre. Its bound and what it tells a
/// PrimitiveFunctor are in the coordinates of the scene, which single precision rounds.
class FeatureLines : public LeanDrawable {
 public:
  /// @param geometry  of which the points are read at each drawing.
  FeatureLines(Geometry const& geometry, Stroke const& stroke);
  FeatureLines(FeatureLines const&) = delete;
  FeatureLines& operator=(FeatureLines const&) = delete;

  osg::Object* cloneType() const override { return nullptr; }
  osg::Object* clone(osg::CopyOp const&) const override { return nullptr; }
  char const* libraryName() const override { return "kelvane"; }
  char const* className() const override { return "FeatureLines"; }

  using osg::Drawable::accept;
  using osg::Drawable::supports;
  void accept(osg::NodeVisitor& visitor) override;
  bool supports(osg::PrimitiveFunctor const&) const override { return true; }
  void accept(osg::PrimitiveFunctor& functor) const override;
  void drawImplementation(osg::RenderInfo& info) const override;
  osg::BoundingBox computeBoundingBox() const override;

 protected:
  ~FeatureLines() override;

 private:
  osg::ref_ptr<Geometry const> geometry_;
  osg::ref_ptr<osg::DrawArrays const> primitives_;
  osg::Vec4f color_;
};

}  // namespace kelvane
}  // namespace osgEarth
