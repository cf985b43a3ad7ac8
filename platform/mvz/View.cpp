#include <mvz/View.h>
#include <mvz/detail/Decoration.h>
#include <mvz/detail/PlanScale.h>
#include <utils/detail/PrivateData.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <osg/BlendFunc>
#include <osg/Group>

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

osg::ref_ptr<osg::Camera> planCamera(int width, int height) {
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  camera->setViewport(0, 0, width, height);
  camera->setProjectionResizePolicy(osg::Camera::FIXED);
  // The planes stay where they are, above and below everything. What is small on the picture is
  // drawn all the same: a short line is a measured one.
  camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
  camera->setCullingMode(osg::CullSettings::VIEW_FRUSTUM_SIDES_CULLING);
  camera->setClearColor(osg::Vec4(1, 1, 1, 1));
  return camera;
}

}  // namespace

struct KELVANE_PRIVATE View::Data {
  KELVANE_LATER_MEMBER
  osg::ref_ptr<osg::Camera> camera;
  osg::ref_ptr<detail::Decoration> decoration;
  osg::ref_ptr<osg::Group> root = new osg::Group;
  osg::ref_ptr<osg::Node> scene;
  std::atomic<bool> outdated{true};
};

View::View(int width, int height) : own(std::make_unique<Data>()) {
  own->camera = planCamera(std::max(width, 1), std::max(height, 1));
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

int View::getWidth() const { return static_cast<int>(own->camera->getViewport()->width()); }

int View::getHeight() const { return static_cast<int>(own->camera->getViewport()->height()); }

void View::setSize(int width, int height) {
  double const scale = metresPerPixel();
  own->camera->setViewport(0, 0, std::max(width, 1), std::max(height, 1));
  lookAt(osg::Matrixd::inverse(own->camera->getViewMatrix()).getTrans(), scale);
  requestRedraw();
}

void View::setMagnification(double value) {
  own->decoration->setMagnification(value);
  requestRedraw();
}

double View::magnification() const { return own->decoration->getMagnification(); }

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

double View::metresPerPixel() const { return detail::metresPerPixel(*own->camera); }

void View::requestRedraw() { own->outdated = true; }

bool View::needsRedraw() const { return own->outdated; }

void View::drawn() { own->outdated = false; }

}  // namespace mvz
