// Where loci meet: a robust decision between candidates.
#include "adjust/plane/CommonAngle.h"
#include "adjust/start/Frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvn::detail {
namespace {

// Candidates come from the pairs of this many loci, spread over all of them; all loci judge them.
constexpr std::size_t kPairedLoci = 10;
constexpr std::size_t kJudges = 40;
// Offsets up to this many tolerances are agreement.
constexpr double kAgreement = 10.0;
// Two candidates nearer than this share of their distance to the placed points are one.
constexpr double kSamePlace = 0.005;
// The place is ambiguous if the worst offset of another candidate is at most kRival times that of the best one, or
// kAsGood tolerances, which is more than the errors of good observations.
constexpr double kRival = 5.0;
constexpr double kAsGood = 0.2;
// Loci that cross at less than this sine do not tell where: they are the same line as far as the errors allow.
constexpr double kTouching = 5e-4;
constexpr double kSharp = 0.1;
// Of two places the nearer one to the hint is taken if it is nearer than this share of the other one's distance.
constexpr double kClearlyNearer = 0.8;

struct Candidate {
  Place place;
  double crossing;   ///< sine of the angle between the two loci
  double doubt;      ///< grows with the offsets, ever more slowly, so that a gross error has little to say
  double worst;      ///< offset, in tolerances
  std::size_t pair;  ///< number of the pair of loci
};

bool agrees(Locus const& locus, Place place) { return locus.offset(place) <= kAgreement * locus.tolerance(place); }

Candidate judged(Place place, double crossing, std::size_t pair, std::vector<Locus> const& judges) {
  Candidate candidate{place, crossing, 0.0, 0.0, pair};
  for (Locus const& locus : judges) {
    double const offset = locus.offset(place) / std::max(locus.tolerance(place), 1e-12);
    candidate.doubt += std::log1p(offset);
    candidate.worst = std::max(candidate.worst, offset);
  }
  return candidate;
}

void addMeets(Locus const& first, Locus const& second, std::size_t pair, std::vector<Locus> const& judges,
              std::vector<Candidate>& candidates) {
  for (Place const place : intersections(first, second)) {
    if (!std::isfinite(place.real()) || !std::isfinite(place.imag())) continue;
    if (!agrees(first, place) || !agrees(second, place)) continue;
    double const crossing = std::abs(cross(first.tangent(place), second.tangent(place)));
    if (crossing >= kTouching) candidates.push_back(judged(place, crossing, pair, judges));
  }
}

double nearestDistance(std::vector<Locus> const& loci, Place place) {
  double nearest = loci.front().nearest(place);
  for (Locus const& locus : loci) nearest = std::min(nearest, locus.nearest(place));
  return nearest;
}

/// One step of least squares over the loci that agree: a mean of what they say is better than the meet of two.
Place improved(Place place, std::vector<Locus> const& loci) {
  double xx = 0.0, xy = 0.0, yy = 0.0, x = 0.0, y = 0.0;
  for (Locus const& locus : loci) {
    if (!agrees(locus, place)) continue;
    Place const step = locus.correction(place);
    Place const normal = locus.tangent(place) * Place(0.0, 1.0);
    double const weight = 1.0 / std::pow(std::max(locus.tolerance(place), 1e-12), 2);
    double const along = step.real() * normal.real() + step.imag() * normal.imag();
    xx += weight * normal.real() * normal.real();
    xy += weight * normal.real() * normal.imag();
    yy += weight * normal.imag() * normal.imag();
    x += weight * along * normal.real();
    y += weight * along * normal.imag();
  }
  double const determinant = xx * yy - xy * xy;
  if (!(determinant > 1e-8 * (xx + yy) * (xx + yy))) return place;
  return place + Place(x * yy - y * xy, y * xx - x * xy) / determinant;
}

Place settled(Candidate const& candidate, double apart, std::vector<Locus> const& judges) {
  Place const mean = improved(candidate.place, judges);
  return std::abs(mean - candidate.place) < apart ? mean : candidate.place;
}

}  // namespace

Meeting meetingPlace(std::vector<Locus> const& loci, double sharpness, Place hint) {
  std::vector<Locus> const paired = spread(loci, kPairedLoci);
  std::vector<Locus> const judges = spread(loci, kJudges);
  std::vector<Candidate> candidates;
  for (std::size_t i = 0; i < paired.size(); ++i) {
    for (std::size_t j = i + 1; j < paired.size(); ++j) {
      addMeets(paired[i], paired[j], i * paired.size() + j, judges, candidates);
    }
  }
  Candidate const* best = nullptr;
  for (Candidate const& candidate : candidates) {
    if (candidate.crossing < sharpness) continue;
    if (best == nullptr || candidate.doubt < best->doubt) best = &candidate;
  }
  if (best == nullptr) return {};
  double const apart = kSamePlace * nearestDistance(judges, best->place);
  std::vector<Candidate const*> rivals;
  double const rival = std::min(kAgreement, std::max(kAsGood, kRival * best->worst));
  for (Candidate const& other : candidates) {
    if (&other == best || other.worst > rival) continue;
    // The two meets of one pair are two places, however near they are where the pair crosses at a small angle. Where
    // the observations contradict each other, the meets of other pairs are not other solutions.
    bool const isApart = std::abs(other.place - best->place) > apart;
    bool const isTwin = other.pair == best->pair && (isApart || best->crossing < kSharp);
    if (isTwin || (isApart && best->worst <= 1.0)) rivals.push_back(&other);
  }
  if (rivals.empty()) return {settled(*best, apart, judges), false};
  if (!hasPlace(hint)) return {std::nullopt, true};
  rivals.push_back(best);
  auto const isNearer = [hint](Candidate const* a, Candidate const* b) {
    return std::abs(a->place - hint) < std::abs(b->place - hint);
  };
  Candidate const& nearest = **std::min_element(rivals.begin(), rivals.end(), isNearer);
  double const near = std::abs(nearest.place - hint);
  for (Candidate const* other : rivals) {
    // Meets of other pairs of loci at the same place are no other choice.
    bool const isElsewhere = std::abs(other->place - nearest.place) > apart;
    if (isElsewhere && near > kClearlyNearer * std::abs(other->place - hint)) return {std::nullopt, true};
  }
  return {settled(nearest, apart, judges), false};
}

}  // namespace kvn::detail
