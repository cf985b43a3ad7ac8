// Loading a network into the calculators' input.
#include "adjust/Networks.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <cmath>
#include <limits>

namespace {

using kvn::AlgorithmData;
using kvn::AlgorithmException;
using kvn::Network;
using test::line;

Network smallNetwork() {
  Network network;
  network.knownPoints = {{"K1", 0.0, 0.0, 0.0}, {"K2", 100.0, 0.0, 0.0}};
  network.lines = {line("K1", "K2", 0.0, 100.0), line("K1", "P", 1.0, 50.0), line("P", "K1", 0.0, 50.0),
                   line("P", "K2", 1.5, 0.0)};
  return network;
}

AlgorithmData inputOf(Network const& network) {
  AlgorithmData data;
  data.readNetworkData(network);
  return data;
}

TEST(ReadNetworkData, CountsWhatIsObserved) {
  Network network = smallNetwork();
  network.knownPoints.emplace_back("K3", 5.0, 5.0, 0.0);  // not observed: a known point, but no observed one
  AlgorithmData const data = inputOf(network);
  EXPECT_EQ(data.pointsCount, 3);
  EXPECT_EQ(data.knPointsCount, 3);
  EXPECT_EQ(data.stationsCount, 2);
  EXPECT_EQ(data.directionsCount, 4);
  EXPECT_EQ(data.linesCount, 2);  // K1-K2 lies between known points
  EXPECT_EQ(data.stations[1].directions[1].end_name, "K2");
  EXPECT_EQ(data.stations[1].lines.size(), 1U);
}

TEST(ReadNetworkData, TakesAnglesAndDistancesWithinTheirBounds) {
  double const nan = std::numeric_limits<double>::quiet_NaN();
  double const inf = std::numeric_limits<double>::infinity();
  struct Case {
    char const* what;
    double angle, distance;
    double direction;  ///< NaN: refused
    std::size_t distances;
  };
  Case const cases[] = {
      {"plain", 1.25, 10.0, 1.25, 1},
      {"just above the circle", 360.0005, 0.0, 360.0, 0},
      {"just below zero", -0.0005, 0.0, 0.0, 0},
      {"above the bound", 360.002, 0.0, nan, 0},
      {"below the bound", -0.002, 0.0, nan, 0},
      {"no angle", nan, 1.0, nan, 0},
      {"distance of rounding size", 0.0, 1e-7, 0.0, 0},
      {"negative of rounding size", 0.0, -1e-7, 0.0, 0},
      {"negative", 0.0, -0.001, nan, 0},
      {"no number", 0.0, nan, nan, 0},
      {"infinite", 0.0, inf, nan, 0},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Network network = smallNetwork();
    network.lines[3].horizontal_angle = c.angle;
    network.lines[3].horizontal_distance = c.distance;
    if (std::isnan(c.direction)) {
      EXPECT_EQ(test::algorithmFailureOf([&] { inputOf(network); }), "Data error||3");
      continue;
    }
    AlgorithmData const data = inputOf(network);
    EXPECT_EQ(data.stations[1].directions[1].value, c.direction);
    EXPECT_EQ(data.stations[1].lines.size(), 1U + c.distances);
  }
}

TEST(ReadNetworkData, LeavesOutDirectionsThatWereNotObservedWhenAsked) {
  Network network = smallNetwork();
  network.lines[1].horizontalAngleFlag = false;  // K1 to P: a distance alone
  network.lines.insert(network.lines.begin(), line("Z", "P", 0.0, 7.0));
  network.lines.push_back(line("K1", "P", 0.0, 8.0));  // K1 comes back, with a distance alone
  network.lines.front().horizontalAngleFlag = network.lines.back().horizontalAngleFlag = false;
  AlgorithmData data;
  data.readNetworkData(network, kvn::MissingDirection::IsLeftOut);
  // Z and the second K1 have no direction, so that they are no stations; their distances count all the same.
  ASSERT_EQ(data.stationsCount, 2);
  EXPECT_EQ(data.stations[0].name, "K1");
  EXPECT_EQ(data.stations[0].directions.size(), 1U);
  EXPECT_EQ(data.stations[0].lines.front().start_name, "Z");
  EXPECT_EQ(data.stations[1].lines.back().value, 8.0);
  EXPECT_EQ(data.pointsCount, 4);
  EXPECT_EQ(data.directionsCount, 3);
  EXPECT_EQ(data.linesCount, 4);

  for (auto& l : network.lines) l.horizontalAngleFlag = false;
  AlgorithmData silent;
  EXPECT_EQ(
      test::failureOf<AlgorithmException>([&] { silent.readNetworkData(network, kvn::MissingDirection::IsLeftOut); }),
      "Station point is not enough");
}

TEST(ReadNetworkData, NamesWhatIsWrong) {
  struct Case {
    char const* what;
    std::function<void(Network&)> spoil;
    char const* failure;
  };
  Case const cases[] = {
      {"one known point", [](Network& n) { n.knownPoints.pop_back(); }, "Known points are not enough||-1"},
      {"known point twice", [](Network& n) { n.knownPoints.push_back(n.knownPoints[1]); },
       "Know point name repeat|K2|-1"},
      {"station split by another", [](Network& n) { n.lines.push_back(line("K1", "P", 1.0, 0.0)); },
       "Station Point Name K1 Repeat|K1|-1"},
      {"coordinate that is no number",
       [](Network& n) { n.knownPoints[1].y = std::numeric_limits<double>::quiet_NaN(); }, "Data error|K2|-1"},
      {"coordinate that stands for a missing one", [](Network& n) { n.knownPoints[0].x = 1e30; }, "Data error|K1|-1"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Network network = smallNetwork();
    c.spoil(network);
    EXPECT_EQ(test::algorithmFailureOf([&] { inputOf(network); }), c.failure);
  }
}

TEST(ReadNetworkData, ReportsTheRepeatWhoseFirstPlaceComesFirst) {
  Network network = smallNetwork();
  for (char const* name : {"P", "Q", "P", "K1"}) network.lines.push_back(line(name, "K2", 0.1, 0.0));
  // K1 comes back last, but it stood first.
  EXPECT_EQ(test::failureOf<AlgorithmException>([&] { inputOf(network); }), "Station Point Name K1 Repeat");
}

TEST(ReadNetworkData, ANetworkWithoutLinesGivesAStationWithoutDirections) {
  Network network = smallNetwork();
  network.lines.clear();
  AlgorithmData const data = inputOf(network);
  EXPECT_EQ(data.stationsCount, 1);
  EXPECT_EQ(test::failureOf<AlgorithmException>([&] { kvn::TraverseAdjust().readAlgorithmData(data); }),
            "Station point is not enough");
}

}  // namespace
