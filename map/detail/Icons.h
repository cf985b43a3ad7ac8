// Icons in styles.
#pragma once

#include <QString>
#include <osgEarth/Style>

namespace kvn::detail {

/// The style with the icon file, as it stands; unchanged for an empty one.
osgEarth::Style withIcon(osgEarth::Style style, QString const& icon);

}  // namespace kvn::detail
