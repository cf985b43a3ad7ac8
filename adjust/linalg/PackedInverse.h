// The one inversion of a symmetric matrix in packed storage.
#pragma once

#include <cstddef>

namespace kvn::detail {

enum class PivotRule {
  NotZero,     ///< refuses a pivot of exactly 0.0
  ChangesOne,  ///< refuses a pivot p with p + 1.0 equal to 1.0
};

/// Inverts in place; false when the rule refuses a pivot, and the matrix must then not be used.
///
/// The pivots are taken in the order of the unknowns, without exchange; each is the diagonal element after the
/// elimination of the unknowns before it, of any sign. Up to 64 unknowns are eliminated one after the other, beyond
/// that in blocks of 32 or 64, which needs up to 350 n doubles beside the matrix.
///
/// A pivot that is zero by calculation is refused as such while the elimination is exact (whole numbers that stay whole
/// numbers, a row of zeros) and where one unknown repeats the one before it; elsewhere a remainder of the rounding may
/// stand in its place, of about 1e-16 times what was subtracted there. In blocks each pivot comes from the same
/// subtractions in the same order as one after the other, but on processors that round a product and its subtraction
/// together the remainders are different ones.
///
/// @param a  lower triangle by rows, n (n + 1) / 2 elements: element (i, j), i >= j, at i (i + 1) / 2 + j. With
///           elements that are not finite it ends as usual, with a result that cannot be used.
bool invertPacked(double* a, std::size_t n, PivotRule rule);

}  // namespace kvn::detail
