#include "report/detail/PointColumns.h"

#include <utils/Circle.h>

#include <cmath>

namespace kvn::detail {
namespace {

constexpr double kMillimetres = 1000.0;
constexpr double kDegrees = 180.0 / utils::kPi;

using Source = SiteDrawing::Source;

std::optional<double> scaled(std::optional<double> const& value, double factor) {
  return value ? std::optional<double>(factor * *value) : std::nullopt;
}

std::string kindOf(SiteDrawing const& /*drawing*/, SitePoint const& point) {
  if (point.isKnown) return "known";
  return point.isSidePoint ? "side" : "new";
}

/// Of a point with a height alone all is said of that.
bool hasPlace(SitePoint const& point) { return std::isfinite(point.x + point.y); }

std::string coordinateStateOf(SiteDrawing const& drawing, SitePoint const& point) {
  if (!hasPlace(point)) return "none";
  if (point.isApproximate) return "approximate";
  if (drawing.source == Source::Coordinates || drawing.source == Source::Plan) return "given";
  return point.isHeld ? "held" : "adjusted";
}

std::string checkedOf(SiteDrawing const& drawing, SitePoint const& point) {
  bool const isTested = drawing.source != Source::Coordinates && drawing.source != Source::Literal;
  if (point.isHeld || (hasPlace(point) && !isTested)) return {};
  return point.isChecked ? "yes" : "no";
}

}  // namespace

std::vector<PointColumn> const& pointColumns() {
  using D = SiteDrawing const&;
  using P = SitePoint const&;
  static std::vector<PointColumn> const columns{
      {"name", [](D, P p) { return p.name; }, nullptr},
      {"north_m", nullptr, [](D, P p) { return std::optional<double>(p.x); }},
      {"east_m", nullptr, [](D, P p) { return std::optional<double>(p.y); }},
      {"height_m", nullptr, [](D, P p) { return p.height; }},
      {"kind", kindOf, nullptr},
      {"coordinates", coordinateStateOf, nullptr},
      {"checked", checkedOf, nullptr},
      {"sigma_north_mm", nullptr, [](D, P p) { return scaled(p.mx, kMillimetres); }},
      {"sigma_east_mm", nullptr, [](D, P p) { return scaled(p.my, kMillimetres); }},
      {"sigma_position_mm", nullptr, [](D, P p) { return scaled(p.mp, kMillimetres); }},
      {"sigma_height_mm", nullptr, [](D, P p) { return scaled(p.heightError, kMillimetres); }},
      {"ellipse_major_mm", nullptr,
       [](D, P p) { return p.ellipse ? scaled(p.ellipse->semiMajor, kMillimetres) : std::nullopt; }},
      {"ellipse_minor_mm", nullptr,
       [](D, P p) { return p.ellipse ? scaled(p.ellipse->semiMinor, kMillimetres) : std::nullopt; }},
      {"ellipse_bearing_deg", nullptr,
       [](D, P p) { return p.ellipse ? scaled(p.ellipse->bearing, kDegrees) : std::nullopt; }},
      {"shift_north_mm", nullptr, [](D, P p) { return p.shift ? scaled(p.shift->north, kMillimetres) : std::nullopt; }},
      {"shift_east_mm", nullptr, [](D, P p) { return p.shift ? scaled(p.shift->east, kMillimetres) : std::nullopt; }},
  };
  return columns;
}

}  // namespace kvn::detail
