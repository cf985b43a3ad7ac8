#include "adjust/plane/NumberedNetwork.h"

#include <tuple>

namespace kvn::detail {

void NumberedNetwork::buildLookups(Poll const& poll) {
  stationsOfPoint = NumberLists(points, stationPoint);
  std::vector<int> stationOf(directions.size());
  std::vector<int> targetOf(directions.size());
  for (std::size_t d = 0; d < directions.size(); ++d) {
    stationOf[d] = directions[d].station;
    targetOf[d] = directions[d].target;
  }
  directionsToPoint = NumberLists(points, targetOf);
  directionsOf = PairTable(stations(), stationOf, targetOf, poll);
  std::vector<int> ends;
  std::vector<int> smaller(lines.size());
  std::vector<int> larger(lines.size());
  ends.reserve(2 * lines.size());
  for (std::size_t l = 0; l < lines.size(); ++l) {
    ends.push_back(lines[l].start);
    ends.push_back(lines[l].end);
    std::tie(smaller[l], larger[l]) = std::minmax(lines[l].start, lines[l].end);
  }
  linesOfPoint = NumberLists(points, ends, 2);
  linesOf = PairTable(points, smaller, larger, poll);
}

}  // namespace kvn::detail
