// BodySolver: places several parts of a network at once, where none of them can be placed before the others.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/plane/NumberedNetwork.h"
#include "adjust/start/Frame.h"

#include <Eigen/Core>
#include <memory>
#include <unordered_map>
#include <vector>

namespace kvn::detail {

/// A body is a frame, which keeps its shape, or a single point. Unknowns are the place, the turn and, without a scale,
/// the size of each, and the orientation of every station between them that is oriented nowhere. They are found by
/// Gauss and Newton's iteration with Levenberg's damping from many starts; the starts are the same in every run.
class BodySolver {
 public:
  struct Body {
    Frame const* frame = nullptr;  ///< nothing for a single point
    int point = -1;
  };
  /// Of a body: z in its frame lies at factor z + shift; a single point at shift.
  struct Pose {
    Place factor;
    Place shift;
  };
  enum class Outcome { Solved, Undetermined, Ambiguous, NotFound };

  BodySolver(NumberedNetwork const& network, Frame const& base, std::vector<Body> bodies);
  ~BodySolver();

  /// About where the points lie, NaN where that is not known, for the choice between solutions that agree with all
  /// observations; one for each point of the network. They stay with their owner.
  void setHints(std::vector<Place> const* list) { hints = list; }
  /// @param poll  called before each start; may throw to end the work.
  Outcome solve(Poll const& poll = {});
  std::vector<Pose> const& poses() const { return found; }
  /// What it took: starts times the cube of the unknowns.
  double effort() const { return spent; }
  int size() const;  ///< points of all bodies

 private:
  struct System;
  struct Solution;

  bool search(Poll const& poll, std::vector<Solution>& solutions);
  void addMirrorImages(std::vector<Solution>& solutions);
  Eigen::VectorXd const* chosen(std::vector<Solution> const& solutions) const;

  std::unique_ptr<System> system;
  std::vector<Place> const* hints = nullptr;
  std::vector<Pose> found;
  double spent = 0.0;
};

}  // namespace kvn::detail
