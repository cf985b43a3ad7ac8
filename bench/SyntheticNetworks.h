// Networks and field jobs of any size with known truth, for benchmarks: the same seed gives the same network.
#pragma once

#include <Kelvane.h>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

// Standard errors of the simulated observations, those of a default `Configure`: a distance has the sum of both parts.
constexpr double kDirectionErrorSeconds = 2.0;
constexpr double kDistanceErrorMm = 3.0;
constexpr double kDistanceErrorPpm = 3.0;

/// The sizes that the generators take, in points.
constexpr std::size_t kLeastPoints = 10;
constexpr std::size_t kMostPoints = 10'000'000;

/// True position, metres: x north, y east, z height, whole tenths of a millimetre, so that a file with four decimals
/// holds the truth exactly.
struct TruePoint {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

/// Direction and distance from one point to another, with their noise.
struct Sight {
  std::uint32_t from = 0;
  std::uint32_t to = 0;
  double direction = 0.0;  ///< radians, 0 to 2π
  double distance = 0.0;   ///< metres
};

/// "P" and the number of the point.
std::string nameOf(std::size_t point);

/// A network as numbers, a fifth of the size of the `kvn::Network` that is made of it.
struct SyntheticNetwork {
  std::vector<TruePoint> points;
  std::vector<std::size_t> known;
  std::vector<Sight> sights;  ///< in the order of their stations

  /// Known points with their true coordinates, and a line for each sight.
  kvn::Network network() const;
};

/// A grid of points 100 m apart, each moved by up to 20 m north or south and east or west. Every point is a station
/// with a circle of random orientation that sights 4 to 8 of the points around it, as many as there are where there are
/// less; the points of a row, and the first ones of the rows, always sight each other, so that every point hangs on
/// every other one by directions and distances. Known are the four corners, and one point for every 50 of the rim. The
/// last row may be short.
/// @throws std::invalid_argument outside `kLeastPoints` to `kMostPoints`.
SyntheticNetwork gridNetwork(std::size_t points, std::uint64_t seed);

/// A traverse of legs of 60 to 140 m that winds through a square field in rows. Every station sights back and fore.
/// Known are both ends, and every 50th point.
/// @throws std::invalid_argument outside `kLeastPoints` to `kMostPoints`.
SyntheticNetwork chainNetwork(std::size_t points, std::uint64_t seed);

/// A field book with the true coordinates of its points.
struct SyntheticJob {
  std::vector<TruePoint> points;
  std::vector<kvn::TraverseDataInfo> rows;
};

/// A traverse of legs of 60 to 140 m with three side shots a station, four points a station in all: point 4 s is
/// station s. Every target is read on both faces, the second one backward, with collimation and index error and with
/// noise (vertical angles 3"); the circle stands a little above 0 at the back sight. The first and the last point are
/// known and not occupied; known are also the stations beside them, and every 50th. The earth is flat and the air does
/// not refract: 0.7 mm in height at 100 m.
/// @param points  a multiple of 4 is used, at most `points`
/// @throws std::invalid_argument outside 16 to `kMostPoints`.
SyntheticJob traverseJob(std::size_t points, std::uint64_t seed);

/// Root mean square of how far the points of a list are from their true positions in the plane, metres; the known ones
/// count with their 0. NaN for an empty list.
/// @throws std::out_of_range for a name that is not one of the points.
double positionError(std::vector<kvn::PointErrorInfo> const& adjusted, std::vector<TruePoint> const& truth);

}  // namespace bench
