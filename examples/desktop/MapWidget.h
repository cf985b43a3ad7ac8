// The map in a window.
#pragma once

#include <Kelvane.h>

#include <QOpenGLWidget>
#include <QPoint>
#include <functional>
#include <memory>
#include <osgViewer/Viewer>

/// Shows what the viewer manager has: dragging pans, the wheel zooms, a click is told.
///
/// The OpenGL context is Qt's. Where the widget gets another parent window Qt makes a new one and calls `initializeGL`
/// again; what the scene holds in the old one is given back before.
class MapWidget : public QOpenGLWidget {
  Q_OBJECT

 public:
  explicit MapWidget(QWidget* parent = nullptr);
  ~MapWidget() override;

  mvz::ViewerManager* viewers() const { return manager; }
  mvz::View* view() const { return plan; }

  /// Moves the map until the place (metres, x east, y north) is in the middle.
  void centreOn(osg::Vec3d const& place);

  /// A click that was no drag; null beside all features.
  Q_SIGNAL void clicked(osgEarth::AnnotationNode* feature);

 protected:
  void initializeGL() override;
  void resizeGL(int width, int height) override;
  void paintGL() override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void closeGraphics();

  osg::ref_ptr<mvz::ViewerManager> manager;
  osg::ref_ptr<mvz::View> plan;
  osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> graphics;
  std::unique_ptr<osgViewer::Viewer> viewer;
  QPoint pressed;
  QPoint last;
  bool dragging = false;
};
