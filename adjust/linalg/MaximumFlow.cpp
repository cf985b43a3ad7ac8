#include "adjust/linalg/MaximumFlow.h"

#include <algorithm>

namespace kvn::sparse {

using detail::index;

void MaximumFlow::addArc(int from, int to, int capacity) {
  append(from, to, capacity);
  append(to, from, 0);
}

void MaximumFlow::append(int from, int to, int capacity) {
  arcs.push_back({to, capacity, firstArc[index(from)]});
  firstArc[index(from)] = static_cast<int>(arcs.size()) - 1;
}

int MaximumFlow::send(int source, int sink, detail::Poll const& poll) {
  detail::Effort effort(poll);
  int total = 0;
  while (findLevels(source, sink, effort)) {
    nextArc = firstArc;
    path.clear();
    while (int const sent = fillPath(source, sink)) {
      effort.step();
      total += sent;
    }
  }
  return total;
}

bool MaximumFlow::findLevels(int source, int sink, detail::Effort& effort) {
  level.assign(firstArc.size(), -1);
  std::vector<int> reached = {source};
  level[index(source)] = 0;
  for (std::size_t i = 0; i < reached.size(); ++i) {
    effort.step();
    int const node = reached[i];
    for (int a = firstArc[index(node)]; a >= 0; a = arcs[index(a)].next) {
      int const to = arcs[index(a)].to;
      if (arcs[index(a)].left == 0 || level[index(to)] >= 0) continue;
      level[index(to)] = level[index(node)] + 1;
      reached.push_back(to);
    }
  }
  return level[index(sink)] >= 0;
}

/// One path from level to level. @return what it takes, 0 when there is none left.
int MaximumFlow::fillPath(int source, int sink) {
  // A full path is kept up to its first arc that is full now.
  int node = path.empty() ? source : arcs[index(path.back())].to;
  while (node != sink) {
    int& a = nextArc[index(node)];
    while (a >= 0 && (arcs[index(a)].left == 0 || level[index(arcs[index(a)].to)] != level[index(node)] + 1)) {
      a = arcs[index(a)].next;
    }
    if (a >= 0) {
      path.push_back(a);
      node = arcs[index(a)].to;
      continue;
    }
    if (node == source) return 0;
    // Nothing leads on from here: one step back, to the arc behind.
    node = arcs[index(path.back() ^ 1)].to;
    nextArc[index(node)] = arcs[index(path.back())].next;
    path.pop_back();
  }
  int sent = kUnlimited;
  for (int const a : path) sent = std::min(sent, arcs[index(a)].left);
  std::size_t kept = path.size();
  for (std::size_t i = path.size(); i-- > 0;) {
    Arc& arc = arcs[index(path[i])];
    arc.left -= sent;
    arcs[index(path[i] ^ 1)].left += sent;
    if (arc.left == 0) kept = i;
  }
  path.resize(kept);
  return sent;
}

}  // namespace kvn::sparse
