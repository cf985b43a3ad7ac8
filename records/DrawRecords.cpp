#include "records/DrawRecords.h"

namespace kvn {

DrawPoint::DrawPoint() = default;

DrawPoint::DrawPoint(double north, double east, double height) : DrawPoint(north, east, height, std::string()) {}

DrawPoint::DrawPoint(double north, double east, double height, std::string const& label) {
  name = label;
  x = north;
  y = east;
  z = height;
}

bool DrawPoint::operator==(DrawPoint const& other) const { return name == other.name; }

DrawLine::DrawLine() = default;

DrawLine::DrawLine(DrawPoint const& from, DrawPoint const& to) : start(from), end(to) {}

bool DrawLine::operator==(DrawLine const& other) const {
  return (start == other.start && end == other.end) || (end == other.start && start == other.end);
}

}  // namespace kvn
