// Loaded ahead of the C library into a program under test: the k-th call of one kind fails, once.
//
//   KELVANE_FAULT=read:3       the third call fails; open, read, write, fsync, rename, link or malloc
//   KELVANE_FAULT_SIGNAL=15    it does not fail, but the process gets this signal first
//   KELVANE_FAULT_LINKS=no     no file can be without a name, as in some file systems
//   KELVANE_FAULT_UNDER=DIR    only calls on files in this folder count; allocations count everywhere
//   KELVANE_FAULT_COUNT=FILE   where the numbers of calls are written at the end
//
// Calls of the C library to itself (stdio, the loader) are not seen, which is as well: they are not the program's.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// The allocator under the names that the C library keeps for those who stand in front of it.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* old, size_t size);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

enum Kind : unsigned { Open, Read, Write, Fsync, Rename, Link, Malloc, Kinds };
constexpr std::array<char const*, Kinds> kNames{"open", "read", "write", "fsync", "rename", "link", "malloc"};

std::array<std::atomic<long>, Kinds> calls{};
Kind failing = Kinds;
long failingCall = 0;
std::array<char, PATH_MAX> folder{};
int signalInstead = 0;
bool hasLinks = true;
bool isReady = false;

/// Counts a call; whether it is the one that fails.
bool fails(Kind kind) {
  if (!isReady) return false;
  long const number = ++calls[kind];
  bool const isIt = kind == failing && number == failingCall;
  if (isIt && signalInstead != 0) raise(signalInstead);
  return isIt && signalInstead == 0;
}

bool isUnder(char const* path) {
  if (path == nullptr) return false;
  std::array<char, PATH_MAX> absolute{};
  if (path[0] != '/') {
    if (getcwd(absolute.data(), absolute.size()) == nullptr) return false;
    path = absolute.data();
  }
  return folder[0] != '\0' && std::strncmp(path, folder.data(), std::strlen(folder.data())) == 0;
}

bool isUnder(int file) {
  std::array<char, 64> link{};
  std::array<char, PATH_MAX> path{};
  std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
  ssize_t const size = readlink(link.data(), path.data(), path.size() - 1);
  return size > 0 && isUnder(path.data());
}

/// The call of the C library that ours hides.
template <typename Call>
Call* next(char const* name) {
  return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

int failed(int error) {
  errno = error;
  return -1;
}

__attribute__((constructor)) void begin() {
  if (char const* const under = std::getenv("KELVANE_FAULT_UNDER")) {
    std::strncpy(folder.data(), under, folder.size() - 1);
  }
  if (char const* const fault = std::getenv("KELVANE_FAULT")) {
    for (unsigned kind = 0; kind < Kinds; ++kind) {
      std::size_t const size = std::strlen(kNames[kind]);
      if (std::strncmp(fault, kNames[kind], size) != 0 || fault[size] != ':') continue;
      failing = static_cast<Kind>(kind);
      failingCall = std::atol(fault + size + 1);
    }
  }
  if (char const* const number = std::getenv("KELVANE_FAULT_SIGNAL")) signalInstead = std::atoi(number);
  hasLinks = std::getenv("KELVANE_FAULT_LINKS") == nullptr;
  isReady = true;
}

__attribute__((destructor)) void end() {
  isReady = false;
  char const* const name = std::getenv("KELVANE_FAULT_COUNT");
  std::FILE* const file = name != nullptr ? std::fopen(name, "w") : nullptr;
  if (file == nullptr) return;
  for (unsigned kind = 0; kind < Kinds; ++kind) std::fprintf(file, "%s %ld\n", kNames[kind], calls[kind].load());
  std::fclose(file);
}

int opened(char const* path, int flags, mode_t mode) {
#if defined(O_TMPFILE)
  if (!hasLinks && (flags & O_TMPFILE) == O_TMPFILE) return failed(EOPNOTSUPP);
#endif
  if (isUnder(path) && fails(Open)) return failed(EIO);
  static auto* const real = next<int(int, char const*, int, ...)>("openat");
  return real(AT_FDCWD, path, flags, mode);
}

mode_t modeOf(int flags, va_list arguments) {
  bool const creates = (flags & (O_CREAT | O_TMPFILE)) != 0;
  return creates ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

}  // namespace

extern "C" {

#define KELVANE_OPEN(NAME)                        \
  int NAME(char const* path, int flags, ...) {    \
    va_list arguments;                            \
    va_start(arguments, flags);                   \
    mode_t const mode = modeOf(flags, arguments); \
    va_end(arguments);                            \
    return opened(path, flags, mode);             \
  }
KELVANE_OPEN(open)
KELVANE_OPEN(open64)

ssize_t read(int file, void* buffer, size_t size) {
  if (isUnder(file) && fails(Read)) return failed(EIO);
  static auto* const real = next<ssize_t(int, void*, size_t)>("read");
  return real(file, buffer, size);
}

ssize_t write(int file, void const* buffer, size_t size) {
  if (isUnder(file) && fails(Write)) return failed(ENOSPC);
  static auto* const real = next<ssize_t(int, void const*, size_t)>("write");
  return real(file, buffer, size);
}

int fsync(int file) {
  if (isUnder(file) && fails(Fsync)) return failed(EIO);
  static auto* const real = next<int(int)>("fsync");
  return real(file);
}

int rename(char const* from, char const* to) {
  if (isUnder(to) && fails(Rename)) return failed(EIO);
  static auto* const real = next<int(char const*, char const*)>("rename");
  return real(from, to);
}

int linkat(int fromFolder, char const* from, int toFolder, char const* to, int flags) {
  if (!hasLinks) return failed(EOPNOTSUPP);
  if (isUnder(to) && fails(Link)) return failed(EIO);
  static auto* const real = next<int(int, char const*, int, char const*, int)>("linkat");
  return real(fromFolder, from, toFolder, to, flags);
}

void* malloc(size_t size) {
  if (!fails(Malloc)) return __libc_malloc(size);
  errno = ENOMEM;
  return nullptr;
}

void* calloc(size_t count, size_t size) {
  if (!fails(Malloc)) return __libc_calloc(count, size);
  errno = ENOMEM;
  return nullptr;
}

void* realloc(void* old, size_t size) {
  if (!fails(Malloc)) return __libc_realloc(old, size);
  errno = ENOMEM;
  return nullptr;
}

}  // extern "C"
