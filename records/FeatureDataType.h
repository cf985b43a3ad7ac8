// What a map layer shows.
#pragma once

#include <utils/NamedValue.h>

#include <QMetaType>

namespace kvn {

struct FeatureDataTypeTable {
  enum Value : std::int32_t { Default, TraverseData, CoordData, NetworkData, ViewPointData };
  static constexpr std::array<char const*, 5> names{"Default", "TraverseData", "CoordData", "NetworkData",
                                                    "ViewPointData"};
};

/// Selects a map layer with its colours and icons.
using FeatureDataType = utils::NamedValue<FeatureDataTypeTable>;

}  // namespace kvn

Q_DECLARE_METATYPE(kvn::FeatureDataType)
