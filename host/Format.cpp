#include "Format.h"

#include <utils/Circle.h>
#include <utils/Degree.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace kvn::host {
namespace {

constexpr int kSecondDecimals = 2;
constexpr double kDegreesPerRadian = 180.0 / utils::kPi;

// Beyond, the digits are left to QString: up to here the next double is nearer than half of the last of four decimals.
constexpr double kManyDigits = 1e10;

/// What lies exactly between two texts goes away from zero, as QString rounds it, where the standard library takes the
/// even digit. It can only be a whole number of 2^-(decimals + 1): the product is exact.
double offTheMiddle(double value, int decimals) {
  double const halves = std::ldexp(value, decimals + 1);
  bool const isMiddle = std::trunc(halves) == halves && std::fmod(halves, 2.0) != 0.0;
  return isMiddle ? std::nextafter(value, std::copysign(kManyDigits, value)) : value;
}

std::string fixed(double value, int decimals) {
  if (!std::isfinite(value)) return "-";
  if (std::abs(value) >= kManyDigits) return QString::number(value, 'f', decimals).toStdString();
  std::array<char, 32> digits{};
  auto const last = std::to_chars(digits.data(), digits.data() + digits.size(), offTheMiddle(value, decimals),
                                  std::chars_format::fixed, decimals);
  std::string text(digits.data(), last.ptr);
  // What rounds to zero has no sign.
  if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
  return text;
}

std::string sexagesimal(double degrees) {
  return std::isfinite(degrees) ? utils::Degree(degrees).toUtf8(utils::DDRMMRSS, kSecondDecimals) : "-";
}

/// The fields are whole numbers below a fraction that is not negative, so that cutting them off is exact.
double degreesOfDms(double dms) {
  double const size = std::abs(dms);
  double const degrees = std::trunc(size / 10000.0);
  double const minutes = std::trunc((size - degrees * 10000.0) / 100.0);
  double const rest = size - degrees * 10000.0 - minutes * 100.0;
  return std::copysign(degrees + minutes / 60.0 + rest / 3600.0, dms);
}

std::string belowFullCircle(double degrees) {
  constexpr double kUnitsPerDegree = 360000.0;  // hundredths of a second, the last digit that is printed
  double const units = std::fmod(std::round(degrees * kUnitsPerDegree), 360.0 * kUnitsPerDegree);
  return sexagesimal(units / kUnitsPerDegree);
}

}  // namespace

std::string metresText(double metres) { return fixed(metres, 4); }

std::string millimetresText(double metres) { return fixed(metres * 1000.0, 2); }

std::string secondsText(double seconds) { return fixed(seconds, 2); }

std::string ratioText(double ratio) { return fixed(ratio, 2); }

double secondsOfRadians(double radians) { return radians * utils::kSecondsPerRadian; }

double dmsOfRadians(double radians) {
  // What rounding left just below a whole minute is that minute: 60 seconds are none of an angle.
  constexpr double kMinuteSlack = 1e-9;
  double const seconds = std::abs(secondsOfRadians(radians));
  double const minutes = std::floor(seconds / 60.0 + kMinuteSlack);
  double const degrees = std::floor(minutes / 60.0);
  double const rest = std::max(0.0, seconds - minutes * 60.0);
  return std::copysign(degrees * 10000.0 + (minutes - degrees * 60.0) * 100.0 + rest, radians);
}

std::string angleOfDmsText(double dms) { return sexagesimal(degreesOfDms(dms)); }

std::string azimuthOfDmsText(double dms) { return belowFullCircle(degreesOfDms(dms)); }

std::string axisOfRadiansText(double radians) { return std::isfinite(radians) ? utils::axisText(radians) : "-"; }

QString metres(double metres) { return QString::fromStdString(metresText(metres)); }

QString millimetres(double metres) { return QString::fromStdString(millimetresText(metres)); }

QString seconds(double seconds) { return QString::fromStdString(secondsText(seconds)); }

QString angleOfRadians(double radians) { return QString::fromStdString(sexagesimal(radians * kDegreesPerRadian)); }

QString angleOfDms(double dms) { return QString::fromStdString(angleOfDmsText(dms)); }

QString azimuthOfDms(double dms) { return QString::fromStdString(azimuthOfDmsText(dms)); }

QString azimuthOfRadians(double radians) {
  return QString::fromStdString(belowFullCircle(radians * kDegreesPerRadian));
}

QString axisOfRadians(double radians) { return QString::fromStdString(axisOfRadiansText(radians)); }

QString shortNumber(double value) { return QString::number(value, 'g', 7); }

QString counted(std::size_t count, QString const& one, QString const& many) {
  return (count == 1 ? one : many).arg(count);
}

}  // namespace kvn::host
