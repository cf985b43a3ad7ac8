#include "adjust/linalg/DenseKernels.h"

#include "adjust/linalg/DenseTile.h"

#include <algorithm>

namespace kvn::detail {
namespace {

// 256 columns of A: a strip of 8 rows of A and one of 6 columns of B fill most of a first level cache of 32 KiB, the 96
// rows of a block of A (196 KB) the larger part of a second level cache of 256 KiB.
constexpr std::size_t kBlockRows = 96;

thread_local Buffer bufferOfA;
thread_local Buffer bufferOfB;

std::ptrdiff_t steps(std::size_t count, std::ptrdiff_t stride) { return static_cast<std::ptrdiff_t>(count) * stride; }

/// A block of C: rows [row, row + rows), columns [column, column + columns).
struct Block {
  std::size_t row, rows;
  std::size_t column, columns;
};

class Product {
 public:
  Product(double scale, ConstView const& left, ConstView const& right, double* result, std::size_t stride, Region part)
      : function(tileFunction()),
        tileRows(mostTileRows(function)),
        alpha(scale),
        a(left),
        b(right),
        c(result),
        cStride(static_cast<std::ptrdiff_t>(stride)),
        region(part) {}

  void run(std::size_t m, std::size_t n, std::size_t k) {
    packsA = a.rowStride != 1 || (n > 2 * kTileColumns && m * k > kKeptUnpacked);
    packsB = m > 4 * kTileRows && n * k > kKeptUnpacked;
    for (std::size_t column = 0; column < n; column += kProductColumns) {
      std::size_t const columns = std::min(kProductColumns, n - column);
      for (std::size_t p = 0; p < k; p += kProductDepth) {
        depth = std::min(kProductDepth, k - p);
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
  static constexpr std::size_t kTogether = 8;         // strips: some cache lines of each row

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
    for (std::size_t j = 0, s = 0; j < columns;) {
      std::size_t const width = strips.widthAt(s);
      std::size_t const count = b.columnStride == 1 ? std::min(kTogether, strips.alikeFrom(s)) : 1;
      if (count > 1) {
        packStrips(to + j * depth, count, from + j, width, depth, b.rowStride);
      } else {
        packStrip(to + j * depth, width, from + steps(j, b.columnStride), width, b.columnStride, depth, b.rowStride);
      }
      j += count * width;
      s += count;
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
    tile.aLowerStep = static_cast<std::ptrdiff_t>(kTileRows * aStep);
    for (std::size_t i = firstTile(block, j); i < block.rows; i += tileRows) {
      tile.a = blockOfA + i * aStep;
      tile.c = cColumn + i;
      tile.rows = static_cast<int>(std::min(tileRows, block.rows - i));
      function(tile);
    }
  }

  /// The first tile of the block that reaches the diagonal in column j of the block.
  std::size_t firstTile(Block const& block, std::size_t j) const {
    if (region == Region::All || block.column + j <= block.row) return 0;
    return (block.column + j - block.row) / kTileRows * kTileRows;
  }

  TileFunction function;
  std::size_t tileRows;
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

bool useVectorInstructions(bool wanted) { return wantVectorTiles(wanted); }
bool useLongVectorInstructions(bool wanted) { return wantLongVectorTiles(wanted); }

}  // namespace kvn::detail
