// One point of the coordinate list.
#pragma once

#include <utils/Export.h>

#include <string>

namespace kvn {

class KELVANE_EXPORT CoordinatePointInfo {
 public:
  CoordinatePointInfo();

  std::string id;  ///< a new UUID text
  std::string name;
  std::string signal;  ///< point mark
  double N = 0;        ///< north, metres
  double E = 0;        ///< east, metres
  double Z = 0;        ///< height, metres

  bool operator==(std::string const& otherId) const;        ///< true when `id` equals the text
  bool operator==(CoordinatePointInfo const& other) const;  ///< all six fields, the numbers exactly
};

}  // namespace kvn
