#include "adjust/detail/PackedInverse.h"

#include <vector>

namespace kvn::detail {
namespace {

bool refused(double pivot, PivotRule rule) { return rule == PivotRule::NotZero ? pivot == 0.0 : pivot + 1.0 == 1.0; }

/// Row i of the triangle, updated, moves into the place of row i - 1. `to` lies before `from` and each element is read
/// before a later one is written, so that the loop may run in vectors although the two overlap.
void moveRowUp(double* to, double const* from, double factor, double const* w, std::size_t count) {
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC ivdep
#endif
  for (std::size_t j = 0; j < count; ++j) to[j] = from[j] + factor * w[j];
}

}  // namespace

bool invertPacked(double* a, std::size_t n, PivotRule rule) {
  std::vector<double> w(n);
  for (std::size_t k = 0; k < n; ++k) {
    double const pivot = a[0];
    if (refused(pivot, rule)) return false;
    for (std::size_t i = 1; i < n; ++i) {
      double* const row = a + i * (i + 1) / 2;
      double const first = row[0];
      // Unknowns that have been eliminated already (the last k) change their sign.
      w[i] = i + k > n - 1 ? first / pivot : -first / pivot;
      moveRowUp(row - i, row + 1, first, w.data() + 1, i);
    }
    double* const lastRow = a + (n - 1) * n / 2;
    for (std::size_t i = 1; i < n; ++i) lastRow[i - 1] = w[i];
    lastRow[n - 1] = 1.0 / pivot;
  }
  return true;
}

}  // namespace kvn::detail
