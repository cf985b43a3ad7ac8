// Places of all points at once, from sights of known truth with gross errors.
#include "adjust/start/PolarFit.h"

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
        if (from == to || std::abs(places[to] - places[from]) > 170.0) continue;
        Place const seen = (places[to] - places[from]) * std::polar(1.0, -zero);
        sights.push_back({static_cast<int>(from), static_cast<int>(from), static_cast<int>(to), seen, 0.003});
      }
    }
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

}  // namespace
