#include "adjust/plane/NumberedNetwork.h"

#include "adjust/linalg/Index.h"

#include <cmath>

namespace kvn::detail {

void NumberedNetwork::buildLookups() {
  stationsOfPoint.assign(index(points), {});
  directionsToPoint.assign(index(points), {});
  linesOfPoint.assign(index(points), {});
  for (int s = 0; s < stations(); ++s) stationsOfPoint[index(pointOf(s))].push_back(s);
  std::vector<int> stationOf(directions.size());
  std::vector<int> targetOf(directions.size());
  for (std::size_t d = 0; d < directions.size(); ++d) {
    stationOf[d] = directions[d].station;
    targetOf[d] = directions[d].target;
    directionsToPoint[index(targetOf[d])].push_back(static_cast<int>(d));
  }
  directionsOf = PairTable(stations(), stationOf, targetOf);
  for (int l = 0; l < static_cast<int>(lines.size()); ++l) {
    linesOfPoint[index(line(l).start)].push_back(l);
    linesOfPoint[index(line(l).end)].push_back(l);
  }
}

int NumberedNetwork::directionTo(int station, int target) const { return directionsOf.firstOf(station, target); }

}  // namespace kvn::detail
