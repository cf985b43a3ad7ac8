// The plain records of the calculators. x is north, y is east; an azimuth runs from north toward east.
#pragma once

#include <string>
#include <vector>

namespace kvn {

/// A sexagesimal angle. Each field carries the angle's sign on its own.
struct Degree {
  int degree = 0;
  int minute = 0;
  double second = 0.0;
};

struct PointInfo {
  std::string name;
  double x = 0.0;  ///< north, metres
  double y = 0.0;  ///< east, metres
  double z = 0.0;  ///< height, metres; the plane calculators leave it alone
  int number = 0;  ///< number of the point in the calculator that made the record
};

/// An observation between two points.
struct LineInfo {
  std::string start_name;
  std::string end_name;
  double value = 0.0;  ///< radians for a direction, metres for a distance
  int count = 1;       ///< how many observations are summed in `value`
};

struct StationInfo {
  std::string name;
  std::vector<LineInfo> directions;  ///< in observation order; the first is the orientation reference
  std::vector<LineInfo> lines;       ///< distances
  std::vector<LineInfo> azimuths;    ///< no reader fills it
};

/// A station as the single traverses and the result lists see it.
struct TraverseInfo : StationInfo {
  PointInfo stationPoint;
  PointInfo backPoint;
  std::vector<PointInfo> forePoints;
  double angle = 0.0;  ///< at the station from `backPoint` to the first fore point, radians
  Degree angleDms;
  double adjustedAngle = 0.0;  ///< `angle` after the angular misclosure is distributed, radians
  Degree adjustedAngleDms;
  double deltaX = 0.0;  ///< of the leg from the station forward, metres
  double deltaY = 0.0;
  double adjustedDeltaX = 0.0;  ///< after the linear misclosure is distributed, metres
  double adjustedDeltaY = 0.0;
  double distance = 0.0;  ///< of the leg from the station forward, metres; 0 when there is none
};

/// What a single traverse tells as a whole, beside its lists.
struct TraverseSummary {
  std::vector<double> azimuths;  ///< radians: of the back line, then forward of each station; a connecting traverse
                                 ///< adds the azimuth of the end from coordinates
  bool hasMisclosure = false;    ///< false for an open traverse, which closes on nothing: the rest is 0 then
  double angleCorrection = 0.0;  ///< of each angle, radians: the angular misclosure, divided, with the other sign
  double sumDistance = 0.0;      ///< of the legs between first and last station, metres
  double fx = 0.0;               ///< computed minus known last station, metres
  double fy = 0.0;
  double fs = 0.0;             ///< root of fx² + fy², metres
  double relativeError = 0.0;  ///< fs / sumDistance; 0 without a leg
};

}  // namespace kvn
