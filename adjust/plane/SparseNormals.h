// SparseNormals: normal equations of a plane network, of which each observation touches a few unknowns.
#pragma once

#include "adjust/linalg/SparseCholesky.h"
#include "adjust/plane/NetworkEquations.h"

#include <vector>

namespace kvn::detail {

/// N = A' P A for the equations of one network, again and again.
class SparseNormals {
 public:
  explicit SparseNormals(NumberedNetwork const& network, Poll const& poll = {});

  /// Adds `ridge` to every diagonal element. False when a pivot is not positive.
  bool factor(std::vector<Equation> const& equations, std::vector<double> const& weights, double ridge = 0.0,
              Poll const& poll = {});
  /// As `SparseCholesky::freeVectors`.
  std::vector<std::vector<double>> freeVectors(double weakness, int count) const;
  /// The corrections that make the weighted sum of squared residuals least: N dx = -A' P l.
  std::vector<double> correction(std::vector<Equation> const& equations, std::vector<double> const& weights,
                                 Poll const& poll = {}) const;
  /// Cofactor a Q a' of each equation, Q being the inverse of N.
  std::vector<double> cofactors(std::vector<Equation> const& equations, Poll const& poll = {});

 private:
  sparse::SparseCholesky cholesky;
};

}  // namespace kvn::detail
