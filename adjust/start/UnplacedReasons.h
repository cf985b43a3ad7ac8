// Why points cannot be placed.
#pragma once

#include "adjust/start/StartSearch.h"
#include "records/NetworkFindings.h"

#include <utility>
#include <vector>

namespace kvn::detail {

/// The points that a search has left, in number order, with the reason of each. Whether the observations would hold a
/// point at all is found from their equations, with places at random for the points that have none.
std::vector<std::pair<int, UnplacedPoint::Reason>> unplacedReasons(NumberedNetwork const& network,
                                                                   StartSearch const& search);

}  // namespace kvn::detail
