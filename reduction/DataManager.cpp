#include "reduction/DataManager.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

using TargetMap = std::map<TraverseDataInfo, std::vector<TraverseDataInfo*>>;

// Two angles this near count as equal; radians, 0.02".
constexpr double kTolerance = 1e-7;

bool isAbove(double a, double b) { return a > b && std::abs(a - b) >= kTolerance; }
bool isBelow(double a, double b) { return isAbove(b, a); }

/// The keys of a map are ordered by name alone, and these four values are no part of the name.
TraverseDataInfo& meansOf(TargetMap::value_type& entry) { return const_cast<TraverseDataInfo&>(entry.first); }

void addTarget(TraverseDataInfo& row, bool isFirst, TraverseStationInfo& occupation) {
  if (isFirst) {
    occupation.backSightMap[row].push_back(&row);
    return;
  }
  auto const inBackSight = occupation.backSightMap.find(row);
  if (inBackSight != occupation.backSightMap.end()) {
    inBackSight->second.push_back(&row);
  } else {
    occupation.foreSightMap[row].push_back(&row);
  }
}

bool straddlesZero(double reading, double first) { return isAbove(std::abs(reading - first), utils::kPi); }

/// Mean of the readings of one target. Those on the other side of the zero direction than the first are taken down by a
/// full circle. That brings the mean near zero, but for three and more of which the first lies just below the full
/// circle: there it is the first and its like that are taken down, and the mean is near zero as that of two is.
double meanDirection(std::vector<TraverseDataInfo*> const& rows) {
  double const first = rows.front()->reduced_horizontal_angle;
  bool const firstIsHigh = rows.size() > 2 && first > utils::kPi &&
                           std::any_of(rows.begin(), rows.end(), [first](TraverseDataInfo const* row) {
                             return straddlesZero(row->reduced_horizontal_angle, first);
                           });
  double sum = 0;
  for (TraverseDataInfo const* row : rows) {
    double const reading = row->reduced_horizontal_angle;
    bool const isToLower = firstIsHigh ? reading > utils::kPi : straddlesZero(reading, first);
    sum += isToLower ? reading - utils::kFullCircle : reading;
  }
  return sum / static_cast<double>(rows.size());
}

}  // namespace

DataManager::DataManager() = default;

StationMap DataManager::buildStationMap(std::vector<TraverseDataInfo>& rows) {
  stationMap = traverseToStationData(rows);
  for (auto& [station, occupations] : stationMap) dataConvert(occupations);
  return stationMap;
}

StationMap DataManager::traverseToStationData(std::vector<TraverseDataInfo>& rows) {
  StationMap stations;
  TraverseStationInfo occupation;
  TraverseDataInfo const* stationRow = nullptr;
  bool isFirstTarget = false;
  for (TraverseDataInfo& row : rows) {
    if (row.pointType == TraversePointType::StationPoint) {
      if (stationRow != nullptr) addStationData(occupation, *stationRow, stations);
      stationRow = &row;
      occupation = TraverseStationInfo();
      occupation.name = row.name;
      isFirstTarget = true;
    } else if (row.pointType == TraversePointType::PrismPoint && stationRow != nullptr) {
      addTarget(row, isFirstTarget, occupation);
      isFirstTarget = false;
    }
  }
  if (stationRow != nullptr) addStationData(occupation, *stationRow, stations);
  return stations;
}

void DataManager::addStationData(TraverseStationInfo const& occupation, TraverseDataInfo const& stationRow,
                                 StationMap& stations) {
  stations[stationRow].push_back(occupation);
}

void DataManager::dataConvert(std::vector<TraverseStationInfo>& occupations) {
  for (TraverseStationInfo& occupation : occupations) {
    TargetMap& backSight = occupation.backSightMap;
    double const zero = backSight.empty() ? 0.0 : backSight.begin()->second.front()->horizontal_angle;
    for (auto& [target, rows] : backSight) angleConvert(rows, zero);
    eachLoopConvert(backSight);
    for (auto& [target, rows] : occupation.foreSightMap) angleConvert(rows, zero);
    eachLoopConvert(occupation.foreSightMap);
  }
}

void DataManager::angleConvert(std::vector<TraverseDataInfo*>& rows, double zeroDirection) {
  for (TraverseDataInfo* row : rows) {
    double reading = row->horizontal_angle;
    if (isAbove(row->vertical_angle, utils::kPi)) {
      row->reduced_vertical_angle = row->vertical_angle - 3.0 * utils::kRightAngle;
      reading -= utils::kPi;
      if (reading < 0) reading += utils::kFullCircle;
    } else if (isBelow(row->vertical_angle, utils::kPi)) {
      row->reduced_vertical_angle = row->vertical_angle - utils::kRightAngle;
    }
    reading -= zeroDirection;
    if (isBelow(reading, 0)) reading += utils::kFullCircle;
    row->reduced_horizontal_angle = reading;
  }
}

void DataManager::eachLoopConvert(TargetMap& targets) {
  for (TargetMap::value_type& entry : targets) {
    TraverseDataInfo& means = meansOf(entry);
    means.reduced_horizontal_angle = means.reduced_vertical_angle = 0;
    means.slant_distance = means.horizontal_distance = 0;
    if (entry.second.empty()) continue;
    means.reduced_horizontal_angle = meanDirection(entry.second);
    for (TraverseDataInfo const* row : entry.second) {
      means.reduced_vertical_angle += row->reduced_vertical_angle;
      means.slant_distance += row->slant_distance;
      means.horizontal_distance += row->horizontal_distance;
    }
    auto const count = static_cast<double>(entry.second.size());
    means.reduced_vertical_angle /= count;
    means.slant_distance /= count;
    means.horizontal_distance /= count;
  }
}

}  // namespace kvn
