// PixelTransform: a place in the scene whose children are measured in pixels and stand upright on the screen.
#pragma once

#include <osg/Transform>

namespace osgEarth {
inline namespace kelvane {

/// Below it x points right and y up on the screen, one unit is a pixel and the position is the origin, in each view by
/// its own camera, parallel or perspective. Nothing is stored between views.
///
/// Its bound is a tiny sphere, as the size of the children in the scene depends on the view; culling by bounds, which
/// drops what is tiny, is off. In its place the node drops itself where it is out of the view by more than the reach of
/// its children. Outside of a view there are no pixels: there the children are shrunk to almost nothing, so that the
/// bounds of a scene are those of its positions.
class PixelTransform : public osg::Transform {
 public:
  PixelTransform();
  PixelTransform(PixelTransform const&) = delete;
  PixelTransform& operator=(PixelTransform const&) = delete;

  osg::Object* cloneType() const override { return new PixelTransform; }
  osg::Object* clone(osg::CopyOp const&) const override { return nullptr; }
  char const* libraryName() const override { return "kelvane"; }
  char const* className() const override { return "PixelTransform"; }

  void setPosition(osg::Vec3d const& position);
  /// To be called when the children have changed: how far they reach from the position, in pixels.
  void updateReach();

  void accept(osg::NodeVisitor& visitor) override;
  bool computeLocalToWorldMatrix(osg::Matrix& matrix, osg::NodeVisitor* visitor) const override;
  bool computeWorldToLocalMatrix(osg::Matrix& matrix, osg::NodeVisitor* visitor) const override;
  osg::BoundingSphere computeBound() const override;

 protected:
  ~PixelTransform() override;

 private:
  osg::Vec3d position_;
  double reach_ = 0.0;
};

}  // namespace kelvane
}  // namespace osgEarth
