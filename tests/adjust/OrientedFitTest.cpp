// Places by orientations first, against the truth and against the fit with everything at once.
#include "adjust/start/OrientedFit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using kvn::detail::orientedFit;
using kvn::detail::Place;
using kvn::detail::polarFit;
using kvn::detail::PolarSight;

constexpr double kSecond = 4.848e-6;

/// Points that each sight those within reach, 2" and 3 mm; the known ones come first.
struct SightedPoints {
  SightedPoints(std::vector<Place> const& all, int knownPoints, double reach, unsigned seed)
      : known(knownPoints), random(seed) {
    std::uniform_real_distribution<double> angle(-3.0, 3.0);
    std::normal_distribution<double> normal;
    places = all;
    for (std::size_t from = 0; from < places.size(); ++from) {
      double const zero = angle(random);
      for (std::size_t to = 0; to < places.size(); ++to) {
        double const distance = std::abs(places[to] - places[from]);
        if (from == to || distance > reach) continue;
        double const azimuth = std::arg(places[to] - places[from]) - zero + 2.0 * kSecond * normal(random);
        Place const seen = std::polar(distance + 0.003 * normal(random), azimuth);
        sights.push_back({static_cast<int>(from), static_cast<int>(from), static_cast<int>(to), seen, 0.003});
      }
    }
  }

  std::vector<Place> start() const {
    std::vector<Place> start = places;
    std::fill(start.begin() + known, start.end(), Place());
    return start;
  }
  int stations() const { return static_cast<int>(places.size()); }
  std::vector<Place> fit() const { return orientedFit(start(), known, stations(), sights, {}); }

  int known;
  std::mt19937 random;
  std::vector<Place> places;
  std::vector<PolarSight> sights;
};

double largestDifference(std::vector<Place> const& a, std::vector<Place> const& b) {
  double largest = 0.0;
  for (std::size_t n = 0; n < a.size(); ++n) largest = std::max(largest, std::abs(a[n] - b[n]));
  return largest;
}

/// With known points in three corners, which do not see each other.
SightedPoints grid(unsigned seed) {
  constexpr std::size_t kSide = 14;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> offset(-20.0, 20.0);
  std::vector<Place> places(kSide * kSide);
  for (std::size_t cell = 0; cell < places.size(); ++cell) {
    std::size_t const row = cell / kSide;
    double const north = 3e6 + 100.0 * static_cast<double>(row) + offset(random);
    places[cell] = Place(north, 5e5 + 100.0 * static_cast<double>(cell - kSide * row) + offset(random));
  }
  std::swap(places[1], places[kSide - 1]);
  std::swap(places[2], places[kSide * (kSide - 1)]);
  return SightedPoints(places, 3, 170.0, seed);
}

/// 4,000 legs along a line that bends, every 50th point known.
SightedPoints chain(unsigned seed) {
  std::vector<Place> places = {Place(3e6, 5e5)};
  for (int i = 0; i < 4000; ++i) places.push_back(places.back() + std::polar(100.0, 0.3 * std::sin(i * 0.01)));
  int known = 0;
  for (std::size_t i = 0; i < places.size(); i += 50) std::swap(places[std::size_t(known++)], places[i]);
  return SightedPoints(places, known, 150.0, seed);
}

TEST(OrientedFit, PlacesWhatIsSeenBothWaysAsWellAsTheFitOfEverythingAtOnce) {
  for (unsigned const seed : {1U, 2U, 3U}) {
    SightedPoints const network = grid(seed);
    std::vector<Place> const fit = network.fit();
    ASSERT_EQ(fit.size(), network.places.size()) << "seed " << seed;
    std::vector<Place> const full = polarFit(network.start(), network.known, network.stations(), network.sights, {});
    // 14 sights of 3 mm and 1 mm across, and orientations of some seconds over 1.3 km.
    EXPECT_LT(largestDifference(fit, network.places), 0.05) << "seed " << seed;
    EXPECT_LT(largestDifference(fit, full), 0.05) << "seed " << seed;
    for (int n = 0; n < network.known; ++n) EXPECT_EQ(fit[std::size_t(n)], network.places[std::size_t(n)]);
  }
}

TEST(OrientedFit, FollowsAChainWhoseOrientationsDriftByMinutes) {
  // By 2" √2 √4000, 3', from one end to the other. The middle between two known points is known by 2" √2 100 m √(50³ /
  // 48), 7 cm, across, and by 3 mm √(50 / 4) along.
  SightedPoints const network = chain(5);
  std::vector<Place> const fit = network.fit();
  ASSERT_EQ(fit.size(), network.places.size());
  EXPECT_LT(largestDifference(fit, network.places), 0.35);
}

TEST(OrientedFit, GivesNothingWhereItCannotJudge) {
  SightedPoints gross = grid(1);
  gross.sights[100].seen *= std::polar(1.0, 0.01);  // 1 m
  EXPECT_TRUE(gross.fit().empty());

  SightedPoints oneWay = grid(1);
  oneWay.sights.erase(std::remove_if(oneWay.sights.begin(), oneWay.sights.end(),
                                     [](PolarSight const& sight) { return sight.target < sight.from; }),
                      oneWay.sights.end());
  EXPECT_TRUE(oneWay.fit().empty());

  SightedPoints alone = grid(1);
  EXPECT_TRUE(orientedFit(alone.start(), 1, alone.stations(), alone.sights, {}).empty());
  EXPECT_TRUE(orientedFit(alone.start(), alone.known, 0, {}, {}).empty());

  SightedPoints scaled = grid(1);  // known points of another size of the world
  for (int n = 0; n < scaled.known; ++n) scaled.places[std::size_t(n)] *= 1.2;
  EXPECT_TRUE(scaled.fit().empty());
}

}  // namespace
