#include "adjust/start/Walks.h"

#include "adjust/CommonFunction.h"
#include "adjust/input/Missing.h"
#include "adjust/start/SweepQueue.h"
#include "adjust/traverse/Azimuth.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>

namespace kvn::detail {

bool isPlaced(Coordinates const& at, int point) { return at[2 * index(point)] < kMissingFrom; }

void place(Coordinates& at, int point, double x, double y) {
  at[2 * index(point)] = x;
  at[2 * index(point) + 1] = y;
}

void forgetUnknown(NumberedNetwork const& network, Coordinates& at) {
  for (int n = network.known; n < network.points; ++n) at[2 * index(n)] = kMissing;
}

double azimuthBetween(Coordinates const& at, int i, int j) {
  return azimuthOf(at[2 * index(j)] - at[2 * index(i)], at[2 * index(j) + 1] - at[2 * index(i) + 1]);
}

double observedDistance(NumberedNetwork const& network, int i, int j) {
  int const line = network.lineBetween(i, j);
  return line < 0 ? kMissing : network.line(line).value;
}

double observedAngle(NumberedNetwork const& network, int point, int i, int j) {
  for (int const s : network.stationsAt(point)) {
    int const toI = network.lastDirectionTo(s, i);
    int const toJ = network.lastDirectionTo(s, j);
    if (toI < 0 || toJ < 0) continue;
    double const angle = network.direction(toJ).value - network.direction(toI).value;
    return angle < 0.0 ? angle + 2.0 * CommonFunction::m_PI : angle;
  }
  return -1.0;
}

namespace {

// A corner whose sine is below this is flat: the sine of the double nearest to π is 1e-16, and angles carry a few times
// that from their subtraction.
constexpr double kFlatCorner = 1e-12;

struct Corner {
  double x;
  double y;
};

/// Places the target of `direction` by its distance, the station being oriented by the direction `orientedBy` to a
/// placed point.
void placePolar(NumberedNetwork const& net, Coordinates& at, int station, int orientedBy, int direction,
                double distance) {
  int const from = net.pointOf(station);
  double const azimuth = azimuthBetween(at, from, net.direction(orientedBy).target) + net.direction(direction).value -
                         net.direction(orientedBy).value;
  place(at, net.direction(direction).target, at[2 * index(from)] + distance * std::cos(azimuth),
        at[2 * index(from) + 1] + distance * std::sin(azimuth));
}

/// Visits each station once, at the moment at which sweeps over the list of stations would find it placed and oriented
/// for the first time: it then places all its targets that have a distance, and has nothing left to do.
class OrientedWalk {
 public:
  OrientedWalk(NumberedNetwork const& network, Coordinates& coordinates)
      : net(network),
        at(coordinates),
        queue(index(net.stations())),
        placedTargets(index(net.stations()), 0),
        done(index(net.stations()), false),
        remaining(0) {
    for (int n = 0; n < net.points; ++n) remaining += isPlaced(at, n) ? 0 : 1;
  }

  /// False when points are left that no station can place.
  bool run() {
    for (int point = 0; point < net.points; ++point) tellStations(point);
    int station = 0;
    while (queue.next(station)) placeTargets(station);
    return remaining == 0;
  }

 private:
  void tellStations(int point) {
    if (!isPlaced(at, point)) return;  // placed beyond the coordinates that count as such
    for (int const d : net.sightingsOf(point)) {
      int const s = net.stationOf(d);
      ++placedTargets[index(s)];
      scheduleIfReady(s);
    }
    for (int const s : net.stationsAt(point)) scheduleIfReady(s);
  }

  void scheduleIfReady(int s) {
    bool const ready = !done[index(s)] && placedTargets[index(s)] > 0 && isPlaced(at, net.pointOf(s));
    if (ready) queue.schedule(s);
  }

  /// The first direction in observation order whose target is placed orients all the others.
  int orientingDirection(int s) const {
    int d = net.firstDirection(s);
    while (!isPlaced(at, net.direction(d).target)) ++d;
    return d;
  }

  void placeTargets(int s) {
    done[index(s)] = true;
    int const from = net.pointOf(s);
    int const orientedBy = orientingDirection(s);
    for (int d = net.firstDirection(s); d < net.endDirection(s); ++d) {
      int const target = net.direction(d).target;
      double const distance = isPlaced(at, target) ? kMissing : observedDistance(net, from, target);
      if (distance > kMissingFrom) continue;
      placePolar(net, at, s, orientedBy, d, distance);
      --remaining;
      tellStations(target);
    }
  }

  NumberedNetwork const& net;
  Coordinates& at;
  SweepQueue queue;
  std::vector<int> placedTargets;  // directions of each station to placed points
  std::vector<bool> done;
  int remaining;
};

/// A corner pair of a station is the pair of its directions j < m to placed points a and b, where a has seen b and the
/// station, and b has seen a and the station. The first pair in the order of (j, m) places the station.
///
/// Whether a pair serves depends on the observations alone once both ends are placed. So a station is looked at only
/// when targets of it have been placed since the last time, and then only pairs with one of these are new.
class TriangleWalk {
 public:
  TriangleWalk(NumberedNetwork const& network, Coordinates& coordinates)
      : net(network),
        at(coordinates),
        queue(index(net.stations())),
        fresh(index(net.stations())),
        sameTarget(net.directions.size(), -1) {
    linkSameTargets();
  }

  /// False when points are left that no triangle places.
  bool run() {
    for (int point = 0; point < net.points; ++point) tellStations(point);
    int station = 0;
    while (queue.next(station)) tryToPlace(station);
    for (int point = net.known; point < net.points; ++point) {
      if (!isPlaced(at, point)) return false;
    }
    return true;
  }

 private:
  using Pair = std::pair<int, int>;  // directions (j, m)

  /// From the last direction of a station to a target back to the earlier ones.
  void linkSameTargets() {
    for (int s = 0; s < net.stations(); ++s) {
      std::unordered_map<int, int> previous;
      for (int d = net.firstDirection(s); d < net.endDirection(s); ++d) {
        auto const [entry, isNew] = previous.try_emplace(net.direction(d).target, d);
        if (isNew) continue;
        sameTarget[index(d)] = entry->second;
        entry->second = d;
      }
    }
  }

  void tellStations(int point) {
    if (!isPlaced(at, point)) return;  // placed beyond the coordinates that count as such
    for (int const d : net.sightingsOf(point)) {
      int const s = net.stationOf(d);
      if (isPlaced(at, net.pointOf(s))) continue;
      if (fresh[index(s)].empty() || fresh[index(s)].back() != point) fresh[index(s)].push_back(point);
      queue.schedule(s);
    }
  }

  void tryToPlace(int s) {
    std::vector<int> const news = std::exchange(fresh[index(s)], {});
    int const point = net.pointOf(s);
    if (isPlaced(at, point)) return;
    best.reset();
    for (int const target : news) {
      for (int d = net.lastDirectionTo(s, target); d >= 0; d = sameTarget[index(d)]) tryPairsWith(s, d);
    }
    if (!best) return;
    place(at, point, position.x, position.y);
    tellStations(point);
  }

  /// All pairs of the direction d with another one of the station: by the station's own directions or by those of the
  /// stations at d's target, whichever are fewer.
  void tryPairsWith(int s, int d) {
    int const target = net.direction(d).target;
    NumberLists::List const there = net.stationsAt(target);
    int directionsThere = 0;
    for (int const other : there) directionsThere += net.endDirection(other) - net.firstDirection(other);
    int const begin = net.firstDirection(s);
    int const end = net.endDirection(s);
    if (end - begin <= directionsThere) {
      for (int q = begin; q < end; ++q) tryPair(s, d, q);
      return;
    }
    for (int const other : there) {
      for (int e = net.firstDirection(other); e < net.endDirection(other); ++e) {
        int const corner = net.direction(e).target;
        for (int q = net.lastDirectionTo(s, corner); q >= 0; q = sameTarget[index(q)]) tryPair(s, d, q);
      }
    }
  }

  void tryPair(int s, int d, int q) {
    if (d == q || !isPlaced(at, net.direction(q).target)) return;
    Pair const pair = std::minmax(d, q);
    if (best && *best <= pair) return;
    std::optional<Corner> const solved = intersect(s, pair);
    if (!solved) return;
    best = pair;
    position = *solved;
  }

  /// The station from the corners a and b: law of sines in the triangle of the three points.
  std::optional<Corner> intersect(int s, Pair const& pair) const {
    int const k = net.pointOf(s);
    int const a = net.direction(pair.first).target;
    int const b = net.direction(pair.second).target;
    double const alpha = observedAngle(net, b, k, a);
    double const beta = observedAngle(net, a, b, k);
    if (alpha < 0.0 || beta < 0.0) return std::nullopt;
    double const gamma = net.direction(pair.second).value - net.direction(pair.first).value;
    if (std::abs(std::sin(gamma)) < kFlatCorner) return std::nullopt;
    double const dx = at[2 * index(b)] - at[2 * index(a)];
    double const dy = at[2 * index(b) + 1] - at[2 * index(a) + 1];
    Corner found{};
    if (gamma > CommonFunction::m_PI) {
      double const r = std::sin(alpha) / std::sin(gamma);
      found.x = at[2 * index(a)] + (dx * std::cos(beta) - dy * std::sin(beta)) * r;
      found.y = at[2 * index(a) + 1] + (dx * std::sin(beta) + dy * std::cos(beta)) * r;
    } else {
      double const q = std::sin(beta) / std::sin(gamma);
      found.x = at[2 * index(b)] + (-dx * std::cos(alpha) - dy * std::sin(alpha)) * q;
      found.y = at[2 * index(b) + 1] + (-dy * std::cos(alpha) + dx * std::sin(alpha)) * q;
    }
    if (!std::isfinite(found.x) || !std::isfinite(found.y)) return std::nullopt;
    return found;
  }

  NumberedNetwork const& net;
  Coordinates& at;
  SweepQueue queue;
  std::vector<std::vector<int>> fresh;  // of each station, targets placed since it was looked at
  std::vector<int> sameTarget;          // of each direction, the one before it to the same target, -1 for none
  std::optional<Pair> best;
  Corner position{};
};

bool placeFollowingPoint(NumberedNetwork const& net, Coordinates& at, int s) {
  int const from = net.pointOf(s);
  int orienting = -1;
  int following = -1;
  for (int d = net.endDirection(s) - 1; d >= net.firstDirection(s); --d) {
    if (isPlaced(at, net.direction(d).target)) orienting = d;
    if (net.direction(d).target == from + 1) following = d;
  }
  if (!isPlaced(at, from) || orienting < 0 || following < 0 || isPlaced(at, from + 1)) return false;
  double const distance = observedDistance(net, from, from + 1);
  if (distance > kMissingFrom) return false;
  placePolar(net, at, s, orienting, following, distance);
  return true;
}

}  // namespace

bool walkByDistances(NumberedNetwork const& network, Coordinates& at) { return OrientedWalk(network, at).run(); }

bool walkByTriangles(NumberedNetwork const& network, Coordinates& at) { return TriangleWalk(network, at).run(); }

void walkByNumbers(NumberedNetwork const& network, Coordinates& at) {
  for (int n = network.known; n < network.points; ++n) place(at, n, kMissing, kMissing);
  bool moved = true;  // a pass that moves nothing would be followed by others like it
  for (int pass = network.known; pass < network.points && moved; ++pass) {
    moved = false;
    for (int s = 0; s < network.stations(); ++s) moved = placeFollowingPoint(network, at, s) || moved;
  }
}

}  // namespace kvn::detail
