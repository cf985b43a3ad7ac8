// The scale bar and the north arrow over a map.
#pragma once

#include <osg/Camera>
#include <osg/Group>
#include <osg/observer_ptr>

namespace mvz::detail {

/// Draws after the map, in pixels: a scale bar at the lower left and a north arrow at the upper right.
///
/// Both have a white edge, so that they can be read over lines. The update traversal, which goes before each drawing,
/// fits them to the size and the scale that the map's camera then has.
class Decoration : public osg::Camera {
 public:
  explicit Decoration(osg::Camera* mapCamera);

  void traverse(osg::NodeVisitor& visitor) override;

  void setMagnification(double value) { wanted = value; }
  double getMagnification() const { return wanted; }

 protected:
  ~Decoration() override;

 private:
  void fit();

  osg::observer_ptr<osg::Camera> map;
  double width = 0;
  double height = 0;
  double scale = 0;
  double wanted = 1;  ///< magnification
  double shown = 0;   ///< that of what is there
};

}  // namespace mvz::detail
