// DataManager: from field-book rows to the reduced rounds of the stations.
#pragma once

#include "records/StationMap.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// Groups the rows of a job by station, occupation and target, brings every reading onto the first face and counts it
/// from the first reading of its occupation, and takes the mean of each target.
///
/// The vertical reading is that of a full circle from the zenith: above π is the second face. The reduced vertical
/// reading is V - π/2 on the first face and V - 3π/2 on the second, so that the mean of both faces is the index term of
/// the circle and not an elevation.
class KELVANE_EXPORT DataManager {
 public:
  DataManager();

  /// The rounds of all stations. Writes the reduced angles into the rows, and the means of angles and distances into
  /// the keys of the result: a row without a distance counts in them with its 0. A direction whose readings straddle
  /// the first reading of the occupation comes out near 0 and may be a little negative.
  ///
  /// @param rows  must stay where they are while the result is used: it holds pointers to them.
  StationMap buildStationMap(std::vector<TraverseDataInfo>& rows);

 protected:
  /// Grouping alone. Targets ahead of the first station row belong to no occupation and are left out.
  StationMap traverseToStationData(std::vector<TraverseDataInfo>& rows);
  /// Files a finished occupation under its station; the key is the station row of the first one.
  void addStationData(TraverseStationInfo const& occupation, TraverseDataInfo const& stationRow, StationMap& stations);
  void dataConvert(std::vector<TraverseStationInfo>& occupations);  ///< reduces all occupations of one station
  /// Reduces the rows of one target; zero direction in radians.
  void angleConvert(std::vector<TraverseDataInfo*>& rows, double zeroDirection);
  /// Forms the means of all targets of one map.
  void eachLoopConvert(std::map<TraverseDataInfo, std::vector<TraverseDataInfo*>>& targets);

 private:
  StationMap stationMap;
};

}  // namespace kvn
