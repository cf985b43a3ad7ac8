// The icon of a PlaceNode: a quad in pixels about its position.
#pragma once

#include <osgEarth/IconSymbol>

#include <osg/Geometry>
#include <osg/ref_ptr>

namespace osgEarth {
inline namespace kelvane {

/// @param symbol  alignment, scale and heading; null for their defaults.
/// @return        a drawable that nodes with the same image and settings share, or, where the icon gives way to others,
///                one of its own that is Ranked. The state with the texture is shared by all with the same image.
osg::ref_ptr<osg::Geometry> makeIcon(osg::Image& image, IconSymbol const* symbol);

}  // namespace kelvane
}  // namespace osgEarth
