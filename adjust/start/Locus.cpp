#include "adjust/start/Locus.h"

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

constexpr double kTouch = 1.0 + 10.0 * Locus::kTolerance;  // of circles that miss by what the errors allow
// An arc whose angle is this near to 0 or to half a circle is a straight line over any distance that is measured.
constexpr double kFlatArc = 1e-6;
// A place this near to an end of a chord, as a share of its length, is that end.
constexpr double kAtEnd = 1e-6;

double dot(Place u, Place v) { return u.real() * v.real() + u.imag() * v.imag(); }

Place unit(Place v) {
  double const length = std::abs(v);
  return length > 0.0 ? v / length : Place(1.0, 0.0);
}

std::vector<Place> meetLines(Place p, Place u, Place q, Place v) {
  double const area = cross(u, v);
  if (area == 0.0) return {};
  return {p + u * (cross(q - p, v) / area)};
}

std::vector<Place> meetLineAndCircle(Place p, Place u, Place centre, double radius) {
  double const along = dot(centre - p, u);
  double const aside = cross(u, centre - p);
  double const half2 = radius * radius - aside * aside;
  Place const foot = p + u * along;
  // A line that passes a circle by little more than the errors allow touches it.
  if (half2 <= 0.0) return std::abs(aside) < radius * kTouch ? std::vector<Place>{foot} : std::vector<Place>{};
  double const half = std::sqrt(half2);
  return {foot + u * half, foot - u * half};
}

std::vector<Place> meetCircles(Place c1, double r1, Place c2, double r2) {
  Place const between = c2 - c1;
  double const d = std::abs(between);
  if (d == 0.0) return {};
  Place const u = between / d;
  double const along = (d * d + r1 * r1 - r2 * r2) / (2.0 * d);
  double const half2 = r1 * r1 - along * along;
  double const gap = std::max(d - r1 - r2, std::abs(r1 - r2) - d);
  if (half2 <= 0.0) return gap < (kTouch - 1.0) * d ? std::vector<Place>{c1 + u * along} : std::vector<Place>{};
  Place const across = u * Place(0.0, std::sqrt(half2));
  return {c1 + u * along + across, c1 + u * along - across};
}

}  // namespace

Locus Locus::ray(Place origin, double azimuth, double error) {
  Locus locus;
  locus.pointError = error;
  locus.kind = Kind::Ray;
  locus.a = origin;
  locus.angle = azimuth;
  return locus;
}

Locus Locus::distance(Place centre, double radius, double error) {
  Locus locus;
  locus.pointError = error;
  locus.kind = Kind::Distance;
  locus.a = locus.centre = centre;
  locus.radius = radius;
  return locus;
}

// Inscribed angle: the centre of the circle sees the chord under twice the angle.
Locus Locus::arc(Place a, Place b, double angle, double error) {
  Locus locus;
  locus.pointError = error;
  locus.kind = Kind::Arc;
  locus.a = a;
  locus.b = b;
  locus.angle = angle;
  double const sine = std::sin(angle);
  if (std::abs(sine) < kFlatArc || a == b) return locus;
  locus.centre = 0.5 * (a + b) + Place(0.0, 0.5) * (b - a) * (std::cos(angle) / sine);
  locus.radius = std::abs(locus.centre - a);
  return locus;
}

Place Locus::correction(Place place) const {
  Place const fromA = place - a;
  switch (kind) {
    case Kind::Ray: {
      Place const u = polar(1.0, angle);
      if (dot(u, fromA) <= 0.0) return -fromA;
      return u * Place(0.0, -cross(u, fromA));
    }
    case Kind::Distance:
      return unit(fromA) * (radius - std::abs(fromA));
    case Kind::Arc:
      break;
  }
  // The angle under which the chord is seen changes along its gradient, i (1 / conj(a - p) - 1 / conj(b - p)).
  Place const toA = a - place;
  Place const toB = b - place;
  // At the ends of the chord, where circles over two chords with a common point meet again, nothing sees it.
  double const atEnd = kAtEnd * std::abs(b - a);
  if (std::abs(toA) <= atEnd || std::abs(toB) <= atEnd) return b - a;
  double const missing = foldedAngle(angle - std::arg(toB / toA));
  Place const gradient = Place(0.0, -1.0) * (1.0 / std::conj(toB) - 1.0 / std::conj(toA));
  return gradient * (missing / std::norm(gradient));
}

double Locus::offset(Place place) const { return std::abs(correction(place)); }

double Locus::nearest(Place place) const {
  double const toA = std::abs(place - a);
  return kind == Kind::Arc ? std::min(toA, std::abs(place - b)) : toA;
}

double Locus::tolerance(Place place) const {
  double const toA = std::abs(place - a);
  if (kind != Kind::Arc) return kTolerance * toA + pointError;
  return kTolerance * std::max(toA, std::abs(place - b)) + pointError;
}

Place Locus::tangent(Place place) const {
  if (kind == Kind::Ray) return polar(1.0, angle);
  if (isStraight()) return unit(b - a);
  return unit(place - centre) * Place(0.0, 1.0);
}

bool Locus::isSameCircle(Locus const& other) const {
  double const tolerance = 10.0 * kTolerance * radius;
  return radius > 0.0 && std::abs(centre - other.centre) < tolerance && std::abs(radius - other.radius) < tolerance;
}

std::vector<Place> intersections(Locus const& first, Locus const& second) {
  // Two rays from one point say the same, or contradict each other: they meet nowhere else.
  bool const areRays = first.kind == Locus::Kind::Ray && second.kind == Locus::Kind::Ray;
  if (areRays && std::abs(first.a - second.a) <= kAtEnd) return {};
  if (!first.isStraight() && second.isStraight()) return intersections(second, first);
  Place const u = first.tangent(first.a);
  if (!first.isStraight()) return meetCircles(first.centre, first.radius, second.centre, second.radius);
  if (!second.isStraight()) return meetLineAndCircle(first.a, u, second.centre, second.radius);
  return meetLines(first.a, u, second.a, second.tangent(second.a));
}

}  // namespace kvn::detail
