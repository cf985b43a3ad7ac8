#include "adjust/input/FaceMeans.h"

#include "adjust/NameIndex.h"
#include "adjust/input/EraseStepping.h"
#include "adjust/input/PairKey.h"
#include "records/detail/Recorded.h"

#include <utils/Circle.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kvn::detail {
namespace {

using utils::kFullCircle;
using utils::kPi;

// From here up to the full circle a first target is taken as just below zero: 359.5 degrees.
constexpr double kNearFullCircle = 1.9972222222222222 * kPi;
constexpr double kHalfDegree = kPi / 360;
// What the two faces of one sight may differ by; 1 minute.
constexpr double kFaceDifference = kPi / 10800;

/// Readings of the first face, and those of the second brought onto it.
std::vector<double> firstFaceReadings(std::vector<VRDSightInfo> const& sights) {
  std::size_t const n = sights.size();
  std::vector<double> h(n);
  for (std::size_t k = 0; k < n; ++k) h[k] = sights[k].horizontalAngle;
  if (h[0] > kNearFullCircle) h[0] -= kFullCircle;
  for (std::size_t k = n / 2; k < n; ++k) {
    h[k] -= kPi;
    if (h[k] < 0) h[k] += kFullCircle;
  }
  // The second face of a first target near zero may read just below 180 degrees: without this the mean of 0°00'02" and
  // 179°59'58" would be 180 degrees and not 0. Farther from zero two readings that differ by more than a half circle
  // are no pair of faces, and stay as they are: nothing tells which of them is wrong.
  if (std::abs(h[0]) < kHalfDegree && h[n - 1] > kNearFullCircle - kFaceDifference) h[n - 1] -= kFullCircle;
  return h;
}

}  // namespace

StationInfo faceMeans(VRDStations const& station) {
  std::vector<VRDSightInfo> const& sights = station.sights;
  std::size_t const n = sights.size();
  std::vector<double> const h = firstFaceReadings(sights);
  StationInfo info;
  info.name = station.name;
  for (std::size_t k = 0; k < n / 2; ++k) {
    std::size_t const partner = n - k - 1;
    // The lift by a full circle changes nothing but the last bits, which are the same as ever for the first target.
    double const mean =
        k == 0 ? ((h[0] + kFullCircle) + (h[partner] + kFullCircle)) / 2 - kFullCircle : (h[k] + h[partner]) / 2;
    info.directions.push_back({{}, sights[k].name, mean, 1});
    if (sights[k].horizontalDistance > kNotRecorded) {
      double const distance = (sights[k].horizontalDistance + sights[partner].horizontalDistance) / 2;
      info.lines.push_back({station.name, sights[k].name, distance, 1});
    }
  }
  return info;
}

void meanOfBothEnds(std::vector<StationInfo>& stations) {
  NameIndex names;
  struct Place {
    std::size_t station, line;
  };
  std::unordered_map<std::uint64_t, std::vector<Place>> placesOf;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    for (std::size_t a = 0; a < stations[i].lines.size(); ++a) {
      LineInfo const& line = stations[i].lines[a];
      placesOf[orderedKey(names.numberOf(line.start_name), names.numberOf(line.end_name))].push_back({i, a});
    }
  }
  // The pairs in the order in which plain loops over station pairs and their lines meet them.
  std::vector<std::array<std::size_t, 4>> pairs;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    for (std::size_t a = 0; a < stations[i].lines.size(); ++a) {
      LineInfo const& line = stations[i].lines[a];
      auto const found = placesOf.find(orderedKey(names.find(line.end_name), names.find(line.start_name)));
      if (found == placesOf.end()) continue;
      for (Place const& back : found->second) {
        if (back.station > i) pairs.push_back({i, back.station, a, back.line});
      }
    }
  }
  std::sort(pairs.begin(), pairs.end());
  for (auto const& [i, j, a, b] : pairs) {
    double& forward = stations[i].lines[a].value;
    double& backward = stations[j].lines[b].value;
    forward = backward = (forward + backward) / 2;
  }
}

void dropBackSightDistances(std::vector<StationInfo>& stations) {
  for (StationInfo& station : stations) {
    if (station.directions.empty()) continue;  // of an earlier load
    std::string const& first = station.directions.front().end_name;
    eraseAndStepPast(station.lines, [&first](LineInfo const& line) { return line.end_name == first; });
  }
}

void dropControlDistances(std::vector<StationInfo>& stations, std::vector<PointInfo> const& knPoints) {
  NameIndex names;
  struct Places {
    std::size_t first, last;
  };
  std::vector<Places> placesOf;
  for (std::size_t i = 0; i < knPoints.size(); ++i) {
    auto const number = static_cast<std::size_t>(names.numberOf(knPoints[i].name));
    if (number == placesOf.size()) placesOf.push_back({i, i});
    placesOf[number].last = i;
  }
  for (StationInfo& station : stations) {
    eraseAndStepPast(station.lines, [&](LineInfo const& line) {
      int const start = names.find(line.start_name);
      int const end = names.find(line.end_name);
      // Some place of the start before some place of the end.
      return start >= 0 && end >= 0 &&
             placesOf[static_cast<std::size_t>(start)].first < placesOf[static_cast<std::size_t>(end)].last;
    });
  }
}

void reduceDistances(std::vector<StationInfo>& stations, std::vector<PointInfo> const& knPoints) {
  auto const hasRepeatedTarget = [](StationInfo const& station) {
    std::unordered_set<std::string> names;
    return std::any_of(station.directions.begin(), station.directions.end(),
                       [&names](LineInfo const& direction) { return !names.insert(direction.end_name).second; });
  };
  if (std::any_of(stations.begin(), stations.end(), hasRepeatedTarget)) return;
  meanOfBothEnds(stations);
  dropBackSightDistances(stations);
  dropControlDistances(stations, knPoints);
}

}  // namespace kvn::detail
