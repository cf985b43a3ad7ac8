// Names of the map beside their points, where there is room.
#pragma once

#include <utils/Export.h>

namespace mvz {
class View;
}

namespace kvn {

class MapScene;

/// Puts the names of points and targets to the right of them, to the left, above or below, where they lie on nothing
/// else in this view: beside each other they are read where one that lies on another is left out of the picture. The
/// first of several of one name at one place gets the room. To be called when the texts of a SketchDataTool are drawn.
/// Linear in the number of points.
/// @param magnification  of icons, names and lines, above 0; the distance from the eye of a screen is 1.
KELVANE_EXPORT void arrangeNames(MapScene& scene, mvz::View const& view, double magnification = 1.0);

}  // namespace kvn
