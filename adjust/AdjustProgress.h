// AdjustProgress: where a least-squares adjustment stands.
#pragma once

#include <functional>

namespace kvn {

struct AdjustProgress {
  enum Stage {
    Start,      ///< better approximate coordinates than those of the walk
    Equations,  ///< a round of the iteration
    Inverse,
    Results,
    Check  ///< search for observations that do not fit the others
  };
  Stage stage;
  int round;           ///< of the iteration, from 1 on
  double largestMove;  ///< of a coordinate in the round before, metres; NaN in the first one
};

/// Called on the thread of the adjustment when a stage begins.
using AdjustProgressCall = std::function<void(AdjustProgress const&)>;

}  // namespace kvn
