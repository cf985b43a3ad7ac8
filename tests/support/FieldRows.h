// Rows of a field book, written short.
#pragma once

#include <Kelvane.h>
#include <string>
#include <vector>

namespace test {

using Rows = std::vector<kvn::TraverseDataInfo>;

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kSecond = kDegree / 3600.0;

inline Rows operator+(Rows a, Rows const& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

/// A station row that is not known.
kvn::TraverseDataInfo station(std::string const& name);
/// A known station.
kvn::TraverseDataInfo known(std::string const& name, double north, double east);
/// A sight: readings in degrees, slant distance in metres, 0 for none.
kvn::TraverseDataInfo sight(std::string const& name, double horizontal, double vertical, double distance = 0.0);

/// Gives each sight the group of the station row before it, as the readers do.
Rows grouped(Rows rows);

/// The sights of one station on both faces, the second one backward, level and free of instrument errors.
Rows twoFaces(std::vector<kvn::TraverseDataInfo> const& firstFace);

/// "from>to direction distance" of each line, degrees and metres with the given decimals.
std::string shortText(std::vector<kvn::NetworkDataInfo> const& lines, int decimals = 4);

}  // namespace test
