#include "Format.h"

#include <utils/Degree.h>

#include <cmath>

namespace kvn::host {
namespace {

constexpr int kSecondDecimals = 2;
double const kDegreesPerRadian = 180.0 / std::acos(-1.0);

QString fixed(double value, int decimals) {
  if (!std::isfinite(value)) return QStringLiteral("-");
  QString const text = QString::number(value, 'f', decimals);
  // What rounds to zero has no sign.
  return text.startsWith('-') && text.toDouble() == 0.0 ? text.mid(1) : text;
}

QString sexagesimal(double degrees) {
  if (!std::isfinite(degrees)) return QStringLiteral("-");
  return utils::Degree(degrees).toString(utils::DDRMMRSS, 0, kSecondDecimals);
}

/// The fields are whole numbers below a fraction that is not negative, so that cutting them off is exact.
double degreesOfDms(double dms) {
  double const size = std::abs(dms);
  double const degrees = std::trunc(size / 10000.0);
  double const minutes = std::trunc((size - degrees * 10000.0) / 100.0);
  double const rest = size - degrees * 10000.0 - minutes * 100.0;
  return std::copysign(degrees + minutes / 60.0 + rest / 3600.0, dms);
}

QString belowFullCircle(double degrees) {
  constexpr double kUnitsPerDegree = 360000.0;  // hundredths of a second, the last digit that is printed
  double const units = std::fmod(std::round(degrees * kUnitsPerDegree), 360.0 * kUnitsPerDegree);
  return sexagesimal(units / kUnitsPerDegree);
}

}  // namespace

QString metres(double metres) { return fixed(metres, 4); }

QString millimetres(double metres) { return fixed(metres * 1000.0, 2); }

QString seconds(double seconds) { return fixed(seconds, 2); }

QString angleOfRadians(double radians) { return sexagesimal(radians * kDegreesPerRadian); }

QString angleOfDms(double dms) { return sexagesimal(degreesOfDms(dms)); }

QString azimuthOfDms(double dms) { return belowFullCircle(degreesOfDms(dms)); }

QString azimuthOfRadians(double radians) { return belowFullCircle(radians * kDegreesPerRadian); }

QString axisOfRadians(double radians) {
  if (!std::isfinite(radians)) return QStringLiteral("-");
  long const minutes = std::lround(radians * kDegreesPerRadian * 60.0) % (180L * 60L);
  return QString("%1°%2′").arg(minutes / 60).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

QString shortNumber(double value) { return QString::number(value, 'g', 7); }

QString counted(std::size_t count, char const* one, char const* many) {
  return QString("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

}  // namespace kvn::host
