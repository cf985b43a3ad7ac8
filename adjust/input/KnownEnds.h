// KnownEnds: whether distances run between known points.
#pragma once

#include "adjust/NameIndex.h"
#include "records/CalculationRecords.h"

#include <string>
#include <vector>

namespace kvn::detail {

/// Asked for the distances of station after station. These begin at the station and mostly end at another point that is
/// not known, so that few names are looked up.
class KnownEnds {
 public:
  explicit KnownEnds(std::vector<PointInfo> const& knPoints) {
    for (PointInfo const& point : knPoints) names.numberOf(point.name);
  }

  bool areBoth(LineInfo const& line) {
    if (!hasStart || line.start_name != start) {
      start = line.start_name;
      isStartKnown = names.contains(start);
      hasStart = true;
    }
    return isStartKnown && names.contains(line.end_name);
  }

 private:
  NameIndex names;
  std::string start;
  bool hasStart = false;
  bool isStartKnown = false;
};

}  // namespace kvn::detail
