// Writing the observations of a network file, each by itself.
#include "formats/CarefulCosaCollection.h"
#include "formats/detail/CarefulCosaData.h"
#include "formats/detail/CosaText.h"

#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <ostream>
#include <utility>

namespace kvn {
namespace {

using Origin = PlaneNetwork::Origin;

/// Place in the file or the field book: whatever has a later one was observed later.
int placeOf(Origin const& origin) { return origin.row >= 0 ? origin.row : origin.line; }

/// What stands under one station line, by the places in the lists of the network.
struct StationBlock {
  int station = 0;
  std::vector<std::size_t> directions;
  std::vector<std::size_t> distances;
};

/// A distance belongs to no set-up; it is written with the last one of its station that begins above it, as it was
/// read. Distances without such a set-up follow at the end, by station.
std::vector<StationBlock> blocksOf(PlaneNetwork const& network) {
  std::vector<StationBlock> blocks(network.setUps.size());
  std::map<int, std::multimap<int, std::size_t>> blocksOfStation;  // by the places at which they begin
  for (std::size_t s = 0; s < blocks.size(); ++s) {
    blocks[s].station = network.setUps[s].station;
    blocksOfStation[blocks[s].station].emplace(placeOf(network.setUps[s].origin), s);
  }
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    blocks[static_cast<std::size_t>(network.directions[d].setUp)].directions.push_back(d);
  }
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    int const station = network.distances[d].from;
    auto& beginnings = blocksOfStation[station];
    auto const next = beginnings.upper_bound(placeOf(network.distances[d].origin));
    std::size_t number = blocks.size();
    if (next != beginnings.begin()) {
      number = std::prev(next)->second;
    } else if (next != beginnings.end()) {
      number = next->second;
    } else {
      blocks.push_back({station, {}, {}});
      beginnings.emplace(placeOf(network.distances[d].origin), number);
    }
    blocks[number].distances.push_back(d);
  }
  return blocks;
}

}  // namespace

void CarefulCosaCollection::setObservations(PlaneNetwork observations) {
  own->observed = std::move(observations);
  own->writesObservations = true;
}

void CarefulCosaCollection::requireReadableObservations() const {
  auto const nameOf = [this](int point) { return own->observed.points[static_cast<std::size_t>(point)].name; };
  for (PlaneNetwork::Point const& point : own->observed.points) detail::requireReadableName(point.name);
  for (PlaneNetwork::Direction const& direction : own->observed.directions) {
    if (std::isinf(direction.value)) detail::requireFinite(nameOf(direction.target), direction.value);
  }
  for (PlaneNetwork::Distance const& distance : own->observed.distances) {
    if (std::isinf(distance.value)) detail::requireFinite(nameOf(distance.from), distance.value);
    detail::requireNotNegative(nameOf(distance.from), nameOf(distance.to), distance.value);
  }
}

void CarefulCosaCollection::writeObservations(std::ostream& stream) {
  auto const nameOf = [this](int point) { return own->observed.points[static_cast<std::size_t>(point)].name; };
  for (StationBlock const& block : blocksOf(own->observed)) {
    stream << nameOf(block.station) << '\n';
    for (std::size_t const number : block.directions) {
      PlaneNetwork::Direction const& direction = own->observed.directions[number];
      std::string const target = nameOf(direction.target);
      if (std::isnan(direction.value)) {
        stream << target << ",L\n";
      } else {
        writeDirection(stream, target, direction.value);
      }
    }
    for (std::size_t const number : block.distances) {
      PlaneNetwork::Distance const& distance = own->observed.distances[number];
      std::string const target = nameOf(distance.to);
      if (std::isnan(distance.value)) {
        stream << target << ",S\n";
      } else {
        writeDistance(stream, target, distance.value);
      }
    }
  }
}

}  // namespace kvn
