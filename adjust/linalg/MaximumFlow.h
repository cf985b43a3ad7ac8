// MaximumFlow: the largest flow between two nodes of a network, and with it the smallest cut between them.
#pragma once

#include "adjust/linalg/Index.h"
#include "adjust/linalg/Poll.h"

#include <vector>

namespace kvn::sparse {

/// Dinic's algorithm: shortest paths are filled until none is left.
class MaximumFlow {
 public:
  static constexpr int kUnlimited = 1 << 29;

  explicit MaximumFlow(int nodes) : firstArc(detail::index(nodes), -1) {}

  void reserve(std::size_t count) { arcs.reserve(2 * count); }
  void addArc(int from, int to, int capacity);

  /// Sends as much as the arcs take. Once only. @return how much.
  int send(int source, int sink, detail::Poll const& poll = {});
  /// After `send`, whether a node lies on the side of the source of the smallest cut that is nearest to it.
  bool isBeforeCut(int node) const { return level[detail::index(node)] >= 0; }

 private:
  struct Arc {
    int to;
    int left;  // of its capacity
    int next;  // of the same node
  };

  void append(int from, int to, int capacity);
  bool findLevels(int source, int sink, detail::Effort& effort);
  int fillPath(int source, int sink);

  std::vector<Arc> arcs;      // each beside the one back
  std::vector<int> firstArc;  // of each node
  std::vector<int> level;     // arcs from the source, -1 where none leads
  std::vector<int> nextArc;   // the first one of each node that may still lead on
  std::vector<int> path;      // arcs from the source
};

}  // namespace kvn::sparse
