// Networks large enough for the sparse matrix and the fit of all sights, against the full matrix and the truth.
#include "Networks.h"
#include "support/Support.h"

#include <utils/QLogicError.h>

#include <gtest/gtest.h>
#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr int kNeverSparse = std::numeric_limits<int>::max();
constexpr int kAlwaysSparse = 0;

test::NetworkPlan noisyPlan(int points) {
  test::NetworkPlan plan;
  plan.points = points;
  plan.directionNoise = 2.0;
  plan.distanceFixed = 0.003;
  plan.distanceProportion = 3e-6;
  return plan;
}

kvn::TraverseAdjust adjusterOf(kvn::Network const& network, int sparseFrom) {
  kvn::TraverseAdjust adjustment;
  adjustment.setSparseFrom(sparseFrom);
  adjustment.readAlgorithmData(test::loaded(network));
  return adjustment;
}

void expectSameResults(kvn::Network const& network) {
  kvn::TraverseAdjust full = adjusterOf(network, kNeverSparse);
  kvn::TraverseAdjust sparse = adjusterOf(network, kAlwaysSparse);
  full.calculateAdjust();
  sparse.calculateAdjust();
  auto const expected = full.getPointErrorInfo();
  auto const points = sparse.getPointErrorInfo();
  auto const expectedEllipses = full.getErrorEllipsoid();
  auto const ellipses = sparse.getErrorEllipsoid();
  ASSERT_EQ(points.size(), expected.size());
  EXPECT_EQ(sparse.getSummary().iterations, full.getSummary().iterations);
  EXPECT_NEAR(sparse.getSummary().unitError, full.getSummary().unitError, 1e-9);
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_NEAR(points[i].x, expected[i].x, 1e-9) << points[i].name;
    EXPECT_NEAR(points[i].y, expected[i].y, 1e-9) << points[i].name;
    EXPECT_NEAR(points[i].mx, expected[i].mx, 1e-6 * expected[i].mp) << points[i].name;
    EXPECT_NEAR(points[i].my, expected[i].my, 1e-6 * expected[i].mp) << points[i].name;
  }
  auto const expectedLines = full.getLineErrorInfo();
  auto const lines = sparse.getLineErrorInfo();
  ASSERT_EQ(lines.size(), expectedLines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_NEAR(lines[i].azimuthError, expectedLines[i].azimuthError, 1e-6 * expectedLines[i].azimuthError);
  }
}

TEST(LargeNetworks, HaveTheSameResultsWithAFullAndASparseMatrix) {
  std::mt19937 random(1);
  for (int const points : {12, 60, 61, 100}) {
    expectSameResults(test::makeNetwork(noisyPlan(points), random).network);
  }
  expectSameResults(test::makeGrid(18, noisyPlan(0), random).network);
}

TEST(LargeNetworks, AreAdjustedFromKnownPointsThatDoNotSeeEachOther) {
  for (unsigned const seed : {1U, 2U, 3U}) {
    std::mt19937 random(seed);
    test::NetworkPlan plan = noisyPlan(0);
    plan.bothEnds = false;  // the mean of two distances counts as one, and would fit better than promised
    auto const made = test::makeGrid(40, plan, random);
    kvn::TraverseAdjust adjustment = adjusterOf(made.network, kAlwaysSparse);
    adjustment.calculateAdjust();
    EXPECT_TRUE(adjustment.getSuspects().empty());
    EXPECT_LE(adjustment.getSummary().iterations, 3);
    // 18,000 observations of 4,800 unknowns: the unit weight error scatters by 0.006.
    EXPECT_NEAR(adjustment.getSummary().unitError, 1.0, 0.03);
    for (kvn::PointErrorInfo const& point : adjustment.getPointErrorInfo()) {
      kvn::PointInfo const& truth = made.truth.at(point.name);
      // Of 1,600 points none is off by five standard errors, but for one run in a thousand.
      EXPECT_LE(std::hypot(point.x - truth.x, point.y - truth.y), 5.0 * point.mp + 1e-9) << point.name;
    }
  }
}

TEST(LargeNetworks, NameTheObservationsThatAreWrong) {
  std::mt19937 random(4);
  auto made = test::makeGrid(20, noisyPlan(0), random);
  std::vector<kvn::NetworkDataInfo>& lines = made.network.lines;
  kvn::NetworkDataInfo& turned = lines[700];
  kvn::NetworkDataInfo& far = lines[1500];
  turned.horizontal_angle = std::fmod(turned.horizontal_angle + 100.0 / test::kSecondsPerRadian, 2.0 * std::acos(-1.0));
  for (kvn::NetworkDataInfo& line : lines) {  // from both ends, so that the mean of them is off
    bool const isSame = (line.start_name == far.start_name && line.end_name == far.end_name) ||
                        (line.start_name == far.end_name && line.end_name == far.start_name);
    if (isSame) line.horizontal_distance += 0.2;
  }
  kvn::TraverseAdjust adjustment = adjusterOf(made.network, kAlwaysSparse);
  adjustment.calculateAdjust();
  auto const suspects = adjustment.getSuspects();
  ASSERT_EQ(suspects.size(), 2U);
  EXPECT_TRUE(suspects[0].isDirection);
  EXPECT_EQ(suspects[0].from, turned.start_name);
  EXPECT_EQ(suspects[0].to, turned.end_name);
  EXPECT_NEAR(suspects[0].difference, 100.0, 12.0);  // what the others say has some 2.5", and the observation 2"
  EXPECT_FALSE(suspects[1].isDirection);
  EXPECT_NEAR(suspects[1].difference, 0.2, 0.02);
}

// A second grid hangs on one point of the first, and on a distance from there to another of its points: it may lie on
// either side of that distance.
TEST(LargeNetworks, AreNotPlacedByChanceWhereTwoSolutionsAgree) {
  std::mt19937 random(8);
  auto made = test::makeGrid(18, noisyPlan(0), random);
  auto wing = test::makeGrid(4, noisyPlan(0), random);
  for (kvn::NetworkDataInfo line : wing.network.lines) {
    if (line.start_name == "P0") continue;  // its place is that of P0, which has its own circle
    line.start_name = "W" + line.start_name;
    line.end_name = line.end_name == "P0" ? "P0" : "W" + line.end_name;
    made.network.lines.push_back(line);
  }
  kvn::PointInfo const& joint = made.truth.at("P0");
  kvn::PointInfo const& hinge = wing.truth.at("P0");
  kvn::PointInfo const& tip = wing.truth.at("P15");
  kvn::PointInfo const& end = made.truth.at("P40");
  kvn::NetworkDataInfo tie =
      test::line("WP15", "P40", 0.0, std::hypot(joint.x + tip.x - hinge.x - end.x, joint.y + tip.y - hinge.y - end.y));
  tie.horizontalAngleFlag = false;
  made.network.lines.push_back(tie);
  kvn::TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(made.network, kvn::MissingDirection::IsLeftOut));
  EXPECT_THROW(adjustment.calculateAdjust(), kvn::AlgorithmException);
  ASSERT_EQ(adjustment.getUnplacedPoints().size(), 15U);
  for (kvn::UnplacedPoint const& point : adjustment.getUnplacedPoints()) EXPECT_EQ(point.name[0], 'W');
}

/// A grid and, far from it, one that hangs on no known point.
kvn::Network withLooseGrid() {
  std::mt19937 random(5);
  kvn::Network network = test::makeGrid(18, noisyPlan(0), random).network;
  for (kvn::NetworkDataInfo line : test::makeGrid(4, noisyPlan(0), random).network.lines) {
    line.start_name = "L" + line.start_name;
    line.end_name = "L" + line.end_name;
    network.lines.push_back(line);
  }
  return network;
}

std::string failureOf(kvn::Network const& network, kvn::TraverseAdjust adjustment, int sparseFrom) {
  adjustment.setSparseFrom(sparseFrom);
  adjustment.readAlgorithmData(test::loaded(network));
  std::string const failure = test::algorithmFailureOf([&] { adjustment.calculateAdjust(); });
  return failure + " " + std::to_string(adjustment.getUnplacedPoints().size());
}

TEST(LargeNetworks, FailWithTheSameExceptionInBothMatrices) {
  std::mt19937 random(6);
  test::NetworkPlan traverse = noisyPlan(120);
  traverse.sights = 2;
  // Directions of 300° and distances of a nanometre: the legs turn like hinges, as far as 16 digits can tell.
  kvn::TraverseAdjust const hinged(1e6, 1e-9, 0.0, true);
  struct Case {
    kvn::Network network;
    kvn::TraverseAdjust adjustment;
  };
  for (auto const& [network, adjustment] :
       {Case{withLooseGrid(), kvn::TraverseAdjust()}, Case{test::makeNetwork(traverse, random).network, hinged}}) {
    std::string const failure = failureOf(network, adjustment, kNeverSparse);
    EXPECT_EQ(failure.find("no failure"), std::string::npos);
    EXPECT_EQ(failureOf(network, adjustment, kAlwaysSparse), failure);
  }
  EXPECT_EQ(failureOf(withLooseGrid(), {}, kAlwaysSparse), "Known points are not enough|No enough data|-1 16");
}

TEST(LargeNetworks, TellTheirProgressAndEndWhereverTheyAreCancelled) {
  std::mt19937 random(7);
  auto const data = test::loaded(test::makeGrid(40, noisyPlan(0), random).network);
  std::vector<kvn::AdjustProgress::Stage> stages;
  std::vector<double> moves;
  int asked = 0;
  kvn::TraverseAdjust adjustment;
  adjustment.readAlgorithmData(data);
  adjustment.setCancelCall([&asked] {
    ++asked;
    return false;
  });
  adjustment.setProgressCall([&](kvn::AdjustProgress const& progress) {
    stages.push_back(progress.stage);
    moves.push_back(progress.largestMove);
  });
  adjustment.calculateAdjust();
  using Progress = kvn::AdjustProgress;
  EXPECT_EQ(stages.front(), Progress::Start);
  EXPECT_EQ(stages[1], Progress::Equations);
  EXPECT_TRUE(std::isnan(moves[1]));
  EXPECT_EQ(stages[stages.size() - 2], Progress::Inverse);
  EXPECT_EQ(stages.back(), Progress::Results);
  EXPECT_LE(moves.back(), 0.01);
  ASSERT_GT(asked, adjustment.getSummary().iterations);  // in mid-factor too
  for (int const last : {1, 2, asked}) {
    int count = 0;
    kvn::TraverseAdjust cancelled;
    cancelled.readAlgorithmData(data);
    cancelled.setCancelCall([&count, last] { return ++count >= last; });
    EXPECT_THROW(cancelled.calculateAdjust(), QLogicError) << last;
    EXPECT_EQ(count, last);
  }
}

}  // namespace
