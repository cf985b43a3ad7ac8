// The reduced rounds of the stations, with pointers into a project's row list.
#pragma once

#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <map>
#include <string>
#include <vector>

namespace kvn {

/// The rounds of one occupation of a station.
///
/// A key is a copy of the target's first row and carries the means of the rounds once the reduction has run; the vector
/// holds one pointer for each row of that target. The pointers lead into the project's row list and own nothing.
class KELVANE_EXPORT TraverseStationInfo {
 public:
  std::string name;                                                         ///< station name
  std::map<TraverseDataInfo, std::vector<TraverseDataInfo*>> backSightMap;  ///< the first target after the station row
  std::map<TraverseDataInfo, std::vector<TraverseDataInfo*>> foreSightMap;  ///< all other targets
};

/// Station row to its occupations. Valid only while the row list is unchanged.
using StationMap = std::map<TraverseDataInfo, std::vector<TraverseStationInfo>>;

/// A group of rows with its head row; the rows are not owned.
class KELVANE_EXPORT OneTraverseInfo {
 public:
  std::vector<TraverseDataInfo*> rows;
  TraverseDataInfo traverseInfo;

  void add(TraverseDataInfo* row);
  void setTraverseInfo(TraverseDataInfo const& headRow);
};

}  // namespace kvn
