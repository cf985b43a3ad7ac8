#include "records/TraverseDataInfo.h"

#include "records/NewId.h"

#include <utils/Circle.h>

#include <cmath>

namespace kvn {
TraverseDataInfo::TraverseDataInfo() : TraverseDataInfo(FullCircleZenith) {}

TraverseDataInfo::TraverseDataInfo(VerticalAngleType type) : id(newId()), groupId(id), verticalAngleType(type) {}

bool TraverseDataInfo::operator==(std::string const& otherId) const { return id == otherId; }

bool TraverseDataInfo::operator<(TraverseDataInfo const& other) const { return name < other.name; }

double TraverseDataInfo::getHorizontalDisance(VerticalAngleType type) const {
  switch (type) {
    case ZenithAngle:
      return slant_distance * std::cos(std::abs(vertical_angle - utils::kRightAngle));
    case FullCircleZenith:
      return std::abs(slant_distance * std::sin(vertical_angle));
    case ElevationAngle:
      return slant_distance * std::cos(std::abs(vertical_angle));
  }
  return 0.0;
}

double TraverseDataInfo::getHorizontalDisance() const { return getHorizontalDisance(verticalAngleType); }

bool TraverseDataInfo::adjustRight(QString const& text) const {
  bool good = false;
  text.toDouble(&good);
  return good;
}

std::vector<KnownPoint> getKnownPoint(std::vector<TraverseDataInfo> const& rows) {
  std::vector<KnownPoint> points;
  for (TraverseDataInfo const& row : rows) {
    if (row.isKnown) points.emplace_back(row.name, row.N, row.E, row.Z);
  }
  return points;
}

}  // namespace kvn
