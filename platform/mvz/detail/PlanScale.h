// The scale of a plan view and its scale bar.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <osg/Camera>

namespace mvz::detail {

/// Width of a pixel in the world, metres, of an orthographic camera with a viewport.
KELVANE_EXPORT double metresPerPixel(osg::Camera const& camera);

/// The largest 1, 2 or 5 times a power of ten that is not above `limit` (metres, above 0).
KELVANE_EXPORT double scaleBarLength(double limit);

/// "0.5 m", "200 m", "5 km": from 1000 m on in kilometres.
KELVANE_EXPORT QString scaleBarText(double length);

}  // namespace mvz::detail
