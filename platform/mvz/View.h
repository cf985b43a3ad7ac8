// mvz::View: a plan view of the map, looking down with north up.
#pragma once

#include <utils/Export.h>

#include <memory>
#include <osg/BoundingBox>
#include <osg/Camera>
#include <osg/Referenced>
#include <osg/Vec2d>
#include <osg/Vec3d>
#include <osg/ref_ptr>

namespace mvz {

/// An orthographic view from above: easting (x of the world, metres) to the right, northing (y) up.
///
/// The view owns a camera and its size in pixels. The camera has one child, which holds the scene and, drawn over it, a
/// scale bar and a north arrow. A host that shows the map in a window derives from this class and gives both to its
/// viewer: `viewer.setCamera(view.getCamera())`, `viewer.setSceneData(view.getCamera()->getChild(0))`. The host tells
/// the view each new size. A graphics window that is told as well may stretch the camera's viewport: the view puts that
/// right in the update traversal, before the next picture.
///
/// Coordinates of 4,000,000 m do not shake: the camera's matrices are doubles, as long as the scene keeps its geometry
/// close to the origin of a transformation (osg::MatrixTransform), since OpenGL itself counts in single precision.
class KELVANE_EXPORT View : public osg::Referenced {
 public:
  /// Metres above and below 0 that are drawn, wherever the camera was moved: lines lie at height 0 and points at
  /// theirs, on a mountain or at the -9999.9 of a height that is not known.
  static constexpr double kHeights = 1e6;
  /// Metres north or east of the origin that are framed. Farther is no survey, but a marker or a slip: the rest would
  /// shrink to one spot beside it.
  static constexpr double kFarthest = 1e9;

  /// A view of the surroundings of the origin. A size below 1 counts as 1.
  View(int width, int height);
  View(View const&) = delete;
  View& operator=(View const&) = delete;

  /// What the view shows; null shows nothing. The view keeps the scene alive.
  virtual void setScene(osg::Node* node);
  [[nodiscard]] osg::Node* getScene() const;

  [[nodiscard]] osg::Camera* getCamera() const;

  /// Size in pixels, at least 1. Centre and scale of the map stay, whatever became of the camera's viewport.
  void setSize(int width, int height);
  [[nodiscard]] int getWidth() const;
  [[nodiscard]] int getHeight() const;

  /// Pixels of the screen across one pixel of the view, 1 to begin with: on a dense screen what Qt calls the
  /// `devicePixelRatio`. The size above and all places in the view stay those of mouse events; the camera's viewport
  /// has so many times as many pixels, and icons, names, scale bar and north arrow grow with it. (Icons and names are
  /// osgEarth's to scale where that is installed.) A value that is not finite or not above 0 changes nothing.
  void setDisplayScale(double value);
  [[nodiscard]] double displayScale() const;

  /// How many times as large as on a screen scale bar and north arrow are drawn, 1 to begin with.
  void setMagnification(double value);
  [[nodiscard]] double magnification() const;

  /// Moves the camera so that the bounds (metres, world) fill the view, less a margin for icons and labels.
  ///
  /// The margin is 60 pixels, at the right 140, times the magnification, and at most a fifth of the size on each side.
  /// A point or a very small area is shown as one of 10 m. Bounds that are empty or not finite change nothing.
  virtual void fullMap(osg::BoundingBoxd const& bounds);

  /// Moves the map by pixels to the right and down, as a hand drags it. What is not finite changes nothing.
  void pan(osg::Vec2d const& pixels);

  /// Shows the map `factor` times as large; the place at the pixel stays there, as under a mouse whose wheel is turned.
  ///
  /// A pixel stays between `kFinest` and `kCoarsest`. A factor that is not finite or not above 0 changes nothing.
  void zoom(osg::Vec2d const& pixel, double factor);

  static constexpr double kFinest = 1e-5;   ///< metres: a hundredth of what survey marks are good for
  static constexpr double kCoarsest = 1e6;  ///< metres: `kFarthest` is 1000 pixels away

  /// Pixels from the upper left corner, x to the right and y down; fractions are kept, pixel (0, 0) ends at (1, 1).
  [[nodiscard]] osg::Vec2d toPixel(osg::Vec3d const& world) const;

  /// The place at height 0 that is seen at a pixel: the inverse of `toPixel`.
  [[nodiscard]] osg::Vec3d toWorld(osg::Vec2d const& pixel) const;

  /// Width of a pixel in the world, metres.
  [[nodiscard]] double metresPerPixel() const;

  /// Notes that the picture is out of date; may be called from any thread. A window of the host asks for a repaint
  /// here.
  virtual void requestRedraw();

  /// Whether the picture is out of date: from the start, after each change of the view, and after `requestRedraw`.
  [[nodiscard]] bool needsRedraw() const;

  /// Notes that the picture is about to be drawn anew.
  void drawn();

 protected:
  ~View() override;

 private:
  void frame(osg::BoundingBoxd const& bounds);
  void lookAt(osg::Vec3d const& eye, double metresPerPixel);
  [[nodiscard]] osg::Vec3d eye() const;
  void fitViewport();

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace mvz
