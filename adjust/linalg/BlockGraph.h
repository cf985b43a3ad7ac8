// BlockGraph: which unknowns of a network meet in an observation.
#pragma once

#include "adjust/linalg/Poll.h"

#include <array>
#include <complex>
#include <cstddef>
#include <vector>

namespace kvn::sparse {

using detail::Effort;
using detail::Poll;

/// Blocks whose unknowns meet in one observation; -1 for none.
using Clique = std::array<int, 3>;

/// Blocks of unknowns that always come together, as x and y of a point do, and their neighbours: the pattern of the
/// normal equations.
struct BlockGraph {
  std::vector<int> sizes;           ///< unknowns of each block
  std::vector<std::size_t> starts;  ///< neighbours of block b stand from starts[b] up to starts[b + 1]
  std::vector<int> neighbours;      ///< ascending, without b itself

  int blocks() const { return static_cast<int>(sizes.size()); }
};

BlockGraph graphOf(std::vector<int> sizes, std::vector<Clique> const& cliques, Poll const& poll = {});

/// Blocks with the same neighbours are eliminated one behind the other, so that they need only one place in an order.
struct JoinedGraph {
  BlockGraph graph;
  std::vector<int> groupOf;  ///< of each block, its block in the joined graph
};

JoinedGraph joinTwins(BlockGraph const& graph, Poll const& poll = {});

/// A place in the plane, x + i y.
using BlockPlace = std::complex<double>;

/// An order of elimination that fills little: minimum degree for small graphs, nested dissection for large ones. The
/// same graph with the same places has the same order always.
///
/// @param places  of all blocks, finite, in any frame, true to some sights: large graphs are cut by them. Or nothing.
/// @return the block that goes first, the one that goes next, and so on.
std::vector<int> eliminationOrder(BlockGraph const& graph, std::vector<BlockPlace> const& places,
                                  Poll const& poll = {});
/// The same for blocks that meet in cliques.
std::vector<int> eliminationOrder(std::vector<int> const& sizes, std::vector<Clique> const& cliques,
                                  std::vector<BlockPlace> const& places, Poll const& poll = {});

}  // namespace kvn::sparse
