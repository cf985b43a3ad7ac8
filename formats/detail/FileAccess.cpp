#include "formats/detail/FileAccess.h"

#include "core/System.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <cstdio>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace kvn::detail {
namespace {

// A folder opens like a file on some platforms and fails only when it is read.
bool isFolder(std::string const& nativePath) {
  std::error_code none;
  return std::filesystem::is_directory(nativePath, none);
}

}  // namespace

std::ifstream openForReading(std::string const& path) {
  std::string const native = utils::nativePath(path);
  return isFolder(native) ? std::ifstream() : std::ifstream(native);
}

// Not by the name: Qt encodes it with the local 8-bit codec, which need not be that of the file system.
bool openForReading(QFile& file, QString const& path, QIODevice::OpenMode mode) {
  std::string const native = utils::nativePath(HTextCodec::ToLocal8Bit(path));
  std::FILE* const handle = isFolder(native) ? nullptr : std::fopen(native.c_str(), "rb");
  return handle != nullptr && file.open(handle, mode, QFileDevice::AutoCloseHandle);
}

void replaceFile(std::string const& path, std::function<void(std::ostream&)> const& print) {
  std::ostringstream text;
  print(text);
  QString const error = utils::replaceFile(HTextCodec::FromLocal8Bit(path), text.str());
  System const* const system = System::Instance();
  if (!error.isEmpty() && system != nullptr) {
    system->sendMessage(System::tr("The file was not written: %1").arg(error), Error);
  }
}

}  // namespace kvn::detail
