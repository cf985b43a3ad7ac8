// The features of a layer, their coordinates as they were given, and their highlight.
#pragma once

#include <osg/BoundingBox>
#include <osg/Node>
#include <osg/Vec3d>
#include <osgEarth/Layer>
#include <vector>

namespace mvz::detail {

/// The group that holds the features of a layer; null for a null layer and one without features.
osg::Group* featuresOf(osgEarth::Layer* layer);

bool isIn(osg::Node const& node, osg::Group const* group);

/// Nothing happens to a node that cannot be selected.
void highlight(osg::Node* node, bool value);

/// Position of a place, vertices of a line; empty for any other node.
std::vector<osg::Vec3d> pointsOf(osg::Node& node);

/// Box around the points within `View::kFarthest`, whatever their height, of the features of a
/// layer; invalid when there is none.
osg::BoundingBoxd boundsOf(osgEarth::Layer& layer);

}  // namespace mvz::detail
