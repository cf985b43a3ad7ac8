#include "report/detail/PageNumbers.h"

#include <utils/Circle.h>
#include <utils/Degree.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace kvn::detail {
namespace {

constexpr char const* kNone = "–";
constexpr char const* kMinus = "−";
constexpr double kDegreesPerRadian = 180.0 / utils::kPi;
// Beyond, a number is none of surveying; it is told with its power of ten.
constexpr double kLongest = 1e15;

/// With a minus that stands out of the digits; what rounds to zero has none.
std::string withMinus(std::string text) {
  if (text.empty() || text.front() != '-') return text;
  text.erase(0, 1);
  return text.find_first_not_of("0.") == std::string::npos ? text : kMinus + text;
}

/// Tenths of a second, whole, so that nothing is carried into 60.
std::string sexagesimal(double tenths) { return utils::Degree(tenths / 36000.0).toUtf8(utils::DDRMMRSS, 1); }

}  // namespace

std::string decimals(double value, int count) {
  if (!std::isfinite(value)) return kNone;
  std::array<char, 64> digits{};
  bool const isLong = std::abs(value) >= kLongest;
  auto const last = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                  isLong ? std::chars_format::scientific : std::chars_format::fixed, count);
  return withMinus(std::string(digits.data(), last.ptr));
}

std::string metres(double metres) { return decimals(metres, 4); }

std::string millimetres(double metres) { return decimals(1000.0 * metres, 1); }

std::string seconds(double radians) { return decimals(radians * utils::kSecondsPerRadian, 1); }

std::string ratio(double value) { return decimals(value, 2); }

std::string shortest(double value) {
  if (!std::isfinite(value)) return kNone;
  std::array<char, 64> digits{};
  auto const last = std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general, 7);
  return withMinus(std::string(digits.data(), last.ptr));
}

std::string fineSeconds(double radians) { return decimals(radians * utils::kSecondsPerRadian, 2); }

std::string length(double metres) {
  return std::abs(metres) < 1.0 ? millimetres(metres) + " mm" : decimals(metres, 2) + " m";
}

std::string percent(double share) { return shortest(100.0 * share) + " %"; }

std::string angle(double radians) {
  double const tenths = std::round(std::abs(radians) * kDegreesPerRadian * 36000.0);
  if (!(tenths < kLongest)) return kNone;
  std::string const size = sexagesimal(tenths);
  return radians < 0.0 && tenths > 0.0 ? kMinus + size : size;
}

std::string azimuth(double radians) {
  constexpr double kCircle = 360.0 * 36000.0;
  double const tenths = std::round(std::fmod(radians * kDegreesPerRadian, 360.0) * 36000.0);
  if (!std::isfinite(tenths)) return kNone;
  return sexagesimal(std::fmod(tenths + kCircle, kCircle));
}

std::string axis(double radians) { return std::isfinite(radians) ? utils::axisText(radians) : kNone; }

std::string oneTo(double value) {
  constexpr double kFinest = 1e-7;  // beyond what anything measures
  if (!(value > 0.0)) return kNone;
  return value < kFinest ? "< 1 : " + decimals(1.0 / kFinest, 0) : "1 : " + decimals(1.0 / value, 0);
}

}  // namespace kvn::detail
