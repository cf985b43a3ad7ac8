// utils::Formater: how the host shows angles.
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

 private:
  DMSFormat angleFormat = DDCMMCSS;
  int angleDecimals = 2;
};

}  // namespace utils
