#include "adjust/linalg/DenseFactor.h"

#include <algorithm>
#include <cmath>

namespace kvn::sparse {
namespace {

using detail::ConstView;
using detail::Region;

// Up to here columns are worked on one by one.
constexpr std::size_t kNarrow = 16;
// Rows of so many elements and so many columns stay in the first cache.
constexpr std::size_t kTile = 128;

#if defined(__GNUC__)
#define KELVANE_INLINE __attribute__((always_inline)) inline
#else
#define KELVANE_INLINE inline
#endif

/// Rows below a factored triangle: X L' = B, column by column.
KELVANE_INLINE void solveTile(double const* triangle, double* tile, std::size_t stride, std::size_t rows,
                              std::size_t columns) {
  for (std::size_t j = 0; j < columns; ++j) {
    double* const target = tile + j * stride;
    for (std::size_t k = 0; k < j; ++k) {
      double const factor = triangle[k * stride + j];
      double const* const source = tile + k * stride;
      for (std::size_t i = 0; i < rows; ++i) target[i] -= factor * source[i];
    }
    double const scale = 1.0 / triangle[j * stride + j];
    for (std::size_t i = 0; i < rows; ++i) target[i] *= scale;
  }
}

using TileSolver = void (*)(double const*, double*, std::size_t, std::size_t, std::size_t);

void solveTilePlain(double const* triangle, double* tile, std::size_t stride, std::size_t rows, std::size_t columns) {
  solveTile(triangle, tile, stride, rows, columns);
}

#if defined(__GNUC__) && defined(__x86_64__)
__attribute__((target("avx2,fma"))) void solveTileWide(double const* triangle, double* tile, std::size_t stride,
                                                       std::size_t rows, std::size_t columns) {
  solveTile(triangle, tile, stride, rows, columns);
}

TileSolver tileSolver() {
  static TileSolver const chosen =
      __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") ? solveTileWide : solveTilePlain;
  return chosen;
}
#else
TileSolver tileSolver() { return solveTilePlain; }
#endif

std::size_t factorTriangle(double* a, std::size_t stride, std::size_t size, double const* least) {
  for (std::size_t j = 0; j < size; ++j) {
    double* const column = a + j * stride;
    double const pivot = column[j];
    if (!(pivot > 0.0) || !(pivot > least[j]) || !std::isfinite(pivot)) return j;
    double const root = std::sqrt(pivot);
    column[j] = root;
    for (std::size_t i = j + 1; i < size; ++i) column[i] /= root;
    for (std::size_t k = j + 1; k < size; ++k) {
      double const factor = column[k];
      double* const later = a + k * stride;
      for (std::size_t i = k; i < size; ++i) later[i] -= factor * column[i];
    }
  }
  return size;
}

ConstView partFrom(ConstView const& matrix, std::size_t row, std::size_t column) {
  return {matrix.data + static_cast<std::ptrdiff_t>(row) * matrix.rowStride +
              static_cast<std::ptrdiff_t>(column) * matrix.columnStride,
          matrix.rowStride, matrix.columnStride};
}

/// Half of the columns, rounded to what the kernels like.
std::size_t halfOf(std::size_t columns) {
  std::size_t const half = columns / 2;
  return half <= kNarrow ? kNarrow : half / kNarrow * kNarrow;
}

}  // namespace

void addProduct(Effort& effort, std::size_t m, std::size_t n, std::size_t k, double alpha, ConstView a, ConstView b,
                double* c, std::size_t stride, Region region) {
  // The pieces of the product itself, so that none of them is packed twice.
  for (std::size_t column = 0; column < n; column += detail::kProductColumns) {
    std::size_t const columns = std::min(detail::kProductColumns, n - column);
    // Above the diagonal nothing is needed.
    std::size_t const row = region == Region::Lower ? column : 0;
    for (std::size_t p = 0; p < k; p += detail::kProductDepth) {
      std::size_t const depth = std::min(detail::kProductDepth, k - p);
      detail::addProduct(m - row, columns, depth, alpha, partFrom(a, row, p), partFrom(b, p, column),
                         c + column * stride + row, stride, region);
      effort.spend(static_cast<double>(m - row) * static_cast<double>(columns) * static_cast<double>(depth));
    }
  }
}

std::size_t factorColumns(Effort& effort, double* front, std::size_t stride, std::size_t rows, std::size_t columns,
                          double const* least) {
  if (columns <= kNarrow) {
    std::size_t const sound = factorTriangle(front, stride, columns, least);
    if (sound < columns) return sound;
    TileSolver const solve = tileSolver();
    for (std::size_t i = columns; i < rows; i += kTile) {
      solve(front, front + i, stride, std::min(kTile, rows - i), columns);
    }
    effort.spend(static_cast<double>(rows * columns * columns) / 2.0);
    return columns;
  }
  std::size_t const half = halfOf(columns);
  std::size_t const sound = factorColumns(effort, front, stride, rows, half, least);
  if (sound < half) return sound;
  double* const rest = front + half * stride + half;
  addProduct(effort, rows - half, columns - half, half, -1.0, byColumns(front + half, stride),
             transposed(front + half, stride), rest, stride, Region::Lower);
  return half + factorColumns(effort, rest, stride, rows - half, columns - half, least + half);
}

void invertTriangle(Effort& effort, double const* triangle, std::size_t stride, std::size_t size, double* inverse,
                    std::size_t inverseStride) {
  if (size <= kNarrow) {
    for (std::size_t j = 0; j < size; ++j) {
      double* const column = inverse + j * inverseStride;
      std::fill(column, column + size, 0.0);
      column[j] = 1.0;
      for (std::size_t k = j; k < size; ++k) {
        column[k] /= triangle[k * stride + k];
        for (std::size_t i = k + 1; i < size; ++i) column[i] -= triangle[k * stride + i] * column[k];
      }
    }
    return;
  }
  std::size_t const half = halfOf(size);
  std::size_t const rest = size - half;
  double* const corner = inverse + half;
  double* const lower = inverse + half * inverseStride + half;
  double* const upper = inverse + half * inverseStride;
  invertTriangle(effort, triangle, stride, half, inverse, inverseStride);
  invertTriangle(effort, triangle + half * stride + half, stride, rest, lower, inverseStride);
  // The corner is -lower B upperLeft; the upper right corner, free so far, takes the first product, transposed.
  for (std::size_t j = 0; j < rest; ++j) std::fill(upper + j * inverseStride, upper + j * inverseStride + half, 0.0);
  addProduct(effort, half, rest, half, 1.0, transposed(inverse, inverseStride), transposed(triangle + half, stride),
             upper, inverseStride);
  for (std::size_t j = 0; j < half; ++j) std::fill(corner + j * inverseStride, corner + j * inverseStride + rest, 0.0);
  addProduct(effort, rest, half, rest, -1.0, byColumns(lower, inverseStride), transposed(upper, inverseStride), corner,
             inverseStride);
  for (std::size_t j = 0; j < rest; ++j) std::fill(upper + j * inverseStride, upper + j * inverseStride + half, 0.0);
}

}  // namespace kvn::sparse
