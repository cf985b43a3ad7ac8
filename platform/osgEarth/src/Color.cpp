#include <osgEarth/Color>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <vector>

namespace osgEarth {
inline namespace kelvane {
namespace {

constexpr float kByte = 255.0f;
constexpr unsigned kOpaque = 0xFF;

std::string lowerAndTrimmed(std::string const& text) {
  auto const blank = [](unsigned char c) { return std::isspace(c) != 0; };
  auto const first = std::find_if_not(text.begin(), text.end(), blank);
  auto const last = std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), blank).base();
  std::string result(first, last);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

unsigned hexDigit(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10u;
  return 0;
}

osg::Vec4f ofBytes(std::array<unsigned, 4> const& bytes, Color::Format format) {
  auto const part = [&](std::size_t i) { return static_cast<float>(bytes[format == Color::RGBA ? i : 3 - i]) / kByte; };
  return {part(0), part(1), part(2), part(3)};
}

osg::Vec4f ofHex(std::string digits, Color::Format format) {
  if (digits.size() == 3) digits = {digits[0], digits[0], digits[1], digits[1], digits[2], digits[2]};
  if (digits.size() < 6) return {0.0f, 0.0f, 0.0f, 1.0f};
  std::vector<unsigned> bytes;
  for (std::size_t i = 0; i + 1 < digits.size() && bytes.size() < 4; i += 2) {
    bytes.push_back(16 * hexDigit(digits[i]) + hexDigit(digits[i + 1]));
  }
  // Without alpha there are three bytes: the opaque one stands where the format has its alpha.
  if (bytes.size() < 4) bytes.insert(format == Color::RGBA ? bytes.end() : bytes.begin(), kOpaque);
  return ofBytes({bytes[0], bytes[1], bytes[2], bytes[3]}, format);
}

/// The numbers in the brackets of "name(1, 2%, 3)"; missing ones are 0, and alpha, the fourth, is 1.
std::array<float, 4> numbersOf(std::string const& text) {
  std::array<float, 4> numbers{0.0f, 0.0f, 0.0f, 1.0f};
  char const* at = text.data() + text.find('(') + 1;
  char const* const end = text.data() + text.size();
  for (std::size_t i = 0; i < numbers.size() && at < end; ++i) {
    while (at < end && (*at == ' ' || *at == ',')) ++at;
    at = std::from_chars(at, end, numbers[i]).ptr;
    at = std::find(at, end, ',');
  }
  return numbers;
}

/// One of the three parts of a colour by hue (degrees), saturation and lightness: CSS Color Module Level 3, 4.2.4, in
/// its closed form, with n = 0, 8, 4 for red, green and blue.
float partOfHsl(float n, float hue, float saturation, float lightness) {
  float const k = std::fmod(n + hue / 30.0f, 12.0f);
  float const reach = saturation * std::min(lightness, 1.0f - lightness);
  return lightness - reach * std::max(-1.0f, std::min({k - 3.0f, 9.0f - k, 1.0f}));
}

osg::Vec4f ofText(std::string const& text, Color::Format format) {
  auto const beginsWith = [&](char const* head) { return text.rfind(head, 0) == 0; };
  if (beginsWith("rgb(") || beginsWith("rgba(")) {
    auto const n = numbersOf(text);
    return {n[0] / kByte, n[1] / kByte, n[2] / kByte, n[3]};
  }
  if (beginsWith("hsl(")) {
    auto const n = numbersOf(text);
    float const hue = std::fmod(std::fmod(n[0], 360.0f) + 360.0f, 360.0f);
    auto const part = [&](float of) { return partOfHsl(of, hue, n[1] / 100.0f, n[2] / 100.0f); };
    return {part(0.0f), part(8.0f), part(4.0f), 1.0f};
  }
  if (beginsWith("#")) return ofHex(text.substr(1), format);
  if (beginsWith("0x")) return ofHex(text.substr(2), format);
  return ofHex(text, format);
}

unsigned byteOf(float part) { return static_cast<unsigned>(std::clamp(part, 0.0f, 1.0f) * kByte); }

}  // namespace

Color::Color(unsigned value, Format format)
    : osg::Vec4f(ofBytes({value >> 24u, (value >> 16u) & 0xFFu, (value >> 8u) & 0xFFu, value & 0xFFu}, format)) {}

Color::Color(std::string const& text, Format format) : osg::Vec4f(ofText(lowerAndTrimmed(text), format)) {}

Color::~Color() = default;

unsigned Color::as(Format format) const {
  unsigned result = 0;
  for (unsigned i = 0; i < 4; ++i) result = (result << 8u) | byteOf((*this)[format == RGBA ? i : 3u - i]);
  return result;
}

std::string Color::toHTML(Format format) const {
  constexpr char const* kDigits = "0123456789abcdef";
  unsigned const value = as(format);
  std::string result("#");
  for (unsigned shift = 32; shift != 0; shift -= 4) result += kDigits[(value >> (shift - 4)) & 0xFu];
  return result;
}

Color const Color::White(0xffffffffu);
Color const Color::Silver(0xc0c0c0ffu);
Color const Color::Gray(0x808080ffu);
Color const Color::Black(0x000000ffu);
Color const Color::Red(0xff0000ffu);
Color const Color::Maroon(0x800000ffu);
Color const Color::Yellow(0xffff00ffu);
Color const Color::Olive(0x808000ffu);
Color const Color::Lime(0x00ff00ffu);
Color const Color::Green(0x008000ffu);
Color const Color::Aqua(0x00ffffffu);
Color const Color::Cyan(0x00ffffffu);
Color const Color::Teal(0x008080ffu);
Color const Color::Blue(0x0000ffffu);
Color const Color::Navy(0x000080ffu);
Color const Color::Fuchsia(0xff00ffffu);
Color const Color::Magenta(0xff00ffffu);
Color const Color::Purple(0x800080ffu);
Color const Color::Orange(0xffa500ffu);
Color const Color::Transparent(0x00000000u);

}  // namespace kelvane
}  // namespace osgEarth
