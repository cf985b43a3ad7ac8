// INetworkDataCollection: base of the network formats.
#pragma once

#include "records/Network.h"

#include <utils/Export.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kvn {

/// Holds the known points and lines of a network file while it is read or written.
class KELVANE_EXPORT INetworkDataCollection {
 public:
  virtual ~INetworkDataCollection();

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

  std::vector<KnownPoint> const& getKnownPointList() const;
  void setKnownPointList(std::vector<KnownPoint> points);
  std::vector<NetworkDataInfo> const& getNetworkDataList() const;
  void setNetworkDataList(std::vector<NetworkDataInfo> lines);

  /// The first line whose `id` equals the text; null when there is none.
  NetworkDataInfo* findData(std::string const& id);
  NetworkDataInfo const* findData(std::string const& id) const;

 protected:
  std::vector<KnownPoint> knownPointList;
  std::vector<NetworkDataInfo> networkDataList;
};

}  // namespace kvn
