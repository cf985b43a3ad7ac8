// ICoordinateDataCollection: what a format of coordinate lists offers, for hosts that bring their own.
#pragma once

#include "records/CoordinatePointInfo.h"

#include <utils/Export.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kvn {

/// No class of the library implements it.
class KELVANE_EXPORT ICoordinateDataCollection {
 public:
  virtual void read(std::istream& stream) = 0;
  /// Reads the file at a path in the local 8-bit encoding; one that cannot be opened reads as an empty one.
  /// @return true when no exception passes.
  virtual bool read(std::string path);
  virtual void write(std::ostream& stream) = 0;
  /// Replaces the file at a path in the local 8-bit encoding when the new one is complete; an `Error` message says why
  /// not.
  /// @return true when no exception passes.
  virtual bool write(std::string path);
  virtual std::vector<CoordinatePointInfo>& getCoordinateDataList() = 0;
  virtual std::vector<CoordinatePointInfo> const& getCoordinateDataList() const = 0;
  virtual ~ICoordinateDataCollection();
};

}  // namespace kvn
