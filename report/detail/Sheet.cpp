#include "report/detail/Sheet.h"

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

// Of the greater extent: points that lie on one line, or in one place, are given this much room across it, metres.
constexpr double kLeastExtent = 1.0;
constexpr double kEllipsesAcross = 25.0;
// Along the greater side, for how densely the points lie: a few points lie in as many squares.
constexpr int kSquares = 24;

void widen(double (&range)[2], double least) {
  double const missing = least - (range[1] - range[0]);
  if (missing <= 0.0) return;
  range[0] -= missing / 2.0;
  range[1] += missing / 2.0;
}

/// Of the squares that points lie in, square metres.
double occupiedArea(SiteDrawing const& drawing, Extent const& extent) {
  double const side = std::max(extent.width(), extent.height()) / kSquares;
  std::vector<bool> isOccupied(static_cast<std::size_t>(kSquares * kSquares), false);
  auto const square = [side](double distance) {
    return std::clamp(static_cast<int>(distance / side), 0, kSquares - 1);
  };
  for (SitePoint const& point : drawing.points) {
    int const number = square(point.x - extent.north[0]) * kSquares + square(point.y - extent.east[0]);
    isOccupied[static_cast<std::size_t>(number)] = true;
  }
  return side * side * static_cast<double>(std::count(isOccupied.begin(), isOccupied.end(), true));
}

}  // namespace

Extent extentOf(SiteDrawing const& drawing) {
  Extent extent;
  if (drawing.points.empty()) return extent;
  SitePoint const& first = drawing.points.front();
  extent = {{first.x, first.x}, {first.y, first.y}};
  for (SitePoint const& point : drawing.points) {
    extent.north[0] = std::min(extent.north[0], point.x);
    extent.north[1] = std::max(extent.north[1], point.x);
    extent.east[0] = std::min(extent.east[0], point.y);
    extent.east[1] = std::max(extent.east[1], point.y);
  }
  // All in one place: a picture of a metre about it.
  if (std::max(extent.width(), extent.height()) < 1e-6) {
    widen(extent.north, kLeastExtent);
    widen(extent.east, kLeastExtent);
  }
  return extent;
}

Sheet::Sheet(Extent const& extent, Box const& area, double margin) {
  double const across = std::max(area.width() - 2.0 * margin, 1.0);
  double const down = std::max(area.height() - 2.0 * margin, 1.0);
  pixels = std::min(across / std::max(extent.width(), 1e-9), down / std::max(extent.height(), 1e-9));
  double const middleNorth = (extent.north[0] + extent.north[1]) / 2.0;
  double const middleEast = (extent.east[0] + extent.east[1]) / 2.0;
  north = middleNorth + (area.top + area.bottom) / 2.0 / pixels;
  east = middleEast - (area.left + area.right) / 2.0 / pixels;
}

double roundStep(double value) {
  double const power = std::pow(10.0, std::floor(std::log10(value)));
  double const digits = value / power;
  return (digits >= 5.0 ? 5.0 : digits >= 2.0 ? 2.0 : 1.0) * power;
}

std::vector<double> multiplesBetween(double least, double largest, double step) {
  constexpr double kMost = 500.0;
  std::vector<double> values;
  double const first = std::ceil(least / step);
  double const count = std::min(std::floor(largest / step) - first + 1.0, kMost);
  values.reserve(count > 0.0 ? static_cast<std::size_t>(count) : 0);
  for (int i = 0; i < static_cast<int>(count); ++i) values.push_back((first + i) * step);
  return values;
}

double ellipseScaleFor(SiteDrawing const& drawing, double factor, Extent const& extent) {
  std::vector<double> sizes;
  for (SitePoint const& point : drawing.points) {
    if (point.ellipse && point.ellipse->semiMajor > 0.0) sizes.push_back(2.0 * factor * point.ellipse->semiMajor);
  }
  if (sizes.empty()) return 0.0;
  auto const middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
  std::nth_element(sizes.begin(), middle, sizes.end());
  double const greater = std::max(extent.width(), extent.height());
  double const apart = std::sqrt(occupiedArea(drawing, extent) / static_cast<double>(drawing.points.size()));
  double const scale = std::min(greater / kEllipsesAcross, apart) / *middle;
  // Rounded to the next one, up or down.
  return scale > 0.0 && std::isfinite(scale) ? roundStep(1.4 * scale) : 0.0;
}

}  // namespace kvn::detail
