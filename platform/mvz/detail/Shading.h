// Shading: where vertices and matrices come from, and how that is drawn which has no shader of its own.
#pragma once

#include <osg/Program>

namespace mvz::detail {

/// From attributes and uniforms, as the shaders of osgEarth have it, or from OpenGL's fixed functions, which the
/// stand-in of osgEarth uses. It must not change once something is drawn.
bool usesAttributes();
void setUsesAttributes(bool wanted);  ///< in the place of what the library was built for; for tests

/// Draws vertices in their colours; null where the fixed functions do.
osg::ref_ptr<osg::Program> plainProgram();

}  // namespace mvz::detail
