#include "adjust/start/FrameFit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvn::detail {
namespace {

constexpr std::size_t kPaired = 8;
// Common points whose distance is less than this share of the extent of all give no turn.
constexpr double kShortBase = 0.05;
// Pairs that agree within this share of the extent serve the final fit.
constexpr double kAgreement = 0.01;

using Pairs = std::vector<std::pair<Place, Place>>;

Similarity through(Place factor, std::pair<Place, Place> const& a, std::pair<Place, Place> const& b) {
  Place const middle = 0.5 * (a.first + b.first);
  return {factor, 0.5 * (a.second + b.second) - factor * middle};
}

double gap(Similarity const& s, std::pair<Place, Place> const& pair) {
  return std::abs(s.factor * pair.first + s.shift - pair.second);
}

/// Least squares over the pairs that agree (Helmert's transformation).
Similarity fitted(Pairs const& pairs, Similarity const& about, double tolerance, bool isRigid) {
  Place from, to;
  double count = 0.0;
  for (auto const& pair : pairs) {
    if (gap(about, pair) > tolerance) continue;
    from += pair.first;
    to += pair.second;
    count += 1.0;
  }
  if (count < 2.0) return about;
  from /= count;
  to /= count;
  Place turned;
  double squares = 0.0;
  for (auto const& pair : pairs) {
    if (gap(about, pair) > tolerance) continue;
    turned += std::conj(pair.first - from) * (pair.second - to);
    squares += std::norm(pair.first - from);
  }
  if (!(squares > 0.0) || turned == Place()) return about;
  Place const factor = isRigid ? turned / std::abs(turned) : turned / squares;
  return {factor, to - factor * from};
}

}  // namespace

std::optional<Similarity> similarityOf(Pairs const& pairs, bool isRigid) {
  double extent = 0.0;
  for (auto const& pair : pairs) extent = std::max(extent, std::abs(pair.second - pairs.front().second));
  Pairs chosen;
  for (std::size_t i = 0; i < std::min(kPaired, pairs.size()); ++i) {
    chosen.push_back(pairs[i * pairs.size() / std::min(kPaired, pairs.size())]);
  }
  std::optional<Similarity> best;
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    for (std::size_t j = i + 1; j < chosen.size(); ++j) {
      Place const before = chosen[j].first - chosen[i].first;
      Place const after = chosen[j].second - chosen[i].second;
      if (std::abs(after) <= kShortBase * extent || before == Place()) continue;
      Place const ratio = after / before;
      Similarity const candidate = through(isRigid ? ratio / std::abs(ratio) : ratio, chosen[i], chosen[j]);
      double doubt = 0.0;
      for (auto const& pair : chosen) doubt += std::log1p(gap(candidate, pair) / (Locus::kTolerance * extent));
      if (doubt >= least) continue;
      least = doubt;
      best = candidate;
    }
  }
  if (!best) return best;
  return fitted(pairs, *best, kAgreement * extent, isRigid);
}

Pairs commonPlaces(Frame const& from, Frame const& to) {
  Pairs pairs;
  for (int const point : from.points()) {
    if (to.has(point)) pairs.emplace_back(from.at(point), to.at(point));
  }
  return pairs;
}

void transfer(Frame const& from, Frame& to, Similarity const& motion) {
  double const turn = std::arg(motion.factor);
  for (int const point : from.points()) to.place(point, motion.factor * from.at(point) + motion.shift);
  for (int const station : from.stations()) to.orient(station, from.orientation(station) + turn);
}

}  // namespace kvn::detail
