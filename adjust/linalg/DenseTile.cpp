#include "adjust/linalg/DenseTile.h"

#include <atomic>
#include <cstring>

#if defined(__GNUC__) && defined(__x86_64__)
#define KELVANE_AVX2 __attribute__((target("avx2,fma")))
#define KELVANE_AVX512 __attribute__((target("avx512f")))
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

bool sumsIntoC(double alpha) { return alpha == 1.0 || alpha == -1.0; }

/// Column j of the tile's C.
inline double* columnOfC(Tile const& t, int j) {
  return t.c + j * t.cColumnStep + (j > 1 ? t.cStepGrowth * (j * (j - 1) / 2) : 0);
}

/// For any processor: a column of C at a time.
void plainTile(Tile const& t) {
  bool const intoC = sumsIntoC(t.alpha);
  for (int j = 0; j < t.columns; ++j) {
    double* const c = columnOfC(t, j);
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

constexpr std::ptrdiff_t kLanes = 4;

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
  int const lastLanes = t.rows - static_cast<int>((Vectors - 1) * kLanes);
  __m256i const mask = lanesBelow(lastLanes);
  __m256d const alpha = _mm256_set1_pd(t.alpha);
  bool const intoC = sumsIntoC(t.alpha);
  __m256d sum[Columns][Vectors];
  KELVANE_UNROLL
  for (int j = 0; j < Columns; ++j) {
    KELVANE_UNROLL
    for (int v = 0; v < Vectors; ++v) {
      double const* const c = columnOfC(t, j) + v * kLanes;
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
      double* const c = columnOfC(t, j) + v * kLanes;
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

constexpr std::ptrdiff_t kLongLanes = 8;
static_assert(kTileRows == std::size_t{kLongLanes});

/// The same with vectors of 8, tiles of up to 8 * Vectors rows. The last vector may be partly filled: masks cost
/// nothing here.
template <int Vectors, int Columns>
KELVANE_AVX512 void longVectorTile(Tile const& t) {
  int const lastLanes = t.rows - static_cast<int>((Vectors - 1) * kLongLanes);
  auto const lastMask = static_cast<__mmask8>((1U << static_cast<unsigned>(lastLanes)) - 1U);
  __m512d const alpha = _mm512_set1_pd(t.alpha);
  bool const intoC = sumsIntoC(t.alpha);
  __m512d sum[Columns][Vectors];
  KELVANE_UNROLL
  for (int j = 0; j < Columns; ++j) {
    KELVANE_UNROLL
    for (int v = 0; v < Vectors; ++v) {
      __mmask8 const mask = v == Vectors - 1 ? lastMask : __mmask8{0xff};
      double const* const c = columnOfC(t, j) + v * kLongLanes;
      sum[j][v] = intoC ? _mm512_mul_pd(alpha, _mm512_maskz_loadu_pd(mask, c)) : _mm512_setzero_pd();
    }
  }
  double const* a = t.a;
  double const* b = t.b;
  std::ptrdiff_t const aStep = t.aColumnStep;
  std::ptrdiff_t const aLower = t.aLowerStep;
  std::ptrdiff_t const bStep = t.bRowStep;
  std::ptrdiff_t const bColumn = t.bColumnStep;
  for (std::size_t p = t.depth; p > 0; --p, a += aStep, b += bStep) {
    __m512d rows[Vectors];
    KELVANE_UNROLL
    for (int v = 0; v < Vectors; ++v) {
      rows[v] = v == Vectors - 1 ? _mm512_maskz_loadu_pd(lastMask, a + v * aLower) : _mm512_loadu_pd(a + v * aLower);
    }
    KELVANE_UNROLL
    for (int j = 0; j < Columns; ++j) {
      __m512d const factor = _mm512_set1_pd(b[j * bColumn]);
      KELVANE_UNROLL
      for (int v = 0; v < Vectors; ++v) sum[j][v] = _mm512_fmadd_pd(rows[v], factor, sum[j][v]);
    }
  }
  KELVANE_UNROLL
  for (int j = 0; j < Columns; ++j) {
    KELVANE_UNROLL
    for (int v = 0; v < Vectors; ++v) {
      __mmask8 const mask = v == Vectors - 1 ? lastMask : __mmask8{0xff};
      double* const c = columnOfC(t, j) + v * kLongLanes;
      __m512d result = _mm512_mul_pd(alpha, sum[j][v]);
      if (!intoC) result = _mm512_add_pd(_mm512_maskz_loadu_pd(mask, c), result);
      _mm512_mask_storeu_pd(c, mask, result);
    }
  }
}

template <int Vectors>
constexpr TileFunction kLongByColumns[kTileColumns] = {
    longVectorTile<Vectors, 1>, longVectorTile<Vectors, 2>, longVectorTile<Vectors, 3>,
    longVectorTile<Vectors, 4>, longVectorTile<Vectors, 5>, longVectorTile<Vectors, 6>,
};

void longVectorTileOfAnySize(Tile const& t) {
  auto const column = static_cast<std::size_t>(t.columns - 1);
  (t.rows > kLongLanes ? kLongByColumns<2> : kLongByColumns<1>)[column](t);
}

bool processorHasVectors() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

bool processorHasLongVectors() { return processorHasVectors() && __builtin_cpu_supports("avx512f"); }

TileFunction const kFastest = processorHasVectors() ? vectorTileOfAnySize : plainTile;
TileFunction const kLongest = processorHasLongVectors() ? longVectorTileOfAnySize : kFastest;
bool const kHasLong = processorHasLongVectors();

#else

constexpr TileFunction kFastest = plainTile;
constexpr TileFunction kLongest = plainTile;
constexpr bool kHasLong = false;

#endif

std::atomic<bool> vectorsWanted{true};
std::atomic<bool> longVectorsWanted{true};

template <std::size_t Width>
void packStripOf(double* to, std::size_t step, double const* from, std::ptrdiff_t lineStride, std::size_t depth,
                 std::ptrdiff_t depthStride) {
  for (std::size_t p = 0; p < depth; ++p, to += step, from += depthStride) {
    for (std::size_t i = 0; i < Width; ++i) to[i] = from[static_cast<std::ptrdiff_t>(i) * lineStride];
  }
}

/// Without a call, which std::copy makes.
template <std::size_t Width>
inline void copyOf(double* to, double const* from) {
  std::memcpy(to, from, Width * sizeof(double));
}

template <std::size_t Width>
void packStripsOf(double* to, std::size_t count, double const* from, std::size_t depth, std::ptrdiff_t depthStride) {
  for (std::size_t p = 0; p < depth; ++p, to += Width, from += depthStride) {
    for (std::size_t s = 0; s < count; ++s) copyOf<Width>(to + s * Width * depth, from + s * Width);
  }
}

using PackFunction = void (*)(double*, std::size_t, double const*, std::ptrdiff_t, std::size_t, std::ptrdiff_t);
constexpr PackFunction kPackByWidth[kTileRows] = {packStripOf<1>, packStripOf<2>, packStripOf<3>, packStripOf<4>,
                                                  packStripOf<5>, packStripOf<6>, packStripOf<7>, packStripOf<8>};
constexpr decltype(&packStripsOf<1>) kPackTogether[kTileColumns] = {packStripsOf<1>, packStripsOf<2>, packStripsOf<3>,
                                                                    packStripsOf<4>, packStripsOf<5>, packStripsOf<6>};

}  // namespace

TileFunction tileFunction() {
  if (!vectorsWanted.load(std::memory_order_relaxed)) return plainTile;
  return longVectorsWanted.load(std::memory_order_relaxed) ? kLongest : kFastest;
}

std::size_t mostTileRows(TileFunction function) { return kHasLong && function == kLongest ? 2 * kTileRows : kTileRows; }

bool wantLongVectorTiles(bool wanted) { return longVectorsWanted.exchange(wanted); }

bool wantVectorTiles(bool wanted) { return vectorsWanted.exchange(wanted); }

void packStrip(double* to, std::size_t step, double const* from, std::size_t width, std::ptrdiff_t lineStride,
               std::size_t depth, std::ptrdiff_t depthStride) {
  if (width == kTileRows && lineStride == 1) {
    for (std::size_t p = 0; p < depth; ++p, to += step, from += depthStride) copyOf<kTileRows>(to, from);
    return;
  }
  kPackByWidth[width - 1](to, step, from, lineStride, depth, depthStride);
}

void packStrips(double* to, std::size_t count, double const* from, std::size_t width, std::size_t depth,
                std::ptrdiff_t depthStride) {
  kPackTogether[width - 1](to, count, from, depth, depthStride);
}

}  // namespace kvn::detail
