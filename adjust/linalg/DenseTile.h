// One tile of a matrix product, held in the registers of the processor, and how operands are laid out for it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kvn::detail {

// The product is cut into tiles of 8 x 6 elements of C, which fill 12 of the 16 vector registers and leave room for two
// vectors of A and one element of B. Where registers are twice as long and twice as many, two tiles one below the other
// go at once.
inline constexpr std::size_t kTileRows = 8;
inline constexpr std::size_t kTileColumns = 6;

/// One tile: rows of A and columns of B, by their steps, on the tile of C.
struct Tile {
  std::size_t depth;
  double alpha;
  double const* a;  ///< up to 8 rows stand one behind the other
  std::ptrdiff_t aColumnStep;
  std::ptrdiff_t aLowerStep;  ///< from a to the rows from 8 on, where there are more
  double const* b;
  std::ptrdiff_t bRowStep;
  std::ptrdiff_t bColumnStep;
  double* c;  ///< rows stand one behind the other
  std::ptrdiff_t cColumnStep;
  std::ptrdiff_t cStepGrowth;  ///< by which each step is longer than the one before: 1 in a packed triangle, 0 else
  int rows;
  int columns;
};

using TileFunction = void (*)(Tile const&);

/// What computes tiles of at least 8 x 6 elements now: with vector instructions or without.
TileFunction tileFunction();
/// Rows of the largest tile that such a function takes: 8 or 16.
std::size_t mostTileRows(TileFunction function);

/// Switches the vector instructions on or off where there are any; whether they were wanted before.
bool wantVectorTiles(bool wanted);
/// The same of those with 512 bits.
bool wantLongVectorTiles(bool wanted);

/// Copies a strip of `width` lines (rows of A, columns of B; at most 8) so that it reads straight through: for each
/// step along the depth the lines of the strip one behind the other, `step` apart.
void packStrip(double* to, std::size_t step, double const* from, std::size_t width, std::ptrdiff_t lineStride,
               std::size_t depth, std::ptrdiff_t depthStride);

/// The same of `count` strips of B one behind the other, whose columns stand side by side in memory as those of a
/// transposed matrix do: each stretch of it is fetched once for all of them.
void packStrips(double* to, std::size_t count, double const* from, std::size_t width, std::size_t depth,
                std::ptrdiff_t depthStride);

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

/// Columns in strips of at most 6 and of nearly equal width: 8 columns as 4 and 4, for a tile of 2 columns keeps the
/// arithmetic units waiting.
class ColumnStrips {
 public:
  explicit ColumnStrips(std::size_t columns)
      : strips((columns + kTileColumns - 1) / kTileColumns), narrow(columns / strips), wide(columns % strips) {}

  std::size_t widthAt(std::size_t strip) const { return strip < wide ? narrow + 1 : narrow; }
  /// Strips of this width from this one on.
  std::size_t alikeFrom(std::size_t strip) const { return (strip < wide ? wide : strips) - strip; }

 private:
  std::size_t strips;
  std::size_t narrow;
  std::size_t wide;
};

}  // namespace kvn::detail
