#include "adjust/plane/NetworkBlocks.h"

#include "adjust/linalg/Index.h"

namespace kvn::detail {

std::vector<int> blockSizesOf(NumberedNetwork const& network, int firstPoint) {
  std::vector<int> sizes(index(network.points - firstPoint), 2);
  sizes.insert(sizes.end(), index(network.stations()), 1);
  return sizes;
}

std::vector<sparse::Clique> cliquesOf(NumberedNetwork const& network, int firstPoint) {
  int const points = network.points - firstPoint;
  auto const blockOf = [firstPoint](int point) { return point < firstPoint ? -1 : point - firstPoint; };
  std::vector<sparse::Clique> cliques;
  cliques.reserve(network.directions.size() + network.lines.size());
  for (NumberedNetwork::Direction const& d : network.directions) {
    cliques.push_back({blockOf(network.pointOf(d.station)), blockOf(d.target), points + d.station});
  }
  for (NumberedNetwork::Line const& line : network.lines) {
    cliques.push_back({blockOf(line.start), blockOf(line.end), -1});
  }
  return cliques;
}

}  // namespace kvn::detail
