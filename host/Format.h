// Numbers and angles as people read them; a value that does not exist is "-".
#pragma once

#include <QString>
#include <string>

namespace kvn::host {

QString metres(double metres);           ///< four decimals
QString millimetres(double metres);      ///< of a length in metres, two decimals
QString seconds(double seconds);         ///< two decimals
QString angleOfRadians(double radians);  ///< 123°45′30.25″
QString angleOfDms(double dms);          ///< the same of DDDMMSS.ss
QString azimuthOfDms(double dms);        ///< the same, and never 360°00′00.00″
QString azimuthOfRadians(double radians);
QString axisOfRadians(double radians);  ///< 123°45′, the direction of an axis, below 180°

// The same in UTF-8, for tables of millions of cells.
std::string metresText(double metres);
std::string millimetresText(double metres);
std::string secondsText(double seconds);
std::string ratioText(double ratio);  ///< two decimals
std::string angleOfDmsText(double dms);
std::string azimuthOfDmsText(double dms);
std::string axisOfRadiansText(double radians);

double secondsOfRadians(double radians);
double dmsOfRadians(double radians);  ///< DDDMMSS.ss

QString shortNumber(double value);                                            ///< as few digits as tell a float
QString counted(std::size_t count, QString const& one, QString const& many);  ///< of "%1 point" and "%1 points"

}  // namespace kvn::host
