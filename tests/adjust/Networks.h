// Networks of known truth, made from a seed.
#pragma once

#include <Kelvane.h>
#include <map>
#include <random>
#include <string>

namespace test {

struct NetworkPlan {
  int points = 10;
  int known = 2;
  int sights = 5;               ///< targets of each station
  double distances = 1.0;       ///< share of the lines that have a distance
  bool bothEnds = true;         ///< distances from both ends of a line; else from the end that comes first in the list
  double directionNoise = 0.0;  ///< standard error, seconds of arc
  double distanceFixed = 0.0;   ///< standard error of a distance S: fixed + proportion S, metres
  double distanceProportion = 0.0;
  double circleZero = -1.0;  ///< azimuth of every circle's zero, radians; negative for a random one at each station
};

struct SyntheticNetwork {
  kvn::Network network;
  std::map<std::string, kvn::PointInfo> truth;
};

/// Points at random in a square of 1 km, at least 30 m apart, every one a station. The targets of a station are the
/// points before and after it in the list and random others, so that the network hangs together.
SyntheticNetwork makeNetwork(NetworkPlan const& plan, std::mt19937& random);

/// side x side points 100 m apart, each moved by up to 20 m north or south and east or west; every one sights those
/// around it, up to 8. Known are the four corners, which do not see each other. Of the plan only noise, distances and
/// circles count.
SyntheticNetwork makeGrid(int side, NetworkPlan const& plan, std::mt19937& random);

/// Azimuth from a to b, 0 to 2π.
double azimuth(kvn::PointInfo const& a, kvn::PointInfo const& b);

/// An observed line, a direction and a distance (0 for none).
kvn::NetworkDataInfo line(std::string const& from, std::string const& to, double direction, double distance);

/// The calculators' input of a network.
kvn::AlgorithmData loaded(kvn::Network const& network, kvn::MissingDirection missing = kvn::MissingDirection::IsZero);

/// An adjustment of the network with the default errors: 2", 3 mm and 3 ppm.
kvn::TraverseAdjust adjusted(kvn::Network const& network);

constexpr double kSecondsPerRadian = 206264.80624709636;

}  // namespace test
