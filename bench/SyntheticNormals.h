// The normal equations of a synthetic network, for benchmarks of their solution.
#pragma once

#include "SyntheticNetworks.h"
#include "adjust/linalg/BlockGraph.h"

#include <array>
#include <cstddef>
#include <vector>

namespace bench {

/// The error equations about the true coordinates, numbered and weighed as the adjustment has them: x and y of each
/// point, metres, then the orientation of each station, seconds of arc. Known points are unknowns that a weight holds.
struct SyntheticNormals {
  struct Equation {
    std::array<double, 5> factor;
    std::array<int, 5> unknown;
    int count;
    double weight;
    double misclosure;
  };

  explicit SyntheticNormals(SyntheticNetwork const& network);

  std::size_t unknowns() const { return 3 * points; }
  /// Right side of the normal equations.
  std::vector<double> rightSide() const;

  std::size_t points;
  std::vector<int> blockSizes;
  std::vector<kvn::sparse::Clique> cliques;
  std::vector<Equation> equations;
};

}  // namespace bench
