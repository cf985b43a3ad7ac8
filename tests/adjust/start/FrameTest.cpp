// Places that follow from each other: what the search does by itself, since a later step mends what it leaves.
#include "adjust/start/Frame.h"

#include "adjust/plane/GrossErrors.h"

#include <gtest/gtest.h>
#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <random>
#include <set>

namespace {

using kvn::detail::Frame;
using kvn::detail::Locus;
using kvn::detail::NumberedNetwork;
using kvn::detail::Place;

// The place is the mean of what noisy rays say, weighted with the squares of their tolerances, which grow with the
// distance: the least squares of their offsets.
TEST(MeetingPlaces, AreTheWeightedMeanOfNoisyRays) {
  std::mt19937 random(4);
  std::normal_distribution<double> normal;
  for (int run = 0; run < 50; ++run) {
    Place const truth(300.0, 200.0);
    std::vector<Locus> loci;
    Eigen::MatrixXd a(6, 2);
    Eigen::VectorXd l(6);
    for (int i = 0; i < 6; ++i) {
      double const azimuth = 0.9 * i + 0.3 * normal(random);
      double const distance = 60.0 + 70.0 * i;
      Place const origin = truth - std::polar(distance, azimuth);
      double const seen = azimuth + 3e-5 * normal(random);
      loci.push_back(Locus::ray(origin, seen, 0.0));
      // Of an offset to the right of the ray, by the distance.
      Place const right = std::polar(1.0, seen) * Place(0.0, 1.0);
      Place const away = truth - origin;
      a.row(i) << right.real() / distance, right.imag() / distance;
      l(i) = -(right.real() * away.real() + right.imag() * away.imag()) / distance;
    }
    Eigen::VectorXd const step = a.colPivHouseholderQr().solve(l);
    kvn::detail::Meeting const meeting = kvn::detail::meetingPlace(loci, 0.1);
    ASSERT_TRUE(meeting.place);
    // The weights are those about a meet of two rays, some millimetres off in hundred metres.
    EXPECT_NEAR(meeting.place->real(), 300.0 + step(0), 1e-5);
    EXPECT_NEAR(meeting.place->imag(), 200.0 + step(1), 1e-5);
  }
}

/// Points of a plan, each a station, that sees and measures what is wanted.
struct Plan {
  explicit Plan(std::vector<Place> at) : places(std::move(at)) {
    network.points = static_cast<int>(places.size());
    for (int p = 0; p < network.points; ++p) network.stationPoint.push_back(p);
    network.directionStart = {0};
  }

  /// The stations come in their order.
  void see(int from, std::vector<int> const& targets) {
    while (static_cast<int>(network.directionStart.size()) <= from) endStation();
    for (int const to : targets) {
      double const azimuth = std::arg(places[std::size_t(to)] - places[std::size_t(from)]);
      network.directions.push_back({from, to, azimuth - 0.7 * from, 1e-5});
    }
  }
  void measure(int from, int to) {
    network.lines.push_back({from, to, std::abs(places[std::size_t(to)] - places[std::size_t(from)]), 0.003});
  }
  NumberedNetwork const& built() {
    while (static_cast<int>(network.directionStart.size()) <= network.points) endStation();
    network.buildLookups();
    return network;
  }

  void endStation() { network.directionStart.push_back(static_cast<int>(network.directions.size())); }

  std::vector<Place> places;
  NumberedNetwork network;
};

TEST(Frames, PlaceAStationByTheAnglesToThreePoints) {
  Plan plan({{0, 0}, {400, 50}, {380, 420}, {150, 180}});
  plan.see(3, {0, 1, 2});
  std::vector<int> owner(4, -1);
  Frame frame(plan.built(), owner, 0, true);
  for (int p : {0, 1, 2}) frame.place(p, plan.places[std::size_t(p)]);
  frame.grow();
  ASSERT_TRUE(frame.has(3));
  EXPECT_NEAR(std::abs(frame.at(3) - plan.places[3]), 0.0, 1e-6);
  EXPECT_TRUE(frame.isOriented(3));
}

// A frame of directions has any scale, until a distance lies in it: then other distances hold points as well.
TEST(Frames, TakeTheirScaleFromOneDistance) {
  Plan plan({{0, 0}, {400, 50}, {380, 420}, {-100, 300}});
  plan.see(0, {1, 2, 3});
  plan.see(1, {0, 2});
  plan.measure(0, 2);
  plan.measure(1, 3);
  std::vector<int> owner(4, -1);
  Frame frame(plan.built(), owner, 1, false);
  frame.place(0, {0, 0});
  frame.place(1, {1, 0});
  frame.grow();
  ASSERT_TRUE(frame.hasScale());
  for (int p : {1, 2, 3}) {
    ASSERT_TRUE(frame.has(p)) << p;
    EXPECT_NEAR(std::abs(frame.at(p) - frame.at(0)), std::abs(plan.places[std::size_t(p)]), 1e-6) << p;
  }
}

// Two gross errors in a site of four points: which of the observations are wrong is told by their own tests, those of a
// suspect by how well the others say where it should be.
TEST(GrossErrorSearches, NameTwoErrorsInASmallSite) {
  std::mt19937 random(9);
  std::normal_distribution<double> normal;
  int named = 0;
  int accused = 0;
  constexpr int kRuns = 300;
  for (int run = 0; run < kRuns; ++run) {
    Plan plan({{0, 0},
               {400, 50},
               {100 + 30 * normal(random), 300 + 30 * normal(random)},
               {300 + 30 * normal(random), 250 + 30 * normal(random)}});
    plan.network.known = 2;
    for (int s = 0; s < 4; ++s) {
      std::vector<int> targets;
      for (int t = 0; t < 4; ++t) {
        if (t != s) targets.push_back(t);
      }
      plan.see(s, targets);
    }
    for (auto const& [a, b] : {std::pair(0, 2), {1, 2}, {0, 3}, {1, 3}, {2, 3}}) plan.measure(a, b);
    for (auto& d : plan.network.directions) d.value += d.error * normal(random);
    for (auto& l : plan.network.lines) l.value += l.error * normal(random);
    std::size_t const direction = random() % plan.network.directions.size();
    std::size_t const line = random() % plan.network.lines.size();
    plan.network.directions[direction].value += 2e-3;
    plan.network.lines[line].value += 0.5;
    std::set<int> const wrong{int(direction), int(plan.network.directions.size() + line)};
    auto const found = kvn::detail::grossErrors(plan.built(), plan.places, [] { return std::vector<Place>(); });
    ASSERT_TRUE(found);
    std::set<int> suspects;
    for (auto const& error : found->errors) suspects.insert(error.observation);
    if (suspects == wrong) ++named;
    for (int const suspect : suspects) accused += wrong.count(suspect) == 0 ? 1 : 0;
  }
  // Of two errors in one place of so small a site not every pair can be told.
  EXPECT_GE(named, 0.8 * kRuns);
  EXPECT_EQ(accused, 0);
}

}  // namespace
