#include "reduction/CircleTurning.h"

#include "reduction/detail/Circle.h"

#include <utils/Circle.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <unordered_map>

namespace kvn {
namespace {

constexpr double kMinute = utils::kPi / 180.0 / 60.0;

/// Finds the zero target among readings that come one by one, and how far the circle has to turn for it.
class ZeroTarget {
 public:
  void look(double reading) {
    bool const isNear = std::abs(utils::foldedAngle(reading)) <= kMinute;
    if (isFound && (hasNear || !isNear)) return;
    isFound = true;
    hasNear = isNear;
    zero = reading;
  }

  double turned(double reading) const { return utils::onCircle(reading - zero + kMinute); }

 private:
  bool isFound = false;
  bool hasNear = false;
  double zero = 0.0;
};

double onFirstFace(TraverseDataInfo const& row) {
  return detail::isSecondFace(row.vertical_angle) ? row.horizontal_angle - utils::kPi : row.horizontal_angle;
}

bool isStation(TraverseDataInfo const& row) { return row.pointType == TraversePointType::StationPoint; }
bool isTarget(TraverseDataInfo const& row) { return row.pointType == TraversePointType::PrismPoint; }

}  // namespace

std::vector<TraverseDataInfo> turnedCircles(std::vector<TraverseDataInfo> const& rows) {
  std::vector<TraverseDataInfo> result = rows;
  for (std::size_t begin = 0, end = 0; begin < result.size(); begin = end) {
    ZeroTarget zero;
    for (end = begin; end < result.size() && (end == begin || !isStation(result[end])); ++end) {
      if (isTarget(result[end])) zero.look(onFirstFace(result[end]));
    }
    for (std::size_t i = begin; i < end; ++i) {
      if (isTarget(result[i])) result[i].horizontal_angle = zero.turned(result[i].horizontal_angle);
    }
  }
  return result;
}

Network turnedCircles(Network const& network) {
  Network result = network;
  std::unordered_map<std::string, ZeroTarget> zeroOf;
  for (NetworkDataInfo const& line : result.lines) {
    if (line.horizontalAngleFlag) zeroOf[line.start_name].look(line.horizontal_angle);
  }
  for (NetworkDataInfo& line : result.lines) {
    if (line.horizontalAngleFlag) line.horizontal_angle = zeroOf[line.start_name].turned(line.horizontal_angle);
  }
  return result;
}

}  // namespace kvn
