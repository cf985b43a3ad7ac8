// Places of all points at once, from sights of known truth.
#include "adjust/detail/PolarFit.h"

#include <gtest/gtest.h>
#include <cmath>
#include <random>

namespace {

using kvn::detail::Place;
using kvn::detail::PolarSight;

constexpr int kSide = 12;
constexpr int kKnown = 3;

/// A grid of stations; the known points come first and stand in corners that do not see each other.
struct Truth {
  explicit Truth(unsigned seed) : random(seed) {
    std::vector<int> cells{0, kSide - 1, kSide * (kSide - 1)};
    for (int cell = 1; cell < kSide * kSide; ++cell) {
      if (cell != cells[1] && cell != cells[2]) cells.push_back(cell);
    }
    std::uniform_real_distribution<double> offset(-20.0, 20.0);
    for (int const cell : cells) {
      int const row = cell / kSide;
      double const north = 3e6 + 100.0 * row + offset(random);
      places.emplace_back(north, 5e5 + 100.0 * (cell % kSide) + offset(random));
    }
    for (std::size_t from = 0; from < places.size(); ++from) {
      double const zero = offset(random);
      for (std::size_t to = 0; to < places.size(); ++to) {
        if (from != to && std::abs(places[to] - places[from]) < 170.0) sight(from, to, zero);
      }
    }
  }

  void sight(std::size_t from, std::size_t to, double zero) {
    Place const seen = (places[to] - places[from]) * std::polar(1.0, -zero);
    sights.push_back({static_cast<int>(from), static_cast<int>(from), static_cast<int>(to), seen, 0.003});
  }

  std::vector<Place> fit() const {
    std::vector<Place> start = places;
    for (std::size_t n = kKnown; n < start.size(); ++n) start[n] = Place();
    return polarFit(start, kKnown, static_cast<int>(places.size()), sights, {});
  }

  std::mt19937 random;
  std::vector<Place> places;
  std::vector<PolarSight> sights;
};

TEST(PolarFit, FindsAllPlacesWithoutApproximateOnes) {
  Truth const truth(1);
  std::vector<Place> const places = truth.fit();
  // Coordinates of 3e6 m carry 5e-10 m; the chain of scales from corner to corner takes three digits more.
  for (std::size_t n = 0; n < places.size(); ++n) EXPECT_LT(std::abs(places[n] - truth.places[n]), 1e-6) << n;
  EXPECT_LT(largestMisfit(places, static_cast<int>(places.size()), truth.sights), 1e-8);
}

TEST(PolarFit, FollowsNoGrossErrors) {
  for (unsigned const seed : {1U, 2U, 3U, 4U, 5U}) {
    Truth truth(seed);
    for (int i = 0; i < 8; ++i) {  // of about 1,000 sights
      PolarSight& sight = truth.sights[truth.random() % truth.sights.size()];
      sight.seen *= i % 2 == 0 ? std::polar(1.0, 1.0 + i) : Place(3.0, 0.0);
    }
    std::vector<Place> const places = truth.fit();
    // What is left of the weight of a wrong sight of 100 m, (3 mm / 100 m)², moves a place by some micrometres.
    for (std::size_t n = 0; n < places.size(); ++n) {
      EXPECT_LT(std::abs(places[n] - truth.places[n]), 1e-3) << "seed " << seed << ", point " << n;
    }
    EXPECT_GT(largestMisfit(truth.places, static_cast<int>(places.size()), truth.sights), 0.5);
  }
}

TEST(PolarFit, LeavesOutWhatIsNotDetermined) {
  Truth truth(1);
  auto const first = static_cast<int>(truth.places.size());
  // A pair of stations that see each other and nothing else, a point that nobody sees, and one that a station places.
  for (int i = 0; i < 4; ++i) truth.places.emplace_back(3e6 - 200.0, 5e5 + 90.0 * i);
  for (auto const& [from, to] : {std::pair(first, first + 1), std::pair(first + 1, first)}) {
    truth.sight(static_cast<std::size_t>(from), static_cast<std::size_t>(to), 0.3);
  }
  for (std::size_t i = 0; i < truth.sights.size(); ++i) {
    PolarSight const& sight = truth.sights[i];
    if (sight.station != 5) continue;
    Place const turn = sight.seen / (truth.places[static_cast<std::size_t>(sight.target)] - truth.places[5]);
    truth.sights.push_back({5, 5, first + 3, (truth.places.back() - truth.places[5]) * turn, 0.003});
    break;
  }
  std::vector<Place> const places = truth.fit();
  for (int n = 0; n < first + 4; ++n) {
    auto const at = static_cast<std::size_t>(n);
    bool const isFree = n >= first && n < first + 3;
    EXPECT_EQ(std::isnan(places[at].real()), isFree) << n;
    if (isFree) continue;
    EXPECT_LT(std::abs(places[at] - truth.places[at]), 1e-3) << n;
  }
}

// Without noise the turn and the scale of such a group are free; with noise the sights are met best when it shrinks
// into the point that it hangs on.
TEST(PolarFit, LeavesOutAGroupThatHangsOnOnePoint) {
  Truth truth(1);
  std::normal_distribution<double> noise(0.0, 0.003);
  auto const first = truth.places.size();
  for (int i = 0; i < 9; ++i) {
    int const row = i / 3;
    truth.places.emplace_back(3e6 - 150.0 - 100.0 * row, 5e5 - 150.0 - 100.0 * (i % 3));
  }
  for (std::size_t from = first; from < truth.places.size(); ++from) {
    for (std::size_t to = first; to < truth.places.size(); ++to) {
      if (from != to && std::abs(truth.places[to] - truth.places[from]) < 170.0) truth.sight(from, to, 0.1);
    }
    if (from < first + 2) truth.sight(from, 5, 0.1);
  }
  for (PolarSight& sight : truth.sights) sight.seen += Place(noise(truth.random), noise(truth.random));
  std::vector<Place> const places = truth.fit();
  for (std::size_t n = 0; n < places.size(); ++n) EXPECT_EQ(std::isnan(places[n].real()), n >= first) << n;
}

}  // namespace
