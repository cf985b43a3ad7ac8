// The careful road: turned circles, and a network that does not depend on the order of the sights.
#include "support/FieldRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <iomanip>
#include <random>
#include <sstream>

namespace {

using namespace test;

// Turning adds and takes off full circles: some units in the last place of 2π.
constexpr double kRounding = 1e-14;

double reading(kvn::TraverseDataInfo const& row) { return row.horizontal_angle / kDegree; }

TEST(TurnedCircles, BringTheZeroTargetToOneMinute) {
  double const minute = 1 / 60.0;
  struct Case {
    char const* what;
    Rows rows;
    std::vector<double> readings;  // degrees, of the sights
  };
  Case const cases[] = {
      {"just below zero",
       twoFaces({sight("A", 360 - 3 / 3600.0, 90), sight("B", 90, 90)}),
       {minute, 90 + minute + 3 / 3600.0, 270 + minute + 3 / 3600.0, 180 + minute}},
      {"the one that reads near zero, not the first",
       twoFaces({sight("A", 200, 90), sight("B", 0, 90)}),
       {200 + minute, minute, 180 + minute, 20 + minute}},
      {"else the first",
       twoFaces({sight("A", 200, 90), sight("B", 100, 90)}),
       {minute, 260 + minute, 80 + minute, 180 + minute}},
      {"found on the second face", {sight("A", 180, 270), sight("B", 90, 90)}, {180 + minute, 90 + minute}},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Rows rows{station("S")};
    rows.insert(rows.end(), c.rows.begin(), c.rows.end());
    Rows const turned = kvn::turnedCircles(rows);
    ASSERT_EQ(turned.size(), rows.size());
    for (std::size_t i = 0; i < c.readings.size(); ++i) {
      EXPECT_NEAR(reading(turned[i + 1]), c.readings[i], kRounding / kDegree) << i;
    }
  }
}

TEST(TurnedCircles, TurnEachOccupationAndEachStationOfANetworkOnItsOwn) {
  Rows const rows{sight("early", 7, 90), station("S"),       sight("A", 20, 90),
                  station("T"),          sight("A", 30, 90), sight("B", 40, 90)};
  Rows const turned = kvn::turnedCircles(rows);
  EXPECT_NEAR(reading(turned[2]), 1 / 60.0, 1e-12);
  EXPECT_NEAR(reading(turned[5]), 10 + 1 / 60.0, 1e-12);
  kvn::Network network;
  for (auto const& [from, angle, isThere] :
       {std::tuple("S", 350.0, true), {"T", 0.0, false}, {"S", 10.0, true}, {"T", 30.0, true}}) {
    network.lines.emplace_back();
    network.lines.back().start_name = from;
    network.lines.back().horizontal_angle = angle * kDegree;
    network.lines.back().horizontalAngleFlag = isThere;
  }
  EXPECT_EQ(shortText(kvn::turnedCircles(network).lines),
            "S> 0.0167 0.0000\nT> 0.0000 0.0000\nS> 20.0167 0.0000\nT> 0.0167 0.0000\n");
}

/// A job of four stations around a square of 100 m with known corners K1, K2, as a careful observer would book it, and
/// its true coordinates.
Rows squareJob(std::vector<double> const& zeros) {
  struct Point {
    char const* name;
    double x, y;
  };
  Point const points[] = {{"K1", 0, 0}, {"K2", 100, 0}, {"P", 100, 100}, {"Q", 0, 100}};
  Rows rows;
  for (std::size_t i = 0; i < 4; ++i) {
    Point const& s = points[i];
    rows.push_back(i < 2 ? known(s.name, s.x, s.y) : station(s.name));
    Rows firstFace;
    for (std::size_t k : {(i + 3) % 4, (i + 1) % 4, (i + 2) % 4}) {
      double const azimuth = std::atan2(points[k].y - s.y, points[k].x - s.x) / kDegree;
      Point const& back = points[(i + 3) % 4];
      double const first = std::atan2(back.y - s.y, back.x - s.x) / kDegree;
      double const circle = std::fmod(azimuth - first + zeros[i] + 720, 360);
      firstFace.push_back(
          sight(points[k].name, circle, 88, std::hypot(points[k].x - s.x, points[k].y - s.y) / std::sin(88 * kDegree)));
    }
    Rows const sights = twoFaces(firstFace);
    rows.insert(rows.end(), sights.begin(), sights.end());
  }
  return grouped(rows);
}

/// Largest error of P and Q after a least-squares run; large when the run fails.
double errorOf(kvn::Network const& network) {
  kvn::AlgorithmAdjust adjustment;
  try {
    adjustment.setNetworkData(network);
    adjustment.calculateAdjust();
  } catch (std::exception const&) {
    return 1e9;
  }
  double error = 0;
  for (kvn::PointInfo const& point : adjustment.getPointList()) {
    double const x = point.name == "K2" || point.name == "P" ? 100 : 0;
    double const y = point.name == "P" || point.name == "Q" ? 100 : 0;
    error = std::max({error, std::abs(point.x - x), std::abs(point.y - y)});
  }
  return error;
}

double errorOfRows(Rows const& rows) { return errorOf(kvn::INetworkDataCollection::TraverseDataListToNetwork(rows)); }

TEST(TurnedCircles, ChangeNothingWhereTheReadingsAreRightAndMendTheSeam) {
  // 1e-9 m; a direction that is cut by 3" moves a point at 100 m by 1.5 mm.
  Rows const good = squareJob({0.01, 20, 100, 200});
  EXPECT_LT(errorOfRows(good), 1e-9);
  EXPECT_LT(errorOfRows(kvn::turnedCircles(good)), 1e-9);
  Rows const seam = squareJob({360 - 3 / 3600.0, 20, 100, 200});
  EXPECT_GT(errorOfRows(seam), 1e-4);
  EXPECT_LT(errorOfRows(kvn::turnedCircles(seam)), 1e-9);
  // The faces of a later target on both sides of the seam: their plain mean points the other way.
  Rows through = squareJob({0.01, 45, 100, 200});
  through[10].horizontal_angle = 6.283185307179586 - 1e-6;
  through[11].horizontal_angle = 3.141592653589793 + 1e-6;
  EXPECT_GT(errorOfRows(through), 1.0);
  EXPECT_LT(errorOfRows(kvn::turnedCircles(through)), 1e-9);
}

TEST(ReduceField, FindsTheSquareHoweverItWasObserved) {
  std::mt19937 random(3);
  for (int run = 0; run < 50; ++run) {
    SCOPED_TRACE(run);
    std::vector<double> zeros(4);
    for (double& zero : zeros) zero = static_cast<double>(random() % 360) - 2 / 3600.0 + 360;
    Rows rows = squareJob(zeros);
    // The sights of each station in any order; a distance on one face is enough.
    for (std::size_t i = 0; i < rows.size(); i += 7)
      std::shuffle(rows.begin() + static_cast<long>(i) + 1, rows.begin() + static_cast<long>(i) + 7, random);
    for (auto& row : rows) {
      bool const drops = row.vertical_angle > 3.2;
      if (drops) row.slant_distance = row.horizontal_distance = 0;
      if (drops) row.isSlantDistanceHave = false;
    }
    kvn::FieldReduction const reduced = kvn::reduceField(rows);
    EXPECT_TRUE(reduced.findings.empty());
    EXPECT_EQ(reduced.pairs.size(), 12U);
    EXPECT_LT(errorOf(reduced.network), 1e-9);
  }
}

TEST(ReduceField, JoinsRoundsAndOccupationsByTheirCommonTargets) {
  // B in one of three occupations, C in two: nothing is divided by what was not observed.
  Rows const rows{station("S"),       sight("A", 10, 90, 50), sight("C", 100, 90),  // first round
                  sight("A", 55, 90), sight("C", 145, 90),                          // circle turned by 45°
                  station("T"),       sight("A", 1, 90),                            //
                  station("S"),       sight("C", 359, 90),    sight("B", 29, 90, 70)};
  kvn::FieldReduction const reduced = kvn::reduceField(rows);
  EXPECT_EQ(shortText(reduced.network.lines),
            "S>A 10.0000 50.0000\nS>C 100.0000 0.0000\nS>B 130.0000 70.0000\nT>A 1.0000 0.0000\n");
}

TEST(ReduceField, JoinsRoundsInWhateverOrderTheyConnect) {
  // Round k has a target in common with round k + 1 alone, and the last stands first: 10 degrees from each to the next.
  Rows rows{station("S"), sight("T0", 5, 90), sight("T1", 15, 90)};
  for (int k = 4000; k >= 1; --k) {
    rows.push_back(station("S"));
    rows.push_back(sight("T" + std::to_string(k), 20, 90));
    rows.push_back(sight("T" + std::to_string(k + 1), 30, 90));
  }
  kvn::FieldReduction const reduced = kvn::reduceField(rows);
  for (kvn::NetworkDataInfo const& line : reduced.network.lines) {
    int const number = std::stoi(line.end_name.substr(1));
    // 4000 turns add up, each rounded.
    EXPECT_NEAR(line.horizontal_angle / kDegree, std::fmod(5 + 10.0 * number, 360), 1e-8) << number;
  }
}

TEST(ReduceField, TakesTheIndexErrorOffDistancesFromOneFace) {
  // An index error of 20" at 45°: 100 m measured on one face come out 7 mm off without the other face.
  double const error = 20 / 3600.0;
  Rows const rows{station("S"), sight("A", 0, 45 + error, 100), sight("A", 180, 315 + error),
                  sight("B", 9, 60 + error, 100)};
  kvn::FieldReduction const reduced = kvn::reduceField(rows);
  EXPECT_NEAR(reduced.network.lines[0].horizontal_distance, 100 * std::sqrt(0.5), 1e-9);
  EXPECT_NEAR(reduced.network.lines[1].horizontal_distance, 100 * std::sqrt(0.75), 1e-9);  // B has one face
}

/// "set-up: target direction(readings)" of all set-ups, and "from>to metres(rounds)" of all distances.
std::string observationsText(kvn::PlaneNetwork const& network) {
  std::ostringstream text;
  text << std::setprecision(4);
  for (std::size_t s = 0; s < network.setUps.size(); ++s) {
    text << network.points[std::size_t(network.setUps[s].station)].name << ':';
    for (auto const& d : network.directions) {
      if (d.setUp != static_cast<int>(s)) continue;
      text << ' ' << network.points[std::size_t(d.target)].name << ' ' << std::fixed << d.value / kDegree << '('
           << std::defaultfloat << d.readings << ')';
    }
    text << '\n';
  }
  for (auto const& d : network.distances) {
    text << network.points[std::size_t(d.from)].name << '>' << network.points[std::size_t(d.to)].name << ' '
         << std::fixed << d.value << '(' << d.rounds << ")\n";
  }
  return text.str();
}

TEST(ReduceField, KeepsSetUpsApartAndCountsReadings) {
  auto const withDistance = [](kvn::TraverseDataInfo row, double distance) {
    row.slant_distance = distance;
    row.isSlantDistanceHave = true;
    return row;
  };
  struct Case {
    char const* what;
    Rows rows;
    char const* observations;
  };
  Case const cases[] = {
      // The second round stands 30 degrees further; it is turned onto the first by the mean difference.
      {"two rounds on both faces",
       {station("S"), sight("A", 0, 90), sight("B", 10, 90), sight("B", 190, 270), sight("A", 180, 270),
        sight("A", 30, 90), sight("B", 40.002, 90), sight("B", 220.002, 270), sight("A", 210, 270)},
       "S: A 359.9995(4) B 10.0005(4)\n"},
      {"one face alone", {station("S"), sight("A", 0, 90), sight("B", 10, 90)}, "S: A 0.0000(1) B 10.0000(1)\n"},
      {"a round that lacks a target keeps its own orientation",
       {station("S"), sight("A", 0, 90), sight("B", 10, 90), sight("C", 20, 90), sight("A", 30, 90),
        sight("B", 40, 90)},
       "S: A 0.0000(1) B 10.0000(1) C 20.0000(1)\nS: A 30.0000(1) B 40.0000(1)\n"},
      // The tripod stands 0.02 degrees further: that enters neither a mean nor another target.
      {"the same, on a circle that was not turned",
       {station("S"), sight("A", 0, 90), sight("B", 10, 90), sight("C", 20, 90), sight("A", 0.02, 90),
        sight("B", 10.02, 90)},
       "S: A 0.0000(1) B 10.0000(1) C 20.0000(1)\nS: A 0.0200(1) B 10.0200(1)\n"},
      // The first round has an angle of 10 degrees, the one on one face of 10.003: it counts half as much. B, read
      // three
      // times, has the error of 8/3 readings: a quarter of 1/2 + 1.
      {"rounds count by their readings, the faces of each alike",
       {station("S"), sight("A", 0, 90), sight("B", 10, 90), sight("B", 190, 270), sight("A", 180, 270),
        sight("A", 0.01, 90), sight("B", 10.013, 90), station("T"), sight("B", 10, 90), sight("B", 10.002, 90),
        sight("B", 190.003, 270)},
       "S: A 359.9995(3) B 10.0005(3)\nT: B 10.0020(2.667)\n"},
      {"two set-ups, with and without a common target",
       {station("S"), sight("A", 0, 90), sight("B", 10, 90), station("S"), sight("A", 50, 90), sight("B", 60, 90),
        station("S"), sight("C", 70, 90)},
       "S: A 0.0000(1) B 10.0000(1)\nS: A 50.0000(1) B 60.0000(1)\nS: C 70.0000(1)\n"},
      {"distances of both faces are one round, those of two rounds two, turned or not",
       {station("S"), withDistance(sight("A", 0, 90), 100.0), withDistance(sight("B", 10, 90), 50.0),
        withDistance(sight("B", 190, 270), 50.002), withDistance(sight("A", 180, 270), 100.002),
        withDistance(sight("A", 0, 90), 100.004), withDistance(sight("A", 180, 270), 100.006)},
       "S: A 0.0000(4) B 10.0000(2)\nS>A 100.0030(2)\nS>B 50.0010(1)\n"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(observationsText(kvn::reduceField(c.rows).observations), c.observations);
  }
}

TEST(ReduceField, TellsWhatItCannotRelate) {
  auto noAngle = sight("A", 0, 0, 40);
  noAngle.angleMark = 0;
  struct Case {
    char const* what;
    Rows rows;
    char const* findings;  // severity, station, targets, row
    char const* lines;
  };
  Case const cases[] = {
      {"ahead of any station", {sight("A", 0, 90), station("S")}, "1  A 0\n", ""},
      {"one face",
       {station("S"), sight("A", 1, 90), sight("A", 181, 270), sight("B", 2, 90)},
       "1 S B 3\n",
       "S>A 1.0000 0.0000\nS>B 2.0000 0.0000\n"},
      {"one target, two readings on one face",
       {station("S"), sight("Z", 0, 90), sight("A", 1, 90), sight("A", 2, 90)},
       "2 S A 3\n1 S  0\n",
       "S>Z 0.0000 0.0000\nS>A 1.0000 0.0000\n"},
      {"and in two rounds",
       {station("S"), sight("Z", 0, 90), sight("A", 1, 90), sight("Z", 0, 90), sight("A", 2, 90)},
       "2 S A 4\n1 S  0\n",
       "S>Z 0.0000 0.0000\nS>A 1.0000 0.0000\n"},
      {"a tripod that turned between two rounds",
       {station("S"), sight("A", 1, 90), sight("B", 2, 90), sight("A", 1.01, 90), sight("B", 2.01, 90)},
       "1 S  0\n1 S  3\n",
       "S>A 1.0000 0.0000\nS>B 2.0000 0.0000\n"},
      // All rounds of one face before those of the other; C is not in the latter.
      {"the other face in another round",
       {station("S"), sight("A", 1, 90), sight("B", 2, 90), sight("C", 3, 90), sight("A", 1, 90), sight("B", 2, 90),
        sight("B", 182, 270), sight("A", 181, 270), sight("B", 182, 270), sight("A", 181, 270)},
       "1 S C 3\n",
       "S>A 1.0000 0.0000\nS>B 2.0000 0.0000\nS>C 3.0000 0.0000\n"},
      {"rounds without a common target",
       {station("S"), sight("A", 1, 90), station("S"), sight("B", 2, 90)},
       "1 S  0\n1 S B 3\n",
       "S>A 1.0000 0.0000\n"},
      {"nothing in common, and two stations: readings in the order of the rows, then what the stations have",
       {station("S"), sight("A", 1, 90), station("T"), sight("A", 1, 90, -1), station("S"), sight("B", 2, 90, -1)},
       "2 T A 3\n2 S B 5\n1 S  0\n1 S B 5\n1 T A 3\n",
       "S>A 1.0000 0.0000\nT>A 1.0000 0.0000\n"},
      {"a known point at two places", {known("S", 1, 1), known("S", 1, 1.001)}, "2 S  1\n", ""},
      {"a known point twice", {known("S", 1, 1), known("S", 1, 1)}, "", ""},
      {"a distance alone, and it cannot be made horizontal", {station("S"), noAngle}, "1 S A 1\n", ""},
      {"without vertical readings the faces are told by the horizontal ones",
       {station("S"), sight("A", 359.999, 0), sight("B", 10, 0), sight("B", 190, 0), sight("A", 180.001, 0)},
       "",
       "S>A 0.0000 0.0000\nS>B 10.0000 0.0000\n"},
      {"rounds that differ",
       {station("S"), sight("A", 0, 90), sight("B", 10, 90), station("S"), sight("A", 0, 90), sight("B", 10.02, 90)},
       "1 S  0\n1 S A 4\n1 S B 5\n",
       "S>A 359.9950 0.0000\nS>B 10.0050 0.0000\n"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    kvn::FieldReduction const reduced = kvn::reduceField(c.rows);
    std::string findings;
    for (kvn::FieldFinding const& finding : reduced.findings) {
      findings += std::to_string(finding.severity) + ' ' + finding.station + ' ';
      for (std::string const& target : finding.targets) findings += target;
      findings += ' ' + std::to_string(finding.row) + '\n';
    }
    EXPECT_EQ(findings, c.findings);
    EXPECT_EQ(shortText(reduced.network.lines), c.lines);
    // The round that the network lacks is told by its place in the list.
    QString const text = reduced.lostRound ? reduced.findings.at(*reduced.lostRound).text : QString();
    EXPECT_EQ(text.contains("no target in common"), std::string(c.what).find("common") != std::string::npos);
  }
}

TEST(ReduceField, MeasuresTheErrorsOfTheInstrument) {
  // Collimation 10" and index error 4": twice the first in the faces, the second as it is. Row 3 is the first face.
  Rows const rows{station("S"), sight("B", 5, 90), sight("A", 190 - 10 / 3600.0, 275 + 4 / 3600.0),
                  sight("A", 10 + 10 / 3600.0, 85 + 4 / 3600.0)};
  kvn::FieldReduction const reduced = kvn::reduceField(rows);
  ASSERT_EQ(reduced.pairs.size(), 1U);
  EXPECT_EQ(reduced.pairs[0].firstRow, 3U);
  EXPECT_NEAR(reduced.pairs[0].doubleCollimation, 20 * kSecond, kRounding);
  EXPECT_NEAR(reduced.pairs[0].indexError, 4 * kSecond, kRounding);
}

TEST(MarkKnownStations, GoesByCoordinatesThatAreThere) {
  Rows rows{station("A"), station("B"), station("C"), sight("D", 1, 90)};
  for (auto& row : rows) row.hasCoordinate = row.name != "C";
  rows[1].N = rows[2].N = rows[3].N = 2e-5;
  rows[0].N = 0.9e-5;
  kvn::markKnownStations(rows);
  std::string marked;
  for (auto const& row : rows) marked += row.isKnown ? row.name : "-";
  EXPECT_EQ(marked, "-B--");
}

TEST(FieldScatter, IsThatOfOneRound) {
  // 200 set-ups of four rounds and five targets, readings of 3" and distances of 2 mm: 2400 and 3000 redundant ones
  // leave a chance error of 1.4 % and 1.3 %; the bounds are three of them.
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  double squares[2] = {};
  int redundancy[2] = {};
  for (int setUp = 0; setUp < 200; ++setUp) {
    Rows rows{station("S")};
    for (int round = 0; round < 4; ++round) {
      for (int target = 0; target < 5; ++target) {
        double const reading = 20.0 * round + 50.0 * target + 5.0 + 3.0 / 3600.0 * normal(random);
        rows.push_back(
            sight(std::string(1, static_cast<char>('A' + target)), reading, 90.0, 100.0 + 0.002 * normal(random)));
      }
    }
    kvn::PlaneNetwork const network = kvn::reduceField(grouped(rows)).observations;
    ASSERT_EQ(network.setUps.size(), 1U);
    int kind = 0;
    for (kvn::PlaneNetwork::SetUp::Scatter const* scatter :
         {&network.setUps[0].directions, &network.setUps[0].distances}) {
      squares[kind] += scatter->error * scatter->error * scatter->redundancy;
      redundancy[kind++] += scatter->redundancy;
    }
  }
  EXPECT_EQ(redundancy[0], 200 * 3 * 4);
  EXPECT_EQ(redundancy[1], 200 * 3 * 5);
  EXPECT_NEAR(std::sqrt(squares[0] / redundancy[0]), 3.0 * kSecond, 0.042 * 3.0 * kSecond);
  EXPECT_NEAR(std::sqrt(squares[1] / redundancy[1]), 0.002, 0.039 * 0.002);
  // One round says nothing.
  kvn::PlaneNetwork const once = kvn::reduceField(grouped({station("S"), sight("A", 5, 90, 10)})).observations;
  EXPECT_EQ(once.setUps[0].directions.redundancy + once.setUps[0].distances.redundancy, 0);
  EXPECT_TRUE(std::isnan(once.setUps[0].directions.error));
}

TEST(BothEnds, AreToldOfOneGoodLineIn370) {
  // Three standard errors: 0.27 % of 20,000, with a chance error of 7.3.
  std::mt19937 random(12);
  std::normal_distribution<double> normal;
  constexpr double kCentring = 0.001;
  kvn::PlaneNetwork network;
  network.points.resize(40000);
  for (int line = 0; line < 20000; ++line) {
    double const length = 20.0 + line % 500;
    for (int end : {0, 1}) network.distances.push_back({2 * line + end, 2 * line + 1 - end, length, 0.0, 1 + line % 3});
  }
  kvn::setErrors(network, kvn::ObservationErrors());
  for (auto& d : network.distances) d.value += std::hypot(d.error, std::sqrt(2.0) * kCentring) * normal(random);
  auto const count = static_cast<double>(kvn::inspectNetwork(kvn::Network(), network, kCentring, false).size());
  EXPECT_NEAR(count, 54.0, 3 * 7.3);
}

TEST(Connections, OfAFreeNetworkAreThoseOfItsPointsToEachOther) {
  kvn::Network network;
  for (auto const& [from, to] : {std::pair("A", "B"), {"A", "C"}, {"X", "Y"}, {"B", "C"}}) {
    network.lines.emplace_back();
    network.lines.back().start_name = from;
    network.lines.back().end_name = to;
    network.lines.back().horizontal_distance = 10.0;
  }
  auto const namesOf = [](std::vector<kvn::FieldFinding> const& findings) {
    std::string names;
    for (kvn::FieldFinding const& finding : findings) names += finding.targets.front();
    return names;
  };
  EXPECT_EQ(namesOf(kvn::inspectNetwork(network, kvn::PlaneNetwork(), 0.0, true)), "XY");
  EXPECT_EQ(namesOf(kvn::inspectNetwork(network, kvn::PlaneNetwork(), 0.0, false)), "ABCXY");
  EXPECT_EQ(namesOf(kvn::inspectNetwork(network, kvn::Configure())), "ABCXY");
}

}  // namespace
