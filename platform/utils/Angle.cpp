#include <utils/Circle.h>
#include <utils/Degree.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <system_error>

namespace utils {
namespace {

constexpr double kSecondsPerDegree = 3600.0;
// Above this many units of the last place the split into fields would lose digits; no angle comes near it.
constexpr double kLargestUnits = 9.0e15;
// Fields of no more digits fit into 32 bits.
constexpr std::size_t kShortFields = 9;

std::string_view trimmed(std::string_view text) {
  constexpr char const* kBlanks = " \t\r\n\v\f";
  auto const first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool allDigits(std::string_view text) { return text.find_first_not_of("0123456789") == std::string_view::npos; }

/// The digits as a number; 0 without digits, `outOfRange` when no double is that large or that small.
double number(std::string const& digits, double outOfRange) {
  double value = 0.0;
  auto const result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return result.ec == std::errc::result_out_of_range ? outOfRange : value;
}

/// Decimal degrees of DD and MMSSsss of up to nine digits each, by whole numbers: the same to the last bit as by texts,
/// because the division of two numbers that are exact gives the nearest double to the seconds.
double shortFields(std::string_view whole, std::string_view decimals) {
  constexpr std::array<std::uint32_t, 6> kPowers{1, 10, 100, 1000, 10000, 100000};
  auto const numberIn = [](std::string_view digits, std::uint32_t before) {
    for (char const digit : digits) before = before * 10 + static_cast<std::uint32_t>(digit - '0');
    return before;
  };
  std::uint32_t minutes = numberIn(decimals.substr(0, 2), 0);
  if (decimals.size() < 2) minutes *= kPowers[2 - decimals.size()];
  std::string_view const tail = decimals.size() > 2 ? decimals.substr(2) : std::string_view{};
  std::uint32_t secondDigits = numberIn(tail, 0);
  if (tail.size() < 2) secondDigits *= kPowers[2 - tail.size()];
  double const seconds = double(secondDigits) / double(kPowers[tail.size() > 2 ? tail.size() - 2 : 0]);
  return ((double(numberIn(whole, 0)) * 60.0 + double(minutes)) * 60.0 + seconds) / kSecondsPerDegree;
}

/// Decimal degrees of [sign]DD[.MMSSsss]; false when the text has another form.
bool readFields(std::string_view text, double& degrees) {
  double const sign = !text.empty() && text.front() == '-' ? -1.0 : 1.0;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  auto const point = text.find('.');
  std::string_view const whole = text.substr(0, point);
  std::string_view const decimals = point == std::string_view::npos ? std::string_view{} : text.substr(point + 1);
  if (whole.empty() && decimals.empty()) return false;
  if (!allDigits(whole) || !allDigits(decimals)) return false;
  if (whole.size() <= kShortFields && decimals.size() <= kShortFields) {
    degrees = sign * shortFields(whole, decimals);
    return true;
  }

  std::string padded(decimals);
  if (padded.size() < 4) padded.append(4 - padded.size(), '0');
  // Whole degrees can only be too large, seconds with two digits before the point only too small.
  double const wholeDegrees = number(std::string(whole), HUGE_VAL);
  double const minutes = number(padded.substr(0, 2), 0.0);
  double const seconds = number(padded.substr(2, 2) + "." + padded.substr(4), 0.0);
  degrees = sign * ((wholeDegrees * 60.0 + minutes) * 60.0 + seconds) / kSecondsPerDegree;
  return std::isfinite(degrees);
}

/// A plain number in the C locale; false when the text has another form or is not finite.
bool readPlain(std::string_view text, double& value) {
  // from_chars knows no plus; behind one it would take the minus of "+-5".
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') return false;
  }
  auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && std::isfinite(value);
}

/// Decimal degrees of a DD.MMSS text, a number with an exponent included.
bool readDms(std::string_view text, double& degrees) {
  text = trimmed(text);
  if (readFields(text, degrees)) return true;
  double plain = 0.0;
  if (!readPlain(text, plain)) return false;
  return readFields(QString::number(plain, 'f', 10).toStdString(), degrees);
}

constexpr std::array<std::int64_t, 12> kPowersOfTen{
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000, 10000000000, 100000000000};

std::int64_t powerOfTen(int exponent) { return kPowersOfTen[static_cast<std::size_t>(exponent)]; }

/// With zeros in front, up to `width` digits.
void appendPadded(std::string& text, std::int64_t number, int width) {
  for (std::int64_t unit = powerOfTen(width - 1); unit > 0; unit /= 10) {
    text += static_cast<char>('0' + number / unit % 10);
  }
}

struct Separators {
  char const* afterDegrees;
  char const* afterMinutes;
  char const* afterSeconds;
};

Separators separators(DMSFormat format) {
  switch (format) {
    case DDMMSS:
      return {"", "", ""};
    case DDSMMSSS:
      return {" ", " ", ""};
    case DDCMMCSS:
      return {":", ":", ""};
    case DDPMMSS:
    case DegreeToDDPMMSS:
      return {".", "", ""};
    default:
      return {"\u00B0", "\u2032", "\u2033"};
  }
}

/// Sexagesimal text of |degrees|, rounded to whole units of 10^-decimals seconds before it is cut into fields.
/// In UTF-8.
std::string sexagesimal(double degrees, DMSFormat format, int decimals) {
  std::int64_t const perSecond = powerOfTen(decimals);
  double const rounded = std::round(std::abs(degrees) * kSecondsPerDegree * static_cast<double>(perSecond));
  if (!(rounded < kLargestUnits)) return QString::number(degrees, 'g', 17).toStdString();
  auto const units = static_cast<std::int64_t>(rounded);
  std::int64_t const seconds = units / perSecond;

  Separators const by = separators(format);
  std::string text(units != 0 && degrees < 0.0 ? "-" : "");
  text += std::to_string(seconds / 3600);
  text += by.afterDegrees;
  appendPadded(text, seconds / 60 % 60, 2);
  text += by.afterMinutes;
  appendPadded(text, seconds % 60, 2);
  if (decimals > 0) {
    if (*by.afterMinutes != '\0' || format == DDMMSS) text += '.';
    appendPadded(text, units % perSecond, decimals);
  }
  return text += by.afterSeconds;
}

/// Degrees and decimal minutes; two more decimals than the seconds have, to keep the resolution.
std::string degreesAndMinutes(double degrees, DMSFormat format, int secondDecimals) {
  int const decimals = secondDecimals + 2;
  std::int64_t const perMinute = powerOfTen(decimals);
  double const rounded = std::round(std::abs(degrees) * 60.0 * static_cast<double>(perMinute));
  if (!(rounded < kLargestUnits)) return QString::number(degrees, 'g', 17).toStdString();
  auto const units = static_cast<std::int64_t>(rounded);
  std::string text(units != 0 && degrees < 0.0 ? "-" : "");
  text += std::to_string(units / perMinute / 60);
  text += format == DDPMM ? "." : format == DDCMM ? ":" : "\u00B0";
  appendPadded(text, units / perMinute % 60, 2);
  if (format != DDPMM) text += '.';
  appendPadded(text, units % perMinute, decimals);
  return format == DDRMMR ? text += "\u2032" : text;
}

}  // namespace

Degree Radian::toDegree(int mark) const { return Degree(value / kPi * 180.0, mark); }

Degree::Degree(double degrees, int /*mark*/) : value(degrees) {}

Radian Degree::toRadian() const { return Radian(value / 180.0 * kPi); }

std::string Degree::toUtf8(DMSFormat format, int secondDecimals) const {
  int const decimals = secondDecimals < 0 ? 0 : secondDecimals > 9 ? 9 : secondDecimals;
  switch (format) {
    case RADIAN:
      return QString::number(double(toRadian()), 'f', decimals + 6).toStdString();
    case DEGREE:
      return QString::number(value, 'f', decimals + 4).toStdString();
    case Gon:
      return QString::number(value / 0.9, 'f', decimals + 4).toStdString();
    case Honey:
      return QString::number(value / 360.0 * 6000.0, 'f', decimals + 2).toStdString();
    case DDCMM:
    case DDRMMR:
    case DDPMM:
      return degreesAndMinutes(value, format, decimals);
    case DMSFix1:
      return sexagesimal(value, format, 1);
    default:
      return sexagesimal(value, format, decimals);
  }
}

QString Degree::toString(DMSFormat format, int /*mark*/, int secondDecimals) const {
  return QString::fromStdString(toUtf8(format, secondDecimals));
}

QString Degree::toString(DMSFormat format, int decimals) const {
  if (format != DegreeToDDPMMSS) return toString(format, 0, decimals);
  if (decimals >= 4 || !std::isfinite(value)) return toString(format, 0, decimals - 4);
  // Fewer decimals than DD.MMSS has digits: round to the unit that the last kept digit stands for, then cut.
  constexpr std::array<double, 4> kSecondsPerUnit{3600.0, 600.0, 60.0, 10.0};
  int const kept = decimals < 0 ? 0 : decimals;
  double const unit = kSecondsPerUnit[static_cast<std::size_t>(kept)];
  double const rounded = std::round(value * kSecondsPerDegree / unit) * unit / kSecondsPerDegree;
  QString const text = QString::fromStdString(sexagesimal(rounded, format, 0));
  return kept == 0 ? text.section(QLatin1Char('.'), 0, 0) : text.left(text.indexOf(QLatin1Char('.')) + 1 + kept);
}

double Degree::bytesToDouble(std::string_view text, DMSFormat format, bool* valid) {
  double result = 0.0;
  bool const sexagesimalText = format == DegreeToDDPMMSS || format == DDPMMSSToRadian;
  bool const good = sexagesimalText ? readDms(text, result) : readPlain(trimmed(text), result);
  if (valid != nullptr) *valid = good;
  if (!good) return 0.0;
  return format == DDPMMSSToRadian ? double(Degree(result).toRadian()) : result;
}

std::string axisText(double radians) {
  if (!std::isfinite(radians)) return {};
  long const minutes = std::lround(radians * (180.0 / kPi) * 60.0) % (180L * 60L);
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%ld°%02ld′", minutes / 60, minutes % 60);
  return text.data();
}

double Degree::stringtoDouble(QString const& text, DMSFormat format, bool* valid) {
  return bytesToDouble(text.toStdString(), format, valid);
}

}  // namespace utils
