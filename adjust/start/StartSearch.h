// StartSearch: approximate coordinates for all points that the observations determine.
#pragma once

#include "adjust/plane/NumberedNetwork.h"
#include "adjust/start/BodySolver.h"
#include "adjust/start/Frame.h"

#include <memory>
#include <set>
#include <vector>

namespace kvn::detail {

/// From the placed points outward, as `Frame` grows; where that comes to an end, groups of stations that see each other
/// are built in frames of their own and brought in by the points that they share with what is placed, or with each
/// other; what is left is solved a few bodies at a time. It goes on until nothing moves.
class StartSearch {
 public:
  /// @param call  called again and again by `run`; may throw to end it.
  explicit StartSearch(NumberedNetwork const& network, Poll call = {});

  /// A point that is placed already.
  void place(int point, Place at) { root.place(point, at); }
  /// About where the points lie, NaN where that is not known, for the choice between two places that agree with all
  /// observations; they stay with their owner.
  void setHints(std::vector<Place> const* list) {
    hints = list;
    root.setHints(list);
  }
  /// False when points are left.
  bool run();

  bool isPlaced(int point) const { return root.has(point); }
  Place at(int point) const { return root.at(point); }
  Frame const& frame() const { return root; }
  /// Of the points that are left, those for which two different places agree with all observations.
  std::vector<int> const& ambiguousPoints() const { return ambiguous; }

 private:
  using Bodies = std::vector<BodySolver::Body>;

  bool isComplete() const { return static_cast<int>(root.points().size()) == net.points; }
  void buildFrames();
  void findNeighbours();
  bool hasThird(int a, int b) const;
  bool seed(Frame& frame, int station) const;
  bool joinToRoot();
  bool joinFrames();
  bool joinPair(std::size_t a, std::size_t b);
  bool solveBodies();
  bool isTaken(BodySolver::Body const& body) const;
  bool solveFrom(std::size_t first);
  bool solve(std::vector<int> const& chosen);
  bool isExhausted() const;
  void collectBodies();
  void linkBodies();
  void link(std::vector<int> const& points);

  NumberedNetwork const& net;
  Poll poll;
  std::vector<int> owner;
  Frame root;
  std::vector<Place> const* hints = nullptr;
  std::vector<std::unique_ptr<Frame>> frames;
  std::vector<bool> seeded;
  int lastFrame = 0;
  std::vector<std::vector<int>> around;  // of each point, those that it sees or that see it
  Bodies bodies;
  std::vector<std::vector<int>> bodiesAt;    // of each point
  std::vector<std::vector<int>> neighbours;  // of each body, one entry for each observation
  std::set<std::vector<int>> triedSets;      // of bodies, in this pass
  double effort = 0.0;                       // spent on bodies so far
  std::vector<int> ambiguous;
};

}  // namespace kvn::detail
