#include "report/detail/SvgText.h"

#include "report/detail/NamePlaces.h"

#include <charconv>
#include <cmath>

namespace kvn::detail {
namespace {

std::string fixedText(double value, int decimals) {
  char digits[400];
  auto const end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
  return {digits, end.ptr};
}

std::string exactText(double value) {
  char digits[64];
  auto const end = std::to_chars(digits, digits + sizeof digits, value);
  return {digits, end.ptr};
}

}  // namespace

void SvgText::number(double value) {
  std::string digits = fixedText(std::isfinite(value) ? value : 0.0, 2);
  while (digits.back() == '0') digits.pop_back();
  if (digits.back() == '.') digits.pop_back();
  text += digits == "-0" ? "0" : digits;
}

void SvgText::fixed(double value, int decimals) {
  std::string const digits = fixedText(value, decimals);
  bool const isZero = digits.find_first_not_of("-0.") == std::string::npos;
  text += isZero && digits[0] == '-' ? digits.substr(1) : digits;
}

void SvgText::integer(std::size_t value) { text += std::to_string(value); }

void SvgText::escaped(std::string_view utf8) {
  for (char const sign : utf8) {
    switch (sign) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '"':
        text += "&quot;";
        break;
      default:
        text += static_cast<unsigned char>(sign) < 0x20 ? ' ' : sign;
    }
  }
}

SvgText& SvgText::attribute(char const* name, double pixels) {
  text += ' ';
  text += name;
  text += "=\"";
  number(pixels);
  text += '"';
  return *this;
}

SvgText& SvgText::exact(char const* name, double value) {
  text += ' ';
  text += name;
  text += "=\"";
  text += exactText(value);
  text += '"';
  return *this;
}

SvgText& SvgText::count(char const* name, std::size_t value) {
  text += ' ';
  text += name;
  text += "=\"";
  integer(value);
  text += '"';
  return *this;
}

void SvgText::line(Place from, Place to, char const* classes) {
  text += "<line";
  if (classes[0] != '\0') text += std::string(" class=\"") + classes + '"';
  attribute("x1", from.x).attribute("y1", from.y).attribute("x2", to.x).attribute("y2", to.y);
  text += "/>\n";
}

void SvgText::rectangle(Box const& box, char const* classes) {
  text += "<rect";
  if (classes[0] != '\0') text += std::string(" class=\"") + classes + '"';
  attribute("x", box.left).attribute("y", box.top).attribute("width", box.width()).attribute("height", box.height());
  text += "/>\n";
}

std::string SvgText::of(double value) {
  char digits[64];
  auto const end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
  std::string const general(digits, end.ptr);
  return general.find('e') == std::string::npos || std::abs(value) < 1.0 ? general : fixedText(value, 0);
}

std::string SvgText::symbol(bool isKnown, double radius) {
  SvgText out;
  if (isKnown) {
    out += "<path class=\"s\" d=\"M0 ";
    out.number(-1.15 * radius);
    out += "L";
    out.number(radius);
    out += " ";
    out.number(0.58 * radius);
    out += "H";
    out.number(-radius);
    out += "Z\"/>";
  } else {
    out += "<circle class=\"s\"";
    out.attribute("r", radius);
    out += "/>";
  }
  return out.text;
}

SiteEllipseAxes axesOf(SiteEllipse const& standard, double factor) {
  return {factor * standard.semiMajor, factor * standard.semiMinor, standard.bearing};
}

}  // namespace kvn::detail
