#include "adjust/start/PolarFit.h"

#include "adjust/linalg/Index.h"
#include "adjust/linalg/SparseCholesky.h"
#include "adjust/plane/NetworkEquations.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kvn::detail {
namespace {

// A pivot below this share of its diagonal element is no more than rounding has left.
constexpr double kLostPivot = 1e-12;
constexpr double kRidge = 1e-14;
constexpr double kFreeMove = 1e-6;
// Residuals beyond so many of their median call for another round with other weights, and moves beyond as many errors.
constexpr double kMisfit = 20.0;
constexpr int kMostRounds = 8;
// A station whose fitted scale is off by more than this share is dropped: the equations of a group that is attached to
// one known point are fitted best by shrinking the group to that point.
constexpr double kScale = 0.1;

class PolarSystem {
 public:
  PolarSystem(std::vector<Place>& all, int knownPoints, int stationCount, std::vector<PolarSight> const& allSights,
              std::vector<int> const& blockOrder, Poll const& call)
      : places(all),
        known(knownPoints),
        sights(allSights),
        poll(call),
        cholesky(blocks(stationCount), cliques(), blockOrder, call),
        turns(index(stationCount)),
        right(index(cholesky.unknowns())) {
    for (int n = 0; n < known; ++n) origin += places[index(n)] / static_cast<double>(known);
    auto const count = static_cast<double>(sights.size());
    for (PolarSight const& sight : sights) {
      length += std::abs(sight.seen) / count;
      error += sight.error / count;
    }
  }

  /// One round, with weights besides those of the errors. Returns the largest move of a place, metres.
  double solve(std::vector<double> const& weights) {
    isFree.clear();
    build(weights, 0.0);
    if (!cholesky.factor({0.0, kLostPivot}, poll)) {
      build(weights, kRidge);
      if (!cholesky.factor({}, poll)) {
        isFree.assign(index(cholesky.unknowns()), true);
        return 0.0;
      }
      findFree();
    }
    std::vector<double> solution = right;
    cholesky.solve(solution, poll);
    double largestMove = 0.0;
    for (std::size_t n = index(known); n < places.size(); ++n) {
      Place const before = std::exchange(places[n], origin + Place(solution[2 * n], solution[2 * n + 1]));
      largestMove = std::max(largestMove, std::abs(places[n] - before));
    }
    for (std::size_t s = 0; s < turns.size(); ++s) {
      std::size_t const at = 2 * (places.size() + s);
      turns[s] = Place(solution[at], solution[at + 1]) / length;
    }
    return largestMove;
  }

  /// Of each sight, over its a-priori error.
  std::vector<double> residuals() const {
    std::vector<double> result;
    result.reserve(sights.size());
    for (PolarSight const& sight : sights) {
      Place const across = places[index(sight.target)] - places[index(sight.from)];
      result.push_back(std::abs(across - sight.seen * turns[index(sight.station)]) / sight.error);
    }
    return result;
  }

  /// Takes the sights of stations that are scaled out of the system: their weights become 0. False when there are none.
  bool dropScaled(std::vector<double>& weights) const {
    bool hasDropped = false;
    for (std::size_t i = 0; i < sights.size(); ++i) {
      bool const isScaled = !(std::abs(std::abs(turns[index(sights[i].station)]) - 1.0) <= kScale);
      if (!isScaled || weights[i] == 0.0) continue;
      weights[i] = 0.0;
      hasDropped = true;
    }
    return hasDropped;
  }

  double meanError() const { return error; }

  void forgetFree() {
    if (isFree.empty()) return;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (std::size_t n = index(known); n < places.size(); ++n) {
      if (isFree[2 * n] || isFree[2 * n + 1]) places[n] = Place(nan, nan);
    }
  }

 private:
  int blockOf(PolarSight const& sight) const { return static_cast<int>(places.size()) + sight.station; }

  std::vector<int> blocks(int stationCount) const { return std::vector<int>(places.size() + index(stationCount), 2); }

  std::vector<sparse::Clique> cliques() const {
    std::vector<sparse::Clique> result;
    result.reserve(sights.size());
    for (PolarSight const& sight : sights) result.push_back({sight.from, sight.target, blockOf(sight)});
    return result;
  }

  void build(std::vector<double> const& weights, double ridge) {
    cholesky.clear();
    std::fill(right.begin(), right.end(), 0.0);
    Effort effort(poll);
    for (std::size_t i = 0; i < sights.size(); ++i) {
      effort.step();
      PolarSight const& sight = sights[i];
      double const weight = weights[i] * (error / sight.error) * (error / sight.error);
      Place const seen = sight.seen / length;
      Place misclosure;
      int at[4];
      double a[4];
      int count = 0;
      for (auto const& [point, sign] : {std::pair(sight.target, 1.0), std::pair(sight.from, -1.0)}) {
        if (point < known) {
          misclosure += sign * (places[index(point)] - origin);
          continue;
        }
        at[count] = 2 * point;
        a[count++] = sign;
      }
      int const turn = 2 * blockOf(sight);
      add(a, at, count, turn, {-seen.real(), seen.imag()}, weight, misclosure.real());
      for (int k = 0; k < count; ++k) ++at[k];
      add(a, at, count, turn, {-seen.imag(), -seen.real()}, weight, misclosure.imag());
    }
    for (int i = 0; i < 2 * known; ++i) cholesky.add(i, i, 1.0);  // no sight moves a known point
    for (int i = 0; ridge > 0.0 && i < cholesky.unknowns(); ++i) {
      cholesky.add(i, i, ridge * std::max(1.0, cholesky.diagonal(i)));
    }
  }

  void add(double* a, int* at, int count, int turn, Place const& factors, double weight, double misclosure) {
    a[count] = factors.real();
    at[count] = turn;
    a[count + 1] = factors.imag();
    at[count + 1] = turn + 1;
    cholesky.addEquation(a, at, count + 2, weight);
    for (int k = 0; k < count + 2; ++k) right[index(at[k])] -= weight * a[k] * misclosure;
  }

  void findFree() {
    std::vector<double> const motion = cholesky.freeVectors(kLostPivot, 1).front();
    double largest = 0.0;
    for (double const x : motion) largest = std::max(largest, std::abs(x));
    isFree.assign(motion.size(), false);
    for (std::size_t i = 0; i < motion.size(); ++i) isFree[i] = std::abs(motion[i]) > kFreeMove * largest;
  }

  std::vector<Place>& places;
  int known;
  std::vector<PolarSight> const& sights;
  Poll const& poll;
  sparse::SparseCholesky cholesky;
  std::vector<Place> turns;
  std::vector<double> right;
  std::vector<bool> isFree;
  Place origin;
  double length = 0.0;  // means: with them weights and factors are near 1
  double error = 0.0;
};

}  // namespace

std::vector<Place> polarFit(std::vector<Place> places, int known, int stations, std::vector<PolarSight> const& sights,
                            std::vector<int> const& blockOrder, Poll const& poll) {
  double const nan = std::numeric_limits<double>::quiet_NaN();
  if (sights.empty()) {
    std::fill(places.begin() + known, places.end(), Place(nan, nan));
    return places;
  }
  PolarSystem system(places, known, stations, sights, blockOrder, poll);
  std::vector<double> weights(sights.size(), 1.0);
  system.solve(weights);
  for (int round = 1; round < kMostRounds; ++round) {
    std::vector<double> const residuals = system.residuals();
    double const scale = std::max(1.0, medianOf(residuals));
    bool const isGood = std::all_of(residuals.begin(), residuals.end(), [&](double r) { return r <= kMisfit * scale; });
    if (isGood) break;
    for (std::size_t i = 0; i < weights.size(); ++i) {
      double const relative = residuals[i] / (3.0 * scale);
      weights[i] = 1.0 / (1.0 + relative * relative);
    }
    if (system.solve(weights) < kMisfit * scale * system.meanError()) break;
  }
  while (system.dropScaled(weights)) system.solve(weights);
  system.forgetFree();
  return places;
}

double largestMisfit(std::vector<Place> const& places, int stations, std::vector<PolarSight> const& sights,
                     Poll const& poll) {
  Effort effort(poll);
  std::vector<Place> turned(index(stations));
  for (PolarSight const& sight : sights) {
    effort.step();
    turned[index(sight.station)] +=
        (places[index(sight.target)] - places[index(sight.from)]) * std::conj(sight.seen) / std::norm(sight.seen);
  }
  double largest = 0.0;
  for (PolarSight const& sight : sights) {
    effort.step();
    Place const turn = turned[index(sight.station)] / std::abs(turned[index(sight.station)]);
    Place const across = places[index(sight.target)] - places[index(sight.from)];
    double const misfit = std::abs(across / sight.seen - turn);
    if (!std::isfinite(misfit)) return std::numeric_limits<double>::infinity();
    largest = std::max(largest, misfit);
  }
  return largest;
}

}  // namespace kvn::detail
