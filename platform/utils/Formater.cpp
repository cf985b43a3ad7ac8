#include <utils/Formater.h>

#include <algorithm>

namespace utils {

Formater::Formater(Json::Value const& configuration) {
  if (!configuration.isObject()) return;
  Json::Value const& format = configuration["AngleFormat"];
  if (format.isInt() && format.asInt() >= DMS && format.asInt() <= Honey) {
    angleFormat = static_cast<DMSFormat>(format.asInt());
  }
  Json::Value const& decimals = configuration["AngleDecimals"];
  if (decimals.isInt() && decimals.asInt() >= 0 && decimals.asInt() <= 9) angleDecimals = decimals.asInt();
}

QString Formater::toString(Degree const& angle) const { return angle.toString(angleFormat, 0, angleDecimals); }

QString Formater::toString(double const& value, int decimals) const {
  return QString::number(value, 'f', std::max(decimals, 0));
}

}  // namespace utils
