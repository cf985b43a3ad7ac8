// Single traverses in a network where stations have side shots, as chains that the calculators can compute.
#pragma once

#include "adjust/TraverseResult.h"
#include "records/Network.h"

#include <string>
#include <vector>

namespace kvn::detail {

/// A sight beside the chain.
struct SideSight {
  std::size_t station = 0;  ///< place in the chain; its length for the known station that an open one ends at
  std::string target;
  double angle = 0.0;      ///< clockwise from the back point, radians
  double distance = 0.0;   ///< metres; 0 for none
  double rounds = 1.0;     ///< of how many the direction to the target is the mean, as in `TraverseRounds`
  double distances = 1.0;  ///< of how many the distance is
};

struct TraverseWalk {
  int method = 0;  ///< as in `TraverseResult`
  TraverseClosing closing = TraverseClosing::AtStation;
  /// With angle and distance; known points with their coordinates. A loop has its station at both ends: first with the
  /// mark as back point, then with the angle between its legs.
  std::vector<TraverseInfo> stations;
  std::vector<SideSight> sideSights;
  /// Distances from a known end of the chain to the mark that gives it its azimuth; directions there are none of.
  std::vector<SideSight> markDistances = {};
  bool isEndStation = false;  ///< an open one: the last fore point is a station that sights the one before it
};

/// The traverses of a network, those that close first, in the order of their first stations.
///
/// A leg joins two stations that sight each other. From a known station that sights another known point, the chain goes
/// on over unknown stations as long as one leads on. Where there are several, those count that do not end blindly.
/// A chain that ends at a known station with another known point in sight connects, or is a polygon where its two ends
/// have no marks but each other; one that comes back is closed. One that ends otherwise is open, its last fore point a
/// known point where there is one: a known station without a mark, or a known point that is in sight with a distance.
/// Of the legs the distance is the mean of both ways.
///
/// @param method  1 to 3 for one kind alone, 0 for all.
/// @throws AlgorithmException DataError with the name of a station from which several ways lead on.
std::vector<TraverseWalk> traverseWalks(Network const& network, int method);

/// Computes a loop on one known point with a mark.
TraverseResult adjustedLoop(TraverseWalk const& walk);

/// Computes an open one, which may end on its own first station: a chain that the calculators refuse.
TraverseResult openChain(TraverseWalk const& walk);

/// Makes the misclosure of an open one whose last fore point is known, which then has the known place.
void takeCheckShot(TraverseResult& result, std::vector<KnownPoint> const& known);

/// The lines of a chain for the calculators: of each station back point, then fore point.
Network networkOf(TraverseWalk const& walk, std::vector<KnownPoint> const& known);

}  // namespace kvn::detail
