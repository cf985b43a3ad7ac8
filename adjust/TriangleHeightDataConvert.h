// TriangleHeightDataConvert: what the height adjustment takes from the reduction.
#pragma once

#include "adjust/TriangleHeightDataRead.h"

#include <utils/Export.h>

#include <memory>
#include <vector>

namespace kvn {

/// The known stations, each once however often it was occupied (its first entry counts), and all lines. A `Warning`
/// lists the known stations whose entries have different heights, and another one the stations that were set up with
/// different instrument heights, which the reduction takes from their first entries too.
class KELVANE_EXPORT TriangleHeightDataConvert {
 public:
  TriangleHeightDataConvert();
  TriangleHeightDataConvert(TriangleHeightDataConvert const&);
  TriangleHeightDataConvert& operator=(TriangleHeightDataConvert const&);
  ~TriangleHeightDataConvert();

  void setTriangleHeightDataRead(TriangleHeightDataRead const& read);

  std::vector<TriangleStationData> getTriangleStationData() const;
  std::vector<TriangleViewData> getTraingleViewData() const;
  int getKnPnumber() const;  ///< known stations
  int getLnumber() const;    ///< lines
  int getPnumber() const;    ///< distinct names among the known stations and both ends of the lines

 private:
  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
