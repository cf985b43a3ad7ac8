// Replacing a file: the new one is written without a name, or beside the old one, and takes its place when it is whole.
#include <utils/FileText.h>
#include <utils/detail/SystemText.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#if defined(_WIN32)
#include <QSaveFile>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstring>
#include <ctime>
#include <random>
#endif

namespace utils {
namespace {

namespace fs = std::filesystem;

using detail::translated;

#if defined(_WIN32)

QString replace(std::string const& name, std::string const& bytes) {
  QSaveFile file(QString::fromLocal8Bit(name.c_str()));
  bool const written =
      file.open(QIODevice::WriteOnly) &&
      file.write(bytes.data(), static_cast<qint64>(bytes.size())) == static_cast<qint64>(bytes.size()) && file.commit();
  return written ? QString() : file.errorString();
}

#else

/// Signals that a thread does not take for a while. What has come by then is taken afterwards, or thrown away.
class HeldSignals {
 public:
  enum class Afterwards { Taken, ThrownAway };

  HeldSignals(std::initializer_list<int> numbers, Afterwards what) : afterwards(what) {
    sigemptyset(&held);
    for (int const number : numbers) sigaddset(&held, number);
    sigpending(&pendingBefore);
    pthread_sigmask(SIG_BLOCK, &held, &before);
  }
  HeldSignals(HeldSignals const&) = delete;
  HeldSignals& operator=(HeldSignals const&) = delete;
  ~HeldSignals() {
    int const error = errno;
    if (afterwards == Afterwards::ThrownAway) throwAway();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
  }

 private:
  void throwAway() {
    sigset_t mine = held;
    for (int signal = 1; signal < NSIG; ++signal) {
      if (sigismember(&pendingBefore, signal) == 1) sigdelset(&mine, signal);
    }
    timespec const now{};
    while (sigtimedwait(&mine, nullptr, &now) > 0) {
    }
  }

  Afterwards afterwards;
  sigset_t held{};
  sigset_t before{};
  sigset_t pendingBefore{};
};

// The name of the file that is being written, for a signal handler; it may only look at what is there already.
std::array<char, PATH_MAX> unfinishedName{};
volatile std::sig_atomic_t hasUnfinished = 0;

/// What asks a program to end. It waits for the few calls in which a file has a name that `removeUnfinishedFile` does
/// not know yet, or no more.
class HeldEnd : HeldSignals {
 public:
  HeldEnd()
      : HeldSignals({SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU, SIGUSR1, SIGUSR2, SIGALRM, SIGVTALRM, SIGPROF},
                    Afterwards::Taken) {}
};

void rememberUnfinished(std::string const& name) {
  if (name.size() >= unfinishedName.size()) return;
  std::copy_n(name.c_str(), name.size() + 1, unfinishedName.begin());
  hasUnfinished = 1;
}

void forgetUnfinished() { hasUnfinished = 0; }

/// The system's number of the error; 0 when there was none.
int writeAll(int file, std::string const& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    ssize_t const count = ::write(file, bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    done += static_cast<std::size_t>(count);
  }
  return 0;
}

/// A name in the folder that nobody has. Not the name of the file with something behind it, which could be too long.
std::string freshName(fs::path const& folder) {
  static char const letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device source;
  std::uniform_int_distribution<std::size_t> any(0, sizeof letters - 2);
  std::string name = ".kelvane-";
  for (int i = 0; i < 12; ++i) name += letters[any(source)];
  return (folder / name).string();
}

/// The new file until it takes its place; what has not is removed.
class NewFile {
 public:
  NewFile() = default;
  NewFile(NewFile const&) = delete;
  NewFile& operator=(NewFile const&) = delete;
  ~NewFile() {
    if (file >= 0) ::close(file);
    if (name.empty()) return;
    HeldEnd const held;
    ::unlink(name.c_str());
    forgetUnfinished();
  }

  int number() const { return file; }
  bool isAnonymous() const { return name.empty(); }

  int createAnonymous(fs::path const& folder, mode_t mode) {
#if defined(O_TMPFILE)
    file = ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
    return file >= 0 ? 0 : errno;
#else
    return EOPNOTSUPP;
#endif
  }

  int createNamed(fs::path const& folder, mode_t mode) {
    std::string wanted = freshName(folder);
    HeldEnd const held;
    file = ::open(wanted.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, mode);
    if (file < 0) return errno;
    take(std::move(wanted));
    return 0;
  }

  /// Gives an anonymous file a name. The operating system has no call by which it could take the place of another one.
  bool link(std::string const& wanted) const {
    std::string const self = "/proc/self/fd/" + std::to_string(file);
    return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, wanted.c_str(), AT_SYMLINK_FOLLOW) == 0;
  }

  bool linkAside(fs::path const& folder) {
    std::string wanted = freshName(folder);
    if (!link(wanted)) return false;
    take(std::move(wanted));
    return true;
  }

  bool rename(std::string const& target) {
    if (::rename(name.c_str(), target.c_str()) != 0) return false;
    name.clear();
    forgetUnfinished();
    return true;
  }

 private:
  /// Behind the call that makes the name there may be no want of memory: nobody would know what to remove.
  void take(std::string&& wanted) noexcept {
    name = std::move(wanted);
    rememberUnfinished(name);
  }

  int file = -1;
  std::string name;
};

// What may go wrong beside the errors of the system, which are positive.
constexpr int kNoAnonymousFiles = -1;
constexpr int kGroupNotKept = -2;
constexpr int kFolderNotSynced = -3;

/// An access list says more than the mode, whose group bits are only its mask: without it others could read what they
/// must not. Where the old file has none, the one that the folder hands down goes. Users' own attributes are kept too.
int keepAttributes(int file, std::string const& old) {
  constexpr char const* kAccess = "system.posix_acl_access";
  if (::fgetxattr(file, kAccess, nullptr, 0) > 0 && ::fremovexattr(file, kAccess) != 0) return errno;
  ssize_t const size = ::listxattr(old.c_str(), nullptr, 0);
  if (size <= 0) return 0;  // none, or a file system that has none
  std::string list(static_cast<std::size_t>(size), '\0');
  ssize_t const read = ::listxattr(old.c_str(), list.data(), list.size());
  if (read < 0) return errno;
  list.resize(static_cast<std::size_t>(read));
  for (std::size_t at = 0; at < list.size(); at += std::strlen(list.c_str() + at) + 1) {
    std::string const name = list.c_str() + at;
    if (name != kAccess && name.rfind("user.", 0) != 0) continue;
    ssize_t const valueSize = ::getxattr(old.c_str(), name.c_str(), nullptr, 0);
    if (valueSize < 0) return errno;
    std::string value(static_cast<std::size_t>(valueSize), '\0');
    if (::getxattr(old.c_str(), name.c_str(), value.data(), value.size()) != valueSize) return EIO;
    if (::fsetxattr(file, name.c_str(), value.data(), value.size(), 0) != 0) return errno;
  }
  return 0;
}

/// Mode and group of the old file, its access list, and its owner where the process may give files away. With another
/// owner it must not run with the rights of this one.
int keepRights(int file, std::string const& name, struct stat const& old) {
  struct stat fresh {};
  if (::fstat(file, &fresh) != 0) return errno;
  if (fresh.st_gid != old.st_gid && ::fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0) return kGroupNotKept;
  if (int const error = keepAttributes(file, name)) return error;
  bool const isOwned = fresh.st_uid == old.st_uid || ::fchown(file, old.st_uid, static_cast<gid_t>(-1)) == 0;
  mode_t const mode = old.st_mode & (isOwned ? 07777U : 01777U);
  return ::fchmod(file, mode) == 0 ? 0 : errno;
}

int syncFolder(fs::path const& folder) {
  int const handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return errno == EACCES ? 0 : errno;  // a folder that may be written but not listed
  int error = ::fsync(handle) == 0 ? 0 : errno;
  ::close(handle);
  if (error == EINVAL || error == ENOTSUP) error = 0;  // file systems that know nothing of it
  return error;
}

struct Target {
  std::string name;
  fs::path folder;
  bool isThere = false;
  struct stat status {};
};

int place(NewFile& fresh, Target const& target) {
  if (fresh.isAnonymous()) {
    if (!target.isThere && fresh.link(target.name)) return 0;
    if (!target.isThere && errno == EEXIST) return EEXIST;  // somebody else was faster
    HeldEnd const held;
    if (!fresh.linkAside(target.folder)) return kNoAnonymousFiles;
    return fresh.rename(target.name) ? 0 : errno;
  }
  return fresh.rename(target.name) ? 0 : errno;
}

int fill(NewFile& fresh, Target const& target, std::string const& bytes) {
  if (int const error = writeAll(fresh.number(), bytes)) return error;
  if (target.isThere) {
    if (int const error = keepRights(fresh.number(), target.name, target.status)) return error;
  }
  return ::fsync(fresh.number()) == 0 ? 0 : errno;
}

/// What kernels and file systems say that have no files without a name.
bool saysNoAnonymousFiles(int error) { return error == EOPNOTSUPP || error == EISDIR || error == EINVAL; }

int putInPlace(Target const& target, std::string const& bytes, bool anonymous) {
  // Nobody else may open it before it has the rights of the old one.
  mode_t const mode = target.isThere ? 0600 : 0666;
  NewFile fresh;
  int error = anonymous ? fresh.createAnonymous(target.folder, mode) : fresh.createNamed(target.folder, mode);
  if (anonymous && saysNoAnonymousFiles(error)) return kNoAnonymousFiles;
  if (error == 0) error = fill(fresh, target, bytes);
  if (error == 0) error = place(fresh, target);
  return error;
}

int replaceWhole(Target const& target, std::string const& bytes) {
  int error = putInPlace(target, bytes, true);
  if (error == kNoAnonymousFiles) error = putInPlace(target, bytes, false);
  if (error != 0) return error;
  return syncFolder(target.folder) == 0 ? 0 : kFolderNotSynced;
}

QString reasonOf(int error) {
  if (error == kGroupNotKept) {
    return translated(QT_TRANSLATE_NOOP("kvn::System", "the file belongs to a group that the new one cannot be given"));
  }
  if (error == kFolderNotSynced) {
    return translated(QT_TRANSLATE_NOOP(
        "kvn::System",
        "the disk does not confirm it: the new file is in its place, but may be lost if the power fails now"));
  }
  return detail::worded(error);
}

/// To a pipe, a device or a file that the process has open, such as its standard output.
int writeThrough(int file, std::string const& bytes) {
  if (file < 0) return errno;
  int error = writeAll(file, bytes);
  if (::close(file) != 0 && error == 0) error = errno;
  return error;
}

/// What a name leads to when its links are followed.
struct End {
  fs::path path;
  int openFile = -1;  ///< number of the open file of this process that it stands for, as /dev/stdout does
};

End endOf(fs::path path) {
  constexpr int kMostLinks = 40;  // as the operating system has it
  fs::path const openFiles = "/proc/" + std::to_string(::getpid()) + "/fd";
  fs::path const threads = "/proc/" + std::to_string(::getpid()) + "/task";
  std::error_code none;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, none); ++i) {
    fs::path const folder = fs::canonical(path.has_parent_path() ? path.parent_path() : fs::path("."), none);
    bool const isThread = folder.parent_path().parent_path() == threads && folder.filename() == "fd";
    if (folder == openFiles || isThread) return {path, std::stoi(path.filename().string())};
    path = folder / fs::read_symlink(path, none);
  }
  return {path, -1};
}

/// Why a regular file must not be replaced; empty when it may.
QString objection(Target const& target) {
  // The superuser may write everything, but has the protection in mind just the same.
  bool const isProtected =
      (target.status.st_mode & 0222U) == 0 || ::faccessat(AT_FDCWD, target.name.c_str(), W_OK, AT_EACCESS) != 0;
  if (isProtected) return translated(QT_TRANSLATE_NOOP("kvn::System", "the file is write-protected"));
  if (target.status.st_nlink > 1) {
    return translated(QT_TRANSLATE_NOOP("kvn::System",
                                        "the file has a second name (a hard link), which would keep the old contents"));
  }
  return {};
}

QString replace(std::string const& name, std::string const& bytes) {
  if (name.empty()) {
    return translated(QT_TRANSLATE_NOOP("kvn::System", "the name cannot be written in the encoding of file names"));
  }
  // A pipe whose reader has gone and a limit to the size of files are errors here and not the end of the process.
  HeldSignals const held({SIGPIPE, SIGXFSZ}, HeldSignals::Afterwards::ThrownAway);
  // The system says first whether the links may be followed: in a folder where everybody may write it refuses those of
  // strangers.
  int const probe = ::open(name.c_str(), O_PATH | O_CLOEXEC);
  if (probe < 0 && errno != ENOENT && errno != ENXIO) return reasonOf(errno);
  if (probe >= 0) ::close(probe);
  End const end = endOf(name);
  Target target;
  if (end.openFile >= 0) {
    int const error = writeThrough(::fcntl(end.openFile, F_DUPFD_CLOEXEC, 0), bytes);
    return error == 0 ? QString() : reasonOf(error);
  }
  target.name = end.path.string();
  target.folder = end.path.has_parent_path() ? end.path.parent_path() : fs::path(".");
  target.isThere = ::stat(target.name.c_str(), &target.status) == 0;
  if (!target.isThere && errno != ENOENT) return reasonOf(errno);
  if (!target.isThere && end.path != fs::path(name)) {
    return translated(QT_TRANSLATE_NOOP("kvn::System", "the link leads nowhere"));
  }
  int error = 0;
  if (target.isThere && S_ISDIR(target.status.st_mode)) {
    error = EISDIR;
  } else if (target.isThere && !S_ISREG(target.status.st_mode)) {
    error = writeThrough(::open(target.name.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC), bytes);
  } else {
    if (QString reason = target.isThere ? objection(target) : QString(); !reason.isEmpty()) return reason;
    error = replaceWhole(target, bytes);
  }
  return error == 0 ? QString() : reasonOf(error);
}

#endif

}  // namespace

QString replaceFile(QString const& path, std::string const& bytes) { return replace(nativePathOf(path), bytes); }

QString replaceLocalFile(std::string const& localPath, std::string const& bytes) {
  return replace(nativePath(localPath), bytes);
}

void removeUnfinishedFile() noexcept {
#if !defined(_WIN32)
  if (hasUnfinished != 0) ::unlink(unfinishedName.data());
  hasUnfinished = 0;
#endif
}

}  // namespace utils
