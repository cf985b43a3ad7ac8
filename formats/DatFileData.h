// DatFileData: the older reader of the coordinate file.
#pragma once

#include "records/CoordinatePointInfo.h"

#include <utils/Export.h>

#include <QString>
#include <QVector>

namespace kvn {

/// Differs from `CoordinateDataCollection`: the third field is north and the fourth east, texts are UTF-8, a number
/// that is none counts as 0 and all have single precision (at 4,000 km the millimetres are gone: 0.25 m), and a failure
/// names its line. New code takes `CoordinateDataCollection`.
class KELVANE_EXPORT DatFileData {
 public:
  DatFileData();

  /// Appends the points of a file.
  /// @return false when the file cannot be opened.
  /// @throws DataException(line, "ERROR") for a line that has not five fields, an empty one included;
  ///         DataException(line, "SPACE") when the file yields no characters before its end.
  bool openDatFileData(QString const& path);
  QVector<CoordinatePointInfo> getDatFileData() const;

 private:
  QVector<CoordinatePointInfo> points;
};

}  // namespace kvn
