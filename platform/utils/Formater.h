// utils::Formater: how the host shows angles and numbers.
#pragma once

#include <utils/Degree.h>
#include <utils/Export.h>

#include <json/value.h>
#include <QString>

namespace utils {

/// Display format of angles, from the configuration.
///
/// Members read from the JSON value, each optional: "AngleFormat", the number of a DMSFormat (default DDCMMCSS), and
/// "AngleDecimals", the decimals of a second, 0 to 9 (default 2). Anything else keeps the default.
class KELVANE_EXPORT Formater {
 public:
  Formater() = default;
  explicit Formater(Json::Value const& configuration);

  QString toString(Degree const& angle) const;
  /// Plain decimal number, no exponent, with a point whatever the locale is.
  /// @param decimals  0 and above; a negative count is 0.
  QString toString(double const& value, int decimals) const;

 private:
  DMSFormat angleFormat = DDCMMCSS;
  int angleDecimals = 2;
};

}  // namespace utils
