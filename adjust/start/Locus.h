// Locus: the line or the circle on which one observation holds an unknown point.
#pragma once

#include "adjust/plane/NumberedNetwork.h"

#include <vector>

namespace kvn::detail {

/// u × v: the area of the parallelogram of two vectors, above 0 where v lies clockwise of u as azimuths count.
inline double cross(Place u, Place v) { return u.real() * v.imag() - u.imag() * v.real(); }

/// What one observation between an unknown point and placed points says of its place:
///
///     ray       an oriented direction from a placed point, or to one: a half line
///     distance  to a placed point: a circle
///     arc       the angle under which the unknown station sees two placed points: an arc over their chord
class Locus {
 public:
  /// Offsets are compared with this share of the distance to the placed points.
  static constexpr double kTolerance = 1e-3;
  /// What placed points may be off, in a-priori errors of a distance.
  static constexpr double kPointErrors = 10.0;

  /// @param error  what the placed points may be off, in the unit of the frame.
  static Locus ray(Place origin, double azimuth, double error);
  static Locus distance(Place centre, double radius, double error);
  /// @param angle  clockwise from a to b as the unknown point sees them, radians.
  static Locus arc(Place a, Place b, double angle, double error);

  /// How far the place is from agreeing with the observation, metres; the offset of a place behind a ray is that from
  /// its origin.
  double offset(Place place) const;
  /// The same as a vector: from the place to the nearest one that agrees, to first order.
  Place correction(Place place) const;
  /// What an offset is to be compared with: a thousandth of the distance to the placed points, which leaves room for
  /// what their own places lack, and the error.
  double tolerance(Place place) const;
  double nearest(Place place) const;  ///< distance to the nearer of the placed points
  /// Unit vector along the locus at the place.
  Place tangent(Place place) const;
  bool isArc() const { return kind == Kind::Arc; }
  /// As far as the tolerance allows.
  bool isSameCircle(Locus const& other) const;

  friend std::vector<Place> intersections(Locus const& first, Locus const& second);

 private:
  enum class Kind { Ray, Distance, Arc };

  Locus() = default;
  bool isStraight() const { return kind == Kind::Ray || radius == 0.0; }

  Kind kind = Kind::Ray;
  Place a;             // origin, centre of a distance, or first point of the chord
  Place b;             // second point of the chord
  double angle = 0.0;  // azimuth of a ray, angle of an arc
  Place centre;        // of the circle
  double pointError = 0.0;
  double radius = 0.0;  // of the circle; 0 for an arc so flat that it is a line
};

/// Where the lines or circles of two loci meet, up to two places; they need not lie on the right half or arc.
std::vector<Place> intersections(Locus const& first, Locus const& second);

}  // namespace kvn::detail
