// A field job of any size.
#pragma once

#include <Kelvane.h>
#include <string>
#include <vector>

namespace bench {

/// Stations on a line that sight their neighbours on both faces; the first two are known.
inline std::vector<kvn::TraverseDataInfo> job(int rowCount) {
  constexpr int kTargets = 9;  // a station has a row of its own and two faces: 19 rows
  int const stations = rowCount / (2 * kTargets + 1);
  auto const nameOf = [](int i) { return "P" + std::to_string(i); };
  std::vector<kvn::TraverseDataInfo> rows;
  for (int s = 0; s < stations; ++s) {
    kvn::TraverseDataInfo station;
    station.pointType = kvn::TraversePointType::StationPoint;
    station.name = nameOf(s);
    station.isKnown = s < 2;
    station.N = 50.0 * s + 1.0;
    rows.push_back(station);
    for (int i = 0; i < 2 * kTargets; ++i) {
      int const k = i < kTargets ? i : 2 * kTargets - 1 - i;
      kvn::TraverseDataInfo sight;
      sight.groupId = station.groupId;
      sight.name = nameOf(s + 1 + k);
      sight.horizontal_angle = 0.01 + 0.3 * k + (i < kTargets ? 0.0 : 3.141592653589793);
      sight.vertical_angle = i < kTargets ? 1.5 : 4.78318530717958;
      sight.slant_distance = 50.0 * (k + 1);
      sight.horizontal_distance = sight.getHorizontalDisance();
      rows.push_back(sight);
    }
  }
  return rows;
}

}  // namespace bench
