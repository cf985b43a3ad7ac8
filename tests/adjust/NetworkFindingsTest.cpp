// Gross errors and points that nothing holds, as they are found and told.
#include "adjust/Networks.h"
#include "adjust/plane/LooseGroups.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <Eigen/Dense>
#include <cmath>

namespace {

using kvn::LooseMotion;
using kvn::Network;
using kvn::TraverseAdjust;

using utils::kPi;

test::SyntheticNetwork redundant(unsigned seed) {
  std::mt19937 random(seed);
  test::NetworkPlan plan;
  plan.points = 8 + static_cast<int>(seed % 12);
  plan.known = 3;
  plan.sights = 6;
  plan.directionNoise = 2.0;
  plan.distanceFixed = 0.003;
  return test::makeNetwork(plan, random);
}

/// The suspects of a network, sorted: "direction P1 P2".
std::vector<std::string> suspectsOf(Network const& network) {
  TraverseAdjust adjustment(2.0, 0.003, 0.0, true);
  adjustment.readAlgorithmData(test::loaded(network));
  adjustment.calculateApproximate();
  adjustment.checkObservations();
  std::vector<std::string> names;
  for (auto const& s : adjustment.getSuspects()) {
    // A distance from both ends is one observation, whichever end it is told from.
    std::string const ends = s.isDirection || s.from < s.to ? s.from + " " + s.to : s.to + " " + s.from;
    names.push_back((s.isDirection ? "direction " : "distance ") + ends);
  }
  std::sort(names.begin(), names.end());
  return names;
}

TEST(GrossErrors, GoodObservationsAreNotSuspectedWhereTheAPrioriErrorsAreTooSmall) {
  // Three times as large as a surveyor believes: of 2,964 directions some 280 are off by more than five of his errors.
  std::mt19937 random(3);
  test::NetworkPlan plan;
  plan.directionNoise = 6.0;
  plan.distanceFixed = 0.009;
  Network network = test::makeGrid(20, plan, random).network;
  EXPECT_THAT(suspectsOf(network), testing::IsEmpty());
  kvn::NetworkDataInfo& wrong = network.lines[1000];
  wrong.horizontal_angle = std::fmod(wrong.horizontal_angle + 200.0 / test::kSecondsPerRadian, 2.0 * kPi);
  EXPECT_THAT(suspectsOf(network), testing::ElementsAre("direction " + wrong.start_name + " " + wrong.end_name));
}

TEST(GrossErrors, TheWrongObservationIsTheSuspect) {
  int right = 0;
  int networks = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    Network network = redundant(seed).network;
    std::mt19937 random(seed);
    auto& lines = network.lines;
    std::size_t const i = random() % lines.size();
    std::vector<std::string> expected;
    if (seed % 3 == 0) {
      lines[i].horizontal_angle = std::fmod(lines[i].horizontal_angle + kPi / 180.0, 2.0 * kPi);  // 1 degree
      expected = {"direction " + lines[i].start_name + " " + lines[i].end_name};
    } else if (seed % 3 == 1) {
      // The mean of both ways is 5 m off, or the only way 10 m.
      lines[i].horizontal_distance += 10.0;
      auto const ends = std::minmax(lines[i].start_name, lines[i].end_name);
      expected = {"distance " + ends.first + " " + ends.second};
      bool const isFixed = ends.first < "P3" && ends.second < "P3" && ends.first.size() + ends.second.size() == 4;
      if (isFixed) continue;  // between known points: no part of the adjustment
    } else {
      // Two targets of a station changed places.
      std::size_t const j = i + 1 < lines.size() && lines[i + 1].start_name == lines[i].start_name ? i + 1 : i - 1;
      std::swap(lines[i].horizontal_angle, lines[j].horizontal_angle);
      for (std::size_t const k : {i, j})
        expected.push_back("direction " + lines[k].start_name + " " + lines[k].end_name);
      std::sort(expected.begin(), expected.end());
    }
    ++networks;
    right += suspectsOf(network) == expected ? 1 : 0;
  }
  EXPECT_GT(networks, 50);
  // Two exchanged targets of a station with few others cannot always be told from other pairs.
  EXPECT_GE(right, networks * 95 / 100);
}

TEST(GrossErrors, AreToldWithTheirSizeBeforeTheIteration) {
  test::Host host;
  Network network = redundant(4).network;
  auto const bad =
      std::find_if(network.lines.begin(), network.lines.end(), [](auto const& l) { return l.end_name == "P7"; });
  bad->horizontal_angle += 0.01;  // 2062.6"
  TraverseAdjust adjustment(2.0, 0.003, 0.0, true);
  adjustment.readAlgorithmData(test::loaded(network));
  adjustment.calculateAdjust();
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].second, kvn::Warning);
  EXPECT_THAT(host.messages[0].first.toStdString(),
              testing::MatchesRegex(
                  "Suspected gross errors: direction from P[0-9]+ to P7, observed 20[5-7][0-9]\\.[0-9]\" too large"));
}

// ---- What nothing holds.

TEST(LooseMotions, AreFoundInTheFactorsOfTheNormalEquations) {
  // P lies on the line from K1 to K2 and is seen from both and sees both: it can move along the line, which has the
  // azimuth atan2(60, 80).
  double const off = 1e-8;
  Network network;
  network.knownPoints = {{"K1", 0.0, 0.0, 0.0}, {"K2", 80.0, 60.0, 0.0}};
  network.lines = {test::line("K1", "K2", 0.0, 0.0), test::line("K1", "P", off, 0.0),
                   test::line("K2", "K1", off, 0.0), test::line("K2", "P", 0.0, 0.0),
                   test::line("P", "K1", 0.0, 0.0),  test::line("P", "K2", kPi - 2.0 * off, 0.0)};
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network));
  EXPECT_EQ(test::algorithmFailureOf([&] { adjustment.calculateAdjust(); }), "Data error|Calculate failed|-1");
  ASSERT_EQ(adjustment.getLooseMotions().size(), 1U);
  LooseMotion const& motion = adjustment.getLooseMotions().front();
  EXPECT_EQ(motion.kind, LooseMotion::Along);
  EXPECT_THAT(motion.names, testing::ElementsAre("P"));
  EXPECT_NEAR(motion.azimuth, std::atan2(60.0, 80.0), 1e-6);  // P is half a micrometre beside the line
}

TEST(LooseMotions, AreToldApart) {
  // Known points K (0, 0) and L (0, 100), others P, Q and R, held by distances alone. A triangle that hangs on K turns
  // about it; a point with one distance moves across the line to L, from (0, 100) to (30, 140) at the azimuth
  // atan2(40, 30) = 53.13 degrees, that is along 143.13; a point with none moves anywhere, and is its own group.
  kvn::detail::NumberedNetwork network;
  network.points = 6;
  network.known = 2;
  network.directionStart = {0};
  network.lines = {{0, 2, 50.0}, {0, 3, 50.0}, {2, 3, 40.0}, {1, 4, 50.0}};
  network.buildLookups();
  kvn::detail::NetworkState state;
  state.places = {{0.0, 0.0}, {0.0, 100.0}, {50.0, 0.0}, {34.0, 36.66}, {30.0, 140.0}, {70.0, 70.0}};
  auto const groups = kvn::detail::looseGroups(network, state);
  ASSERT_EQ(groups.size(), 3U);
  EXPECT_THAT(groups[0].points, testing::ElementsAre(2, 3));
  EXPECT_EQ(groups[0].motion, LooseMotion::Turn);
  EXPECT_LT(std::abs(groups[0].centre), 1e-6);
  EXPECT_THAT(groups[1].points, testing::ElementsAre(4));
  EXPECT_EQ(groups[1].motion, LooseMotion::Along);
  EXPECT_NEAR(groups[1].azimuth, std::atan2(40.0, 30.0) + kPi / 2.0, 1e-9);
  EXPECT_THAT(groups[2].points, testing::ElementsAre(5));
  EXPECT_EQ(groups[2].motion, LooseMotion::Anywhere);
}

TEST(LooseMotions, AnObservationBetweenPointsAtOnePlaceIsNamed) {
  test::Host host;
  Network network;
  network.knownPoints = {{"K1", 0.0, 0.0, 0.0}, {"K2", 0.0, 100.0, 0.0}, {"K3", 0.0, 0.0, 0.0}};
  network.lines = {test::line("K1", "K2", kPi / 2.0, 0.0), test::line("K1", "K3", 0.0, 0.0),
                   test::line("K1", "P", kPi / 4.0, 70.71)};
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network));
  EXPECT_EQ(test::algorithmFailureOf([&] { adjustment.calculateAdjust(); }), "Data error|Calculate failed|-1");
  EXPECT_THAT(host.messages, testing::Contains(testing::Pair(
                                 QString("Observations between points at one place: K1, K3"), kvn::Error)));
}

TEST(LooseMotions, ALongTraverseIsHeld) {
  // The far end of 1500 legs is held by hardly anything that a single number could show, and held all the same.
  Network network;
  network.knownPoints = {{"P0", 0.0, 0.0, 0.0}, {"P1", 0.0, 100.0, 0.0}};
  for (int i = 1; i < 1500; ++i) {
    std::string const here = "P" + std::to_string(i);
    network.lines.push_back(test::line(here, "P" + std::to_string(i - 1), 0.0, 100.0));
    network.lines.push_back(test::line(here, "P" + std::to_string(i + 1), kPi + (i % 2 == 0 ? 0.3 : -0.3), 100.0));
  }
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network));
  adjustment.calculateApproximate();
  adjustment.checkDetermination();
  EXPECT_TRUE(adjustment.getLooseMotions().empty());
}

TEST(GrossErrors, AreNamedUpToTwentyAndTheRestCounted) {
  QString const text = worded(std::vector<kvn::SuspectObservation>(23));
  EXPECT_EQ(text.count(';'), 19);
  EXPECT_TRUE(text.endsWith(" and 3 more")) << text.toStdString();
}

TEST(LooseMotions, AreWordedForTheSurveyor) {
  LooseMotion turn;
  turn.kind = LooseMotion::Turn;
  turn.names = {"A", "B"};
  turn.centre = "K";
  LooseMotion shift;
  shift.kind = LooseMotion::Shift;
  shift.names = {"C", "D"};
  shift.azimuth = kPi / 4.0;
  EXPECT_EQ(worded(std::vector<LooseMotion>{turn, shift}),
            "The observations do not hold all points: A, B can turn about K; C, D can move together along the azimuth "
            "45.0 degrees");
}

}  // namespace
