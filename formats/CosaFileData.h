// CosaFileData: a plain holder of what a whole network file gives.
#pragma once

#include "core/Configure.h"
#include "records/CalculationRecords.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <QVector>

namespace kvn {

/// For the host; nothing in the library fills it. The getters return copies.
class KELVANE_EXPORT CosaFileData {
 public:
  QVector<TraverseDataInfo> rows;
  Configure configure;  ///< the a-priori errors
  QVector<StationInfo> stations;
  QVector<PointInfo> knowPoints;

  QVector<TraverseDataInfo> getCosaFileData() const { return rows; }
  Configure getErrorIndex() const { return configure; }
  QVector<StationInfo> getStationInfo() const { return stations; }
  QVector<PointInfo> getKnPoint() const { return knowPoints; }
};

}  // namespace kvn
