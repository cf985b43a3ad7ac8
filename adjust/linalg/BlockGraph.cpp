#include "adjust/linalg/BlockGraph.h"

#include "adjust/linalg/Index.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace kvn::sparse {
namespace {

using detail::index;

template <typename Visit>
void forPairs(std::vector<Clique> const& cliques, Effort& effort, Visit visit) {
  for (Clique const& clique : cliques) {
    effort.step();
    for (int const a : clique) {
      for (int const b : clique) {
        if (a >= 0 && b >= 0 && a != b) visit(a, b);
      }
    }
  }
}

std::size_t mixed(std::uint64_t value) {
  value = (value + 0x9e3779b97f4a7c15U) * 0xbf58476d1ce4e5b9U;
  return static_cast<std::size_t>(value ^ (value >> 31U));
}

/// The same for blocks with the same neighbours that are neighbours of each other.
std::size_t hashOf(BlockGraph const& graph, int block) {
  std::size_t sum = mixed(static_cast<std::uint64_t>(block));
  for (std::size_t p = graph.starts[index(block)]; p < graph.starts[index(block) + 1]; ++p) {
    sum += mixed(static_cast<std::uint64_t>(graph.neighbours[p]));
  }
  return sum;
}

bool areTwins(BlockGraph const& graph, int a, int b) {
  auto const from = [&graph](int block) {
    return graph.neighbours.begin() + static_cast<std::ptrdiff_t>(graph.starts[index(block)]);
  };
  auto p = from(a);
  auto q = from(b);
  auto const pEnd = from(a + 1);
  auto const qEnd = from(b + 1);
  if (pEnd - p != qEnd - q || !std::binary_search(p, pEnd, b)) return false;
  for (;;) {
    while (p != pEnd && *p == b) ++p;
    while (q != qEnd && *q == a) ++q;
    if (p == pEnd || q == qEnd) return p == pEnd && q == qEnd;
    if (*p++ != *q++) return false;
  }
}

/// Of each block, the first one that is its twin: itself when there is none before it.
std::vector<int> firstTwins(BlockGraph const& graph, Effort& effort) {
  std::vector<std::pair<std::size_t, int>> byHash;
  byHash.reserve(index(graph.blocks()));
  for (int b = 0; b < graph.blocks(); ++b) {
    byHash.emplace_back(hashOf(graph, b), b);
    effort.step();
  }
  std::sort(byHash.begin(), byHash.end());
  std::vector<int> first(byHash.size());
  std::size_t run = 0;
  for (std::size_t i = 0; i < byHash.size(); ++i) {
    effort.step();
    if (byHash[i].first != byHash[run].first) run = i;
    int const b = byHash[i].second;
    first[index(b)] = i > run && areTwins(graph, byHash[run].second, b) ? byHash[run].second : b;
  }
  return first;
}

}  // namespace

BlockGraph graphOf(std::vector<int> sizes, std::vector<Clique> const& cliques, Poll const& poll) {
  Effort effort(poll);
  BlockGraph graph;
  graph.sizes = std::move(sizes);
  std::vector<std::size_t> ends(index(graph.blocks()) + 1, 0);
  forPairs(cliques, effort, [&ends](int a, int) { ++ends[index(a) + 1]; });
  for (std::size_t b = 1; b < ends.size(); ++b) ends[b] += ends[b - 1];
  graph.neighbours.resize(ends.back());
  std::vector<std::size_t> next(ends.begin(), ends.end() - 1);
  forPairs(cliques, effort, [&](int a, int b) { graph.neighbours[next[index(a)]++] = b; });
  // Most pairs are observed more than once.
  graph.starts.assign(1, 0);
  auto write = graph.neighbours.begin();
  for (std::size_t b = 0; b + 1 < ends.size(); ++b) {
    effort.step();
    auto const begin = graph.neighbours.begin() + static_cast<std::ptrdiff_t>(ends[b]);
    auto const end = graph.neighbours.begin() + static_cast<std::ptrdiff_t>(ends[b + 1]);
    std::sort(begin, end);
    write = std::copy(begin, std::unique(begin, end), write);
    graph.starts.push_back(static_cast<std::size_t>(write - graph.neighbours.begin()));
  }
  graph.neighbours.erase(write, graph.neighbours.end());
  return graph;
}

JoinedGraph joinTwins(BlockGraph const& graph, Poll const& poll) {
  Effort effort(poll);
  JoinedGraph joined;
  joined.groupOf.resize(index(graph.blocks()));
  std::vector<int> const firstTwin = firstTwins(graph, effort);
  std::vector<int> firsts;
  for (int b = 0; b < graph.blocks(); ++b) {
    if (firstTwin[index(b)] != b) {
      joined.groupOf[index(b)] = joined.groupOf[index(firstTwin[index(b)])];
      joined.graph.sizes[index(joined.groupOf[index(b)])] += graph.sizes[index(b)];
      continue;
    }
    joined.groupOf[index(b)] = joined.graph.blocks();
    joined.graph.sizes.push_back(graph.sizes[index(b)]);
    firsts.push_back(b);
  }
  joined.graph.starts.assign(1, 0);
  for (int g = 0; g < joined.graph.blocks(); ++g) {
    effort.step();
    int const first = firsts[index(g)];
    for (std::size_t p = graph.starts[index(first)]; p < graph.starts[index(first) + 1]; ++p) {
      int const neighbour = joined.groupOf[index(graph.neighbours[p])];
      if (neighbour != g) joined.graph.neighbours.push_back(neighbour);
    }
    auto const begin = joined.graph.neighbours.begin() + static_cast<std::ptrdiff_t>(joined.graph.starts.back());
    std::sort(begin, joined.graph.neighbours.end());
    joined.graph.neighbours.erase(std::unique(begin, joined.graph.neighbours.end()), joined.graph.neighbours.end());
    joined.graph.starts.push_back(joined.graph.neighbours.size());
  }
  return joined;
}

}  // namespace kvn::sparse
