// What a picture of the map has beside the features of the project: grid, ellipses, suspects, title and legend.
#pragma once

#include "Options.h"
#include "Session.h"

namespace kvn::host {

/// After the scene has been framed: what it shows stands clear of title and legend.
void makeRoomForWords(mvz::View& view, SiteDrawing const& drawing);

/// The scene is built and framed in the view; the layer of `FeatureDataType::Default` lies where the grid is to be.
void sketch(MapScene& scene, mvz::View const& view, SiteDrawing const& drawing, MapOptions const& options);

}  // namespace kvn::host
