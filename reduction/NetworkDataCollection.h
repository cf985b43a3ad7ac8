// NetworkDataCollection: the lines of a network from the rows of a field book.
#pragma once

#include "records/Network.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// For the host: a list of lines whose directions are decimal degrees.
class KELVANE_EXPORT NetworkDataCollection {
 public:
  NetworkDataCollection();

  /// Appends the lines of the rows as `INetworkDataCollection::TraverseDataListToNetwork` makes them, but with the
  /// directions in decimal degrees; of lines with the same station and target, those that were there before included,
  /// the first stays.
  /// @throws what `AlgorithmData::initVRDData` throws; the list is unchanged then.
  void readVRD(std::vector<TraverseDataInfo> const& rows);

  std::vector<NetworkDataInfo>& getNetworkDataList();
  std::vector<NetworkDataInfo> const& getNetworkDataList() const;

 private:
  std::vector<NetworkDataInfo> networkDataList;
};

}  // namespace kvn
