#include <utils/FileName.h>
#include <utils/ResourceFile.h>

#include <dlfcn.h>
#include <QCoreApplication>
#include <filesystem>
#include <system_error>
#include <vector>

namespace utils {
namespace {

namespace fs = std::filesystem;

fs::path native(QString const& path) { return nativePathOf(path); }

/// Any address of the library will do to ask the loader where the library is.
fs::path folderOfLibrary() {
  static char const inside = 0;
  Dl_info info{};
  if (dladdr(&inside, &info) == 0 || info.dli_fname == nullptr) return {};
  std::error_code error;
  fs::path const file = fs::absolute(info.dli_fname, error);
  return error ? fs::path() : file.parent_path();
}

bool fromWorkingDirectory = true;

std::vector<fs::path> installations() {
  std::vector<fs::path> all;
  if (fromWorkingDirectory) all.emplace_back();
  if (QCoreApplication::instance() != nullptr) all.push_back(native(QCoreApplication::applicationDirPath()));
  static fs::path const library = folderOfLibrary();
  if (!library.empty()) all.insert(all.end(), {library / KELVANE_DATA_FROM_LIBRARY, library / "../share/kelvane"});
  return all;
}

std::vector<fs::path> candidates(QString const& relative) {
  fs::path const wanted = native(QString(relative).replace(QLatin1Char('\\'), QLatin1Char('/')));
  std::vector<fs::path> all = installations();
  for (fs::path& folder : all) folder /= wanted;  // an absolute path stays what it is
  return all;
}

}  // namespace

void setResourcesFromWorkingDirectory(bool value) { fromWorkingDirectory = value; }
bool areResourcesFromWorkingDirectory() { return fromWorkingDirectory; }

std::string resourceFile(QString const& relative) {
  for (fs::path const& candidate : candidates(relative)) {
    std::error_code error;
    if (fs::is_regular_file(candidate, error)) return candidate.string();
  }
  return {};
}

std::vector<std::string> resourceFolders(QString const& relative) {
  std::vector<std::string> folders;
  for (fs::path const& candidate : candidates(relative)) {
    std::error_code error;
    if (fs::is_directory(candidate, error)) folders.push_back(candidate.string());
  }
  return folders;
}

}  // namespace utils
