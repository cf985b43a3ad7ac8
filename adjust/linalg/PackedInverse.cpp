#include "adjust/linalg/PackedInverse.h"

#include "adjust/linalg/DenseKernels.h"
#include "adjust/linalg/DenseTile.h"

#include <algorithm>
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

std::size_t startOfRow(std::size_t i) { return i * (i + 1) / 2; }

/// Sweeps one block of unknowns after the other through the packed triangle.
///
/// Sweeping the unknown k with the pivot p = a(k, k) is, for all other i and j, whether swept before or not,
///
///     a(i, j) -= a(i, k) (a(j, k) / p),   a(i, k) = a(i, k) / p,   a(k, k) = -1 / p,
///
/// and when all are swept the negative inverse stands there. The columns of a block are taken out of the triangle and
/// swept among themselves, in groups of 8; V, the columns as they were before their own sweep, and L = V / p then carry
/// the block to the rest of the triangle in one product. Every element loses its products one after the other, in the
/// order of the unknowns, so that the pivots do not depend on where the blocks begin.
class BlockedSweep {
 public:
  BlockedSweep(double* triangle, std::size_t count, PivotRule pivotRule)
      : a(triangle),
        n(count),
        rule(pivotRule),
        block(n < kWideFrom ? kNarrowBlock : kWideBlock),
        // An odd number of cache lines: columns a power of two apart would drive each other out of the cache.
        stride(((n + kLine - 1) / kLine * kLine) | kLine),
        panel(stride * block),
        before(stride * block),
        divided(stride * block) {}

  bool run() {
    for (first = 0; first < n; first += width) {
      width = std::min(block, n - first);
      takePanel();
      for (std::size_t group = 0; group < width; group += kGroup) {
        if (!sweepGroup(group, std::min(group + kGroup, width))) return false;
      }
      updateTriangle();
      putPanel();
    }
    // Subtracted rather than negated: zeros keep their sign.
    for (std::size_t i = 0; i < startOfRow(n); ++i) a[i] = 0.0 - a[i];
    return true;
  }

 private:
  static constexpr std::size_t kGroup = 8;
  static constexpr std::size_t kLine = 8;  // doubles of a cache line
  // Wide blocks read the triangle less often, narrow ones spend less on the panel, which counts more while all of the
  // triangle fits a cache of a few megabytes.
  static constexpr std::size_t kNarrowBlock = 32;
  static constexpr std::size_t kWideBlock = 64;
  static constexpr std::size_t kWideFrom = 500;
  // What stays in the second level cache of L while the rows of V pass by: 196 KB.
  static constexpr std::size_t kElementsOfL = 24576;

  double* column(std::vector<double>& matrix, std::size_t j) { return matrix.data() + j * stride; }

  void takePanel() {
    for (std::size_t c = 0; c < width; ++c) {
      double const* const row = a + startOfRow(first + c);
      std::copy(row, row + first + c + 1, column(panel, c));
    }
    for (std::size_t i = first + 1; i < n; i += kLine) {
      std::size_t const end = std::min(n, i + kLine);
      for (std::size_t c = 0; c < std::min(width, end - 1 - first); ++c) {
        double* const to = column(panel, c);
        for (std::size_t r = std::max(i, first + c + 1); r < end; ++r) to[r] = a[startOfRow(r) + first + c];
      }
    }
  }

  void putPanel() {
    for (std::size_t c = 0; c < width; ++c) {
      double const* const from = column(panel, c);
      std::copy(from, from + first + c + 1, a + startOfRow(first + c));
    }
    for (std::size_t i = first + width; i < n; i += kLine) {
      std::size_t const end = std::min(n, i + kLine);
      for (std::size_t c = 0; c < width; ++c) {
        double const* const from = column(panel, c);
        for (std::size_t r = i; r < end; ++r) a[startOfRow(r) + first + c] = from[r];
      }
    }
  }

  /// Columns [begin, end) of the panel, then their effect on its other columns.
  bool sweepGroup(std::size_t begin, std::size_t end) {
    for (std::size_t c = begin; c < end; ++c) {
      double* const own = column(panel, c);
      double* const l = column(divided, c);
      double const pivot = own[first + c];
      if (refused(pivot, rule)) return false;
      std::copy(own, own + n, column(before, c));
      for (std::size_t i = 0; i < n; ++i) l[i] = own[i] / pivot;
      updatePanel(begin, c, c, c + 1);
      updatePanel(c + 1, end, c, c + 1);
      std::copy(l, l + n, own);
      own[first + c] = -1.0 / pivot;
      mirror(begin, end, c);
    }
    updatePanel(0, begin, begin, end);
    updatePanel(end, width, begin, end);
    for (std::size_t c = begin; c < end; ++c) mirror(0, width, c);
    return true;
  }

  /// Columns [begin, end) of the panel lose what the sweep of the columns [from, to) takes from them.
  void updatePanel(std::size_t begin, std::size_t end, std::size_t from, std::size_t to) {
    auto const step = static_cast<std::ptrdiff_t>(stride);
    ConstView const v{column(before, from), 1, step};
    ConstView const l{column(divided, from) + first + begin, step, 1};
    addProduct(n, end - begin, to - from, -1.0, v, l, column(panel, begin), stride);
  }

  /// Row c of the block equals its column c.
  void mirror(std::size_t begin, std::size_t end, std::size_t c) {
    double const* const own = column(panel, c) + first;
    for (std::size_t j = begin; j < end; ++j) column(panel, j)[first + c] = own[j];
  }

  /// All elements of the triangle outside the rows and columns of the block.
  void updateTriangle() {
    double* const l = packedL.room((n + kTileRows) * width);
    for (std::size_t j = 0; j < n; j += kTileRows) {
      packStrip(l + j * width, kTileRows, column(divided, 0) + j, std::min(kTileRows, n - j), 1, width,
                static_cast<std::ptrdiff_t>(stride));
    }
    double* const v = packedV.room(n * width);
    for (std::size_t i = 0; i < n; i += kTileColumns) {
      std::size_t const rows = std::min(kTileColumns, n - i);
      packStrip(v + i * width, rows, column(before, 0) + i, rows, 1, width, static_cast<std::ptrdiff_t>(stride));
    }
    TileFunction const function = tileFunction();
    std::size_t const rowsOfL = kElementsOfL / block;
    for (std::size_t j = 0; j < n; j += rowsOfL) {
      for (std::size_t i = j / kTileColumns * kTileColumns; i < n; i += kTileColumns) {
        updateStrip(function, i, j, std::min(n, j + rowsOfL), l, v + i * width);
      }
    }
  }

  /// Up to 6 rows of the triangle from row i on, columns [begin, end) as far as the triangle goes.
  void updateStrip(TileFunction function, std::size_t i, std::size_t begin, std::size_t end, double const* l,
                   double const* v) {
    std::size_t const rows = std::min(kTileColumns, n - i);
    if (i >= first && i + rows <= first + width) return;
    Tile tile{};
    tile.depth = width;
    tile.alpha = -1.0;
    tile.aColumnStep = static_cast<std::ptrdiff_t>(kTileRows);
    tile.b = v;
    tile.bRowStep = static_cast<std::ptrdiff_t>(rows);
    tile.bColumnStep = 1;
    tile.columns = static_cast<int>(rows);
    for (std::size_t j = begin; j < std::min(end, i + rows); j += kTileRows) {
      if (j >= first && j + kTileRows <= first + width) continue;
      tile.a = l + j * width;
      std::size_t const count = std::min(kTileRows, n - j);
      tile.rows = static_cast<int>(count);
      double* const c = a + startOfRow(i) + j;
      if (j + count <= i + 1) {
        tile.c = c;
        tile.cColumnStep = static_cast<std::ptrdiff_t>(i + 1);
        tile.cStepGrowth = 1;
        function(tile);
      } else {
        updateAcrossDiagonal(function, tile, i, j);
      }
    }
  }

  /// A tile that reaches beyond the diagonal, where the next row begins already: on a copy.
  void updateAcrossDiagonal(TileFunction function, Tile tile, std::size_t i, std::size_t j) {
    double copy[kTileRows * kTileColumns] = {};
    tile.c = copy;
    tile.cColumnStep = static_cast<std::ptrdiff_t>(kTileRows);
    tile.cStepGrowth = 0;
    for (std::size_t r = i; r < std::min(n, i + kTileColumns); ++r) {
      double const* const row = a + startOfRow(r);
      if (r >= j) std::copy(row + j, row + std::min(r + 1, j + kTileRows), copy + (r - i) * kTileRows);
    }
    function(tile);
    for (std::size_t r = i; r < std::min(n, i + kTileColumns); ++r) {
      double const* const from = copy + (r - i) * kTileRows;
      if (r >= j) std::copy(from, from + std::min(r + 1, j + kTileRows) - j, a + startOfRow(r) + j);
    }
  }

  double* a;
  std::size_t n;
  PivotRule rule;
  std::size_t block;  ///< how many unknowns are swept together
  std::size_t stride;
  std::vector<double> panel;    ///< the columns of the block: element (i, first + c) at [c * stride + i]
  std::vector<double> before;   ///< V
  std::vector<double> divided;  ///< L
  Buffer packedV;
  Buffer packedL;
  std::size_t first = 0;  ///< the first unknown of the block
  std::size_t width = 0;  ///< how many there are
};

// From here on the sweep in blocks is the faster one; at 96 unknowns it takes two thirds of the time.
constexpr std::size_t kBlockedAbove = 64;

/// Sequential elimination that cycles the matrix: each step removes the first unknown, moves the rest one place up and
/// left, and puts the result into the last row, so that n steps bring every element back to its place, inverted.
bool invertByCycling(double* a, std::size_t n, PivotRule rule) {
  std::vector<double> w(n);
  for (std::size_t k = 0; k < n; ++k) {
    double const pivot = a[0];
    if (refused(pivot, rule)) return false;
    for (std::size_t i = 1; i < n; ++i) {
      double* const row = a + startOfRow(i);
      double const first = row[0];
      // Unknowns that have been eliminated already (the last k) change their sign.
      w[i] = i + k > n - 1 ? first / pivot : -first / pivot;
      moveRowUp(row - i, row + 1, first, w.data() + 1, i);
    }
    double* const lastRow = a + startOfRow(n - 1);
    for (std::size_t i = 1; i < n; ++i) lastRow[i - 1] = w[i];
    lastRow[n - 1] = 1.0 / pivot;
  }
  return true;
}

}  // namespace

bool invertPacked(double* a, std::size_t n, PivotRule rule) {
  return n > kBlockedAbove ? BlockedSweep(a, n, rule).run() : invertByCycling(a, n, rule);
}

}  // namespace kvn::detail
