#include "adjust/detail/DenseKernels.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <vector>

#if defined(__GNUC__) && defined(__x86_64__)
#define KELVANE_AVX2 __attribute__((target("avx2,fma")))
// Loops over the registers of a tile: only unrolled early do their sums stay in registers.
#if defined(__clang__)
#define KELVANE_UNROLL _Pragma("unroll")
#else
#define KELVANE_UNROLL _Pragma("GCC unroll 8")
#endif
#include <immintrin.h>
#endif

namespace kvn::detail {
namespace {

// The product is cut into tiles of 8 x 6 elements of C, which fill 12 of the 16 vector registers and leave room for two
// vectors of A and one element of B.
constexpr std::size_t kTileRows = 8;
constexpr std::size_t kTileColumns = 6;
// 256 columns of A: a strip of 8 rows of A and one of 6 columns of B fill most of a first level cache of 32 KiB, the 96
// rows of a block of A (196 KB) the larger part of a second level of 256 KiB.
constexpr std::size_t kDepth = 256;
constexpr std::size_t kBlockRows = 96;
constexpr std::size_t kBlockColumns = 1020;

/// One tile: rows of A and columns of B, by their steps, on the tile of C.
struct Tile {
  std::size_t depth;
  double alpha;
  double const* a;  ///< rows stand one behind the other
  std::ptrdiff_t aColumnStep;
  double const* b;
  std::ptrdiff_t bRowStep;
  std::ptrdiff_t bColumnStep;
  double* c;  ///< rows stand one behind the other
  std::ptrdiff_t cColumnStep;
  int rows;
  int columns;
};

using TileFunction = void (*)(Tile const&);

bool sumsIntoC(double alpha) { return alpha == 1.0 || alpha == -1.0; }

/// For any processor: a column of C at a time.
void plainTile(Tile const& t) {
  bool const intoC = sumsIntoC(t.alpha);
  for (int j = 0; j < t.columns; ++j) {
    double* const c = t.c + j * t.cColumnStep;
    double sum[kTileRows] = {};
    if (intoC) {
      for (int i = 0; i < t.rows; ++i) sum[i] = t.alpha * c[i];
    }
    double const* a = t.a;
    double const* b = t.b + j * t.bColumnStep;
    for (std::size_t p = 0; p < t.depth; ++p, a += t.aColumnStep, b += t.bRowStep) {
      double const factor = *b;
      if (t.rows == int(kTileRows)) {
        for (std::size_t i = 0; i < kTileRows; ++i) sum[i] += a[i] * factor;
      } else {
        for (int i = 0; i < t.rows; ++i) sum[i] += a[i] * factor;
      }
    }
    for (int i = 0; i < t.rows; ++i) c[i] = intoC ? t.alpha * sum[i] : c[i] + t.alpha * sum[i];
  }
}

#if defined(KELVANE_AVX2)

constexpr int kLanes = 4;

/// Lanes below `count` are set.
KELVANE_AVX2 inline __m256i lanesBelow(int count) {
  return _mm256_cmpgt_epi64(_mm256_set1_epi64x(count), _mm256_set_epi64x(3, 2, 1, 0));
}

/// The first `count` lanes, 1 to 4. In pieces: a masked store takes ten times as long on many processors.
KELVANE_AVX2 inline void storeFirst(double* to, __m256d value, int count) {
  if (count == kLanes) {
    _mm256_storeu_pd(to, value);
    return;
  }
  __m128d piece = _mm256_castpd256_pd128(value);
  if (count >= 2) {
    _mm_storeu_pd(to, piece);
    if (count == 2) return;
    to += 2;
    piece = _mm256_extractf128_pd(value, 1);
  }
  _mm_store_sd(to, piece);
}

/// Tiles of up to 4 * Vectors rows; Masked when the last vector is not full, and then nothing beyond it is touched.
template <int Vectors, int Columns, bool Masked>
KELVANE_AVX2 void vectorTile(Tile const& t) {
  int const lastLanes = t.rows - (Vectors - 1) * kLanes;
  __m256i const mask = lanesBelow(lastLanes);
  __m256d const alpha = _mm256_set1_pd(t.alpha);
  bool const intoC = sumsIntoC(t.alpha);
  __m256d sum[Columns][Vectors];
  KELVANE_UNROLL
  for (int j = 0; j < Columns; ++j) {
    KELVANE_UNROLL
    for (int v = 0; v < Vectors; ++v) {
      double const* const c = t.c + j * t.cColumnStep + v * kLanes;
      if (intoC) {
        bool const partial = Masked && v == Vectors - 1;
        sum[j][v] = _mm256_mul_pd(alpha, partial ? _mm256_maskload_pd(c, mask) : _mm256_loadu_pd(c));
      } else {
        sum[j][v] = _mm256_setzero_pd();
      }
    }
  }
  double const* a = t.a;
  double const* b = t.b;
  std::ptrdiff_t const aStep = t.aColumnStep;
  std::ptrdiff_t const bStep = t.bRowStep;
  std::ptrdiff_t const bColumn = t.bColumnStep;
  for (std::size_t p = t.depth; p > 0; --p, a += aStep, b += bStep) {
    __m256d rows[Vectors];
    KELVANE_UNROLL
    for (int v = 0; v < Vectors; ++v) {
      bool const partial = Masked && v == Vectors - 1;
      rows[v] = partial ? _mm256_maskload_pd(a + v * kLanes, mask) : _mm256_loadu_pd(a + v * kLanes);
    }
    KELVANE_UNROLL
    for (int j = 0; j < Columns; ++j) {
      __m256d const factor = _mm256_broadcast_sd(b + j * bColumn);
      KELVANE_UNROLL
      for (int v = 0; v < Vectors; ++v) sum[j][v] = _mm256_fmadd_pd(rows[v], factor, sum[j][v]);
    }
  }
  KELVANE_UNROLL
  for (int j = 0; j < Columns; ++j) {
    KELVANE_UNROLL
    for (int v = 0; v < Vectors; ++v) {
      double* const c = t.c + j * t.cColumnStep + v * kLanes;
      bool const partial = Masked && v == Vectors - 1;
      __m256d result = _mm256_mul_pd(alpha, sum[j][v]);
      if (!intoC) result = _mm256_add_pd(partial ? _mm256_maskload_pd(c, mask) : _mm256_loadu_pd(c), result);
      if (partial) {
        storeFirst(c, result, lastLanes);
      } else {
        _mm256_storeu_pd(c, result);
      }
    }
  }
}

template <int Vectors, bool Masked>
constexpr TileFunction kByColumns[kTileColumns] = {
    vectorTile<Vectors, 1, Masked>, vectorTile<Vectors, 2, Masked>, vectorTile<Vectors, 3, Masked>,
    vectorTile<Vectors, 4, Masked>, vectorTile<Vectors, 5, Masked>, vectorTile<Vectors, 6, Masked>,
};

void vectorTileOfAnySize(Tile const& t) {
  auto const column = static_cast<std::size_t>(t.columns - 1);
  if (t.rows == 2 * kLanes) return kByColumns<2, false>[column](t);
  if (t.rows > kLanes) return kByColumns<2, true>[column](t);
  if (t.rows == kLanes) return kByColumns<1, false>[column](t);
  return kByColumns<1, true>[column](t);
}

bool processorHasVectors() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

TileFunction const kFastest = processorHasVectors() ? vectorTileOfAnySize : plainTile;

#else

constexpr TileFunction kFastest = plainTile;

#endif

std::atomic<bool> vectorsWanted{true};

TileFunction tileFunction() { return vectorsWanted.load(std::memory_order_relaxed) ? kFastest : plainTile; }

/// Room for one packed operand, at a cache line, kept from call to call.
class Buffer {
 public:
  double* room(std::size_t count) {
    constexpr std::size_t kLine = 64;
    if (count + kLine / sizeof(double) > storage.size()) storage.resize(count + kLine / sizeof(double));
    auto const misplaced = reinterpret_cast<std::uintptr_t>(storage.data()) % kLine;
    return storage.data() + (misplaced == 0 ? 0 : (kLine - misplaced) / sizeof(double));
  }

 private:
  std::vector<double> storage;
};

thread_local Buffer bufferOfA;
thread_local Buffer bufferOfB;

template <std::size_t Width>
void packStripOf(double* to, std::size_t step, double const* from, std::ptrdiff_t lineStride, std::size_t depth,
                 std::ptrdiff_t depthStride) {
  for (std::size_t p = 0; p < depth; ++p, to += step, from += depthStride) {
    for (std::size_t i = 0; i < Width; ++i) to[i] = from[static_cast<std::ptrdiff_t>(i) * lineStride];
  }
}

using PackFunction = void (*)(double*, std::size_t, double const*, std::ptrdiff_t, std::size_t, std::ptrdiff_t);
constexpr PackFunction kPackByWidth[kTileRows] = {packStripOf<1>, packStripOf<2>, packStripOf<3>, packStripOf<4>,
                                                  packStripOf<5>, packStripOf<6>, packStripOf<7>, packStripOf<8>};

/// Copies a strip of `width` lines (rows of A, columns of B) so that it reads straight through: for each step along the
/// depth the lines of the strip one behind the other, `step` apart.
void packStrip(double* to, std::size_t step, double const* from, std::size_t width, std::ptrdiff_t lineStride,
               std::size_t depth, std::ptrdiff_t depthStride) {
  if (width == kTileRows && lineStride == 1) {
    for (std::size_t p = 0; p < depth; ++p, to += step, from += depthStride) std::copy(from, from + kTileRows, to);
    return;
  }
  kPackByWidth[width - 1](to, step, from, lineStride, depth, depthStride);
}

std::ptrdiff_t steps(std::size_t count, std::ptrdiff_t stride) { return static_cast<std::ptrdiff_t>(count) * stride; }

/// Columns in strips of at most 6 and of nearly equal width: 8 columns as 4 and 4, for a tile of 2 columns keeps the
/// arithmetic units waiting.
class ColumnStrips {
 public:
  explicit ColumnStrips(std::size_t columns)
      : strips((columns + kTileColumns - 1) / kTileColumns), narrow(columns / strips), wide(columns % strips) {}

  std::size_t widthAt(std::size_t strip) const { return strip < wide ? narrow + 1 : narrow; }

 private:
  std::size_t strips;
  std::size_t narrow;
  std::size_t wide;
};

/// A block of C: rows [row, row + rows), columns [column, column + columns).
struct Block {
  std::size_t row, rows;
  std::size_t column, columns;
};

class Product {
 public:
  Product(double scale, ConstView const& left, ConstView const& right, double* result, std::size_t stride, Region part)
      : function(tileFunction()),
        alpha(scale),
        a(left),
        b(right),
        c(result),
        cStride(static_cast<std::ptrdiff_t>(stride)),
        region(part) {}

  void run(std::size_t m, std::size_t n, std::size_t k) {
    packsA = a.rowStride != 1 || (n > 2 * kTileColumns && m * k > kKeptUnpacked);
    packsB = m > 4 * kTileRows && n * k > kKeptUnpacked;
    for (std::size_t column = 0; column < n; column += kBlockColumns) {
      std::size_t const columns = std::min(kBlockColumns, n - column);
      for (std::size_t p = 0; p < k; p += kDepth) {
        depth = std::min(kDepth, k - p);
        takeB(p, column, columns);
        for (std::size_t row = firstRow(column); row < m; row += kBlockRows) {
          std::size_t const rows = std::min(kBlockRows, m - row);
          takeA(p, row, rows);
          runBlock({row, rows, column, columns});
        }
      }
    }
  }

 private:
  static constexpr std::size_t kKeptUnpacked = 4096;  // doubles: one first level cache

  /// Above it nothing is needed.
  std::size_t firstRow(std::size_t column) const { return region == Region::Lower ? column : 0; }

  void takeB(std::size_t p, std::size_t column, std::size_t columns) {
    double const* const from = b.data + steps(p, b.rowStride) + steps(column, b.columnStride);
    if (!packsB) {
      blockOfB = from;
      return;
    }
    double* const to = bufferOfB.room(depth * columns);
    ColumnStrips const strips(columns);
    for (std::size_t j = 0, s = 0; j < columns; ++s) {
      std::size_t const width = strips.widthAt(s);
      packStrip(to + j * depth, width, from + steps(j, b.columnStride), width, b.columnStride, depth, b.rowStride);
      j += width;
    }
    blockOfB = to;
  }

  void takeA(std::size_t p, std::size_t row, std::size_t rows) {
    double const* const from = a.data + steps(p, a.columnStride) + steps(row, a.rowStride);
    if (!packsA) {
      blockOfA = from;
      return;
    }
    double* const to = bufferOfA.room(kTileRows * depth * ((rows + kTileRows - 1) / kTileRows));
    for (std::size_t i = 0; i < rows; i += kTileRows) {
      packStrip(to + i * depth, kTileRows, from + steps(i, a.rowStride), std::min(kTileRows, rows - i), a.rowStride,
                depth, a.columnStride);
    }
    blockOfA = to;
  }

  void runBlock(Block const& block) {
    ColumnStrips const strips(block.columns);
    for (std::size_t j = 0, s = 0; j < block.columns; ++s) {
      std::size_t const width = strips.widthAt(s);
      runStrip(block, j, width);
      j += width;
    }
  }

  void runStrip(Block const& block, std::size_t j, std::size_t width) {
    Tile tile{};
    tile.depth = depth;
    tile.alpha = alpha;
    tile.aColumnStep = packsA ? static_cast<std::ptrdiff_t>(kTileRows) : a.columnStride;
    tile.b = packsB ? blockOfB + j * depth : blockOfB + steps(j, b.columnStride);
    tile.bRowStep = packsB ? static_cast<std::ptrdiff_t>(width) : b.rowStride;
    tile.bColumnStep = packsB ? 1 : b.columnStride;
    tile.cColumnStep = cStride;
    tile.columns = static_cast<int>(width);
    double* const cColumn = c + steps(block.column + j, cStride) + block.row;
    std::size_t const aStep = packsA ? depth : 1;
    for (std::size_t i = firstTile(block, j); i < block.rows; i += kTileRows) {
      tile.a = blockOfA + i * aStep;
      tile.c = cColumn + i;
      tile.rows = static_cast<int>(std::min(kTileRows, block.rows - i));
      function(tile);
    }
  }

  /// The first tile of the block that reaches the diagonal in column j of the block.
  std::size_t firstTile(Block const& block, std::size_t j) const {
    if (region == Region::All || block.column + j <= block.row) return 0;
    return (block.column + j - block.row) / kTileRows * kTileRows;
  }

  TileFunction function;
  double alpha;
  ConstView a;
  ConstView b;
  double* c;
  std::ptrdiff_t cStride;
  Region region;
  bool packsA = false;
  bool packsB = false;
  std::size_t depth = 0;
  double const* blockOfA = nullptr;
  double const* blockOfB = nullptr;
};

}  // namespace

void addProduct(std::size_t m, std::size_t n, std::size_t k, double alpha, ConstView a, ConstView b, double* c,
                std::size_t columnStrideOfC, Region region) {
  if (m == 0 || n == 0 || k == 0) return;
  Product(alpha, a, b, c, columnStrideOfC, region).run(m, n, k);
}

bool useVectorInstructions(bool wanted) { return vectorsWanted.exchange(wanted); }

}  // namespace kvn::detail
