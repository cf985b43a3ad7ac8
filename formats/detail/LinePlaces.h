// LinePlaces: where the line of a station and a target stands in a list.
#pragma once

#include "adjust/detail/PlaceTable.h"
#include "records/Network.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kvn::detail {

/// Finds repeated lines. Lines of one station mostly stand together, so that its name is looked at only when it changes.
class LinePlaces {
 public:
  /// @param lines  holds, when `placeOf` is called, each line at the place that was given to it.
  explicit LinePlaces(std::vector<NetworkDataInfo> const& lines) : list(lines) {}

  /// Place of the first line with the station and target of this one; `fresh`, where it must be put, when it is the
  /// first itself.
  std::size_t placeOf(NetworkDataInfo const& line, std::size_t fresh) {
    if (!hasStation || line.start_name != station) {
      station = line.start_name;
      stationHash = std::hash<std::string_view>()(station);
      hasStation = true;
    }
    // Turned against each other, so that A to B is not B to A.
    std::size_t const hash = 31 * stationHash + std::hash<std::string_view>()(line.end_name);
    return table.findOrAdd(hash, fresh, [this, &line](std::size_t place) { return list[place] == line; });
  }

 private:
  std::vector<NetworkDataInfo> const& list;
  PlaceTable table;
  std::string station;
  std::size_t stationHash = 0;
  bool hasStation = false;
};

}  // namespace kvn::detail
