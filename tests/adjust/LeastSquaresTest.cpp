// The iteration: networks of known truth, and networks that cannot be adjusted.
#include "adjust/Networks.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <cmath>
#include <limits>

namespace {

using kvn::AlgorithmData;
using kvn::Network;
using kvn::TraverseAdjust;
using test::adjusted;
using test::line;
using test::loaded;

using utils::kPi;

class Lookups : public TraverseAdjust {
 public:
  using TraverseAdjust::calculateAzimuth;
  using TraverseAdjust::getAngle;
  using TraverseAdjust::getLine;
};

Network eastAndNorth() {
  Network network;
  network.knownPoints = {{"O", 0.0, 0.0, 0.0}, {"N", 100.0, 0.0, 0.0}, {"E", 0.0, 100.0, 0.0}, {"W", 0.0, -100.0, 0.0}};
  network.lines = {line("O", "N", 0.0, 0.0), line("O", "E", kPi / 2.0, 0.0), line("O", "W", 1.5 * kPi, 0.0),
                   line("O", "P", 1.0, 50.0), line("P", "O", 0.0, 50.2)};
  return network;
}

TEST(LeastSquares, LooksAnglesAndDistancesUpBetweenPoints) {
  Lookups c;
  c.readAlgorithmData(loaded(eastAndNorth()));
  EXPECT_EQ(c.calculateAzimuth(0, 2), kPi / 2.0);
  EXPECT_EQ(c.calculateAzimuth(0, 3), 3.0 * kPi / 2.0);
  EXPECT_EQ(c.getAngle(0, 1, 2), kPi / 2.0);
  EXPECT_EQ(c.getAngle(0, 2, 1), 1.5 * kPi);
  EXPECT_EQ(c.getAngle(1, 0, 2), -1.0);
  EXPECT_EQ(c.getLine(4, 0), 50.1);  // the mean of both ends
  EXPECT_EQ(c.getLine(0, 1), 1e30);
}

TEST(LeastSquares, DoesNotCareWhereTheCirclesPointTo) {
  // Orientations within rounding of 0 and of a full circle, where the azimuth of one target comes out just above 0 and
  // that of another just below 360 degrees, give what an orientation far from there gives.
  auto const pointsWithZeroAt = [](double zero) {
    std::mt19937 random(3);
    test::NetworkPlan plan;
    plan.directionNoise = 2.0;
    plan.distanceFixed = 0.003;
    plan.circleZero = zero;
    return adjusted(test::makeNetwork(plan, random).network);
  };
  TraverseAdjust const reference = pointsWithZeroAt(1.0);
  for (double const zero : {0.0, 1e-9, 1e-6, 2.0 * kPi - 1e-9, 2.0 * kPi - 1e-6, 3.0}) {
    SCOPED_TRACE(zero);
    TraverseAdjust const turned = pointsWithZeroAt(zero);
    EXPECT_NEAR(turned.getSummary().unitError, reference.getSummary().unitError, 1e-6);
    auto const points = turned.getPoints();
    for (std::size_t i = 0; i < points.size(); ++i) {
      // A corrected centimetre of the last iteration leaves second-order terms below 1e-6 m on lines over 30 m.
      EXPECT_NEAR(points[i].x, reference.getPoints()[i].x, 1e-6);
      EXPECT_NEAR(points[i].y, reference.getPoints()[i].y, 1e-6);
    }
  }
}

TEST(LeastSquares, UnitErrorAndEllipsesKeepTheirPromiseOverManyNetworks) {
  constexpr int kRuns = 2000;
  double sumOfSquares = 0.0;
  double sumOfDegrees = 0.0;
  int inside = 0;
  double expectedInside = 0.0;
  for (unsigned seed = 0; seed < kRuns; ++seed) {
    std::mt19937 random(seed);
    test::NetworkPlan plan;
    plan.points = 6;
    plan.sights = 4;
    // The mean of two ends counts as one distance with the weight of one: it would make the unit error too small.
    plan.bothEnds = false;
    plan.directionNoise = 2.0;
    plan.distanceFixed = 0.003;
    plan.distanceProportion = 3e-6;
    test::SyntheticNetwork made = test::makeNetwork(plan, random);
    TraverseAdjust const result = adjusted(made.network);
    kvn::AdjustSummary const summary = result.getSummary();
    sumOfSquares += summary.unitError * summary.unitError * summary.redundancy;
    sumOfDegrees += summary.redundancy;
    // One point of each network, since points of one network err together.
    auto const points = result.getPoints();
    auto const ellipse = result.getErrorEllipsoid().ellipseList.back();
    auto const& point = points.back();
    ASSERT_EQ(point.name, ellipse.name);
    double const dx = point.x - made.truth[point.name].x;
    double const dy = point.y - made.truth[point.name].y;
    double const along = (dx * std::cos(ellipse.angle) + dy * std::sin(ellipse.angle)) / ellipse.semiMajor;
    double const across = (-dx * std::sin(ellipse.angle) + dy * std::cos(ellipse.angle)) / ellipse.semiMinor;
    inside += along * along + across * across <= 1.0 ? 1 : 0;
    // F distribution with 2 and r degrees of freedom at 1/2: the ellipse is scaled with the estimated unit error.
    expectedInside += 1.0 - std::pow(1.0 + 1.0 / summary.redundancy, -0.5 * summary.redundancy);
  }
  // Chi-square: the variance of the mean square is 2 / degrees of freedom. Four standard deviations either way.
  EXPECT_NEAR(sumOfSquares / sumOfDegrees, 1.0, 4.0 * std::sqrt(2.0 / sumOfDegrees));
  double const p = expectedInside / kRuns;
  EXPECT_NEAR(inside / double(kRuns), p, 4.0 * std::sqrt(p * (1.0 - p) / kRuns));
}

TEST(LeastSquares, LeavesOutKnownPointsThatNobodyObserves) {
  test::Host host;
  std::mt19937 random(5);
  test::SyntheticNetwork made = test::makeNetwork({}, random);
  TraverseAdjust const reference = adjusted(made.network);
  made.network.knownPoints.insert(made.network.knownPoints.begin(), {"far", 1.0, 2.0, 0.0});
  made.network.knownPoints.emplace_back("away", 3.0, 4.0, 0.0);
  TraverseAdjust const result = adjusted(made.network);
  EXPECT_EQ(result.getSummary().knownPoints, 2);
  ASSERT_EQ(result.getPoints().size(), reference.getPoints().size());
  for (std::size_t i = 0; i < reference.getPoints().size(); ++i) {
    EXPECT_EQ(result.getPoints()[i].name, reference.getPoints()[i].name);
    EXPECT_EQ(result.getPoints()[i].x, reference.getPoints()[i].x);
  }
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].first, "Known points without an observation are left out: far, away");
  for (int i = 0; i < 1000; ++i) made.network.knownPoints.emplace_back("k" + std::to_string(i), 3.0, 4.0, 0.0);
  adjusted(made.network);
  EXPECT_TRUE(host.messages.back().first.endsWith("k97 and 902 more")) << "the first hundred are named";
  EXPECT_EQ(host.messages[0].second, kvn::Warning);
}

/// K1 and K2 known; P is seen from both with distances.
Network triangle() {
  Network network;
  network.knownPoints = {{"K1", 0.0, 0.0, 0.0}, {"K2", 0.0, 100.0, 0.0}};
  network.lines = {line("K1", "K2", kPi / 2.0, 0.0), line("K1", "P", kPi / 4.0, 70.71), line("K2", "K1", 0.0, 0.0),
                   line("K2", "P", kPi / 4.0, 70.71)};
  return network;
}

TEST(LeastSquares, RefusesWhatItCannotSolve) {
  struct Case {
    char const* what;
    std::function<void(Network&)> spoil;
    char const* failure;
  };
  Case const cases[] = {
      {"every observed point is known", [](Network& n) { n.knownPoints.emplace_back("P", 50.0, 50.0, 0.0); },
       "All Station Point is known||-1"},
      {"nothing oriented",
       [](Network& n) {
         n.lines = {line("K1", "P", 0.0, 70.71), line("K2", "P", 0.0, 70.71)};
       },
       "Known points are not enough|No enough data|-1"},
      {"a target seen once, without a distance", [](Network& n) { n.lines.push_back(line("K2", "X", 1.0, 0.0)); },
       "Known points are not enough|No enough data|-1"},
      {"a second network of its own",
       [](Network& n) {
         n.lines.push_back(line("Y", "Z", 0.0, 50.0));
         n.lines.push_back(line("Z", "Y", 0.0, 50.0));
       },
       "Known points are not enough|No enough data|-1"},
      {"directions alone, and a point that is seen from one station",
       [](Network& n) {
         for (auto& l : n.lines) l.horizontal_distance = 0.0;
         n.lines.pop_back();
       },
       "Data error|No enough data|-1"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Network network = triangle();
    c.spoil(network);
    EXPECT_EQ(test::algorithmFailureOf([&] { adjusted(network); }), c.failure);
  }
}

TEST(LeastSquares, GivesUpAtTheIterationLimit) {
  // The distances disagree by 1 m, so that the first round moves P by far more than 0.01 m and a second one is needed.
  Network network = triangle();
  network.lines.back().horizontal_distance += 1.0;
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(loaded(network));
  adjustment.setIterationLimit(1);
  EXPECT_EQ(test::failureOf<std::exception>([&] { adjustment.calculateAdjust(); }), "total station data is error");
  adjustment.readAlgorithmData(loaded(network));
  adjustment.setIterationLimit(50);
  EXPECT_NO_THROW(adjustment.calculateAdjust());
}

TEST(LeastSquares, RefusesErrorsThatGiveWeightsWithoutBound) {
  // Errors of a direction and of a distance that are no errors: no number may come out.
  double const nan = std::numeric_limits<double>::quiet_NaN();
  for (auto const& [angleError, fixedError] : {std::pair{0.0, 0.003}, {nan, 0.003}, {1e-200, 0.003}, {2.0, 0.0}}) {
    TraverseAdjust adjustment(angleError, fixedError, 0.0, true);
    adjustment.readAlgorithmData(loaded(triangle()));
    EXPECT_EQ(test::algorithmFailureOf([&] { adjustment.calculateAdjust(); }), "Data error|Calculate failed|-1");
    EXPECT_TRUE(adjustment.getLineErrorInfo().empty());
    EXPECT_FALSE(adjustment.getPointErrorInfo()[2].mxValid);
  }
}

TEST(LeastSquares, RefusesCountsThatAreNotThoseOfTheLists) {
  for (int AlgorithmData::*const count :
       {&AlgorithmData::pointsCount, &AlgorithmData::stationsCount, &AlgorithmData::directionsCount}) {
    for (int const change : {-1, 2}) {
      AlgorithmData data = loaded(triangle());
      data.*count += change;
      bool const allKnown = count == &AlgorithmData::pointsCount && change == -1;  // 2 points, 2 of them known
      EXPECT_EQ(test::algorithmFailureOf([&] { TraverseAdjust().readAlgorithmData(data); }),
                allKnown ? "All Station Point is known||-1" : "Data error|Data error|-1");
    }
  }
}

TEST(LeastSquares, StartsAnewWithANewInput) {
  std::mt19937 random(8);
  TraverseAdjust reused;
  reused.Adjust(loaded(test::makeNetwork({}, random).network));
  AlgorithmData const data = loaded(triangle());
  reused.Adjust(data);
  TraverseAdjust fresh;
  fresh.Adjust(data);
  ASSERT_EQ(reused.getPoints().size(), fresh.getPoints().size());
  EXPECT_EQ(reused.getPoints()[2].name, "P");
  EXPECT_EQ(reused.getPoints()[2].x, fresh.getPoints()[2].x);
  EXPECT_EQ(reused.getPointX0Y0()[2].x, fresh.getPointX0Y0()[2].x);
  EXPECT_EQ(reused.getPointErrorInfo()[2].mx, fresh.getPointErrorInfo()[2].mx);
  EXPECT_EQ(reused.getLineErrorInfo().size(), fresh.getLineErrorInfo().size());
}

}  // namespace
