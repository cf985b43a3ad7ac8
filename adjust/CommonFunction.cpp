#include "adjust/CommonFunction.h"

#include "core/AlgorithmException.h"

#include <utils/Circle.h>
#include <utils/Degree.h>
#include <utils/Formater.h>
#include <utils/Number.h>
#include <utils/Pieces.h>

#include <cmath>
#include <limits>

namespace kvn {
namespace {

// Lift of DD.MMSS before it is cut, and what it makes of the seconds; the hundredth part more covers rounding.
constexpr double kLift = 1e-10;
constexpr double kLiftSeconds = kLift * 1e4 * 1.01;
constexpr double kNegativeField = -1e-8;

struct DmsFields {
  double sign;
  double degrees;
  double minutes;
  double seconds;
};

DmsFields cutDms(double dms) {
  double const lifted = std::abs(dms) + kLift;
  double const degrees = std::trunc(lifted);
  double const minutes = std::trunc((lifted - degrees) * 100.0);
  return {dms >= 0.0 ? 1.0 : -1.0, degrees, minutes, ((lifted - degrees) * 100.0 - minutes) * 100.0};
}

double toRadians(DmsFields const& f) {
  return f.sign * (f.degrees + f.minutes / 60.0 + f.seconds / 3600.0) / 180.0 * CommonFunction::m_PI;
}

bool outOfRange(double field, double bound) { return !(field >= kNegativeField && field <= bound); }

/// Toward zero; 0 for what no int can hold, which no angle comes near.
int wholeNumber(double value) {
  constexpr double kLargest = std::numeric_limits<int>::max();
  return std::abs(value) <= kLargest ? static_cast<int>(value) : 0;
}

/// Not rounded before it is cut, unlike the texts of `utils::Degree`: hosts get the fields of the number as they are,
/// and a second of 59.996 prints as 60.00.
Degree cutDddmmss(double value) {
  double const degrees = std::trunc(value / 10000.0);
  double const minutes = std::trunc((value - degrees * 10000.0) / 100.0);
  return {wholeNumber(degrees), wholeNumber(minutes), value - degrees * 10000.0 - minutes * 100.0};
}

QString joined(Degree const& angle, char const* afterDegrees, char const* afterMinutes, char const* afterSeconds) {
  return QString::number(angle.degree) + QString::fromUtf8(afterDegrees) + QString::number(angle.minute) +
         QString::fromUtf8(afterMinutes) + QString::number(angle.second, 'f', 2) + QString::fromUtf8(afterSeconds);
}

utils::Degree parsed(QString const& dms) {
  return utils::Radian(utils::Degree::stringtoDouble(dms, utils::DDPMMSSToRadian, nullptr)).toDegree(0);
}

}  // namespace

double const CommonFunction::m_PI = utils::kPi;

double CommonFunction::dmsToRad(double dms) { return toRadians(cutDms(dms)); }

double CommonFunction::dmsToRad(double dms, int row) {
  DmsFields const fields = cutDms(dms);
  bool const bad = outOfRange(fields.degrees, 360.0) || outOfRange(fields.minutes, 60.0) ||
                   outOfRange(fields.seconds, 60.0 + kLiftSeconds);
  if (bad) throw AlgorithmException(row, AlgorithmException::DataError);
  return toRadians(fields);
}

Degree CommonFunction::radToDms(double radians) {
  double const degrees = radians / m_PI * 180.0;
  Degree result;
  result.degree = wholeNumber(degrees);
  double const minutes = (degrees - result.degree) * 60.0;
  result.minute = wholeNumber(minutes);
  result.second = (minutes - result.minute) * 60.0;
  return result;
}

QString CommonFunction::getDmsFormat(Degree const& angle) { return joined(angle, ":", ":", ""); }
QString CommonFunction::getDmsFormat(double const& dddmmss) { return getDmsFormat(cutDddmmss(dddmmss)); }
QString CommonFunction::getDmsString(Degree angle) { return joined(angle, "\u00B0", "\u2032", "\u2033"); }
QString CommonFunction::getDmsStyle(double dddmmss) { return getDmsString(cutDddmmss(dddmmss)); }

double CommonFunction::getKVNDegereeFormat(double const& dms, int decimals) {
  return parsed(QString::number(dms, 'g', 6)).toString(utils::DegreeToDDPMMSS, decimals).toDouble();
}

QString CommonFunction::getPLQDegreeeFormat(double const& dms) {
  return utils::Formater().toString(parsed(QString::number(dms, 'f', 8)));
}

bool CommonFunction::judgeStringToDigital(std::string const& text) { return utils::fullNumber(text).has_value(); }

bool CommonFunction::judgeStringToDouble(std::string const& text) { return utils::isLikeNumber(text); }

std::vector<std::string> CommonFunction::split(std::string const& text, char delimiter, bool skipEmpty) {
  utils::Pieces pieces;
  pieces.cut(text, delimiter, skipEmpty);
  return {pieces.begin(), pieces.end()};
}

}  // namespace kvn
