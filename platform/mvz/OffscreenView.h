// mvz::OffscreenView: a view of the map that is drawn into a picture, without a display.
#pragma once

#include <mvz/View.h>

#include <QString>
#include <memory>
#include <osg/Image>

namespace mvz {

/// Draws the map into an image, on a white ground, with smooth edges.
///
/// Each view has an OpenGL context of its own, made at the first picture and given back when the view dies; a context
/// that the caller has current stays so. Views may show one scene, one after the other. A view is used by one thread at
/// a time, which holds the lock of its manager where others change the scene.
class KELVANE_EXPORT OffscreenView : public View {
 public:
  OffscreenView(int width, int height);

  void setScene(osg::Node* node) override;

  /// The picture: red, green and blue bytes, rows from the bottom up, of the view's size times its
  /// display scale.
  ///
  /// @throws QLogicError without OpenGL (says what to install; may be tried again) or when it has no room for the size.
  osg::ref_ptr<osg::Image> render();

  /// Draws a picture into a PNG file; an old file is replaced when the new one is complete. With a magnification it
  /// tells so many times 96 dots per inch.
  ///
  /// @throws QLogicError as `render`, and with the reason when the file cannot be written.
  void writeImage(QString const& path);

 protected:
  ~OffscreenView() override;

 private:
  class Canvas;
  std::unique_ptr<Canvas> canvas;
};

}  // namespace mvz
