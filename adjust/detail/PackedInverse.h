// The one inversion of a symmetric matrix in packed storage.
#pragma once

#include <utils/Export.h>

#include <cstddef>

namespace kvn::detail {

enum class PivotRule {
  NotZero,     ///< refuses a pivot of exactly 0.0
  ChangesOne,  ///< refuses a pivot p with p + 1.0 equal to 1.0
};

/// Inverts in place; false when the rule refuses a pivot, and the matrix must then not be used.
///
/// Sequential elimination that cycles the matrix: each step removes the first unknown, moves the rest one place up and
/// left, and puts the result into the last row, so that n steps bring every element back to its place, inverted. One
/// work vector of n doubles is all that is needed beside the matrix.
///
/// @param a  lower triangle by rows, n (n + 1) / 2 elements.
KELVANE_EXPORT bool invertPacked(double* a, std::size_t n, PivotRule rule);

}  // namespace kvn::detail
