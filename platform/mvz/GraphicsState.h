// What a context of OpenGL needs before the map is drawn with it.
#pragma once

#include <utils/Export.h>

#include <osg/State>

namespace mvz {

/// To be called once for each context of a window of the host's, while it is current and before the first frame: the
/// shaders of osgEarth take vertices and matrices from attributes and uniforms of OpenSceneGraph, not from the fixed
/// functions. An OffscreenView does it for its own. Nothing happens where the library was built without osgEarth.
KELVANE_EXPORT void prepareGraphicsState(osg::State& state);

}  // namespace mvz
