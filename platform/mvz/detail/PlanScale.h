// The scale of a plan view and its scale bar.
#pragma once

#include <QString>
#include <osg/Camera>

namespace mvz::detail {

/// Width of a pixel in the world, metres, of an orthographic camera with a viewport.
double metresPerPixel(osg::Camera const& camera);

/// The largest 1, 2 or 5 times a power of ten that is not above `limit` (metres, above 0).
double scaleBarLength(double limit);

/// "0.5 m", "200 m", "5 km": from 1000 m on in kilometres.
QString scaleBarText(double length);

}  // namespace mvz::detail
