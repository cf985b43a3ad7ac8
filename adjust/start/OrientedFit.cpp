#include "adjust/start/OrientedFit.h"

#include "adjust/linalg/Index.h"
#include "adjust/linalg/SparseCholesky.h"
#include "adjust/plane/NetworkEquations.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace kvn::detail {
namespace {

// Orientations and places are taken from each other so often.
constexpr int kMostTurns = 4;
constexpr double kHalfTurn = 0.5 * utils::kFullCircle;

/// Stations of which both see one line: the orientation of `second` less that of `first`.
struct Link {
  int first;
  int second;
  double turn;
};

std::vector<Link> linksOf(std::vector<PolarSight> const& sights, int points, Effort& effort) {
  std::vector<int> nearOf;
  nearOf.reserve(sights.size());
  for (PolarSight const& sight : sights) nearOf.push_back(std::min(sight.from, sight.target));
  NumberLists const sightsAt(points, nearOf);
  std::vector<Link> links;
  links.reserve(sights.size() / 2);
  std::vector<std::pair<int, int>> seen;  // far end and sight
  for (int near = 0; near < points; ++near) {
    effort.step();
    seen.clear();
    for (int const i : sightsAt.of(near)) {
      seen.emplace_back(std::max(sights[index(i)].from, sights[index(i)].target), i);
    }
    std::sort(seen.begin(), seen.end());
    for (std::size_t k = 1; k < seen.size(); ++k) {
      if (seen[k].first != seen[k - 1].first) continue;
      PolarSight const& a = sights[index(seen[k - 1].second)];
      PolarSight const& b = sights[index(seen[k].second)];
      if (a.station == b.station) continue;
      double const turn = std::arg(a.seen) - std::arg(b.seen) + (a.from == b.from ? 0.0 : kHalfTurn);
      links.push_back({a.station, b.station, turn});
    }
  }
  return links;
}

/// The blocks of an order from `first` on, `count` of them, numbered from 0.
std::vector<int> partOf(std::vector<int> const& blockOrder, int first, int count) {
  std::vector<int> order;
  order.reserve(index(count));
  for (int const block : blockOrder) {
    if (block >= first && block < first + count) order.push_back(block - first);
  }
  return order;
}

class OrientedSystem {
 public:
  OrientedSystem(std::vector<Place>& all, int knownPoints, int stationCount, std::vector<PolarSight> const& allSights,
                 std::vector<int> const& order, Poll const& call)
      : places(all),
        known(knownPoints),
        sights(allSights),
        blockOrder(order),
        poll(call),
        effort(call),
        orientations(index(stationCount), 0.0) {
    for (int n = 0; n < known; ++n) origin += places[index(n)] / static_cast<double>(known);
    for (PolarSight const& sight : sights) error += sight.error / static_cast<double>(sights.size());
  }

  /// Of all stations but for a common turn. False where links do not hold them together.
  bool orient() {
    auto const points = static_cast<int>(places.size());
    std::vector<Link> const links = linksOf(sights, points, effort);
    if (!walk(links)) return false;
    std::vector<sparse::Clique> cliques;
    cliques.reserve(links.size());
    for (Link const& link : links) cliques.push_back({link.first, link.second, -1});
    sparse::SparseCholesky normals(std::vector<int>(orientations.size(), 1), cliques,
                                   partOf(blockOrder, points, static_cast<int>(orientations.size())), poll);
    std::vector<double> right(orientations.size(), 0.0);
    double const factors[2] = {-1.0, 1.0};
    for (Link const& link : links) {
      effort.step();
      int const at[2] = {link.first, link.second};
      normals.addEquation(factors, at, 2, 1.0);
      double const left = std::remainder(link.turn - orientations[index(link.second)] + orientations[index(link.first)],
                                         utils::kFullCircle);
      right[index(link.second)] += left;
      right[index(link.first)] -= left;
    }
    normals.add(0, 0, 1.0);
    if (!normals.factor({0.0, kLostPivot}, poll)) return false;
    normals.solve(right, poll);
    for (std::size_t s = 0; s < right.size(); ++s) orientations[s] += right[s];
    return true;
  }

  /// False where the sights do not hold all points.
  bool prepare() {
    std::vector<sparse::Clique> cliques;
    cliques.reserve(sights.size());
    for (PolarSight const& sight : sights) {
      if (sight.from >= known && sight.target >= known)
        cliques.push_back({sight.from - known, sight.target - known, -1});
    }
    int const unknown = static_cast<int>(places.size()) - known;
    normalsOfPlaces = std::make_unique<sparse::SparseCholesky>(std::vector<int>(index(unknown), 1), cliques,
                                                               partOf(blockOrder, known, unknown), poll);
    for (PolarSight const& sight : sights) {
      effort.step();
      double const a[2] = {-1.0, 1.0};
      int const at[2] = {sight.from - known, sight.target - known};
      int const begin = at[0] < 0 ? 1 : 0;
      int const end = at[1] < 0 ? 1 : 2;
      if (begin < end) normalsOfPlaces->addEquation(a + begin, at + begin, end - begin, weightOf(sight));
    }
    return normalsOfPlaces->factor({0.0, kLostPivot}, poll);
  }

  /// By the orientations, all of them turned together as fits the known points best. False where that changes the
  /// scale.
  bool placeTurned() {
    std::vector<Place> const fixed = solved(true, false);
    std::vector<Place> const own = solved(false, true);
    Place product;
    double size = 0.0;
    for (PolarSight const& sight : sights) {
      effort.step();
      Place const a = fixed[index(sight.target)] - fixed[index(sight.from)];
      Place const b = own[index(sight.target)] - own[index(sight.from)] - turned(sight);
      product += weightOf(sight) * std::conj(b) * a;
      size += weightOf(sight) * std::norm(b);
    }
    Place const turn = -product / size;
    if (!(std::abs(std::abs(turn) - 1.0) <= kScale)) return false;
    for (std::size_t n = index(known); n < places.size(); ++n) places[n] = origin + fixed[n] + turn * own[n];
    return true;
  }

  void place() {
    std::vector<Place> const at = solved(true, true);
    for (std::size_t n = index(known); n < places.size(); ++n) places[n] = origin + at[n];
  }

  /// By the places.
  void orientAgain() {
    std::vector<Place> turns(orientations.size());
    for (PolarSight const& sight : sights) {
      effort.step();
      turns[index(sight.station)] +=
          (places[index(sight.target)] - places[index(sight.from)]) * std::conj(sight.seen) / std::norm(sight.seen);
    }
    for (std::size_t s = 0; s < turns.size(); ++s) orientations[s] = std::arg(turns[s]);
  }

  bool fits() {
    std::vector<double> misfits;
    misfits.reserve(sights.size());
    for (PolarSight const& sight : sights) {
      effort.step();
      Place const across = places[index(sight.target)] - places[index(sight.from)];
      misfits.push_back(std::abs(across - turned(sight)) / sight.error);
    }
    double const largest = *std::max_element(misfits.begin(), misfits.end());
    double const median = medianOf(std::move(misfits));
    return median <= kMisfit && largest <= kMisfit * std::max(1.0, median);
  }

 private:
  // A sight fits when it misses its target by no more errors than this, or than the median of all times this.
  static constexpr double kMisfit = 20.0;
  static constexpr double kScale = 0.1;  // the common turn is no change of scale
  static constexpr double kLostPivot = 1e-12;

  double weightOf(PolarSight const& sight) const { return (error / sight.error) * (error / sight.error); }
  Place turned(PolarSight const& sight) const {
    return sight.seen * std::polar(1.0, orientations[index(sight.station)]);
  }

  /// Orientations from station to station. False when some are not reached.
  bool walk(std::vector<Link> const& links) {
    NumberLists const linksAt = [&] {
      std::vector<int> ends;
      ends.reserve(2 * links.size());
      for (Link const& link : links) {
        ends.push_back(link.first);
        ends.push_back(link.second);
      }
      return NumberLists(static_cast<int>(orientations.size()), ends, 2);
    }();
    std::vector<bool> isReached(orientations.size(), false);
    std::vector<int> reached = {0};
    isReached[0] = true;
    for (std::size_t next = 0; next < reached.size(); ++next) {
      effort.step();
      int const station = reached[next];
      for (int const number : linksAt.of(station)) {
        Link const& link = links[index(number)];
        bool const isForward = link.first == station;
        int const other = isForward ? link.second : link.first;
        if (isReached[index(other)]) continue;
        isReached[index(other)] = true;
        orientations[index(other)] = orientations[index(station)] + (isForward ? link.turn : -link.turn);
        reached.push_back(other);
      }
    }
    return reached.size() == orientations.size();
  }

  /// Places less their origin, by the known points, by the sights, or by both.
  std::vector<Place> solved(bool hasKnown, bool hasSights) {
    std::vector<Place> at(places.size());
    std::vector<double> north(places.size() - index(known), 0.0);
    std::vector<double> east(north.size(), 0.0);
    for (int n = 0; hasKnown && n < known; ++n) at[index(n)] = places[index(n)] - origin;
    for (PolarSight const& sight : sights) {
      effort.step();
      Place wanted = hasSights ? turned(sight) : Place();
      wanted += at[index(sight.from)] - at[index(sight.target)];
      wanted *= weightOf(sight);
      for (auto const& [point, sign] : {std::pair(sight.target, 1.0), std::pair(sight.from, -1.0)}) {
        if (point < known) continue;
        north[index(point - known)] += sign * wanted.real();
        east[index(point - known)] += sign * wanted.imag();
      }
    }
    normalsOfPlaces->solve(north, poll);
    normalsOfPlaces->solve(east, poll);
    for (std::size_t n = 0; n < north.size(); ++n) at[n + index(known)] = Place(north[n], east[n]);
    return at;
  }

  std::vector<Place>& places;
  int known;
  std::vector<PolarSight> const& sights;
  std::vector<int> const& blockOrder;
  Poll const& poll;
  Effort effort;
  std::vector<double> orientations;
  std::unique_ptr<sparse::SparseCholesky> normalsOfPlaces;
  Place origin;
  double error = 0.0;  // mean
};

}  // namespace

std::vector<Place> orientedFit(std::vector<Place> places, int known, int stations,
                               std::vector<PolarSight> const& sights, std::vector<int> const& blockOrder,
                               Poll const& poll) {
  bool const isPossible = known >= 2 && stations > 0 && !sights.empty() && index(known) < places.size();
  if (!isPossible) return {};
  OrientedSystem system(places, known, stations, sights, blockOrder, poll);
  if (!system.orient() || !system.prepare() || !system.placeTurned()) return {};
  for (int round = 0; round < kMostTurns; ++round) {
    system.orientAgain();
    if (system.fits()) return places;
    system.place();
  }
  return {};
}

}  // namespace kvn::detail
