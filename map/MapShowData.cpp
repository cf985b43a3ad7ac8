#include "map/MapShowData.h"

#include "adjust/AlgorithmData.h"
#include "adjust/TraverseAdjust.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

namespace kvn {
namespace {

// A map needs no better: the a-priori errors do not change approximate coordinates.
constexpr double kAngleError = 2.0;  // seconds
constexpr double kLineFixedError = 0.003;
constexpr double kLineProportionError = 3e-6;

DrawPoint onPlane(DrawPoint const& point) { return {point.x, point.y, 0.0, point.name}; }

}  // namespace

MapShowData::MapShowData() = default;

void MapShowData::setTraverseDataList(std::vector<TraverseDataInfo> const& rows) { traverseDataList = rows; }
void MapShowData::setNetwrok(Network const& value) { network = value; }
void MapShowData::setTellFindings(bool tell) { tellFindings = tell; }

void MapShowData::convertTraverseData() {
  TraverseDataInfo const* station = nullptr;
  for (TraverseDataInfo const& row : traverseDataList) {
    DrawPoint point(row.N, row.E, row.Z, row.name);
    point.pointType = row.pointType;
    point.id = row.id;
    points.push_back(std::move(point));
    if (row.pointType == TraversePointType::StationPoint) station = &row;
    if (row.pointType == TraversePointType::PrismPoint && station != nullptr) {
      lines.emplace_back(DrawPoint(row.N, row.E, row.Z), DrawPoint(station->N, station->E, station->Z));
    }
  }
}

void MapShowData::calculateApproximate() {
  AlgorithmData data;
  data.readNetworkData(network);
  TraverseAdjust adjustment(kAngleError, kLineFixedError, kLineProportionError, true);
  adjustment.setTellFindings(tellFindings);
  adjustment.readAlgorithmData(data);
  adjustment.calculateApproximate();
  for (PointInfo const& approximate : adjustment.getPointX0Y0()) {
    DrawPoint point(approximate.x, approximate.y, 0.0, approximate.name);
    point.pointType = TraversePointType::StationPoint;
    points.push_back(std::move(point));
  }
}

void MapShowData::handle() {
  std::unordered_map<std::string, DrawPoint const*> lastOf;
  for (DrawPoint const& point : points) lastOf[point.name] = &point;
  for (NetworkDataInfo const& observed : network.lines) {
    DrawLine line;
    auto const start = lastOf.find(observed.start_name);
    auto const end = lastOf.find(observed.end_name);
    if (start != lastOf.end()) line.start = onPlane(*start->second);
    if (end != lastOf.end()) line.end = onPlane(*end->second);
    lines.push_back(std::move(line));
  }
  std::stable_sort(points.begin(), points.end(),
                   [](DrawPoint const& a, DrawPoint const& b) { return a.name < b.name; });
  points.erase(std::unique(points.begin(), points.end()), points.end());
}

std::vector<DrawPoint> const& MapShowData::getPoint() const { return points; }
std::vector<DrawLine> const& MapShowData::getLine() const { return lines; }

}  // namespace kvn
