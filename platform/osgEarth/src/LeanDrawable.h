// LeanDrawable: a drawable that there may be a million of.
#pragma once

#include <new>
#include <osg/Drawable>
#include <osg/VertexArrayState>

namespace osgEarth {
inline namespace kelvane {

class LeanDrawable : public osg::Drawable {
 public:
  LeanDrawable() {
    // Every drawable reserves room for its array state in 32 graphics contexts, a quarter of a kilobyte. Neither of
    // ours has one. The list grows by itself where it is used; a cleared one keeps its room, a copy of it takes none.
    osg::VertexArrayStateList none;
    none.clear();
    using List = osg::VertexArrayStateList;
    _vertexArrayStateList.~List();
    new (&_vertexArrayStateList) List(none);
  }
  LeanDrawable(LeanDrawable const&) = delete;
  LeanDrawable& operator=(LeanDrawable const&) = delete;

 protected:
  ~LeanDrawable() override = default;
};

}  // namespace kelvane
}  // namespace osgEarth
