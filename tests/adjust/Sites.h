// Plane networks of known truth, in which every observation counts for itself.
#pragma once

#include "adjust/PlaneAdjustment.h"

#include <random>
#include <utility>
#include <vector>

namespace test {

struct Site {
  kvn::PlaneNetwork network;                     ///< without an error in its values
  std::vector<std::pair<double, double>> truth;  ///< north and east of each point, metres
};

/// Points at random in a square of 400 m, all sighting all others, each by one set-up; the first ones known. Errors are
/// the default ones: 2", 3 mm and 3 ppm.
Site makeSite(int points, int known, unsigned seed, bool hasDistances = true);

/// Observations, and given coordinates of known points that are not fixed, with errors drawn as they are told.
kvn::PlaneNetwork disturbed(kvn::PlaneNetwork network, std::mt19937& random);

kvn::PlaneSettings aPriori();  ///< settings with the a-priori unit weight error

}  // namespace test
