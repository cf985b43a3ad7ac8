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

/// The best of some runs. Nothing where the benchmarks are built without CHOLMOD, and unless OPENBLAS_NUM_THREADS and
/// OMP_THREAD_LIMIT are 1: what several threads take together is no measure for one.
/// @throws std::runtime_error where CHOLMOD finds no factor.
std::optional<CholmodReference> cholmodReference(SyntheticNormals const& normals);

}  // namespace bench
