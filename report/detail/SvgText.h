// SvgText: numbers and texts of SVG, with a point for the decimals whatever the locale.
#pragma once

#include "report/detail/Sheet.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kvn::detail {

struct SvgText {
  std::string text;

  SvgText& operator+=(std::string_view more) {
    text += more;
    return *this;
  }
  void number(double value);  ///< of pixels, to a hundredth
  void fixed(double value, int decimals);
  void integer(std::size_t value);
  /// Characters that mean something in XML as entities; those that XML cannot hold as blanks.
  void escaped(std::string_view utf8);

  SvgText& attribute(char const* name, double pixels);
  SvgText& exact(char const* name, double value);  ///< as few digits as tell the double
  SvgText& count(char const* name, std::size_t value);

  void line(Place from, Place to, char const* classes);
  void rectangle(Box const& box, char const* classes);

  static std::string of(double value);                     ///< a number in at most six digits
  static std::string symbol(bool isKnown, double radius);  ///< of a point at 0, 0
};

struct SiteEllipseAxes {
  double major;
  double minor;
  double bearing;
};

SiteEllipseAxes axesOf(SiteEllipse const& standard, double factor);

}  // namespace kvn::detail
