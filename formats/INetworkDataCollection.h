// INetworkDataCollection: base of the network formats.
#pragma once

#include "records/Network.h"
#include "records/StationMap.h"

#include <utils/Export.h>

#include <iosfwd>
#include <set>
#include <string>
#include <vector>

namespace kvn {

/// Holds the known points and lines of a network file while it is read or written.
class KELVANE_EXPORT INetworkDataCollection {
 public:
  // Callers find the virtual operations by their order, in which the destructor comes last.

  /// Replaces both lists by the network of a field job, as `TraverseDataListToNetwork`.
  virtual void read(std::vector<TraverseDataInfo> const& rows);
  virtual void read(std::istream& stream) = 0;
  /// Reads the file at a path in the local 8-bit encoding. A file that cannot be opened reads as an empty one; the
  /// caller tests the lists.
  /// @return true when no exception passes.
  virtual bool read(std::string const& path);
  virtual void write(std::ostream& stream) = 0;
  /// Replaces the file at a path in the local 8-bit encoding when the new one is complete. When that fails the old file
  /// stays as it was, and an `Error` message says why.
  /// @return true when no exception passes.
  virtual bool write(std::string path);
  virtual ~INetworkDataCollection();

  /// The lines of one station over all its occupations, directions counted from the first one, radians.
  ///
  /// Each occupation gives its share of one to their number, so that a target that was seen in all of them gets the
  /// mean, and one that was not gets less: half of its direction when it was seen in one of two. A target with exactly
  /// the angle of another is lost.
  static std::set<NetworkDataInfo> StationListToNetwork(std::vector<TraverseStationInfo> const& occupations);
  /// The lines of all stations, in the order of their names.
  static std::vector<NetworkDataInfo> TraverseMapToNetWork(StationMap const& stations);
  /// Known points, without heights, and lines of a field job. One line for each station and target, with direction in
  /// radians and distance in metres, at the place of its direction; a direction of 0 takes over that of a repeat.
  /// @throws what `AlgorithmData::initVRDData` throws; control points need not be there.
  static Network TraverseDataListToNetwork(std::vector<TraverseDataInfo> const& rows);

  std::vector<KnownPoint> const& getKnownPointList() const;
  void setKnownPointList(std::vector<KnownPoint> points);
  std::vector<NetworkDataInfo> const& getNetworkDataList() const;
  void setNetworkDataList(std::vector<NetworkDataInfo> lines);

  /// Both lists as a network, moved out of the collection.
  Network takeNetwork();

  /// The first line whose `id` equals the text; null when there is none.
  NetworkDataInfo* findData(std::string const& id);
  NetworkDataInfo const* findData(std::string const& id) const;

 protected:
  std::vector<KnownPoint> knownPointList;
  std::vector<NetworkDataInfo> networkDataList;
};

}  // namespace kvn
