// FrontTree: the columns of a sparse factor, gathered into fronts that are dense.
#pragma once

#include "adjust/linalg/BlockGraph.h"

#include <cstddef>
#include <vector>

namespace kvn::sparse {

/// Elements of a symmetric matrix on and below the diagonal.
inline std::size_t triangleSize(std::size_t rows) { return rows * (rows + 1) / 2; }

/// Unknowns have places in the order of elimination. A front holds neighbouring places, its columns, and the rows below
/// that their elimination touches; these are all among the columns and rows of its parent.
struct FrontTree {
  /// @param order  of the blocks of the graph, as `eliminationOrder` gives it.
  FrontTree(BlockGraph const& graph, std::vector<int> const& order, Poll const& poll = {});

  int fronts() const { return static_cast<int>(parents.size()); }
  int columns(int f) const { return firstColumns[index(f) + 1] - firstColumns[index(f)]; }
  int rowCount(int f) const { return static_cast<int>(rowStarts[index(f) + 1] - rowStarts[index(f)]); }
  int const* rowsOf(int f) const { return rows.data() + rowStarts[index(f)]; }

  std::vector<int> blockOrder;            ///< the graph's blocks in their final order of elimination
  std::vector<int> firstColumns;          ///< of each front, and the number of unknowns behind the last one
  std::vector<int> parents;               ///< a later front, -1 for none
  std::vector<std::size_t> rowStarts;     ///< rows of front f stand from rowStarts[f] up to rowStarts[f + 1]
  std::vector<int> rows;                  ///< places, ascending
  std::vector<std::size_t> factorStarts;  ///< elements of front f, without those above the diagonal, from here on
  /// Elements that wait for parents at most during the factorisation, the last ones still as a full matrix.
  std::size_t updateStackSize = 0;

 private:
  static std::size_t index(int i) { return static_cast<std::size_t>(i); }
};

}  // namespace kvn::sparse
