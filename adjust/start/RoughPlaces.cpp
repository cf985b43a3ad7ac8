#include "adjust/start/RoughPlaces.h"

#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"

#include <cmath>
#include <limits>

namespace kvn::detail {
namespace {

constexpr double kHalfTurn = 0.5 * utils::kFullCircle;
// Each goes through all stations.
constexpr int kMostScans = 10;

class RoughWalk {
 public:
  RoughWalk(NumberedNetwork const& net, Poll const& poll)
      : network(net),
        effort(poll),
        places(index(net.points), kNoPlace),
        orientations(index(net.stations()), std::numeric_limits<double>::quiet_NaN()) {}

  std::vector<Place> run() {
    for (int station = 0; station < network.stations() && next == 0; ++station) {
      if (!hasDistance(station)) continue;
      places[index(network.pointOf(station))] = Place();
      orient(station, 0.0);
      follow();
    }
    int scans = 0;
    while (scans < kMostScans && orientByPlaces()) ++scans;
    for (NumberedNetwork::Direction const& direction : network.directions) {
      Place& from = places[index(network.pointOf(direction.station))];
      Place& target = places[index(direction.target)];
      if (!hasPlace(from)) from = target;
      if (!hasPlace(target)) target = from;
    }
    return places;
  }

 private:
  double distanceOf(NumberedNetwork::Direction const& direction) const {
    int const line = network.lineBetween(network.pointOf(direction.station), direction.target);
    double const distance = line < 0 ? kMissing : network.line(line).value;
    return distance > 0.0 && distance < kMissingFrom ? distance : std::numeric_limits<double>::quiet_NaN();
  }

  bool hasDistance(int station) const {
    for (int d = network.firstDirection(station); d < network.endDirection(station); ++d) {
      if (!std::isnan(distanceOf(network.direction(d)))) return true;
    }
    return false;
  }

  bool isOriented(int station) const { return !std::isnan(orientations[index(station)]); }

  void orient(int station, double orientation) {
    orientations[index(station)] = orientation;
    oriented.push_back(station);
  }

  void follow() {
    for (; next < oriented.size(); ++next) {
      int const station = oriented[next];
      for (int d = network.firstDirection(station); d < network.endDirection(station); ++d) {
        effort.step();
        follow(network.direction(d));
      }
    }
  }

  void follow(NumberedNetwork::Direction const& direction) {
    int const from = network.pointOf(direction.station);
    double const azimuth = orientations[index(direction.station)] + direction.value;
    Place& target = places[index(direction.target)];
    if (!hasPlace(target)) target = places[index(from)] + polar(distanceOf(direction), azimuth);
    if (!hasPlace(target)) return;
    for (int const station : network.stationsAt(direction.target)) {
      effort.spend(1.0);
      if (isOriented(station)) continue;
      int const back = network.directionTo(station, from);
      if (back >= 0) orient(station, azimuth + kHalfTurn - network.direction(back).value);
    }
  }

  /// Stations that none of those they sight sights. False when none of them with a place is left.
  bool orientByPlaces() {
    std::size_t const before = oriented.size();
    for (int station = 0; station < network.stations(); ++station) {
      effort.step();
      Place const from = places[index(network.pointOf(station))];
      if (isOriented(station) || !hasPlace(from)) continue;
      Place sum;
      for (int d = network.firstDirection(station); d < network.endDirection(station); ++d) {
        NumberedNetwork::Direction const& direction = network.direction(d);
        Place const target = places[index(direction.target)];
        if (hasPlace(target)) sum += (target - from) * polar(1.0, -direction.value);
      }
      if (!(std::abs(sum) > 0.0)) continue;
      orient(station, std::arg(sum));
      follow();
    }
    return oriented.size() > before;
  }

  NumberedNetwork const& network;
  Effort effort;
  std::vector<Place> places;
  std::vector<double> orientations;
  std::vector<int> oriented;  // stations, in the order in which they are followed
  std::size_t next = 0;
};

}  // namespace

std::vector<Place> roughPlaces(NumberedNetwork const& network, Poll const& poll) {
  return RoughWalk(network, poll).run();
}

}  // namespace kvn::detail
