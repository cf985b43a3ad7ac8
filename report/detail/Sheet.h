// Sheet: how the points of a drawing lie on a picture.
#pragma once

#include "report/SiteDrawing.h"

#include <cstddef>
#include <vector>

namespace kvn::detail {

struct Box {
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;

  double width() const { return right - left; }
  double height() const { return bottom - top; }
};

struct Place {
  double x = 0.0;  ///< pixels to the right
  double y = 0.0;  ///< pixels down
};

/// Least and largest coordinates, metres. Of no points one metre about the origin.
struct Extent {
  double north[2] = {-0.5, 0.5};
  double east[2] = {-0.5, 0.5};

  double height() const { return north[1] - north[0]; }
  double width() const { return east[1] - east[0]; }
};

Extent extentOf(SiteDrawing const& drawing);

/// North is up, one scale for both coordinates.
struct Sheet {
  double pixels = 1.0;  ///< per metre
  double north = 0.0;   ///< coordinates of the pixel 0, 0
  double east = 0.0;

  /// @param area  of the picture, into which all points go, with `margin` pixels around them.
  Sheet(Extent const& extent, Box const& area, double margin);

  Place placeOf(double x, double y) const { return {(y - east) * pixels, (north - x) * pixels}; }
};

/// The largest of 1, 2 and 5 times a power of ten that is not above a value above 0.
double roundStep(double value);

/// The multiples of a step above 0 between two values, at most some hundreds.
std::vector<double> multiplesBetween(double least, double largest, double step);

/// How many times larger than the distances ellipses are to be drawn for the median one to be a 25th of the width, and
/// no wider than the points lie apart; 0 without any.
/// @param factor  by which standard ellipses are multiplied.
double ellipseScaleFor(SiteDrawing const& drawing, double factor, Extent const& extent);

}  // namespace kvn::detail
