// What the observations of a network leave free to move.
#pragma once

#include "adjust/plane/NetworkEquations.h"
#include "records/NetworkFindings.h"

#include <vector>

namespace kvn::detail {

/// Points that observations connect with each other and that can move, by motions that no observation feels.
struct LooseGroup {
  std::vector<int> points;
  LooseMotion::Kind motion = LooseMotion::Several;
  int freedoms = 0;      ///< independent motions, as far as they are counted: not beyond 6
  double azimuth = 0.0;  ///< of Along and Shift, radians from 0 to π
  Place centre;          ///< of Turn and Scale
};

/// The groups about the given state, from the pivots of the normal equations' factorisation. An empty list when
/// everything is held.
///
/// @param weakness  pivots below this share of their diagonal element count as none; observations are taken in metres,
///                  with equal weights. A traverse of thousands of legs stays far above the default.
std::vector<LooseGroup> looseGroups(NumberedNetwork const& network, NetworkState const& state, double weakness = 1e-10,
                                    Poll const& poll = {});

}  // namespace kvn::detail
