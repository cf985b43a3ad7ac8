// InstalledCode: OpenSceneGraph's plug-ins and shaders from where they are installed and from nowhere else.
#pragma once

#include <osg/ref_ptr>
#include <osgDB/Callbacks>

namespace utils {

/// OpenSceneGraph looks for plug-ins ("osgPlugins-3.6.5/osgdb_png.so") and for shaders ("shaders/osgText_Text.vert") in
/// the working directory first: whoever can put a file there, beside the job that somebody opens, could have it run.
///
/// While an object of this class lives, plug-ins come from the folders of the library path and from beside the library
/// osgDB itself, and files that are found by nothing but their relative name count as missing: OpenSceneGraph has its
/// own shaders built in, and an icon is read by its absolute name. What a host does at other times is its own. Used
/// from one thread at a time, like the rest.
class InstalledCode {
 public:
  InstalledCode();
  InstalledCode(InstalledCode const&) = delete;
  InstalledCode& operator=(InstalledCode const&) = delete;
  ~InstalledCode();

 private:
  osg::ref_ptr<osgDB::FindFileCallback> before;
};

}  // namespace utils
