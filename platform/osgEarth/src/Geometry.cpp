#include <osgEarth/Geometry>

namespace osgEarth {
inline namespace kelvane {

Geometry::Geometry(int capacity) {
  if (capacity > 0) points_.reserve(static_cast<std::size_t>(capacity));
}
Geometry::Geometry(Vec3dVector const* points) {
  if (points != nullptr) points_ = *points;
}
Geometry::Geometry(Geometry const& other) : osg::Referenced(other), points_(other.points_) {}
Geometry::~Geometry() = default;

double Geometry::getLength() const {
  double sum = 0.0;
  for (std::size_t i = 1; i < points_.size(); ++i) sum += (points_[i] - points_[i - 1]).length();
  return sum;
}

Bounds Geometry::getBounds() const {
  Bounds bounds;
  for (osg::Vec3d const& point : points_) bounds.expandBy(point);
  return bounds;
}

double Ring::getLength() const { return empty() ? 0.0 : Geometry::getLength() + (front() - back()).length(); }

Point::~Point() = default;
PointSet::~PointSet() = default;
LineString::~LineString() = default;
Ring::~Ring() = default;
Polygon::~Polygon() = default;

}  // namespace kelvane
}  // namespace osgEarth
