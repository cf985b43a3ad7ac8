// Orders of elimination.
#include "adjust/linalg/BlockGraph.h"
#include "adjust/linalg/Index.h"
#include "adjust/linalg/StraightCut.h"

#include <metis.h>
#include <Eigen/OrderingMethods>
#include <Eigen/SparseCore>
#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <numeric>
#include <stdexcept>

namespace kvn::sparse {
namespace {

using detail::index;

// Below this number of blocks minimum degree is the faster one, and fills as little.
constexpr int kDissectedFrom = 2000;
constexpr int kMostAtOnce = 50000;  // some tenths of a second
// Below it METIS fills less.
constexpr int kCutByPlacesFrom = 500;

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

// Blocks with more neighbours than this are not compared with each other.
constexpr std::size_t kMostCompared = 64;

std::size_t degree(BlockGraph const& graph, int block) {
  return graph.starts[index(block) + 1] - graph.starts[index(block)];
}

/// Whether `block` meets all that its neighbour `inner` meets.
bool surrounds(BlockGraph const& graph, int block, int inner) {
  auto const from = [&graph](int b) {
    return graph.neighbours.begin() + static_cast<std::ptrdiff_t>(graph.starts[index(b)]);
  };
  auto q = from(block);
  for (auto p = from(inner); p != from(inner + 1); ++p) {
    if (*p == block) continue;
    while (q != from(block + 1) && *q < *p) ++q;
    if (q == from(block + 1) || *q != *p) return false;
  }
  return true;
}

/// What is left of a graph when only its `members` are.
BlockGraph restricted(BlockGraph const& graph, std::vector<int> const& members) {
  std::vector<int> numberOf(index(graph.blocks()), -1);
  for (std::size_t i = 0; i < members.size(); ++i) numberOf[index(members[i])] = static_cast<int>(i);
  BlockGraph part;
  part.starts.assign(1, 0);
  for (int const b : members) {
    part.sizes.push_back(graph.sizes[index(b)]);
    for (std::size_t p = graph.starts[index(b)]; p < graph.starts[index(b) + 1]; ++p) {
      int const neighbour = numberOf[index(graph.neighbours[p])];
      if (neighbour >= 0) part.neighbours.push_back(neighbour);
    }
    part.starts.push_back(part.neighbours.size());
  }
  return part;
}

std::vector<BlockPlace> selected(std::vector<BlockPlace> const& places, std::vector<int> const& members) {
  std::vector<BlockPlace> result;
  result.reserve(members.size());
  for (int const b : members) result.push_back(places[index(b)]);
  return result;
}

/// A block that meets nothing but what one of its neighbours meets is eliminated just before that one, as the
/// orientation of a station before its point: the graph of the others is a quarter as large.
class Absorption {
 public:
  Absorption(BlockGraph const& all, Poll const& poll)
      : graph(all), sizes(all.sizes), isAbsorbed(all.sizes.size(), false), absorbed(all.sizes.size()) {
    std::vector<int> byDegree(sizes.size());
    std::iota(byDegree.begin(), byDegree.end(), 0);
    std::stable_sort(byDegree.begin(), byDegree.end(), [&](int a, int b) { return degree(all, a) < degree(all, b); });
    Effort effort(poll);
    for (int const b : byDegree) {
      effort.step();
      absorb(b);
    }
    for (int b = 0; b < graph.blocks(); ++b) {
      if (!isAbsorbed[index(b)]) kept.push_back(b);
    }
  }

  /// The graph of the others, whose sizes count what they have taken up.
  BlockGraph rest() const {
    BlockGraph result = restricted(graph, kept);
    for (std::size_t i = 0; i < kept.size(); ++i) result.sizes[i] = sizes[index(kept[i])];
    return result;
  }

  /// Those of the others, by the places of all.
  std::vector<BlockPlace> placesOfRest(std::vector<BlockPlace> const& places) const {
    return places.empty() ? places : selected(places, kept);
  }

  std::vector<int> expanded(std::vector<int> const& order) const {
    std::vector<int> result;
    result.reserve(sizes.size());
    for (int const number : order) append(kept[index(number)], result);
    return result;
  }

 private:
  void absorb(int inner) {
    if (degree(graph, inner) > kMostCompared) return;
    for (std::size_t p = graph.starts[index(inner)]; p < graph.starts[index(inner) + 1]; ++p) {
      int const block = graph.neighbours[p];
      bool const isLarger = degree(graph, block) >= degree(graph, inner) && degree(graph, block) <= kMostCompared;
      if (!isLarger || isAbsorbed[index(block)] || !surrounds(graph, block, inner)) continue;
      isAbsorbed[index(inner)] = true;
      sizes[index(block)] += sizes[index(inner)];
      absorbed[index(block)].push_back(inner);
      return;
    }
  }

  void append(int block, std::vector<int>& result) const {
    for (int const inner : absorbed[index(block)]) append(inner, result);
    result.push_back(block);
  }

  BlockGraph const& graph;
  std::vector<int> sizes;
  std::vector<bool> isAbsorbed;
  std::vector<std::vector<int>> absorbed;  // by each block, in the order of elimination
  std::vector<int> kept;
};

/// What METIS asks for: the graph in its types, and the settings.
struct Dissection {
  explicit Dissection(BlockGraph const& graph)
      : blocks(graph.blocks()),
        starts(graph.starts.begin(), graph.starts.end()),
        neighbours(graph.neighbours.begin(), graph.neighbours.end()),
        sizes(graph.sizes.begin(), graph.sizes.end()) {
    METIS_SetDefaultOptions(options);
    options[METIS_OPTION_SEED] = 1;
    options[METIS_OPTION_COMPRESS] = 0;  // twins are joined already
  }

  std::vector<idx_t> order() {
    std::vector<idx_t> result(index(blocks));
    std::vector<idx_t> placeOf(index(blocks));
    require(
        METIS_NodeND(&blocks, starts.data(), neighbours.data(), sizes.data(), options, result.data(), placeOf.data()));
    return result;
  }

  /// Of each block 0 or 1, its side, or 2 for one that separates the sides.
  std::vector<idx_t> sides() {
    std::vector<idx_t> result(index(blocks));
    idx_t separatorSize = 0;
    require(METIS_ComputeVertexSeparator(&blocks, starts.data(), neighbours.data(), sizes.data(), options,
                                         &separatorSize, result.data()));
    return result;
  }

  static void require(int status) {
    if (status == METIS_ERROR_MEMORY) throw std::bad_alloc();
    if (status != METIS_OK) throw std::runtime_error("The network cannot be dissected");
  }

  idx_t blocks;
  std::vector<idx_t> starts;
  std::vector<idx_t> neighbours;
  std::vector<idx_t> sizes;
  idx_t options[METIS_NOPTIONS];
};

/// Both sides of a separator, and then what separates them. Large graphs are cut step by step, since no call of METIS
/// can be ended before its time, and by the places of their blocks, if these are known and of use.
std::vector<int> byDissection(BlockGraph const& graph, std::vector<BlockPlace> places, BlockPlace across,
                              Poll const& poll) {
  if (poll) poll();
  std::vector<int> sides;
  if (!places.empty() && graph.blocks() >= kCutByPlacesFrom) {
    StraightCut cut = straightCut(graph, places, across, poll);
    sides = std::move(cut.sides);
    across = cut.across;
  }
  if (sides.empty()) {
    places.clear();
    if (graph.blocks() <= kMostAtOnce) {
      std::vector<idx_t> const order = Dissection(graph).order();
      return {order.begin(), order.end()};
    }
    std::vector<idx_t> const found = Dissection(graph).sides();
    sides.assign(found.begin(), found.end());
  }
  std::vector<int> order;
  order.reserve(sides.size());
  std::array<std::vector<int>, 3> members;  // of the sides, and of what separates them
  for (int b = 0; b < graph.blocks(); ++b) members.at(index(sides[index(b)])).push_back(b);
  for (int side = 0; side < 2; ++side) {
    std::vector<int> const& blocks = members.at(index(side));
    if (blocks.size() == sides.size()) throw std::runtime_error("The network cannot be dissected");
    if (blocks.empty()) continue;
    std::vector<BlockPlace> const placesOfSide = places.empty() ? places : selected(places, blocks);
    for (int const inPart : byDissection(restricted(graph, blocks), placesOfSide, across, poll)) {
      order.push_back(blocks[index(inPart)]);
    }
  }
  order.insert(order.end(), members[2].begin(), members[2].end());
  return order;
}

}  // namespace

std::vector<int> eliminationOrder(BlockGraph const& graph, std::vector<BlockPlace> const& places, Poll const& poll) {
  if (graph.blocks() < kDissectedFrom) return byMinimumDegree(graph);
  Absorption const absorption(graph, poll);
  return absorption.expanded(byDissection(absorption.rest(), absorption.placesOfRest(places), {}, poll));
}

std::vector<int> eliminationOrder(std::vector<int> const& sizes, std::vector<Clique> const& cliques,
                                  std::vector<BlockPlace> const& places, Poll const& poll) {
  JoinedGraph const joined = joinTwins(graphOf(sizes, cliques, poll), poll);
  std::vector<std::vector<int>> blocksOf(index(joined.graph.blocks()));
  for (std::size_t b = 0; b < sizes.size(); ++b) blocksOf[index(joined.groupOf[b])].push_back(static_cast<int>(b));
  std::vector<BlockPlace> placesOfGroups;
  if (!places.empty()) {
    for (std::vector<int> const& blocks : blocksOf) placesOfGroups.push_back(places[index(blocks.front())]);
  }
  std::vector<int> order;
  order.reserve(sizes.size());
  for (int const group : eliminationOrder(joined.graph, placesOfGroups, poll)) {
    order.insert(order.end(), blocksOf[index(group)].begin(), blocksOf[index(group)].end());
  }
  return order;
}

}  // namespace kvn::sparse
