// Orders of elimination.
#include "adjust/detail/Missing.h"
#include "adjust/sparse/BlockGraph.h"

#include <metis.h>
#include <Eigen/OrderingMethods>
#include <Eigen/SparseCore>
#include <new>
#include <stdexcept>

namespace kvn::sparse {
namespace {

using detail::index;

// Below this number of blocks minimum degree is the faster one, and fills as little.
constexpr int kDissectedFrom = 2000;

std::vector<int> byMinimumDegree(BlockGraph const& graph) {
  Eigen::SparseMatrix<double> matrix(graph.blocks(), graph.blocks());
  std::vector<Eigen::Triplet<double>> entries;
  for (int b = 0; b < graph.blocks(); ++b) {
    entries.emplace_back(b, b, 1.0);
    for (std::size_t p = graph.starts[index(b)]; p < graph.starts[index(b) + 1]; ++p) {
      entries.emplace_back(graph.neighbours[p], b, 1.0);
    }
  }
  matrix.setFromTriplets(entries.begin(), entries.end());
  Eigen::AMDOrdering<int>::PermutationType order;
  Eigen::AMDOrdering<int>()(matrix, order);
  return {order.indices().data(), order.indices().data() + graph.blocks()};
}

std::vector<int> byDissection(BlockGraph const& graph) {
  idx_t blocks = graph.blocks();
  std::vector<idx_t> starts(graph.starts.begin(), graph.starts.end());
  std::vector<idx_t> neighbours(graph.neighbours.begin(), graph.neighbours.end());
  std::vector<idx_t> sizes(graph.sizes.begin(), graph.sizes.end());
  std::vector<idx_t> order(index(blocks));
  std::vector<idx_t> placeOf(index(blocks));
  idx_t options[METIS_NOPTIONS];
  METIS_SetDefaultOptions(options);
  options[METIS_OPTION_SEED] = 1;
  options[METIS_OPTION_COMPRESS] = 0;  // twins are joined already
  int const status =
      METIS_NodeND(&blocks, starts.data(), neighbours.data(), sizes.data(), options, order.data(), placeOf.data());
  if (status == METIS_ERROR_MEMORY) throw std::bad_alloc();
  if (status != METIS_OK) throw std::runtime_error("The network cannot be dissected");
  return {order.begin(), order.end()};
}

}  // namespace

std::vector<int> eliminationOrder(BlockGraph const& graph) {
  return graph.blocks() < kDissectedFrom ? byMinimumDegree(graph) : byDissection(graph);
}

std::vector<int> eliminationOrder(std::vector<int> const& sizes, std::vector<Clique> const& cliques) {
  JoinedGraph const joined = joinTwins(graphOf(sizes, cliques));
  std::vector<std::vector<int>> blocksOf(index(joined.graph.blocks()));
  for (std::size_t b = 0; b < sizes.size(); ++b) blocksOf[index(joined.groupOf[b])].push_back(static_cast<int>(b));
  std::vector<int> order;
  order.reserve(sizes.size());
  for (int const group : eliminationOrder(joined.graph)) {
    order.insert(order.end(), blocksOf[index(group)].begin(), blocksOf[index(group)].end());
  }
  return order;
}

}  // namespace kvn::sparse
