#include <utils/detail/InstalledCode.h>

#include <dlfcn.h>
#include <filesystem>
#include <osgDB/FileUtils>
#include <osgDB/Registry>
#include <string>
#include <system_error>

namespace utils {
namespace {

namespace fs = std::filesystem;

bool isFile(fs::path const& path) {
  std::error_code none;
  return fs::is_regular_file(path, none);
}

/// The folder of the library osgDB; any address of it will do to ask the loader.
fs::path folderOfOsg() {
  Dl_info info{};
  auto* const inside = reinterpret_cast<void*>(&osgDB::fileExists);
  if (dladdr(inside, &info) == 0 || info.dli_fname == nullptr) return "/usr/lib";
  std::error_code none;
  return fs::absolute(info.dli_fname, none).parent_path();
}

class FindInstalled : public osgDB::FindFileCallback {
 public:
  std::string findDataFile(std::string const& name, osgDB::Options const* options,
                           osgDB::CaseSensitivity sensitivity) override {
    std::string const found = osgDB::Registry::instance()->findDataFileImplementation(name, options, sensitivity);
    return fs::path(found).is_absolute() ? found : std::string();
  }

  /// Never empty, since the loader would look for the bare name itself.
  std::string findLibraryFile(std::string const& name, osgDB::Options const*, osgDB::CaseSensitivity) override {
    fs::path const wanted(name);
    if (wanted.is_absolute()) return name;
    for (std::string const& folder : osgDB::Registry::instance()->getLibraryFilePathList()) {
      fs::path const candidate = fs::path(folder) / wanted;
      if (candidate.is_absolute() && isFile(candidate)) return candidate.string();
    }
    return (folderOfOsg() / wanted).string();
  }
};

}  // namespace

InstalledCode::InstalledCode() : before(osgDB::Registry::instance()->getFindFileCallback()) {
  static osg::ref_ptr<FindInstalled> const installed = new FindInstalled;
  osgDB::Registry::instance()->setFindFileCallback(installed);
}

InstalledCode::~InstalledCode() { osgDB::Registry::instance()->setFindFileCallback(before); }

}  // namespace utils
