// Colours, icons and display names of what the map shows.
#pragma once

#include "records/FeatureDataType.h"
#include "records/TraversePointType.h"

#include <utils/Export.h>

#include <QString>

namespace kvn {

/// HTML colour in the order red, green, blue, alpha; empty where the map's own colour holds.
KELVANE_EXPORT QString GetColor(FeatureDataType type);
KELVANE_EXPORT QString GetSelectedColor(FeatureDataType type);

/// Icon file, relative to an installation and with back slashes (see `utils::resourceFile`); empty for what has none.
KELVANE_EXPORT QString GetIcon(FeatureDataType type, TraversePointType pointType);
KELVANE_EXPORT QString GetSelectedIcon(FeatureDataType type, TraversePointType pointType);

/// Name to show, translated; empty for what the user does not see by a name.
KELVANE_EXPORT QString Translation(FeatureDataType type);

}  // namespace kvn
