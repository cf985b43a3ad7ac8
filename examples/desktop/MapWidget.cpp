#include "MapWidget.h"

#include <QApplication>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QPointer>
#include <QWheelEvent>
#include <cmath>

namespace {

/// A view that asks its widget for a repaint, on whatever thread it is asked itself.
class WindowView : public mvz::View {
 public:
  explicit WindowView(QWidget* shownIn) : View(shownIn->width(), shownIn->height()), widget(shownIn) {}

  void requestRedraw() override {
    View::requestRedraw();
    // Through the queue of the widget's own thread; what waits there goes with the widget.
    QMetaObject::invokeMethod(widget, "update", Qt::QueuedConnection);
  }

 protected:
  ~WindowView() override = default;

 private:
  QWidget* widget;
};

}  // namespace

MapWidget::MapWidget(QWidget* parent)
    : QOpenGLWidget(parent), manager(new mvz::ViewerManager), plan(new WindowView(this)) {
  QSurfaceFormat wanted = format();
  wanted.setDepthBufferSize(24);
  wanted.setSamples(4);  // smooth edges
  setFormat(wanted);
  setTextureFormat(GL_RGB8);  // no alpha: else the window's ground would show through the smooth edges
  manager->addView(plan);
}

MapWidget::~MapWidget() {
  closeGraphics();
  if (context() != nullptr) context()->disconnect(this);  // it goes after the members of this class
  manager->removeView(plan);                              // nobody asks a widget for a repaint that is gone
}

void MapWidget::initializeGL() {
  // A widget that was moved into another window comes here again, with a new context.
  connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &MapWidget::closeGraphics);
  graphics = new osgViewer::GraphicsWindowEmbedded(0, 0, width(), height());
  viewer = std::make_unique<osgViewer::Viewer>();
  viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
  viewer->setLightingMode(osg::View::NO_LIGHT);
  viewer->setKeyEventSetsDone(0);
  plan->getCamera()->setGraphicsContext(graphics);
  viewer->setCamera(plan->getCamera());
  viewer->setSceneData(plan->getCamera()->getChild(0));
  viewer->realize();
  mvz::prepareGraphicsState(*graphics->getState());  // what the shaders of osgEarth need, where it is installed
}

void MapWidget::closeGraphics() {
  if (viewer == nullptr) return;
  makeCurrent();  // what the scene holds in this context is given back in it
  graphics->close();
  plan->getCamera()->setGraphicsContext(nullptr);
  viewer.reset();
  graphics = nullptr;
  doneCurrent();
}

void MapWidget::resizeGL(int newWidth, int newHeight) {
  // In the pixels of mouse events; a dense screen has more of its own.
  plan->setDisplayScale(devicePixelRatioF());
  plan->setSize(newWidth, newHeight);
}

void MapWidget::paintGL() {
  mvz::ViewerManager::Lock const hold = manager->lock();  // nobody changes features meanwhile
  // A QOpenGLWidget draws into a buffer of its own, which is another one after each change of size.
  graphics->setDefaultFboId(defaultFramebufferObject());
  plan->drawn();
  viewer->frame();
}

void MapWidget::centreOn(osg::Vec3d const& place) {
  plan->pan(osg::Vec2d(width() / 2.0, height() / 2.0) - plan->toPixel(place));
}

void MapWidget::mousePressEvent(QMouseEvent* event) {
  pressed = last = event->pos();
  dragging = false;
}

void MapWidget::mouseMoveEvent(QMouseEvent* event) {
  if ((event->buttons() & Qt::LeftButton) == 0) return;
  dragging = dragging || (event->pos() - pressed).manhattanLength() >= QApplication::startDragDistance();
  if (!dragging) return;
  QPoint const moved = event->pos() - last;
  last = event->pos();
  plan->pan({double(moved.x()), double(moved.y())});
}

void MapWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (dragging || event->button() != Qt::LeftButton) return;
  osg::Vec2d const pixel(event->pos().x() + 0.5, event->pos().y() + 0.5);
  Q_EMIT clicked(manager->hit(*plan, pixel));
}

void MapWidget::wheelEvent(QWheelEvent* event) {
  // A notch is 120; three notches double the scale.
  plan->zoom({event->position().x(), event->position().y()}, std::exp2(event->angleDelta().y() / 360.0));
}
