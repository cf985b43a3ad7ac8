#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QTextCodec>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#if defined(_WIN32)
#include <QSaveFile>
#else
#include <langinfo.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#endif

namespace utils {
namespace {

std::filesystem::path nativeFile(QString const& path) { return nativePath(HTextCodec::ToLocal8Bit(path)); }

QString lastError() { return QString::fromStdString(std::generic_category().message(errno)); }

#if defined(_WIN32)

QString replace(std::filesystem::path const& target, std::string const& bytes) {
  QSaveFile file(QString::fromStdWString(target.wstring()));
  bool const written =
      file.open(QIODevice::WriteOnly) &&
      file.write(bytes.data(), static_cast<qint64>(bytes.size())) == static_cast<qint64>(bytes.size()) && file.commit();
  return written ? QString() : file.errorString();
}

#else

bool writeAll(int file, std::string const& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    ssize_t const count = ::write(file, bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return ::fsync(file) == 0;
}

/// The rights of the old file; those that the process gives to new files when there is none.
mode_t rightsFor(std::filesystem::path const& target) {
  struct stat old {};
  if (::stat(target.c_str(), &old) == 0) return old.st_mode & 07777U;
  mode_t const mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

// Written beside the old file and renamed over it. Not QSaveFile: it encodes the name with the local 8-bit codec, which
// need not be that of the file system.
QString replace(std::filesystem::path const& target, std::string const& bytes) {
  std::error_code none;
  if (std::filesystem::exists(target, none) && !std::filesystem::is_regular_file(target, none)) {
    return QStringLiteral("not a regular file");
  }
  // Not the name of the file with something behind it, which could be too long.
  std::string name = (target.parent_path() / ".kelvane-XXXXXX").string();
  int const file = ::mkstemp(name.data());
  if (file < 0) return lastError();
  bool const written = writeAll(file, bytes) && ::fchmod(file, rightsFor(target)) == 0;
  QString error = written ? QString() : lastError();
  ::close(file);
  if (written && ::rename(name.c_str(), target.c_str()) == 0) return {};
  if (error.isEmpty()) error = lastError();
  ::unlink(name.c_str());
  return error;
}

#endif

}  // namespace

std::string nativePath(std::string const& path) {
#if defined(_WIN32)
  return path;
#else
  QByteArray charset(nl_langinfo(CODESET));
  if (charset.isEmpty() || charset == "ANSI_X3.4-1968" || charset == "US-ASCII") charset = "UTF-8";
  QTextCodec const* const names = QTextCodec::codecForName(charset);
  if (names == nullptr || names == QTextCodec::codecForLocale()) return path;
  return names->fromUnicode(HTextCodec::FromLocal8Bit(path)).toStdString();
#endif
}

void createFolderOf(QString const& path) {
  std::error_code ignored;  // what could not be created shows when the file is written
  std::filesystem::create_directories(nativeFile(path).parent_path(), ignored);
}

std::optional<std::string> readFile(QString const& path) {
  std::filesystem::path const file = nativeFile(path);
  std::error_code none;
  if (!std::filesystem::is_regular_file(file, none)) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream bytes;
  if (stream.peek() != std::ifstream::traits_type::eof()) bytes << stream.rdbuf();
  if (!stream.is_open() || stream.bad() || bytes.fail()) return std::nullopt;
  return bytes.str();
}

QString replaceFile(QString const& path, std::string const& bytes) {
  if (HTextCodec::FromLocal8Bit(HTextCodec::ToLocal8Bit(path)) != path) {
    return QStringLiteral("%1: the name cannot be written in the local encoding").arg(path);
  }
  std::filesystem::path target = nativeFile(path);
  std::error_code none;
  // A link stays a link: what it leads to is replaced.
  if (std::filesystem::is_symlink(target, none)) target = std::filesystem::canonical(target, none);
  QString const error = target.empty() ? QStringLiteral("the link leads nowhere") : replace(target, bytes);
  return error.isEmpty() ? QString() : QStringLiteral("%1: %2").arg(path, error);
}

}  // namespace utils
