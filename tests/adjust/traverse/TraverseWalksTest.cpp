// Traverses with side shots and loops, found in networks of known truth: what their errors promise, by simulation.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/Networks.h"
#include "adjust/traverse/TraverseSidePoints.h"
#include "core/AlgorithmException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <Eigen/Dense>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace kvn;
using test::kSecondsPerRadian;
using Plane = Eigen::Vector2d;

/// Points with their true places, and who sights whom.
struct Site {
  std::map<std::string, Plane> points;
  std::vector<std::string> known;
  std::vector<std::pair<std::string, std::vector<std::string>>> stations;

  std::vector<KnownPoint> knownPoints() const {
    std::vector<KnownPoint> list;
    for (std::string const& name : known) list.emplace_back(name, points.at(name).x(), points.at(name).y(), 0.0);
    return list;
  }

  /// Every sight with errors of `errors`; a direction is the mean of `rounds` rounds, a distance of as many.
  Network network(TraverseErrors const& errors, int rounds, std::mt19937& random) const {
    std::normal_distribution<double> normal;
    double const share = 1.0 / std::sqrt(static_cast<double>(rounds));
    Network result;
    result.knownPoints = knownPoints();
    for (auto const& [station, targets] : stations) {
      for (std::string const& target : targets) {
        Plane const way = points.at(target) - points.at(station);
        double const direction = errors.observations.directionSeconds / kSecondsPerRadian * share * normal(random);
        double const length = errors.observations.distanceFixed + errors.observations.distanceProportional * way.norm();
        double const reading = std::fmod(std::atan2(way.y(), way.x()) + direction + 8.0 * utils::kPi, 2.0 * utils::kPi);
        result.lines.push_back(test::line(station, target, reading, way.norm() + share * length * normal(random)));
      }
    }
    return result;
  }
};

TraverseErrors someErrors() {
  TraverseErrors errors;
  errors.observations.directionSeconds = 10.0;
  errors.observations.distanceFixed = 0.004;
  errors.observations.distanceProportional = 20e-6;
  return errors;
}

/// What the observations are means of: legs are measured from both ends.
TraverseErrors withRounds(TraverseErrors errors, std::size_t stations, int rounds) {
  errors.rounds.assign(stations, {double(rounds), double(rounds), 2.0 * rounds});
  return errors;
}

TraverseResult computed(detail::TraverseWalk const& walk, std::vector<KnownPoint> const& known) {
  if (walk.closing == TraverseClosing::OnItself) return detail::adjustedLoop(walk);
  Configure configure;
  configure.AdjustMethod = walk.method;
  AlgorithmAdjust driver;
  driver.setConfigure(configure);
  driver.setFoldToNearest(true);
  driver.setNetworkData(detail::networkOf(walk, known), MissingDirection::IsLeftOut);
  driver.calculateAdjust();
  TraverseResult result;
  result.method = walk.method;
  result.stations = driver.getTraverseAdjustInfoList();
  result.summary = driver.getTraverseSummary();
  result.points = driver.getPointList();
  if (walk.method == 1) detail::takeCheckShot(result, known);
  return result;
}

/// From A with the mark B over P1 to P4 to C with the mark D; three side shots, one of them to a known point.
Site connecting() {
  Site site;
  site.points = {{"B", {50, -140}},  {"A", {0, 0}},      {"P1", {40, 130}},  {"P2", {-30, 260}},
                 {"P3", {50, 380}},  {"P4", {-10, 510}}, {"C", {20, 650}},   {"D", {90, 800}},
                 {"S1", {190, 150}}, {"S3", {-60, 330}}, {"SC", {150, 700}}, {"K", {120, 300}}};
  site.known = {"B", "A", "C", "D", "K"};
  site.stations = {{"A", {"B", "P1"}},         {"P1", {"A", "P2", "S1"}}, {"P2", {"P1", "P3", "K"}},
                   {"P3", {"P2", "P4", "S3"}}, {"P4", {"P3", "C"}},       {"C", {"P4", "D", "SC"}}};
  return site;
}

/// Around from A and back, with the mark M; a side shot each from A, P2 and P4.
Site loop() {
  Site site;
  site.points = {{"M", {-200, 30}},  {"A", {0, 0}},     {"P1", {130, 60}},  {"P2", {210, 180}}, {"P3", {100, 270}},
                 {"P4", {-40, 160}}, {"SA", {60, -90}}, {"S2", {300, 230}}, {"S4", {-150, 200}}};
  site.known = {"M", "A"};
  site.stations = {{"A", {"M", "P1", "P4", "SA"}},
                   {"P1", {"A", "P2"}},
                   {"P2", {"P1", "P3", "S2"}},
                   {"P3", {"P2", "P4"}},
                   {"P4", {"P3", "A", "S4"}}};
  return site;
}

/// Open from A over P1 and P2.
Site hanging() {
  Site site;
  site.points = {{"B", {-100, 0}},  {"A", {0, 0}},     {"P1", {90, 50}},
                 {"P2", {200, 20}}, {"P3", {300, 60}}, {"S1", {120, 140}}};
  site.known = {"B", "A"};
  site.stations = {{"A", {"B", "P1"}}, {"P1", {"A", "P2", "S1"}}, {"P2", {"P1", "P3"}}, {"P3", {"P2"}}};
  return site;
}

// A mean square of 1000 plane errors has a chance error of up to 4.5 %, its root of 2.2 %: 7 % are three of these.
TEST(SidePoints, HaveTheErrorsThatTheyPromise) {
  constexpr int kRuns = 1000;
  for (Site const& site : {connecting(), loop(), hanging()}) {
    for (int const rounds : {1, 4}) {
      SCOPED_TRACE(site.stations.back().first + ", rounds " + std::to_string(rounds));
      std::mt19937 random(61);
      std::map<std::string, std::pair<double, double>> squares;  // promised, true
      std::map<std::string, std::pair<double, double>> north;
      int beyond = 0;
      for (int run = 0; run < kRuns; ++run) {
        std::vector<detail::TraverseWalk> walks = detail::traverseWalks(site.network(someErrors(), rounds, random), 0);
        ASSERT_EQ(walks.size(), 1U);
        TraverseResult result = computed(walks[0], site.knownPoints());
        TraverseErrors const errors = withRounds(someErrors(), result.stations.size(), rounds);
        for (detail::SideSight& sight : walks[0].sideSights) sight.rounds = sight.distances = rounds;
        detail::addSidePoints(result, walks[0].sideSights, site.knownPoints(), &errors);
        detail::addPointErrors(result, site.knownPoints(), errors);
        ASSERT_EQ(result.pointErrors.size(), result.points.size());
        for (std::size_t i = 0; i < result.points.size(); ++i) {
          PointInfo const& point = result.points[i];
          Plane const off = Plane(point.x, point.y) - site.points.at(point.name);
          if (result.pointErrors[i].mp == 0.0) {
            EXPECT_LT(off.norm(), 1e-9) << point.name;
            continue;
          }
          squares[point.name].first += std::pow(result.pointErrors[i].mp, 2);
          squares[point.name].second += off.squaredNorm();
          north[point.name].first += std::pow(result.pointErrors[i].mx, 2);
          north[point.name].second += off.x() * off.x();
        }
        ASSERT_GE(result.sidePoints.size(), 1U);
        for (TraverseSidePoint const& side : result.sidePoints) {
          Plane const off = Plane(side.point.x, side.point.y) - site.points.at(side.point.name);
          squares[side.point.name].first += side.mp * side.mp;
          squares[side.point.name].second += off.squaredNorm();
          north[side.point.name].first += side.mx * side.mx;
          north[side.point.name].second += off.x() * off.x();
          if (!side.isKnown) continue;
          EXPECT_EQ(side.point.name, "K");
          EXPECT_NEAR(side.offNorth, off.x(), 1e-9);
          beyond += std::hypot(side.offNorth, side.offEast) > side.offAllowed ? 1 : 0;
        }
      }
      for (auto const& [name, both] : squares) {
        EXPECT_NEAR(std::sqrt(both.first / both.second), 1.0, 0.07) << name;
        EXPECT_NEAR(std::sqrt(north[name].first / north[name].second), 1.0, 0.09) << name;
      }
      // One in a hundred is expected, with a standard deviation of 3.1 in a thousand.
      if (squares.count("K") != 0) {
        EXPECT_GE(beyond, 2);
        EXPECT_LE(beyond, 19);
      }
    }
  }
}

// Of 1000 faultless loops 10 are expected beyond each, with a standard deviation of 3.1.
TEST(Loops, AreWarnedOfInOneOfAHundredFaultlessOnes) {
  constexpr int kRuns = 1000;
  std::mt19937 random(62);
  int angles = 0;
  int places = 0;
  for (int run = 0; run < kRuns; ++run) {
    int const rounds = 1 + run % 2;
    std::vector<detail::TraverseWalk> const walks =
        detail::traverseWalks(loop().network(someErrors(), rounds, random), 0);
    ASSERT_EQ(walks.size(), 1U);
    ASSERT_EQ(walks[0].closing, TraverseClosing::OnItself);
    TraverseResult const result = detail::adjustedLoop(walks[0]);
    TraverseErrors const errors = withRounds(someErrors(), result.stations.size(), rounds);
    TraverseJudgement const judged = judgedTraverse(result.stations, result.summary, result.closing, errors);
    EXPECT_TRUE(judged.isLoop());
    angles += std::abs(judged.angle) > judged.angleAllowed ? 1 : 0;
    places += judged.fs > judged.fsAllowed ? 1 : 0;
  }
  for (int const count : {angles, places}) {
    EXPECT_GE(count, 4);
    EXPECT_LE(count, 17);
  }
}

/// From A with the mark B over P1, P2 and P3 to K, a station without a mark; E and F are in sight without a distance.
Site toKnownStation() {
  Site site = hanging();
  site.points.insert({{"K", {390, 10}}, {"E", {260, 200}}, {"F", {-80, 120}}});
  site.known.insert(site.known.end(), {"K", "E", "F"});
  site.stations = {
      {"A", {"B", "P1", "F"}}, {"P1", {"A", "P2"}}, {"P2", {"P1", "P3", "E"}}, {"P3", {"P2", "K"}}, {"K", {"P3"}}};
  return site;
}

/// The corners A and C sight each other; E is in sight of the last one without a distance.
Site onTwoCorners() {
  Site site;
  site.points = {{"A", {0, 0}},     {"P1", {20, 140}}, {"P2", {130, 180}},
                 {"P3", {210, 90}}, {"C", {120, -60}}, {"E", {300, -90}}};
  site.known = {"A", "C", "E"};
  site.stations = {
      {"A", {"C", "P1"}}, {"P1", {"A", "P2"}}, {"P2", {"P1", "P3", "E"}}, {"P3", {"P2", "C"}}, {"C", {"P3", "A"}}};
  return site;
}

// Of 1000 faultless ones 10 are expected beyond each, with a standard deviation of 3.1.
TEST(Walks, WarnOfOneInAHundredFaultlessCheckShotsPolygonsAndSightsToKnownPoints) {
  constexpr int kRuns = 1000;
  Site ends = connecting();  // with further marks at both ends and K in sight without a distance
  ends.points.insert({{"E", {-120, 90}}, {"F", {160, 640}}});
  ends.known.insert(ends.known.end(), {"E", "F"});
  ends.stations[0].second.emplace_back("E");
  ends.stations[5].second.emplace_back("F");
  for (Site const& site : {toKnownStation(), onTwoCorners(), ends}) {
    std::mt19937 random(64);
    std::map<std::string, int> beyond;
    for (int run = 0; run < kRuns; ++run) {
      Network network = site.network(someErrors(), 1, random);
      for (NetworkDataInfo& line : network.lines) {
        bool const isDirection = line.end_name == "E" || line.end_name == "F" || line.end_name == "K";
        if (isDirection && line.start_name != "P3") line.horizontal_distance = 0.0;
      }
      std::vector<detail::TraverseWalk> const walks = detail::traverseWalks(network, 0);
      ASSERT_EQ(walks.size(), 1U);
      TraverseResult result = computed(walks[0], site.knownPoints());
      TraverseErrors errors = withRounds(someErrors(), result.stations.size(), 1);
      if (walks[0].isEndStation) errors.rounds.back().leg = 1.0;  // K shoots no distance back
      TraverseJudgement const judged = judgedTraverse(result.stations, result.summary, result.closing, errors);
      beyond["along"] += std::abs(judged.along) > judged.alongAllowed ? 1 : 0;
      beyond["across"] += std::abs(judged.across) > judged.acrossAllowed ? 1 : 0;
      if (!walks[0].isEndStation) beyond["angles"] += std::abs(judged.angle) > judged.angleAllowed ? 1 : 0;
      detail::addChecks(result, walks[0], site.knownPoints(), &errors);
      for (TraverseCheck const& check : result.checks) {
        beyond[check.station + check.target + std::to_string(check.kind)] += check.isBeyond() ? 1 : 0;
      }
    }
    EXPECT_GE(beyond.size(), 4U);
    for (auto const& [what, count] : beyond) {
      EXPECT_GE(count, 3) << what << " of the site to " << site.stations.back().first;
      EXPECT_LE(count, 19) << what << " of the site to " << site.stations.back().first;
    }
  }
}

// A square of 100 m on one known point: each angle reads 5" too much but for the one at the mark, the last leg 20 mm.
// The angles share 20", so that all azimuths are right; the leg's 20 mm are shared by four equal legs.
TEST(Loops, ShareOutTheirMisclosuresInClosedForm) {
  Site site;
  site.points = {{"M", {-100, 0}}, {"A", {0, 0}}, {"P", {0, 100}}, {"Q", {100, 100}}, {"R", {100, 0}}};
  site.known = {"M", "A"};
  site.stations = {{"A", {"M", "P", "R"}}, {"P", {"A", "Q"}}, {"Q", {"P", "R"}}, {"R", {"Q", "A"}}};
  TraverseErrors none;
  none.observations.directionSeconds = none.observations.distanceFixed = none.observations.distanceProportional = 0.0;
  std::mt19937 random;
  Network network = site.network(none, 1, random);
  double const five = 5.0 / kSecondsPerRadian;
  for (NetworkDataInfo& line : network.lines) {
    std::string const way = line.start_name + line.end_name;
    // At A the angle runs from R to P, elsewhere from the point before to the one behind.
    if (way == "PQ" || way == "QR" || way == "RA") line.horizontal_angle += five;
    if (way == "AR") line.horizontal_angle -= five;
    if (way == "RA" || way == "AR") line.horizontal_distance += 0.02;
  }
  std::vector<detail::TraverseWalk> const walks = detail::traverseWalks(network, 0);
  ASSERT_EQ(walks.size(), 1U);
  TraverseResult const result = detail::adjustedLoop(walks[0]);
  ASSERT_EQ(result.points.size(), 5U);
  EXPECT_NEAR(-4.0 * result.summary.angleCorrection, 4.0 * five, 1e-12);
  // Walked A, P, Q, R: the last leg runs south, so that its end lies 20 mm too far there.
  EXPECT_EQ(result.points[2].name, "P");
  EXPECT_NEAR(result.summary.fx, -0.02, 1e-9);
  EXPECT_NEAR(result.summary.fy, 0.0, 1e-9);
  double const lifted = 0.02 / 400.02;  // of each metre of leg
  EXPECT_NEAR(result.points[2].x, 100.0 * lifted, 1e-9);
  EXPECT_NEAR(result.points[3].x, 100.0 + 200.0 * lifted, 1e-9);
  EXPECT_NEAR(result.points[4].x, 100.0 + 300.0 * lifted, 1e-9);
  EXPECT_NEAR(result.points[4].y, 0.0, 1e-9);
  TraverseErrors errors;
  errors.observations.directionSeconds = 5.0;
  errors.observations.distanceFixed = 0.01;
  errors.observations.distanceProportional = 0.0;
  TraverseJudgement const judged = judgedTraverse(result.stations, result.summary, result.closing, errors);
  EXPECT_NEAR(judged.angleAllowed, 2.576 * five * std::sqrt(8.0), 1e-9);
  // Two legs of a square run along each axis. An angle moves the end by 100 m along one axis or both, from which the
  // mean of the four, 50 m along each, is taken off: four times 50² m² along each axis, of angles of 2 (5")².
  double const variance = 2.0 * 0.01 * 0.01 + 4.0 * 50.0 * 50.0 * 2.0 * five * five;
  EXPECT_NEAR(judged.fsAllowed, std::sqrt(9.21 * variance), 1e-6);
}

// Two traverses between the same pairs of known points, and an open one that ends blindly.
TEST(Walks, FindEveryTraverseOfAFileAndRefuseBranches) {
  Site site = connecting();
  site.points["Q1"] = {-90, 200};
  site.points["Q2"] = {-100, 420};
  site.points["W"] = {-40, -90};
  site.points["V"] = {-120, -150};
  site.stations[0].second.insert(site.stations[0].second.end(), {"Q1", "W"});
  site.stations[5].second.emplace_back("Q2");
  site.stations.push_back({"Q1", {"A", "Q2"}});
  site.stations.push_back({"Q2", {"Q1", "C"}});
  site.stations.push_back({"W", {"A", "V"}});
  std::mt19937 random(63);
  auto const chainsOf = [&](int method) {
    std::vector<std::string> chains;
    for (detail::TraverseWalk const& walk : detail::traverseWalks(site.network(someErrors(), 1, random), method)) {
      std::string chain;
      bool const isBack = walk.stations.front().stationPoint.name == "C" && walk.stations.size() > 1;
      for (TraverseInfo const& station : walk.stations) {
        std::string const& name = station.stationPoint.name;
        chain.insert(isBack ? 0 : chain.size(), name + " ");
      }
      chains.push_back(std::to_string(walk.method) + ": " + chain);
    }
    return chains;
  };
  using testing::UnorderedElementsAre;
  EXPECT_THAT(chainsOf(0), UnorderedElementsAre("2: A P1 P2 P3 P4 C ", "2: A Q1 Q2 C ", "1: A W "));
  EXPECT_THAT(chainsOf(2), UnorderedElementsAre("2: A P1 P2 P3 P4 C ", "2: A Q1 Q2 C "));
  // Without the others the side shot of C is that of a station by itself.
  EXPECT_THAT(chainsOf(1), UnorderedElementsAre("1: A W ", "1: C "));
  // A leg across makes a network of the two.
  site.stations[2].second.emplace_back("Q1");
  site.stations[6].second.emplace_back("P2");
  try {
    chainsOf(0);
    ADD_FAILURE() << "no branch is found";
  } catch (AlgorithmException const& failure) {
    EXPECT_EQ(failure.errorType, AlgorithmException::DataError);
    EXPECT_THAT(failure.name, testing::AnyOf("P2", "Q1"));
  }
}

}  // namespace
