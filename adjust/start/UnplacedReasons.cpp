#include "adjust/start/UnplacedReasons.h"

#include "adjust/linalg/Index.h"
#include "adjust/plane/LooseGroups.h"

#include <algorithm>
#include <random>
#include <set>

namespace kvn::detail {
namespace {

/// What was observed at a point and to it.
struct Counts {
  int sightings = 0;      ///< of it
  int distances = 0;      ///< to it
  std::set<int> targets;  ///< of its stations
  bool toPlaced = false;  ///< something leads to a placed point
};

class Reasons {
 public:
  Reasons(NumberedNetwork const& network, StartSearch const& placed)
      : net(network), search(placed), isLoose(index(network.points), false), isReached(index(network.points), false) {
    findReached();
    findLoose();
    for (int const point : search.ambiguousPoints()) ambiguous.insert(point);
  }

  UnplacedPoint::Reason of(int point) const {
    if (!isReached[index(point)]) return UnplacedPoint::NoConnection;
    if (ambiguous.count(point) != 0) return UnplacedPoint::TwoPlaces;
    if (!isLoose[index(point)]) return isOnCircle(point) ? UnplacedPoint::OnOneCircle : UnplacedPoint::NoStart;
    Counts const counts = countsOf(point);
    auto const targets = static_cast<int>(counts.targets.size());
    if (targets == 0 && counts.sightings + counts.distances == 1) {
      return counts.sightings == 1 ? UnplacedPoint::SeenOnce : UnplacedPoint::OneDistance;
    }
    if (counts.sightings + counts.distances == 0 && targets < 3) return UnplacedPoint::FewTargets;
    return counts.toPlaced ? UnplacedPoint::TooFew : UnplacedPoint::OnUnplaced;
  }

 private:
  /// Along all observations from the placed points.
  void findReached() {
    std::vector<int> open;
    for (int p = 0; p < net.points; ++p) {
      if (search.isPlaced(p)) reach(p, open);
    }
    while (!open.empty()) {
      int const point = open.back();
      open.pop_back();
      for (int const l : net.linesAt(point)) reach(net.otherEnd(l, point), open);
      for (int const d : net.sightingsOf(point)) reach(net.pointOf(net.direction(d).station), open);
      for (int const s : net.stationsAt(point)) {
        for (int d = net.firstDirection(s); d < net.endDirection(s); ++d) reach(net.direction(d).target, open);
      }
    }
  }

  void reach(int point, std::vector<int>& open) {
    if (isReached[index(point)]) return;
    isReached[index(point)] = true;
    open.push_back(point);
  }

  /// With the placed points as known ones, and places at random for the others.
  void findLoose() {
    NumberedNetwork rest;
    std::vector<int> numberOf(index(net.points), -1);
    std::vector<int> pointOf(search.frame().points());
    rest.known = static_cast<int>(pointOf.size());
    for (int p = 0; p < net.points; ++p) {
      if (!search.isPlaced(p)) pointOf.push_back(p);
    }
    for (std::size_t i = 0; i < pointOf.size(); ++i) numberOf[index(pointOf[i])] = static_cast<int>(i);
    rest.points = net.points;
    rest.directionStart = net.directionStart;
    rest.stationPoint.reserve(net.stationPoint.size());
    rest.directions.reserve(net.directions.size());
    rest.lines.reserve(net.lines.size());
    for (int const point : net.stationPoint) rest.stationPoint.push_back(numberOf[index(point)]);
    for (auto const& d : net.directions)
      rest.directions.push_back({d.station, numberOf[index(d.target)], d.value, d.error});
    for (auto const& l : net.lines)
      rest.lines.push_back({numberOf[index(l.start)], numberOf[index(l.end)], l.value, l.error});
    rest.buildLookups();
    for (LooseGroup const& group : looseGroups(rest, orientedState(rest, placesFor(pointOf, rest.known)))) {
      for (int const number : group.points) isLoose[index(pointOf[index(number)])] = true;
    }
  }

  std::vector<Place> placesFor(std::vector<int> const& pointOf, int placed) const {
    std::vector<Place> places;
    places.reserve(pointOf.size());
    for (int i = 0; i < placed; ++i) places.push_back(search.at(pointOf[index(i)]));
    double size = 1.0;
    for (Place const place : places) size = std::max(size, std::abs(place - places.front()));
    std::mt19937 random(1);
    while (places.size() < pointOf.size()) {
      double const x = static_cast<double>(random()) / 4294967296.0;
      double const y = static_cast<double>(random()) / 4294967296.0;
      places.push_back((places.empty() ? Place() : places.front()) + size * Place(x, y));
    }
    return places;
  }

  Counts countsOf(int point) const {
    Counts counts;
    auto const meet = [&](int other) { counts.toPlaced = counts.toPlaced || search.isPlaced(other); };
    for (int const d : net.sightingsOf(point)) ++counts.sightings, meet(net.pointOf(net.direction(d).station));
    for (int const l : net.linesAt(point)) ++counts.distances, meet(net.otherEnd(l, point));
    for (int const s : net.stationsAt(point)) {
      for (int d = net.firstDirection(s); d < net.endDirection(s); ++d) {
        counts.targets.insert(net.direction(d).target);
        meet(net.direction(d).target);
      }
    }
    return counts;
  }

  /// Three placed targets or more, and their angles do not tell where.
  bool isOnCircle(int point) const {
    std::vector<Locus> const loci = search.frame().lociOf(point);
    return loci.size() >= 2 && std::all_of(loci.begin(), loci.end(), [&loci](Locus const& l) {
             return l.isArc() && l.isSameCircle(loci.front());
           });
  }

  NumberedNetwork const& net;
  StartSearch const& search;
  std::vector<bool> isLoose;
  std::vector<bool> isReached;
  std::set<int> ambiguous;
};

}  // namespace

std::vector<std::pair<int, UnplacedPoint::Reason>> unplacedReasons(NumberedNetwork const& network,
                                                                   StartSearch const& search) {
  Reasons const reasons(network, search);
  std::vector<std::pair<int, UnplacedPoint::Reason>> list;
  for (int p = 0; p < network.points; ++p) {
    if (!search.isPlaced(p)) list.emplace_back(p, reasons.of(p));
  }
  return list;
}

}  // namespace kvn::detail
