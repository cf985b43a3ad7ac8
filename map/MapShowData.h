// MapShowData: what the map draws of a project's observations or of its network.
#pragma once

#include "records/DrawRecords.h"
#include "records/Network.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// Call either `setTraverseDataList` and `convertTraverseData`, or `setNetwrok`, `calculateApproximate` and `handle`.
/// Observation rows carry their own coordinates; the points of a network are placed by the approximate coordinates of
/// the adjustment. The results only grow, so an object serves one map.
class KELVANE_EXPORT MapShowData {
 public:
  MapShowData();

  void setTraverseDataList(std::vector<TraverseDataInfo> const& rows);
  void setNetwrok(Network const& value);
  /// Whether points that cannot be placed are told in a message; on by default.
  void setTellFindings(bool tell);

  /// A point for each row, and for each target a line to the station that it was sighted from.
  void convertTraverseData();
  /// A point, height 0, for each point of the network. Points that cannot be placed are told in one `Error` message.
  /// @throws what `AlgorithmData::readNetworkData` and `TraverseAdjust::calculateApproximate` throw.
  void calculateApproximate();
  /// A line, height 0, for each line of the network, then the points sorted by name and each name once. An end of a
  /// line without a point stays at the origin without a name; of points with one name the last one is the
  /// end of its lines and the first one is kept.
  void handle();

  std::vector<DrawPoint> const& getPoint() const;
  std::vector<DrawLine> const& getLine() const;

 private:
  Network network;
  std::vector<TraverseDataInfo> traverseDataList;
  std::vector<DrawLine> lines;
  std::vector<DrawPoint> points;
  bool tellFindings = true;
};

}  // namespace kvn
