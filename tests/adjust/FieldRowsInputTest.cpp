// Loading the rows of a field job into the calculators' input.
#include "support/FieldRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <utils/QLogicError.h>

namespace {

using namespace test;
using kvn::AlgorithmData;

constexpr double kSecondInDegrees = 1 / 3600.0;

/// Two known points and the rows.
Rows withControl(Rows const& rows) { return Rows{known("K1", 0, 0), known("K2", 0, 9)} + rows; }

AlgorithmData loaded(Rows const& rows) {
  AlgorithmData data;
  data.initVRDData(rows);
  return data;
}

std::string directions(AlgorithmData const& data) {
  QString text;
  for (kvn::StationInfo const& info : data.stations) {
    text += QString::fromStdString(info.name) + ':';
    for (kvn::LineInfo const& d : info.directions) {
      text += QString(" %1 %2").arg(QString::fromStdString(d.end_name), QString::number(d.value / kDegree, 'f', 5));
    }
    text += '\n';
  }
  return text.toStdString();
}

std::string distances(AlgorithmData const& data) {
  QString text;
  for (kvn::StationInfo const& info : data.stations) {
    for (kvn::LineInfo const& d : info.lines) {
      text += QString("%1>%2 %3 ")
                  .arg(QString::fromStdString(d.start_name), QString::fromStdString(d.end_name))
                  .arg(d.value);
    }
  }
  return text.toStdString();
}

TEST(InitVrdData, TakesTheMeanOfTheFaces) {
  struct Case {
    char const* what;
    Rows sights;
    char const* directions;
  };
  double const s = kSecondInDegrees;
  Case const cases[] = {
      {"second face backward",
       {sight("A", 10, 90), sight("B", 50, 90), sight("B", 230.002, 270), sight("A", 190, 270)},
       "S: A 10.00000 B 50.00100\n"},
      {"second face below half a circle",
       {sight("A", 10, 90), sight("B", 250, 90), sight("B", 70, 270), sight("A", 190, 270)},
       "S: A 10.00000 B 250.00000\n"},
      {"zero target on both sides of zero",
       {sight("A", 360 - 2 * s, 90), sight("A", 180 + 2 * s, 270)},
       "S: A 0.00000\n"},
      {"the other way round", {sight("A", 2 * s, 90), sight("A", 180 - 2 * s, 270)}, "S: A 0.00000\n"},
      {"both below zero", {sight("A", 360 - 2 * s, 90), sight("A", 180 - 4 * s, 270)}, "S: A -0.00083\n"},
      {"359.5 degrees and more are below zero", {sight("A", 359.6, 90), sight("A", 179.6, 270)}, "S: A -0.40000\n"},
      {"less is not", {sight("A", 359.4, 90), sight("A", 179.4, 270)}, "S: A 359.40000\n"},
      {"the bound between the faces", {sight("A", 359.5 + s, 90), sight("A", 179.5 - s, 270)}, "S: A -0.50000\n"},
      {"the second face too far from zero", {sight("A", 0.4, 90), sight("A", 179, 270)}, "S: A 179.70000\n"},
      {"the first face too far from zero", {sight("A", 0.6, 90), sight("A", 179.8, 270)}, "S: A 180.20000\n"},
      {"no pair of faces", {sight("A", 10, 90), sight("A", 120, 270)}, "S: A 155.00000\n"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(directions(loaded(withControl(Rows{station("S")} + c.sights))), c.directions);
  }
}

TEST(InitVrdData, ReducesDistancesByTheSineWhateverTheCircle) {
  Rows rows = withControl(
      {station("S"), sight("Z", 0, 90), sight("A", 10, 60, 100), sight("A", 190, 300, 102), sight("Z", 180, 270)});
  for (auto& row : rows) row.verticalAngleType = kvn::ElevationAngle;
  AlgorithmData const data = loaded(rows);
  ASSERT_EQ(data.stations[0].lines.size(), 1U);
  EXPECT_NEAR(data.stations[0].lines[0].value, 101 * std::sqrt(0.75), 1e-12);
  EXPECT_TRUE(data.stations[0].directions[0].start_name.empty());
}

TEST(InitVrdData, KeepsADistanceWithTheStationThatLooksForward) {
  Rows const rows = withControl(Rows{station("S")} + twoFaces({sight("Z", 0, 90, 7), sight("A", 10, 90, 50)}) +
                                Rows{station("A")} + twoFaces({sight("S", 0, 90, 52), sight("C", 90, 90, 60)}));
  AlgorithmData const data = loaded(rows);
  EXPECT_EQ(distances(data), "S>A 51 A>C 60 ");  // S>Z and A>S were to the first targets
  EXPECT_EQ(data.linesCount, 2);
  EXPECT_EQ(data.pointsCount, 4);
  EXPECT_EQ(data.directionsCount, 4);
}

TEST(InitVrdData, DropsDistancesFromAnEarlierToALaterKnownPointAndStepsPastTheNext) {
  Rows rows{known("K1", 0, 0)};
  rows = rows + twoFaces({sight("Z", 0, 90), sight("K2", 10, 90, 5), sight("K3", 20, 90, 6), sight("K4", 30, 90, 7)});
  rows = rows + Rows{known("K2", 0, 5), known("K3", 0, 6), known("K4", 0, 7)} +
         twoFaces({sight("Z", 0, 90), sight("K2", 10, 90, 2)});
  AlgorithmData const data = loaded(rows);
  EXPECT_EQ(distances(data), "K1>K3 6 K4>K2 2 ");
  EXPECT_EQ(data.linesCount, 0);
}

TEST(InitVrdData, RefusesRowsThatItCannotGroup) {
  Rows const good = twoFaces({sight("A", 1, 90), sight("B", 2, 90)});
  auto const first = [](Rows const& rows) { return failureOf<kvn::DataException>([&] { loaded(rows); }); };
  EXPECT_EQ(first({sight("A", 1, 90), station("S")}), "The line 1 error");
  struct Case {
    char const* text;
    Rows rows;
  };
  Case const grouping[] = {{"the line 4 row_number is empty", withControl({station("S"), sight("", 1, 90)})},
                           {"The line 4 error", withControl({station("S"), station("")})},
                           {"Station point name S error", withControl({station("S"), sight("A", 1, 90)})}};
  for (Case const& c : grouping) EXPECT_EQ(failureOf<QLogicError>([&] { loaded(c.rows); }), c.text);
  Rows const repeated = twoFaces({sight("A", 1, 90), sight("A", 2, 90)});
  Case const checks[] = {
      {"Station point is not enough||-1", {}},
      {"Station point is not enough||-1", {station("S")}},
      {"Known points are not enough||-1", Rows{known("S", 0, 0)} + good},
      {"Station Point Name S Repeat|S|-1", Rows{station("S")} + good + Rows{station("S")} + good},
      {"Know point name repeat|K1|-1", withControl(Rows{known("K1", 0, 0)} + good)},
      {"Sight point name repeat|A|-1", withControl(Rows{station("S")} + repeated)},
  };
  for (Case const& c : checks) EXPECT_EQ(algorithmFailureOf([&] { loaded(c.rows); }), c.text);
}

TEST(InitVrdData, TakesAStationWithoutDirectionsFromAnEarlierLoad) {
  kvn::Network network;
  network.knownPoints = {{"A", 0, 0, 0}, {"B", 0, 9, 0}};
  AlgorithmData data;
  data.readNetworkData(network);  // stores a station without name and directions
  data.initVRDData(Rows{station("S")} + twoFaces({sight("A", 1, 90, 5)}));
  EXPECT_EQ(data.stationsCount, 2);
}

}  // namespace
