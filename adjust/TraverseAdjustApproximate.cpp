// Approximate coordinates: the walks over the network from its known points, which come before any other search.
#include "adjust/TraverseAdjust.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "adjust/start/SweepQueue.h"
#include "adjust/traverse/Azimuth.h"
#include "core/AlgorithmException.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::kMissing;
using detail::kMissingFrom;

// A corner whose sine is below this is flat: the sine of the double nearest to π is 1e-16, and angles carry a few times
// that from their subtraction.
constexpr double kFlatCorner = 1e-12;

constexpr char const* kNotEnough = "No enough data";

}  // namespace

bool TraverseAdjust::isPlaced(int point) const { return x(point) < kMissingFrom; }

void TraverseAdjust::place(int point, Point const& at) {
  XY[2 * index(point)] = at.x;
  XY[2 * index(point) + 1] = at.y;
}

void TraverseAdjust::forgetUnknownPoints() {
  for (int n = knPointsCount; n < pointsCount; ++n) XY[2 * index(n)] = kMissing;
}

double TraverseAdjust::calculateAzimuth(int i, int j) const { return detail::azimuthOf(x(j) - x(i), y(j) - y(i)); }

/// The target of `direction` by its distance, the station being oriented by the direction `orientedBy` to a placed
/// point.
TraverseAdjust::Point TraverseAdjust::polarPoint(int station, int orientedBy, int direction, double distance) const {
  int const from = stationPoint[index(station)];
  double const azimuth = calculateAzimuth(from, directionTarget[index(orientedBy)]) + directionValue[index(direction)] -
                         directionValue[index(orientedBy)];
  return {x(from) + distance * std::cos(azimuth), y(from) + distance * std::sin(azimuth)};
}

// ---- Networks with distances: every placed station that sights a placed point places its targets with a distance.

/// Visits each station once, at the moment at which sweeps over the list of stations would find it placed and oriented
/// for the first time: it then places all its targets that have a distance, and has nothing left to do.
class TraverseAdjust::OrientedWalk {
 public:
  explicit OrientedWalk(TraverseAdjust& adjustment)
      : net(adjustment),
        queue(index(net.stationsCount)),
        placedTargets(index(net.stationsCount), 0),
        done(index(net.stationsCount), false),
        remaining(net.pointsCount - net.knPointsCount) {}

  /// False when points are left that no station can place.
  bool run() {
    for (int point = 0; point < net.knPointsCount; ++point) tellStations(point);
    int station = 0;
    while (queue.next(station)) placeTargets(station);
    return remaining == 0;
  }

 private:
  void tellStations(int point) {
    if (!net.isPlaced(point)) return;  // placed beyond the coordinates that count as such
    for (int const s : net.stationsSighting[index(point)]) {
      ++placedTargets[index(s)];
      scheduleIfReady(s);
    }
    for (int const s : net.stationsAt[index(point)]) scheduleIfReady(s);
  }

  void scheduleIfReady(int s) {
    bool const ready = !done[index(s)] && placedTargets[index(s)] > 0 && net.isPlaced(net.stationPoint[index(s)]);
    if (ready) queue.schedule(s);
  }

  /// The first direction in observation order whose target is placed orients all the others.
  int orientingDirection(int s) const {
    int d = net.directionStart[index(s)];
    while (!net.isPlaced(net.directionTarget[index(d)])) ++d;
    return d;
  }

  void placeTargets(int s) {
    done[index(s)] = true;
    int const from = net.stationPoint[index(s)];
    int const orientedBy = orientingDirection(s);
    for (int d = net.directionStart[index(s)]; d < net.directionStart[index(s) + 1]; ++d) {
      int const target = net.directionTarget[index(d)];
      double const distance = net.isPlaced(target) ? kMissing : net.getLine(from, target);
      if (distance > kMissingFrom) continue;
      net.place(target, net.polarPoint(s, orientedBy, d, distance));
      --remaining;
      tellStations(target);
    }
  }

  TraverseAdjust& net;
  detail::SweepQueue queue;
  std::vector<int> placedTargets;  // directions of each station to placed points
  std::vector<bool> done;
  int remaining;
};

void TraverseAdjust::calculateX0Y0() {
  forgetUnknownPoints();
  if (!OrientedWalk(*this).run() && !placeRemainingPoints())
    throw AlgorithmException(AlgorithmException::KnownPointNotEnough, kNotEnough);
}

// ---- Networks without distances: a station is placed from two placed points by the three angles of their triangle.

/// A corner pair of a station is the pair of its directions j < m to placed points a and b, where a has seen b and the
/// station, and b has seen a and the station. The first pair in the order of (j, m) places the station.
///
/// Whether a pair serves depends on the observations alone once both ends are placed. So a station is looked at only
/// when targets of it have been placed since the last time, and then only pairs with one of these are new.
class TraverseAdjust::TriangleWalk {
 public:
  explicit TriangleWalk(TraverseAdjust& adjustment)
      : net(adjustment),
        queue(index(net.stationsCount)),
        fresh(index(net.stationsCount)),
        sameTarget(index(net.directionsCount), -1) {
    linkSameTargets();
  }

  /// False when points are left that no triangle places.
  bool run() {
    for (int point = 0; point < net.knPointsCount; ++point) tellStations(point);
    int station = 0;
    while (queue.next(station)) tryToPlace(station);
    for (int point = net.knPointsCount; point < net.pointsCount; ++point) {
      if (!net.isPlaced(point)) return false;
    }
    return true;
  }

 private:
  using Pair = std::pair<int, int>;  // directions (j, m)

  /// From the last direction of a station to a target back to the earlier ones.
  void linkSameTargets() {
    for (int s = 0; s < net.stationsCount; ++s) {
      std::unordered_map<int, int> previous;
      for (int d = net.directionStart[index(s)]; d < net.directionStart[index(s) + 1]; ++d) {
        auto const [entry, isNew] = previous.try_emplace(net.directionTarget[index(d)], d);
        if (isNew) continue;
        sameTarget[index(d)] = entry->second;
        entry->second = d;
      }
    }
  }

  void tellStations(int point) {
    if (!net.isPlaced(point)) return;  // placed beyond the coordinates that count as such
    for (int const s : net.stationsSighting[index(point)]) {
      if (net.isPlaced(net.stationPoint[index(s)])) continue;
      if (fresh[index(s)].empty() || fresh[index(s)].back() != point) fresh[index(s)].push_back(point);
      queue.schedule(s);
    }
  }

  void tryToPlace(int s) {
    std::vector<int> const news = std::exchange(fresh[index(s)], {});
    int const point = net.stationPoint[index(s)];
    if (net.isPlaced(point)) return;
    best.reset();
    for (int const target : news) {
      for (int d = net.lastDirection(s, target); d >= 0; d = sameTarget[index(d)]) tryPairsWith(s, d);
    }
    if (!best) return;
    net.place(point, position);
    tellStations(point);
  }

  /// All pairs of the direction d with another one of the station: by the station's own directions or by those of the
  /// stations at d's target, whichever are fewer.
  void tryPairsWith(int s, int d) {
    int const target = net.directionTarget[index(d)];
    std::vector<int> const& there = net.stationsAt[index(target)];
    int directionsThere = 0;
    for (int const other : there)
      directionsThere += net.directionStart[index(other) + 1] - net.directionStart[index(other)];
    int const begin = net.directionStart[index(s)];
    int const end = net.directionStart[index(s) + 1];
    if (end - begin <= directionsThere) {
      for (int q = begin; q < end; ++q) tryPair(s, d, q);
      return;
    }
    for (int const other : there) {
      for (int e = net.directionStart[index(other)]; e < net.directionStart[index(other) + 1]; ++e) {
        int const corner = net.directionTarget[index(e)];
        for (int q = net.lastDirection(s, corner); q >= 0; q = sameTarget[index(q)]) tryPair(s, d, q);
      }
    }
  }

  void tryPair(int s, int d, int q) {
    if (d == q || !net.isPlaced(net.directionTarget[index(q)])) return;
    Pair const pair = std::minmax(d, q);
    if (best && *best <= pair) return;
    std::optional<Point> const solved = intersect(s, pair);
    if (!solved) return;
    best = pair;
    position = *solved;
  }

  /// The station from the corners a and b: law of sines in the triangle of the three points.
  std::optional<Point> intersect(int s, Pair const& pair) const {
    int const k = net.stationPoint[index(s)];
    int const a = net.directionTarget[index(pair.first)];
    int const b = net.directionTarget[index(pair.second)];
    double const alpha = net.getAngle(b, k, a);
    double const beta = net.getAngle(a, b, k);
    if (alpha < 0.0 || beta < 0.0) return std::nullopt;
    double const gamma = net.directionValue[index(pair.second)] - net.directionValue[index(pair.first)];
    if (std::abs(std::sin(gamma)) < kFlatCorner) return std::nullopt;
    double const dx = net.x(b) - net.x(a);
    double const dy = net.y(b) - net.y(a);
    Point at{};
    if (gamma > net.m_PI) {
      double const r = std::sin(alpha) / std::sin(gamma);
      at.x = net.x(a) + (dx * std::cos(beta) - dy * std::sin(beta)) * r;
      at.y = net.y(a) + (dx * std::sin(beta) + dy * std::cos(beta)) * r;
    } else {
      double const q = std::sin(beta) / std::sin(gamma);
      at.x = net.x(b) + (-dx * std::cos(alpha) - dy * std::sin(alpha)) * q;
      at.y = net.y(b) + (-dy * std::cos(alpha) + dx * std::sin(alpha)) * q;
    }
    if (!std::isfinite(at.x) || !std::isfinite(at.y)) return std::nullopt;
    return at;
  }

  TraverseAdjust& net;
  detail::SweepQueue queue;
  std::vector<std::vector<int>> fresh;  // of each station, targets placed since it was looked at
  std::vector<int> sameTarget;          // of each direction, the one before it to the same target, -1 for none
  std::optional<Pair> best;
  Point position{};
};

void TraverseAdjust::calculateX0Y0OnlyAngle() {
  forgetUnknownPoints();
  if (!TriangleWalk(*this).run() && !placeRemainingPoints())
    throw AlgorithmException(AlgorithmException::DataError, kNotEnough);
}

// ---- A narrow form of the first walk: each station places only the point numbered one above itself.

void TraverseAdjust::calculateX0Y00910() {
  int const unknown = pointsCount - knPointsCount;
  if (unknown == 0) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, kNotEnough);
  for (int n = knPointsCount; n < pointsCount; ++n) place(n, {kMissing, kMissing});
  bool moved = true;  // a pass that moves nothing would be followed by others like it
  for (int pass = 0; pass < unknown && moved; ++pass) {
    moved = false;
    for (int s = 0; s < stationsCount; ++s) moved = placeFollowingPoint(s) || moved;
  }
}

bool TraverseAdjust::placeFollowingPoint(int s) {
  int const from = stationPoint[index(s)];
  auto const begin = directionTarget.begin() + directionStart[index(s)];
  auto const end = directionTarget.begin() + directionStart[index(s) + 1];
  auto const orienting = std::find_if(begin, end, [this](int target) { return isPlaced(target); });
  auto const following = std::find(begin, end, from + 1);
  if (!isPlaced(from) || orienting == end || following == end || isPlaced(*following)) return false;
  double const distance = getLine(from, *following);
  if (distance > kMissingFrom) return false;
  place(*following, polarPoint(s, static_cast<int>(orienting - directionTarget.begin()),
                               static_cast<int>(following - directionTarget.begin()), distance));
  return true;
}

void TraverseAdjust::calculateApproximate() {
  if (linesCount != 0) {
    calculateX0Y0();
  } else {
    calculateX0Y0OnlyAngle();
  }
  X0Y0 = XY;
}

}  // namespace kvn
