// Rows of a field book for the tests of the heights.
#pragma once

#include "support/FieldRows.h"

#include <Kelvane.h>
#include <cmath>
#include <string>
#include <vector>

namespace test {

inline double degrees(double deg, double min = 0.0, double sec = 0.0) {
  return (deg + min / 60.0 + sec / 3600.0) * std::acos(-1.0) / 180.0;
}

inline kvn::TraverseDataInfo stationRow(std::string const& name, double instrument) {
  kvn::TraverseDataInfo row = station(name);
  row.instrument = instrument;
  return row;
}

inline kvn::TraverseDataInfo knownRow(std::string const& name, double instrument, double height) {
  kvn::TraverseDataInfo row = stationRow(name, instrument);
  row.isKnown = true;
  row.Z = height;
  return row;
}

/// A distance of 0 is none.
inline kvn::TraverseDataInfo sightRow(std::string const& name, double vertical, double slant, double targetHeight = 0) {
  kvn::TraverseDataInfo row;
  row.name = name;
  row.vertical_angle = vertical;
  row.slant_distance = slant;
  row.isSlantDistanceHave = slant > 0.0;
  row.instrument = targetHeight;
  return row;
}

/// A line with the height difference and the length, both faces as elevations, for a run without curvature.
inline void addLine(Rows& rows, std::string const& from, std::string const& to, double difference, double length) {
  rows.push_back(stationRow(from, 0.0));
  for (int face = 0; face < 2; ++face) {
    rows.push_back(sightRow(to, std::atan2(difference, length), std::hypot(difference, length)));
  }
}

constexpr double kNoCurvature = 1.0;  // a refraction coefficient that bends the ray as the earth

inline std::vector<kvn::TriangleViewData> reduced(Rows const& rows, kvn::VerticalAngleType type = kvn::ElevationAngle,
                                                  double refraction = kNoCurvature) {
  kvn::TriangleHeightDataRead reader(type);
  reader.setTraverseDataList(rows, refraction);
  return reader.getTriangleViewData();
}

inline kvn::TriangleHeightDataConvert converted(Rows const& rows, double refraction = kNoCurvature) {
  kvn::TriangleHeightDataRead reader(kvn::ElevationAngle);
  reader.setTraverseDataList(rows, refraction);
  kvn::TriangleHeightDataConvert convert;
  convert.setTriangleHeightDataRead(reader);
  return convert;
}

inline double heightOf(kvn::TriangleHeightAdjust const& run, std::string const& name) {
  std::vector<kvn::CoordinatePointInfo> point(1);
  point[0].name = name;
  point[0].Z = std::nan("");
  run.convertCoordZ(point);
  return point[0].Z;
}

}  // namespace test
