// What the fuzz targets share. A target ends the process where a promise is broken: the fuzzer keeps the input then.
#pragma once

#include <Kelvane.h>

#include <QCoreApplication>
#include <QDir>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>

namespace fuzz {

inline void require(bool holds, char const* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

/// Whether the call comes to its end. One of the failures named ends it early; any other one ends the process.
template <typename... Failures, typename Call>
bool ends(Call const& call) {
  try {
    call();
    return true;
  } catch (std::exception const& failure) {
    if (((dynamic_cast<Failures const*>(&failure) != nullptr) || ...)) return false;
    std::fprintf(stderr, "undocumented failure: %s\n", failure.what());
    throw;
  }
}

/// A file of this process alone. The run script keeps temporary files in memory.
class File {
 public:
  explicit File(QString const& name)
      : path(QDir::temp().filePath(QStringLiteral("%1-%2").arg(QCoreApplication::applicationPid()).arg(name))) {}
  File(File const&) = delete;
  File& operator=(File const&) = delete;
  ~File() { std::remove(local().c_str()); }

  std::string local() const { return path.toStdString(); }
  void write(std::string const& bytes) const { std::ofstream(local(), std::ios::binary) << bytes; }
  std::string bytes() const {
    std::ifstream stream(local(), std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
  }

  QString const path;
};

template <typename Collection>
void readText(Collection& collection, std::string const& text) {
  std::istringstream stream(text);
  collection.read(stream);
}

/// What a writer has written, its reader takes.
template <typename Collection>
void readAgain(Collection& collection, std::string const& text) {
  try {
    readText(collection, text);
  } catch (std::exception const& failure) {
    std::fprintf(stderr, "written, but not read (%s):\n%s\n", failure.what(), text.c_str());
    std::abort();
  }
}

template <typename Collection>
std::string written(Collection& collection) {
  std::ostringstream stream;
  collection.write(stream);
  return stream.str();
}

/// Equal, or both no number.
inline bool isSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

/// As near as `decimals` written decimals and the digits of a double leave them.
inline bool isNear(double a, double b, double unit) {
  return isSame(a, b) || std::abs(a - b) <= 0.51 * unit + 1e-14 * std::abs(a);
}

/// The same for angles, on the circle.
inline bool isNearOnCircle(double a, double b, double unit) {
  double const circle = 2.0 * std::acos(-1.0);
  return std::abs(std::remainder(a - b, circle)) <= 0.51 * unit + 1e-14 * std::abs(a);
}

constexpr double kSecond = 3.14159265358979323846 / 648000.0;

}  // namespace fuzz
