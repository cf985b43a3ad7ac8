#include "PixelTransform.h"

#include <utils/detail/DisplayScale.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <osg/Drawable>
#include <osg/ValueObject>
#include <osg/Viewport>
#include <osgUtil/CullVisitor>
#include <osgUtil/IntersectionVisitor>

namespace osgEarth {
inline namespace kelvane {
namespace {

constexpr float kBoundRadius = 1e-3f;  // of the bound and of a pixel outside of a view, in units of the scene

/// How a visitor sees the scene. Double precision throughout: the pixel sizes of OpenSceneGraph are single ones, which
/// leave half a metre at the coordinates of a survey.
struct View {
  osg::Matrixd toEye;    // from the parent of the transform
  osg::Matrixd fromEye;  // to the frame in which the visitor wants its matrix
  osg::Matrixd projection;
  double halfWidth, halfHeight;  // pixels
};

std::optional<View> viewOf(osg::Matrixd const& matrix, osg::NodeVisitor* visitor) {
  if (visitor == nullptr) return std::nullopt;
  if (auto* const cull = visitor->asCullVisitor()) {
    osg::Viewport const* const viewport = cull->getViewport();
    if (viewport == nullptr) return std::nullopt;
    double scale = 1;
    if (osg::Camera const* const camera = cull->getCurrentCamera()) {
      camera->getUserValue(utils::detail::kDisplayScale, scale);
    }
    double const pixels = 2 * scale;
    return View{matrix, osg::Matrixd(), *cull->getProjectionMatrix(), viewport->width() / pixels,
                viewport->height() / pixels};
  }
  auto* const pick = dynamic_cast<osgUtil::IntersectionVisitor*>(visitor);
  if (pick == nullptr || !pick->getViewMatrix() || !pick->getProjectionMatrix() || !pick->getWindowMatrix()) return {};
  osg::Matrixd const view = *pick->getViewMatrix();
  osg::Matrixd const& window = *pick->getWindowMatrix();
  return View{matrix * view, osg::Matrixd::inverse(view), *pick->getProjectionMatrix(), window(0, 0), window(1, 1)};
}

/// The fourth clip coordinate: the factor by which the projection divides at that place.
double divisorAt(osg::Vec3d const& eye, osg::Matrixd const& projection) {
  return eye.x() * projection(0, 3) + eye.y() * projection(1, 3) + eye.z() * projection(2, 3) + projection(3, 3);
}

/// Units of the eye frame in one pixel; 1 where the projection has none (behind the eye, or an empty window).
double unitsPerPixel(double divisor, double factor, double halfPixels) {
  double const units = divisor / (std::abs(factor) * halfPixels);
  return std::isfinite(units) && units > 0.0 ? units : 1.0;
}

}  // namespace

PixelTransform::PixelTransform() { setCullingActive(false); }
PixelTransform::~PixelTransform() = default;

void PixelTransform::setPosition(osg::Vec3d const& position) {
  position_ = position;
  dirtyBound();
}

void PixelTransform::updateReach() {
  osg::BoundingBox box;
  for (unsigned i = 0; i < getNumChildren(); ++i) {
    if (osg::Drawable const* const drawable = getChild(i)->asDrawable()) box.expandBy(drawable->getBoundingBox());
  }
  reach_ = 0.0;
  for (unsigned corner = 0; corner < 8 && box.valid(); ++corner) {
    reach_ = std::max<double>(reach_, box.corner(corner).length());
  }
}

void PixelTransform::accept(osg::NodeVisitor& visitor) {
  if (auto* const cull = visitor.asCullVisitor()) {
    if (auto const view = viewOf(*cull->getModelViewMatrix(), &visitor)) {
      osg::Vec3d const eye = position_ * view->toEye;
      double const w = divisorAt(eye, view->projection);
      if (!(w > 0.0)) return;
      osg::Vec3d const clip = eye * view->projection;
      bool const aside = std::abs(clip.x()) > 1.0 + reach_ / view->halfWidth;
      if (aside || std::abs(clip.y()) > 1.0 + reach_ / view->halfHeight) return;
    }
  }
  osg::Transform::accept(visitor);
}

bool PixelTransform::computeLocalToWorldMatrix(osg::Matrix& matrix, osg::NodeVisitor* visitor) const {
  auto const view = viewOf(matrix, visitor);
  if (!view) {
    matrix.preMultTranslate(position_);
    matrix.preMultScale(osg::Vec3d(kBoundRadius, kBoundRadius, kBoundRadius));
    return true;
  }
  osg::Vec3d const eye = position_ * view->toEye;
  double const divisor = divisorAt(eye, view->projection);
  double const x = unitsPerPixel(divisor, view->projection(0, 0), view->halfWidth);
  double const y = unitsPerPixel(divisor, view->projection(1, 1), view->halfHeight);
  matrix = osg::Matrixd::scale(x, y, y) * osg::Matrixd::translate(eye) * view->fromEye;
  return true;
}

bool PixelTransform::computeWorldToLocalMatrix(osg::Matrix& matrix, osg::NodeVisitor* visitor) const {
  // OpenSceneGraph asks for this direction only outside of a view.
  (void)visitor;
  double const pixels = 1.0 / kBoundRadius;
  matrix.postMultTranslate(-position_);
  matrix.postMultScale(osg::Vec3d(pixels, pixels, pixels));
  return true;
}

osg::BoundingSphere PixelTransform::computeBound() const { return {osg::Vec3f(position_), kBoundRadius}; }

}  // namespace kelvane
}  // namespace osgEarth
