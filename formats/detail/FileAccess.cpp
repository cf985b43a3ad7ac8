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

// A folder opens like a file on some platforms and fails only when it is read, and a pipe may never end.
bool isFile(std::string const& nativePath) {
  std::error_code none;
  return std::filesystem::is_regular_file(nativePath, none);
}

}  // namespace

std::ifstream openForReading(std::string const& path) {
  std::string const native = utils::nativePath(path);
  return isFile(native) ? std::ifstream(native) : std::ifstream();
}

// Not by the name: Qt encodes it with the local 8-bit codec, which need not be that of the file system.
bool openForReading(QFile& file, QString const& path, QIODevice::OpenMode mode) {
  std::string const native = utils::nativePath(HTextCodec::ToLocal8Bit(path));
  std::FILE* const handle = isFile(native) ? std::fopen(native.c_str(), "rb") : nullptr;
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
