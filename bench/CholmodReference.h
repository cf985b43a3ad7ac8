// What CHOLMOD, a widely used library for sparse factors, takes for the same normal equations.
#pragma once

#include "SyntheticNormals.h"

#include <optional>
#include <vector>

namespace bench {

/// Seconds of its nested dissection by METIS with the analysis, of its factor by supernodes, and of a solution.
struct CholmodReference {
  double orderSeconds;
  double factorSeconds;
  double solveSeconds;
  std::vector<double> solution;
};

/// The best of some runs, nothing where the benchmarks are built without CHOLMOD. It decides on its threads:
/// OPENBLAS_NUM_THREADS=1 and OMP_THREAD_LIMIT=1 compare one with one.
/// @throws std::runtime_error where CHOLMOD finds no factor.
std::optional<CholmodReference> cholmodReference(SyntheticNormals const& normals);

}  // namespace bench
