// What does not fit in a height network.
#include "adjust/heights/HeightAdjustmentData.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/GrossErrors.h"
#include "adjust/plane/NetworkEquations.h"
#include "adjust/plane/Quantiles.h"

#include <algorithm>
#include <cmath>

namespace kvn {
namespace {

using detail::index;

// Suspects that are looked for one after the other.
constexpr int kMostSuspects = 50;
// A median of fewer may be that of gross errors.
constexpr std::size_t kFew = 20;
constexpr double kAllowed = 2.576;  // standard errors, 99 %
constexpr std::size_t kMostLoops = 100;

}  // namespace

double HeightAdjustment::Data::Candidate::test() const { return std::abs(moment) / std::sqrt(kappa); }

/// Everything that something checks.
std::vector<HeightAdjustment::Data::Candidate> HeightAdjustment::Data::candidates() const {
  detail::Effort effort(poll);
  std::vector<Candidate> all;
  all.reserve(network.sights.size() + held.size());
  double a[4] = {};
  int at[4] = {};
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    effort.step();
    if (isOut[s]) continue;
    equationOf(s, a, at);
    double const share = 1.0 - normals->cofactor(a, at, 2) * weightOf(s);
    if (share < kUncheckedShare) continue;
    all.push_back({HeightSuspect::Sight, s, weightOf(s) * residuals[s], share * weightOf(s)});
  }
  for (std::size_t h = 0; h < held.size(); ++h) {
    if (held[h].isFree || !(held[h].kappa > kUncheckedShare * held[h].weight)) continue;
    bool const isKnown = h < knownPoint.size();
    std::size_t const number = isKnown ? knownPoint[h] : h - knownPoint.size();
    HeightSuspect::Kind kind = HeightSuspect::Known;
    if (!isKnown) kind = result.shared[number].isInstrument ? HeightSuspect::Instrument : HeightSuspect::Target;
    all.push_back({kind, number, held[h].moment, held[h].kappa});
  }
  return all;
}

std::size_t HeightAdjustment::Data::heldNumber(Candidate const& candidate) const {
  if (candidate.kind != HeightSuspect::Known) return knownPoint.size() + candidate.number;
  return static_cast<std::size_t>(heldOf[candidate.number]);
}

/// The worst one, then the worst one without it, and so on: each a sight that has no weight from there on, or a height
/// that is free. Where all sights are worse than their a-priori errors, the median of their tests says by how much.
void HeightAdjustment::Data::findSuspects() {
  std::vector<Candidate> all = candidates();
  double const critical = detail::criticalTest(all.size());
  for (int round = 0; round < kMostSuspects && !all.empty(); ++round) {
    std::vector<double> sizes;
    for (Candidate const& candidate : all) {
      if (candidate.kind == HeightSuspect::Sight) sizes.push_back(candidate.test());
    }
    double const common = sizes.size() < kFew ? 1.0 : std::max(1.0, detail::medianOf(sizes) / detail::kNormalMedian);
    Candidate const worst = *std::max_element(
        all.begin(), all.end(), [](Candidate const& x, Candidate const& y) { return x.test() < y.test(); });
    if (!(worst.test() > critical * common)) break;
    HeightSuspect suspect;
    suspect.kind = worst.kind;
    suspect.number = worst.number;
    findAlternatives(suspect, worst, all);
    result.suspects.push_back(std::move(suspect));
    release(worst);
    all = std::vector<Candidate>();  // of the solution before, beside which there is another one
    solve();
    all = candidates();
  }
  for (HeightSuspect& suspect : result.suspects) suspect.gross = grossOf(suspect);
}

/// For each sight P Qv P e: the covariances of the moments along single sights with that along the candidate, which
/// changes the sights by e.
std::vector<double> HeightAdjustment::Data::covariancesWith(Candidate const& candidate) const {
  std::vector<double> change(network.sights.size(), 0.0);
  double a[4] = {};
  int at[4] = {};
  if (candidate.kind == HeightSuspect::Sight) {
    change[candidate.number] = 1.0;
  } else {
    int const unknown = held[heldNumber(candidate)].unknown;
    for (std::size_t s = 0; s < change.size(); ++s) {
      int const count = equationOf(s, a, at);
      for (int r = 0; r < count; ++r) {
        if (at[r] == unknown) change[s] = a[r];
      }
    }
  }
  std::vector<double> right(heldOf.size(), 0.0);
  for (std::size_t s = 0; s < change.size(); ++s) {
    if (change[s] == 0.0 || isOut[s]) continue;
    int const count = equationOf(s, a, at);
    for (int r = 0; r < count; ++r) right[index(at[r])] += a[r] * weightOf(s) * change[s];
  }
  std::vector<double> const x = normals->solved(std::move(right), poll);
  for (std::size_t s = 0; s < change.size(); ++s) {
    int const count = equationOf(s, a, at);
    for (int r = 0; r < count; ++r) change[s] -= a[r] * x[index(at[r])];
    change[s] *= isOut[s] ? 0.0 : weightOf(s);
  }
  return change;
}

void HeightAdjustment::Data::findAlternatives(HeightSuspect& suspect, Candidate const& candidate,
                                              std::vector<Candidate> const& all) const {
  std::vector<double> const ofSights = covariancesWith(candidate);
  std::vector<double> ofHeld(held.size(), 0.0);
  double a[4] = {};
  int at[4] = {};
  for (std::size_t s = 0; s < ofSights.size(); ++s) {
    int const count = equationOf(s, a, at);
    for (int r = 0; r < count; ++r) {
      int const h = heldOf[index(at[r])];
      if (h >= 0) ofHeld[index(h)] += a[r] * ofSights[s];
    }
  }
  for (Candidate const& other : all) {
    if (other.kind == candidate.kind && other.number == candidate.number) continue;
    double const covariance = other.kind == HeightSuspect::Sight ? ofSights[other.number] : ofHeld[heldNumber(other)];
    if (std::abs(covariance) < detail::kInseparable * std::sqrt(candidate.kappa * other.kappa)) continue;
    suspect.alternatives.emplace_back(other.kind, other.number);
  }
}

void HeightAdjustment::Data::release(Candidate const& candidate) {
  if (candidate.kind == HeightSuspect::Sight) {
    isOut[candidate.number] = true;
  } else {
    held[heldNumber(candidate)].isFree = true;
  }
}

double HeightAdjustment::Data::grossOf(HeightSuspect const& suspect) const {
  if (suspect.kind == HeightSuspect::Sight) return -residuals[suspect.number];
  Candidate candidate;
  candidate.kind = suspect.kind;
  candidate.number = suspect.number;
  double const shift = held[heldNumber(candidate)].shift;
  return suspect.kind == HeightSuspect::Known ? -shift : shift;
}

/// Each sight that gave no point its approximate height closes a loop of those that did, or a line between two known
/// points.
void HeightAdjustment::Data::findLoops() {
  // Far more than a job that somebody reads; a network of a million points would climb for hours.
  std::size_t steps = 10000000;
  for (std::size_t s = 0; s < network.sights.size() && steps > 0; ++s) {
    HeightNetwork::Sight const& sight = network.sights[s];
    int from = network.setUps[index(sight.setUp)].station;
    int to = sight.target;
    if (reachedBy[index(from)] == static_cast<int>(s) || reachedBy[index(to)] == static_cast<int>(s)) continue;
    HeightLoop loop;
    loop.misclosure = sight.difference - (approximate[index(to)] - approximate[index(from)]);
    double variance = sight.error * sight.error;
    std::vector<std::size_t> forward = {index(to)};
    std::vector<std::size_t> back = {index(from)};
    auto const climb = [&](int& point, std::vector<std::size_t>& path) {
      HeightNetwork::Sight const& by = network.sights[index(reachedBy[index(point)])];
      int const station = network.setUps[index(by.setUp)].station;
      point = station == point ? by.target : station;
      variance += by.error * by.error;
      path.push_back(index(point));
      --steps;
    };
    while (from != to && steps > 0 && depth[index(from)] + depth[index(to)] > 0) {
      if (depth[index(from)] >= depth[index(to)]) {
        climb(from, back);
      } else {
        climb(to, forward);
      }
    }
    if (steps == 0) break;
    loop.allowed = kAllowed * std::sqrt(variance);
    if (!(std::abs(loop.misclosure) > loop.allowed)) continue;
    if (from == to) forward.pop_back();  // the point where both paths meet
    loop.points.assign(back.rbegin(), back.rend());
    loop.points.insert(loop.points.end(), forward.begin(), forward.end());
    if (from == to) loop.points.push_back(loop.points.front());
    result.loops.push_back(std::move(loop));
  }
  std::sort(result.loops.begin(), result.loops.end(), [](HeightLoop const& x, HeightLoop const& y) {
    return std::abs(x.misclosure) / x.allowed > std::abs(y.misclosure) / y.allowed;
  });
  if (result.loops.size() > kMostLoops) result.loops.resize(kMostLoops);
}

}  // namespace kvn
