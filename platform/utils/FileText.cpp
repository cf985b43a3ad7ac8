#include <utils/FileText.h>
#include <utils/detail/SystemText.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <fstream>
#include <sstream>
#endif

namespace utils {
namespace {

using State = FileBytes::State;
using detail::translated;
using detail::worded;

FileBytes failed(State state, QString const& reason) { return {state, {}, reason}; }

FileBytes missing() { return failed(State::Missing, translated(QT_TRANSLATE_NOOP("kvn::System", "no such file"))); }

FileBytes unreadable(int error) {
  // Not a matter of what the user may do, but a failure on the way, which must not pass for an empty file.
  bool const isFailure = error == EIO || error == EMFILE || error == ENFILE || error == ENOMEM;
  return failed(isFailure ? State::Broken : State::Unreadable,
                translated(QT_TRANSLATE_NOOP("kvn::System", "the file cannot be read")) + ": " + worded(error));
}

FileBytes broken(QString const& reason) {
  return failed(State::Broken,
                translated(QT_TRANSLATE_NOOP("kvn::System", "the file could not be read to its end")) + ": " + reason);
}

FileBytes notAFile() {
  return failed(State::NotAFile, translated(QT_TRANSLATE_NOOP("kvn::System", "not a regular file")));
}

#if defined(_WIN32)

FileBytes readNative(std::filesystem::path const& name) {
  std::error_code error;
  auto const status = std::filesystem::status(name, error);
  if (!std::filesystem::exists(status)) return missing();
  if (!std::filesystem::is_regular_file(status)) return notAFile();
  std::ifstream stream(name, std::ios::binary);
  if (!stream.is_open()) return unreadable(errno);
  std::ostringstream bytes;
  if (stream.peek() != std::ifstream::traits_type::eof()) bytes << stream.rdbuf();
  if (stream.bad() || bytes.fail()) return broken(worded(EIO));
  return {State::Whole, bytes.str(), {}};
}

#else

class Descriptor {
 public:
  explicit Descriptor(int number) : file(number) {}
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;
  ~Descriptor() {
    if (file >= 0) ::close(file);
  }
  int number() const { return file; }

 private:
  int file;
};

constexpr int kShrunk = -1;

/// Reads on until the end; the system's number of the error, 0 when there was none, `kShrunk` when the file has become
/// shorter: somebody else is making it anew, and what is missing would be missing without a word.
int readAll(int file, std::size_t expected, std::string& bytes) {
  constexpr std::size_t kPiece = std::size_t{1} << 16U;
  std::size_t size = 0;
  bytes.resize(expected + 1);  // one more, so that the end shows without another piece
  for (;;) {
    if (size == bytes.size()) bytes.resize(size + kPiece);
    ssize_t const count = ::read(file, bytes.data() + size, bytes.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  bytes.resize(size);
  return size < expected ? kShrunk : 0;
}

FileBytes readNative(std::string const& name) {
  // Asked before it is opened, since opening a pipe may wait for ever, and again afterwards, since it may have changed.
  struct stat status {};
  if (name.empty() || ::stat(name.c_str(), &status) != 0) {
    bool const isMissing = name.empty() || errno == ENOENT || errno == ENOTDIR;
    return isMissing ? missing() : unreadable(errno);
  }
  if (!S_ISREG(status.st_mode)) return notAFile();
  Descriptor const file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.number() < 0 || ::fstat(file.number(), &status) != 0) return unreadable(errno);
  if (!S_ISREG(status.st_mode)) return notAFile();
  FileBytes result;
  if (int const error = readAll(file.number(), static_cast<std::size_t>(status.st_size), result.bytes)) {
    return broken(error == kShrunk ? translated(QT_TRANSLATE_NOOP("kvn::System", "it has become shorter meanwhile"))
                                   : worded(error));
  }
  result.state = State::Whole;
  return result;
}

#endif

}  // namespace

FileBytes readFile(QString const& path) { return readNative(nativePathOf(path)); }
FileBytes readLocalFile(std::string const& localPath) { return readNative(nativePath(localPath)); }

void createFolderOf(QString const& path) {
  std::error_code ignored;  // what could not be created shows when the file is written
  std::filesystem::path const folder = std::filesystem::path(nativePathOf(path)).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, ignored);
}

}  // namespace utils
