// The three lists of a project as elements of the project file.
#pragma once

#include "records/CoordinatePointInfo.h"
#include "records/Network.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <vector>

namespace tinyxml2 {
class XMLElement;
}

namespace kvn {

// The writers append to what the element holds, the readers to what the list holds; a null element does nothing.
// Texts are the bytes of the records, but for NUL, which XML has no way to hold: U+FFFD stands for it. An attribute
// that is absent or does not parse reads as the default of its field, a name or an identity as an empty text. Numbers
// have a point whatever the process's locale is, and read back exactly.

/// One "Point" for each row. What a row has no attribute for comes back as a default: the validity flags, the reduced
/// angles, `angleMark`, `verticalAngleType`, `sightType`, `hasCoordinate`, `code`.
KELVANE_EXPORT void write(std::vector<TraverseDataInfo> const& rows, tinyxml2::XMLElement* element);
KELVANE_EXPORT void read(tinyxml2::XMLElement const* element, std::vector<TraverseDataInfo>& rows);

/// "KnownPoints" without heights, and "NetworkLines" without the flag that tells a missing direction.
KELVANE_EXPORT void write(Network const& network, tinyxml2::XMLElement* element);
KELVANE_EXPORT void read(tinyxml2::XMLElement const* element, Network& network);

/// One "Point" for each point, without its identity: each gets a new one when it is read.
KELVANE_EXPORT void write(std::vector<CoordinatePointInfo> const& points, tinyxml2::XMLElement* element);
KELVANE_EXPORT void read(tinyxml2::XMLElement const* element, std::vector<CoordinatePointInfo>& points);

}  // namespace kvn
