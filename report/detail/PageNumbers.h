// Numbers of a page as a surveyor reads them, in UTF-8; what does not exist is an en dash, a minus is U+2212.
#pragma once

#include <string>

namespace kvn::detail {

std::string decimals(double value, int count);
std::string metres(double metres);        ///< four decimals
std::string millimetres(double metres);   ///< one decimal
std::string length(double metres);        ///< with its unit: "12.3 mm", from 1 m on "1.23 m"
std::string seconds(double radians);      ///< of arc, one decimal
std::string fineSeconds(double radians);  ///< of arc, two decimals
std::string ratio(double value);          ///< two decimals
std::string percent(double share);        ///< "95 %"
std::string angle(double radians);        ///< 123°45′30.2″
std::string azimuth(double radians);      ///< the same from 0 to below 360°
std::string axis(double radians);         ///< 123°45′, the direction of an axis, below 180°
std::string shortest(double value);       ///< as few digits as tell a float
std::string oneTo(double value);          ///< "1 : 12345" of 1 / value; an en dash for 0

}  // namespace kvn::detail
