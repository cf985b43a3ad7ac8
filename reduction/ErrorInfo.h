// ErrorInfo: findings of the host's own checks, and the words for them.
#pragma once

#include <utils/Export.h>

#include <QStringList>
#include <cstdint>
#include <string>
#include <vector>

namespace kvn {

/// One finding. Names are in the local 8-bit encoding, whatever the encoding of the file that they came from.
class KELVANE_EXPORT ErrorInfo {
 public:
  std::string stationName;
  std::vector<std::string> prismPointList;  ///< the targets concerned
  std::int32_t errorCode = 0;               ///< 0 to 12, the place in the list of texts
};

/// A line of text for each finding, in order; a code that has no text adds none.
///
/// 0 back sight and fore sight are the same, 1 no back sight, 2 no fore sight, 3 redundant observations, 4 several back
/// sights, 5 double collimation error, 6 and 9 difference of the rounds, 7 zero misclosure, 8 vertical collimation
/// error, 10 and 11 spread of distances, 12 another back sight.
KELVANE_EXPORT QStringList Translation(std::vector<ErrorInfo> const& findings);

}  // namespace kvn
