// CoordinateDataCollection: the coordinate file, a plain list of points.
#pragma once

#include "records/CoordinatePointInfo.h"

#include <utils/Export.h>
#include <utils/IProcessCancel.h>

#include <QString>
#include <iosfwd>
#include <string>
#include <vector>

namespace kvn {

/// Reads and writes a coordinate file, lines in the local 8-bit encoding, a point a line:
///
///     NAME,MARK,E,N,Z
///
/// Metres; east stands ahead of north. The mark may be empty.
class KELVANE_EXPORT CoordinateDataCollection : public utils::IProcessCancel {
 public:
  CoordinateDataCollection();

  /// Appends the points of a file; one that cannot be opened has none. Names and marks are kept in the local 8-bit
  /// encoding.
  /// @throws DataException "The Format of Data is wrong" for a line that has not five fields, an empty one included, or
  ///         a coordinate that is no number, the list holding the points before it;
  ///         DataException with the reason for a file that could not be read to its end.
  void read(QString const& path);
  /// The same of the bytes of a file that the caller has read already.
  void readContents(std::string const& bytes);
  /// Replaces the file at a path in the local 8-bit encoding when the new one is complete. When that fails the old file
  /// stays as it was, and an `Error` message says why.
  /// @return true when no exception passes.
  bool write(std::string const& path);
  /// Four decimals of a metre; no line end behind the last point.
  void write(std::ostream& stream);

  std::vector<CoordinatePointInfo>& getCoordinateDataList();
  std::vector<CoordinatePointInfo> const& getCoordinateDataList() const;
  void setCoordinateDataList(std::vector<CoordinatePointInfo> points);

  /// @throws QLogicError "User Cancel" when `isCancel()`. Reading and writing do not ask.
  void checkCancelAndThrow() const;

 private:
  std::vector<CoordinatePointInfo> coordinateDataList;
};

}  // namespace kvn
