#include "reduction/TraverseDataManage.h"

#include "adjust/NameIndex.h"
#include "adjust/input/PairKey.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

namespace kvn {
namespace {

constexpr double kFaceTolerance = 0.0001454441043328608;  // 30 seconds of arc
constexpr double kBelowZero = -1e-06;                     // radians or metres; rounding is no fault

bool isStation(TraverseDataInfo const& row) { return row.pointType == TraversePointType::StationPoint; }
bool isTarget(TraverseDataInfo const& row) { return row.pointType == TraversePointType::PrismPoint; }

bool isInRange(double angle) { return angle >= kBelowZero && angle <= utils::kFullCircle; }  // NaN is not

bool checkStationNames(std::vector<TraverseDataInfo>& rows) {
  std::unordered_map<std::string, TraverseDataInfo*> firstOf;
  bool isGood = true;
  for (TraverseDataInfo& row : rows) {
    if (!isStation(row)) continue;
    auto const [entry, isNew] = firstOf.try_emplace(row.name, &row);
    if (isNew) continue;
    row.isNameValid = entry->second->isNameValid = isGood = false;
  }
  return isGood;
}

/// A station that sights itself: the target stands behind the station row in the list.
bool checkOwnNames(std::vector<TraverseDataInfo>& rows, std::vector<std::uint64_t> const& keyOf) {
  std::unordered_map<std::uint64_t, std::vector<TraverseDataInfo*>> stationsOf;
  bool isGood = true;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    TraverseDataInfo& row = rows[i];
    if (isStation(row)) stationsOf[keyOf[i]].push_back(&row);
    auto const found = isTarget(row) ? stationsOf.find(keyOf[i]) : stationsOf.end();
    if (found == stationsOf.end()) continue;
    for (TraverseDataInfo* station : found->second) station->isNameValid = false;
    found->second.resize(1);  // the others are marked; one is enough for the targets to come
    row.isNameValid = isGood = false;
  }
  return isGood;
}

bool checkRanges(TraverseDataInfo& row) {
  if (!isTarget(row)) return true;
  bool const isHorizontal = isInRange(row.horizontal_angle);
  bool const isVertical = isInRange(row.vertical_angle);
  bool const isDistance = !row.isSlantDistanceHave || row.slant_distance >= kBelowZero;
  if (!isHorizontal) row.isHorizontalAngleValid = false;
  if (!isVertical) row.isVerticalAngleValid = false;
  if (!isDistance) row.isSlantDistanceValid = false;
  return isHorizontal && isVertical && isDistance;
}

/// Keys of name and group of each row.
std::vector<std::uint64_t> keysOf(std::vector<TraverseDataInfo> const& rows) {
  NameIndex names;
  NameIndex groups;
  std::vector<std::uint64_t> keys;
  keys.reserve(rows.size());
  for (TraverseDataInfo const& row : rows) {
    keys.push_back(detail::orderedKey(names.numberOf(row.name), groups.numberOf(row.groupId)));
  }
  return keys;
}

using Sights = std::vector<TraverseDataInfo*>;

bool differByHalfCircle(TraverseDataInfo const* first, TraverseDataInfo const* second) {
  return std::abs(std::abs(first->horizontal_angle - second->horizontal_angle) - utils::kPi) <= kFaceTolerance;
}

bool agreesWithAllOthers(TraverseDataInfo const* sight, Sights const& sights) {
  return std::all_of(sights.begin(), sights.end(), [sight](TraverseDataInfo const* other) {
    return other == sight || differByHalfCircle(sight, other);
  });
}

/// The one sight of a target that agrees with all others; null when there is none.
///
/// Of three and more there is one at most, since those that it agrees with are on the same face. So it is the first
/// sight, or the only one that agrees with the first.
TraverseDataInfo const* oneThatAgrees(Sights const& sights) {
  if (agreesWithAllOthers(sights.front(), sights)) return sights.front();
  auto const agrees = [&sights](TraverseDataInfo const* sight) { return differByHalfCircle(sights.front(), sight); };
  auto const found = std::find_if(sights.begin(), sights.end(), agrees);
  if (found == sights.end() || std::find_if(found + 1, sights.end(), agrees) != sights.end()) return nullptr;
  return agreesWithAllOthers(*found, sights) ? *found : nullptr;
}

/// Marks each sight of one target that does not differ from every other by half a circle.
bool checkFaces(Sights const& sights) {
  if (sights.size() < 2) return true;
  if (sights.size() == 2 && differByHalfCircle(sights[0], sights[1])) return true;
  TraverseDataInfo const* const good = oneThatAgrees(sights);
  for (TraverseDataInfo* sight : sights) {
    if (sight != good) sight->isHorizontalAngleValid = false;
  }
  return false;
}

}  // namespace

bool TraverseDataManage::checkData(std::vector<TraverseDataInfo>& rows) {
  bool const isUsual = checkDataUsually(rows);
  return checkDataStationAngle(rows) && isUsual;
}

bool TraverseDataManage::checkDataUsually(std::vector<TraverseDataInfo>& rows) {
  bool isGood = checkStationNames(rows);
  isGood = checkOwnNames(rows, keysOf(rows)) && isGood;
  for (TraverseDataInfo& row : rows) isGood = checkRanges(row) && isGood;
  return isGood;
}

bool TraverseDataManage::checkDataStationAngle(std::vector<TraverseDataInfo>& rows) {
  std::vector<std::uint64_t> const keyOf = keysOf(rows);
  std::unordered_map<std::uint64_t, Sights> sightsOf;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (isTarget(rows[i])) sightsOf[keyOf[i]].push_back(&rows[i]);
  }
  bool isGood = true;
  for (auto const& entry : sightsOf) isGood = checkFaces(entry.second) && isGood;
  return isGood;
}

void TraverseDataManage::resetVRDDataState(std::vector<TraverseDataInfo>& rows) {
  for (TraverseDataInfo& row : rows) {
    if (isStation(row)) row.isNameValid = true;
    row.isHorizontalAngleValid = row.isVerticalAngleValid = row.isSlantDistanceValid = true;
  }
}

}  // namespace kvn
