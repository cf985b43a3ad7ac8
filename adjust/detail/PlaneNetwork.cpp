#include "adjust/detail/PlaneNetwork.h"

#include "adjust/CommonFunction.h"
#include "adjust/detail/Missing.h"
#include "adjust/detail/PairKey.h"

#include <cmath>

namespace kvn::detail {

double foldedAngle(double angle) { return std::remainder(angle, 2.0 * CommonFunction::m_PI); }

void PlaneNetwork::buildLookups() {
  stationsOfPoint.assign(index(points), {});
  directionsToPoint.assign(index(points), {});
  linesOfPoint.assign(index(points), {});
  directionOf.clear();
  for (int s = 0; s < stations(); ++s) stationsOfPoint[index(pointOf(s))].push_back(s);
  for (int d = 0; d < static_cast<int>(directions.size()); ++d) {
    directionsToPoint[index(direction(d).target)].push_back(d);
    directionOf.emplace(orderedKey(direction(d).station, direction(d).target), d);
  }
  for (int l = 0; l < static_cast<int>(lines.size()); ++l) {
    linesOfPoint[index(line(l).start)].push_back(l);
    linesOfPoint[index(line(l).end)].push_back(l);
  }
}

int PlaneNetwork::directionTo(int station, int target) const {
  auto const entry = directionOf.find(orderedKey(station, target));
  return entry == directionOf.end() ? -1 : entry->second;
}

}  // namespace kvn::detail
