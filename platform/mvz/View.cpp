#include <mvz/View.h>
#include <mvz/detail/Decoration.h>
#include <mvz/detail/PlanScale.h>
#include <utils/detail/DisplayScale.h>
#include <utils/detail/PrivateData.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <osg/BlendFunc>
#include <osg/Callback>
#include <osg/Group>
#include <osg/ValueObject>
#include <osg/observer_ptr>

namespace mvz {
namespace {

/// Pixels around the bounds: half an icon with a label above or below it. Labels stand at the right of their points.
constexpr double kMargin = 60.0;
constexpr double kMarginRight = 140.0;
/// In a small view the margins must leave most of it to the map.
constexpr double kLargestMarginPart = 0.2;
/// Metres: a single point, or several set up on one mark, is shown with its surroundings.
constexpr double kLeastExtent = 10.0;

double margin(double wanted, int size) { return std::min(wanted, kLargestMarginPart * size); }

bool isFinite(osg::Vec3d const& v) { return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z()); }

/// The extent too: bounds from -1e308 to 1e308 have none.
bool canBeShown(osg::BoundingBoxd const& bounds) {
  return bounds.valid() && isFinite(bounds._min) && isFinite(bounds._max) && isFinite(bounds._max - bounds._min);
}

osg::ref_ptr<osg::Camera> planCamera() {
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  camera->setProjectionResizePolicy(osg::Camera::FIXED);
  // The planes stay where they are, above and below everything. What is small on the picture is
  // drawn all the same: a short line is a measured one.
  camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
  camera->setCullingMode(osg::CullSettings::VIEW_FRUSTUM_SIDES_CULLING);
  camera->setClearColor(osg::Vec4(1, 1, 1, 1));
  return camera;
}

}  // namespace

namespace detail {

/// A graphics window that is resized scales the viewports of its cameras by the sizes that it had. The viewport that
/// the view wants is back before the scene is culled for the next picture.
class ViewportKeeper : public osg::Callback {
 public:
  explicit ViewportKeeper(osg::Camera* viewCamera) : camera(viewCamera) {}

  void setSize(int newWidth, int newHeight) {
    width = newWidth;
    height = newHeight;
    restore();
  }

  bool run(osg::Object* object, osg::Object* data) override {
    restore();
    return traverse(object, data);
  }

 protected:
  ~ViewportKeeper() override = default;

 private:
  void restore() {
    osg::ref_ptr<osg::Camera> viewCamera;
    if (camera.lock(viewCamera)) viewCamera->setViewport(0, 0, width, height);
  }

  osg::observer_ptr<osg::Camera> camera;
  int width = 1;
  int height = 1;
};

}  // namespace detail

struct KELVANE_PRIVATE View::Data {
  KELVANE_LATER_MEMBER
  int width = 1;
  int height = 1;
  double displayScale = 1;
  double magnification = 1;
  osg::ref_ptr<osg::Camera> camera;
  osg::ref_ptr<detail::ViewportKeeper> viewport;
  osg::ref_ptr<detail::Decoration> decoration;
  osg::ref_ptr<osg::Group> root = new osg::Group;
  osg::ref_ptr<osg::Node> scene;
  std::atomic<bool> outdated{true};
};

View::View(int width, int height) : own(std::make_unique<Data>()) {
  own->width = std::max(width, 1);
  own->height = std::max(height, 1);
  own->camera = planCamera();
  own->viewport = new detail::ViewportKeeper(own->camera);
  fitViewport();
  own->root->addUpdateCallback(own->viewport);
  osg::StateSet* const state = own->root->getOrCreateStateSet();
  state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  // Said, since OpenGL's own start is to paint transparent pixels: in the first picture the halo of a letter would cut
  // the one before it.
  state->setAttribute(new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA));
  own->decoration = new detail::Decoration(own->camera);
  own->root->addChild(own->decoration);
  own->camera->addChild(own->root);
  frame(osg::BoundingBoxd(0, 0, 0, 0, 0, 0));
}

View::~View() = default;

void View::setScene(osg::Node* node) {
  osg::ref_ptr<osg::Node> const keep = node;
  if (own->scene.valid()) own->root->removeChild(own->scene);
  own->scene = node;
  if (own->scene.valid()) own->root->insertChild(0, own->scene);
  requestRedraw();
}

osg::Node* View::getScene() const { return own->scene; }

osg::Camera* View::getCamera() const { return own->camera; }

int View::getWidth() const { return own->width; }

int View::getHeight() const { return own->height; }

void View::setSize(int width, int height) {
  double const scale = metresPerPixel();
  own->width = std::max(width, 1);
  own->height = std::max(height, 1);
  fitViewport();
  lookAt(eye(), scale);
  requestRedraw();
}

void View::setDisplayScale(double value) {
  if (!std::isfinite(value) || !(value > 0)) return;
  own->displayScale = value;
  // Where what is measured in pixels finds it, in each view that the scene has.
  own->camera->setUserValue(utils::detail::kDisplayScale, value);
  fitViewport();
  setMagnification(magnification());
}

double View::displayScale() const { return own->displayScale; }

/// Of a window the parts of a pixel belong to the last one, so that no strip of it stays undrawn.
void View::fitViewport() {
  auto const wanted = [this](int size) { return static_cast<int>(std::ceil(size * own->displayScale)); };
  own->viewport->setSize(wanted(own->width), wanted(own->height));
}

void View::setMagnification(double value) {
  own->magnification = value;
  own->decoration->setMagnification(value * own->displayScale);
  requestRedraw();
}

double View::magnification() const { return own->magnification; }

void View::fullMap(osg::BoundingBoxd const& bounds) {
  if (!canBeShown(bounds)) return;
  frame(bounds);
  requestRedraw();
}

void View::frame(osg::BoundingBoxd const& bounds) {
  double const left = margin(kMargin * magnification(), getWidth());
  double const right = margin(kMarginRight * magnification(), getWidth());
  double const upright = margin(kMargin * magnification(), getHeight());
  osg::Vec3d const extent = bounds._max - bounds._min;
  double const scale = std::max(std::max(extent.x(), kLeastExtent) / (getWidth() - left - right),
                                std::max(extent.y(), kLeastExtent) / (getHeight() - 2 * upright));
  // The middle of the bounds stands in the middle of what the margins leave, left of the middle of the view. Half the
  // extent is added to the lower corner since the sum of two large numbers may overflow.
  osg::Vec3d const middle = bounds._min + extent * 0.5;
  lookAt({middle.x() + (right - left) / 2 * scale, middle.y(), kHeights}, scale);
}

void View::lookAt(osg::Vec3d const& eye, double metresPerPixel) {
  double const halfWidth = getWidth() * metresPerPixel / 2;
  double const halfHeight = getHeight() * metresPerPixel / 2;
  own->camera->setViewMatrix(osg::Matrixd::translate(-eye));
  own->camera->setProjectionMatrixAsOrtho(-halfWidth, halfWidth, -halfHeight, halfHeight, 0, 2 * kHeights);
}

osg::Vec3d View::eye() const { return osg::Matrixd::inverse(own->camera->getViewMatrix()).getTrans(); }

void View::pan(osg::Vec2d const& pixels) {
  if (!std::isfinite(pixels.x()) || !std::isfinite(pixels.y())) return;
  double const scale = metresPerPixel();
  lookAt(eye() + osg::Vec3d(-pixels.x(), pixels.y(), 0) * scale, scale);
  requestRedraw();
}

void View::zoom(osg::Vec2d const& pixel, double factor) {
  if (!std::isfinite(pixel.x()) || !std::isfinite(pixel.y()) || !std::isfinite(factor) || !(factor > 0)) return;
  // What `fullMap` has shown may lie beyond the bounds: from there it goes back only.
  double const scale = metresPerPixel();
  double const newScale = std::clamp(scale / factor, std::min(kFinest, scale), std::max(kCoarsest, scale));
  osg::Vec3d const fromMiddle(pixel.x() - getWidth() / 2.0, getHeight() / 2.0 - pixel.y(), 0);
  lookAt(eye() + fromMiddle * (scale - newScale), newScale);
  requestRedraw();
}

osg::Vec2d View::toPixel(osg::Vec3d const& world) const {
  // In two steps: the large coordinates go in the first.
  osg::Vec3d const clip = (world * own->camera->getViewMatrix()) * own->camera->getProjectionMatrix();
  return {(1 + clip.x()) / 2 * getWidth(), (1 - clip.y()) / 2 * getHeight()};
}

osg::Vec3d View::toWorld(osg::Vec2d const& pixel) const {
  osg::Vec3d const clip(2 * pixel.x() / getWidth() - 1, 1 - 2 * pixel.y() / getHeight(), 0);
  osg::Vec3d const seen = clip * osg::Matrixd::inverse(own->camera->getProjectionMatrix());
  osg::Vec3d const world = seen * osg::Matrixd::inverse(own->camera->getViewMatrix());
  return {world.x(), world.y(), 0};
}

double View::metresPerPixel() const { return 2 / (own->camera->getProjectionMatrix()(0, 0) * getWidth()); }

void View::requestRedraw() { own->outdated = true; }

bool View::needsRedraw() const { return own->outdated; }

void View::drawn() { own->outdated = false; }

}  // namespace mvz
