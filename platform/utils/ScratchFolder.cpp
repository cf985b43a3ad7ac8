#include "utils/ScratchFolder.h"

#include <utils/FileName.h>

#include <limits.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <csignal>
#include <mutex>
#include <string>

namespace utils {
namespace {

/// A path for a signal handler, which may only look at what is there already.
struct Remembered {
  std::array<char, PATH_MAX> path;
  volatile std::sig_atomic_t isSet;
};

// A program has one or two at a time; of more than these a signal leaves some about.
std::array<Remembered, 8> remembered{};

std::mutex& placesMutex() {
  static auto* const mutex = new std::mutex;
  return *mutex;
}

}  // namespace

ScratchFolder::ScratchFolder() { remember(folder.path()); }

ScratchFolder::~ScratchFolder() {
  folder.remove();
  std::lock_guard<std::mutex> const hold(placesMutex());
  for (std::size_t const place : places) remembered[place].isSet = 0;
}

QString ScratchFolder::filePath(QString const& name) {
  QString path = folder.filePath(name);
  remember(path);
  return path;
}

void ScratchFolder::remember(QString const& path) {
  std::string const native = nativePathOf(path);
  std::lock_guard<std::mutex> const hold(placesMutex());
  for (std::size_t i = 0; i < remembered.size() && native.size() < PATH_MAX; ++i) {
    if (remembered[i].isSet != 0) continue;
    std::copy_n(native.c_str(), native.size() + 1, remembered[i].path.begin());
    remembered[i].isSet = 1;
    places.push_back(i);
    return;
  }
}

void removeScratchFiles() noexcept {
  for (Remembered const& one : remembered) {
    if (one.isSet != 0) ::unlink(one.path.data());
  }
  for (Remembered const& one : remembered) {
    if (one.isSet != 0) ::rmdir(one.path.data());
  }
}

}  // namespace utils
