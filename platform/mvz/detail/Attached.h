// Attached: what is kept with a feature to find the record behind it.
#pragma once

#include <mvz/ISelectable.h>

namespace mvz::detail {

/// In the feature itself: the container for user data of a node, which is the host's, takes 128 bytes before it holds
/// anything, and a map has hundreds of thousands of features.
struct Attached {
  static osg::ref_ptr<osg::Referenced>& infoOf(ISelectable& feature) { return feature.info; }
  static osg::Referenced const* infoOf(ISelectable const& feature) { return feature.info.get(); }
  static osg::ref_ptr<osg::Referenced>& endsOf(ISelectable& feature) { return feature.ends; }
  static osg::Referenced const* endsOf(ISelectable const& feature) { return feature.ends.get(); }
};

}  // namespace mvz::detail
