// adjust --method open, connect, closed.
#include "Program.h"
#include "support/Support.h"

#include "support/Support.h"

#include <gmock/gmock.h>
#include <cmath>

namespace {

using test::Program;
using testing::HasSubstr;

// A square of 100 m walked counter-clockwise, each angle 10" too large. Distances are measured both ways.
constexpr char const* kSquare =
    "10,3,0\nK1,0,0\nK2,-100,0\n"
    "K1\nK2,L,0\nP,L,90.0010\nP,S,100.02\n"
    "P\nK1,L,10\nK1,S,100.00\nQ,L,100.0010\nQ,S,100.01\n"
    "Q\nP,L,0\nK2,L,90.0010\nP,S,100.01\nK2,S,100.01\n"
    "K2\nQ,L,0\nK1,L,90.0010\nK1,S,100.00\n";

TEST(TraverseCommand, TellsTheConnectingTraverseInJson) {
  Json::Value const json =
      Program()
          .run({"adjust", test::samplePath("trav_connecting_fr_5legs.in2"), "--method", "connect", "--json"})
          .json();
  EXPECT_EQ(json["method"].asString(), "connect");
  EXPECT_EQ(json["counts"]["points"].asInt(), 8);
  EXPECT_EQ(json["counts"]["knownPoints"].asInt(), 4);
  EXPECT_EQ(json["counts"]["distances"].asInt(), 5);
  EXPECT_EQ(json["azimuths"].size(), 8U);
  Json::Value const& misclosure = json["misclosure"];  // the library's own test holds it against the published one
  EXPECT_NEAR(misclosure["fx"].asDouble(), 0.016, 1e-3);
  EXPECT_NEAR(misclosure["relative"].asDouble(), misclosure["fs"].asDouble() / 365.86, 1e-12);
  Json::Value const& first = json["stations"][0];
  EXPECT_EQ(first["back"].asString() + first["name"].asString() + first["fore"].asString(), "BA1");
  EXPECT_EQ(first["distance"].asDouble(), 78.12);
  EXPECT_NEAR(first["adjustedAngle"].asDouble() - first["angle"].asDouble(), misclosure["angleCorrection"].asDouble(),
              1e-14);
  EXPECT_TRUE(json["stations"][5]["distance"].isNull());
}

TEST(TraverseCommand, LeavesWhatAnOpenTraverseHasNot) {
  Json::Value const json =
      Program().run({"adjust", test::samplePath("trav_open_2legs.in2"), "--method", "open", "--json"}).json();
  EXPECT_FALSE(json.isMember("misclosure"));
  EXPECT_TRUE(json["stations"][0]["adjustedAngle"].isNull());
  EXPECT_NEAR(json["points"][3]["y"].asDouble(), 299.982, 0.0011);  // published
}

// From B, with A south of it, 50 m west to P and 30 m south to Q. A leg has an error of 3 mm, an angle of two
// directions 10" √2, which is 3.43 mm across 50 m and 2.06 mm across 30 m. So P has 3.43 mm to the north and 3 mm to
// the east, Q √(3.43² + 3²) to the north and, by both angles, √(2.06² + 3² + 2.06²) to the east.
TEST(TraverseCommand, PrintsAnOpenTraverseWithoutCorrections) {
  Program const program;
  program.write("open.in2", "10,3,0\nA,0,0\nB,100,0\nB\nA,L,0\nP,L,90\nP,S,50\nP\nB,L,0\nQ,L,90\nQ,S,30\n");
  std::string const text = program.run({"adjust", "open.in2", "--method", "open"}).out;
  EXPECT_THAT(text, HasSubstr("  Stations  2\n  Legs      2, 80.0000 m\n"));
  std::string const rows[] = {
      u8"  Point         Angle        Azimuth  Distance [m]    dx [m]    dy [m]  North x [m]  East y [m]",
      u8"  A                      0°00′00.00″                                         0.0000      0.0000",
      u8"  B      90°00′00.00″  270°00′00.00″       50.0000    0.0000  -50.0000     100.0000      0.0000",
      u8"  P      90°00′00.00″  180°00′00.00″       30.0000  -30.0000    0.0000     100.0000    -50.0000",
      u8"  Q                                                                         70.0000    -50.0000"};
  EXPECT_THAT(text, HasSubstr("\n" + rows[0] + "  mx [mm]  my [mm]  mp [mm]\n" + rows[1] + "\n" + rows[2] + "\n" +
                              rows[3] + "     3.43     3.00     4.56\n" + rows[4] + "     4.56     4.18     6.18\n"));
}

TEST(TraverseCommand, TakesDistancesToBothSides) {
  Program const program;
  program.write("square.in2", kSquare);
  test::Run const run = program.run({"adjust", "square.in2", "--method", "closed"});
  // The means of both ways are 100.01 for all three legs: the end is 10 mm too far south, of which each leg takes a
  // third.
  EXPECT_EQ(run.err, "Warning: the distances from both ends differ by 20.0 mm: P to K1\n");
  EXPECT_THAT(run.out,
              HasSubstr(u8"  P      90°00′10.00″  -10.00  180°00′00.00″      100.0100  -100.0100     0.0000     "
                        u8"3.33     0.00       0.0033   -100.0100     5.03     2.87     5.79\n"));
  EXPECT_THAT(run.out, HasSubstr(u8"  K2     90°00′10.00″  -10.00    0°00′00.00″                   "));
  EXPECT_THAT(run.out, HasSubstr("  Stations  4\n  Legs      3, 300.0300 m\n"));
  EXPECT_THAT(run.out, HasSubstr(u8"  Angles       40.00″, each angle corrected by -10.00″\n"
                                 u8"  fx           -0.0100 m\n"));
  EXPECT_THAT(run.out, HasSubstr("  Relative     1 : 30003\n"));
  // The library does not choose between two distances of a station.
  EXPECT_THAT(program.run({"adjust", "square.in2", "--method", "closed", "--as-read"}).err,
              HasSubstr("Warning: The leg from P to Q has no distance and counts as 0\n"));
}

std::string replaced(std::string text, std::string const& what, std::string const& by) {
  return text.replace(text.find(what), what.size(), by);
}

TEST(TraverseCommand, WarnsOfStationsOutsideThePolygonAndRefusesOneThatDoesNotClose) {
  Program const program;
  auto const run = [&program](std::string const& file) {
    program.write("polygon.in2", file);
    return program.run({"adjust", "polygon.in2", "--method", "closed", "--json"});
  };
  test::Run const outside = run(std::string(kSquare) + "R\nS,L,0\nT,L,90\nU\nS,L,0\nT,L,90\n");
  EXPECT_EQ(outside.exitCode, 0);
  EXPECT_THAT(outside.err, HasSubstr("Warning: Stations outside the traverse are left out: R, U\n"));
  // With what check finds: the ends of a leg, and points that nothing connects.
  EXPECT_EQ(outside.json()["messages"].size(), 3U) << outside.err;
  test::Run const open = run(replaced(replaced(kSquare, "K1,L,90.0010", "M,L,90.0010"), "10,3,0\n", "10,3,0\nM,0,9\n"));
  EXPECT_EQ(open.exitCode, 1);
  EXPECT_THAT(open.err, HasSubstr("Known points are not enough: M (the last station is known, and looks forward to the "
                                  "first)\n"));
}

TEST(TraverseCommand, JudgesMisclosuresAndNamesWhatExplainsThem) {
  Program const program;
  // The leg P to Q half a metre too long, in both ways: 10 mm a leg are allowed, but for the leg the square is exact.
  std::string const wrong = replaced(replaced(kSquare, "Q,S,100.01\n", "Q,S,100.51\n"), "P,S,100.01", "P,S,100.51");
  program.write("square.in2", wrong);
  QStringList const arguments{"adjust", "square.in2", "--method", "closed", "--json"};
  test::Run const refused = program.run(arguments);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("kelvane: square.in2: The misclosure along the traverse is 510.0 mm, where"));
  test::Run const forced = program.run(arguments + QStringList{"--force"});
  EXPECT_EQ(forced.exitCode, 0);
  Json::Value const misclosure = forced.json()["misclosure"];
  EXPECT_NEAR(misclosure["angle"].asDouble() * 206264.8, 40.0, 0.01);
  EXPECT_NEAR(misclosure["angleAllowed"].asDouble() * 206264.8, 2.576 * 10.0 * std::sqrt(8.0), 0.01);
  ASSERT_EQ(misclosure["suspects"].size(), 1U) << forced.err;
  EXPECT_EQ(misclosure["suspects"][0]["kind"].asString(), "leg");
  EXPECT_EQ(misclosure["suspects"][0]["station"].asString(), "P");
  EXPECT_NEAR(misclosure["suspects"][0]["gross"].asDouble(), 0.5, 0.02);
  EXPECT_THAT(forced.err, HasSubstr(": it would be explained by the leg from P to Q, "));
  // 40" of four angles are 20" for the root of their number.
  program.write("square.in2", kSquare);
  QStringList const limits{"--allowed-angle", "19", "--allowed-relative", "40000"};
  test::Run const limited = program.run(arguments + limits);
  EXPECT_EQ(limited.exitCode, 0);
  EXPECT_THAT(limited.err,
              HasSubstr(u8"The angular misclosure is 40.0″, beyond the limit of 38.0″: traverse from K1 to K2\n"));
  EXPECT_THAT(
      limited.err,
      HasSubstr("The relative misclosure is 1 : 30003, beyond the limit of 1 : 40000: traverse from K1 to K2\n"));
}

TEST(TraverseCommand, ComputesSideShotsOfEveryStation) {
  Program const program;
  // A straight line to the east; a point 10 m north of A, and one 20 m south of P.
  program.write("side.in2",
                "5,5,5\nB,0,-100\nA,0,0\nC,0,300\nD,0,400\nA\nB,L,0\nX,L,90\nX,S,10\nP,L,180\nP,S,150\n"
                "P\nA,L,0\nC,L,180\nC,S,150\nY,L,270\nY,S,20\nC\nP,L,0\nD,L,180\n");
  for (char const* method : {"connect", "traverse"}) {
    Json::Value const json = program.run({"adjust", "side.in2", "--method", method, "--json"}).json();
    EXPECT_EQ(json["method"].asString(), "connect");
    ASSERT_EQ(json["sidePoints"].size(), 2U);
    Json::Value const& x = json["sidePoints"][0];
    EXPECT_NEAR(x["x"].asDouble(), 10.0, 1e-9);
    EXPECT_NEAR(x["y"].asDouble(), 0.0, 1e-9);
    // From a known point: a + b S along the ray, and the angle of two directions across.
    EXPECT_NEAR(x["mx"].asDouble(), 0.00505, 1e-9);
    EXPECT_NEAR(x["my"].asDouble(), 10.0 * 5.0 * std::sqrt(2.0) / 206264.8, 1e-9);
    EXPECT_NEAR(json["sidePoints"][1]["x"].asDouble(), -20.0, 1e-9);
    EXPECT_NEAR(json["sidePoints"][1]["y"].asDouble(), 150.0, 1e-9);
  }
}

// A misread name or distance puts one point in two places, of which the first stays.
TEST(TraverseCommand, ComparesTheShotsOfOnePoint) {
  Program const program;
  program.write("side.in2",
                "5,5,5\nB,0,-100\nA,0,0\nC,0,300\nD,0,400\nA\nB,L,0\nX,L,90\nX,S,10\nP,L,180\nP,S,150\n"
                "P\nA,L,0\nC,L,180\nC,S,150\nX,L,270\nX,S,20\nC\nP,L,0\nD,L,180\n");
  test::Run const run = program.run({"adjust", "side.in2", "--method", "traverse", "--short"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("from its other position, which stays"));
  EXPECT_THAT(run.out, HasSubstr("P to X"));
}

TEST(TraverseCommand, ComparesSideShotsWithKnownPoints) {
  Program const program;
  auto const run = [&program](char const* north, QStringList const& more) {
    program.write("side.in2", std::string("5,5,5\nB,0,-100\nA,0,0\nC,0,300\nD,0,400\nX,") + north +
                                  ",0\nA\nB,L,0\nX,L,90\nX,S,10\nP,L,180\nP,S,150\nP\nA,L,0\nC,L,180\n"
                                  "C,S,150\nC\nP,L,0\nD,L,180\n");
    return program.run(QStringList{"adjust", "side.in2", "--method", "connect"} + more);
  };
  // 10 m to the north, with 5.05 mm along the ray: 99 % of both coordinates together are within √9.21 of that.
  test::Run const good = run("10.015", {"--json"});
  EXPECT_EQ(good.err, "");
  Json::Value const side = good.json()["sidePoints"][0];
  EXPECT_NEAR(side["x"].asDouble(), 10.0, 1e-9);
  EXPECT_NEAR(side["offNorth"].asDouble(), -0.015, 1e-9);
  EXPECT_NEAR(side["offEast"].asDouble(), 0.0, 1e-9);
  EXPECT_NEAR(side["offAllowed"].asDouble(), std::sqrt(9.21) * 0.00505, 1e-8);
  test::Run const bad = run("10.016", {"--save", "out.dat"});
  EXPECT_THAT(bad.err, HasSubstr("Warning: the side shot misses the known point by 16.0 mm, where the a-priori errors "
                                 "allow 15.3 mm: A to X\n"));
  EXPECT_THAT(bad.out, HasSubstr("known, off by 16.00 mm"));
  EXPECT_THAT(program.read("out.dat"), HasSubstr("X,,0.0000,10.0160,"));  // stays as it is given
}

/// A straight line to the east from A to C over P, and X 20 m south of P. Between P and its neighbours 150 m level; the
/// marks of A and C differ by 0.4 m.
std::string bookWithHeights(int rounds, std::string const& heightOfA, std::string const& heightOfC) {
  std::string const north = "1000";
  std::string book = "STA,B,0,," + north + ",-100," + heightOfA + "\nSTA,D,0,," + north + ",400," + heightOfC + "\n";
  struct Sighted {
    char const* target;
    int reading;
    char const* height;
    char const* distance;
  };
  auto const occupy = [&](std::string const& record, std::vector<Sighted> const& targets) {
    book += record + "\n";
    for (int round = 0; round < rounds; ++round) {
      for (int face = 0; face < 2; ++face) {
        for (Sighted const& s : targets) {
          book += std::string("SC,") + s.target + "," + s.height + ",," +
                  std::to_string((s.reading + 10 * round + 180 * face) % 360) + ".0000," + (face == 0 ? "90" : "270") +
                  ".0000," + s.distance + ",0,0,0\n";
        }
      }
    }
  };
  occupy("STA,A,1.5,," + north + ",0," + heightOfA, {{"B", 0, "0", ""}, {"P", 180, "1.3", "150"}});
  occupy("STA,P,1.6,,0,0,0", {{"A", 0, "1.8", "150"}, {"X", 270, "2.0", "20"}, {"C", 180, "1.4", "150"}});
  occupy("STA,C,1.5,," + north + ",300," + heightOfC, {{"P", 0, "1.7", "150"}, {"D", 180, "0", ""}});
  return book;
}

// A level sight of 150 m rises by 0.84 D² / 2R = 1.483 mm; P lies 0.2 m above A and below C by both ends of each line,
// whose curvature cancels. X lies 1.6 m - 2.0 m + 0.026 mm above P.
TEST(TraverseCommand, GivesHeightsBesideThePlane) {
  Program const program;
  program.write("book.txt", bookWithHeights(1, "50", "50.4"));
  for (char const* method : {"connect", "traverse"}) {
    SCOPED_TRACE(method);
    test::Run const run = program.run({"adjust", "book.txt", "--method", method, "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    Json::Value const json = run.json();
    ASSERT_EQ(json["points"].size(), 5U);
    EXPECT_EQ(json["points"][1]["height"].asDouble(), 50.0);
    EXPECT_EQ(json["points"][1]["heightError"].asDouble(), 0.0);
    EXPECT_EQ(json["points"][2]["name"].asString(), "P");
    EXPECT_NEAR(json["points"][2]["height"].asDouble(), 50.2, 1e-6);
    double const x = json["points"][2]["height"].asDouble() - 0.4 + 0.84 * 400.0 / (2.0 * 6371393.0);
    EXPECT_NEAR(json["sidePoints"][0]["height"].asDouble(), x, 1e-6);
    EXPECT_GT(json["sidePoints"][0]["heightError"].asDouble(), json["points"][2]["heightError"].asDouble());
    EXPECT_EQ(json["heights"]["redundancy"].asInt(), 3);
    std::string const text = program.run({"adjust", "book.txt", "--method", method}).out;
    EXPECT_THAT(text, HasSubstr("mp [mm]  Height [m]  mh [mm]\n"));
    EXPECT_THAT(text, HasSubstr("1000.0000    150.0000     0.84     1.72     1.92     50.2000     0.86\n"));
    EXPECT_THAT(text, HasSubstr("49.8000  1.48 (unchecked)\n"));
  }
  // By the options of heights: the error of a difference is √2 h where nothing else counts.
  QStringList const exact{
      "--refraction", "1", "--refraction-error", "0", "--zenith-error", "0.00001", "--height-error", "10", "--json"};
  Json::Value const weighed = program.run(QStringList{"adjust", "book.txt", "--method", "connect"} + exact).json();
  // Four differences hold P; they agree to 0 without curvature, so that the a-posteriori error is 0 as well.
  EXPECT_NEAR(weighed["points"][2]["heightError"].asDouble(), 0.0, 1e-9);
  EXPECT_NEAR(weighed["sidePoints"][0]["height"].asDouble(), 49.8, 1e-9);
  program.write("plan.txt", bookWithHeights(1, "0", "0"));
  test::Run const plan = program.run({"adjust", "plan.txt", "--method", "connect", "--json"});
  EXPECT_EQ(plan.exitCode, 0);
  EXPECT_EQ(plan.err, "Info: No heights: every known height is 0\n");
  EXPECT_TRUE(plan.json()["points"][2]["height"].isNull());
  EXPECT_TRUE(plan.json()["heights"].isNull());
}

TEST(TraverseCommand, CountsTheRoundsOfItsObservations) {
  Program const program;
  auto const run = [&program](int rounds) {
    program.write("book.txt", bookWithHeights(rounds, "50", "50.4"));
    return program.run({"adjust", "book.txt", "--method", "connect", "--json"}).json();
  };
  Json::Value const one = run(1);
  Json::Value const four = run(4);
  // Three angles of two directions each, 2"; legs by the mean of both ways, 3 mm + 3 ppm.
  double const angle = 2.576 * 2.0 * std::sqrt(6.0) / 206264.8;
  EXPECT_NEAR(one["misclosure"]["angleAllowed"].asDouble(), angle, 1e-9);
  EXPECT_NEAR(one["misclosure"]["alongAllowed"].asDouble(), 2.576 * 0.00345, 1e-6);
  for (char const* allowed : {"angleAllowed", "alongAllowed", "acrossAllowed"}) {
    EXPECT_NEAR(four["misclosure"][allowed].asDouble(), one["misclosure"][allowed].asDouble() / 2.0, 1e-9) << allowed;
  }
  for (char const* error : {"mx", "my"}) {
    EXPECT_NEAR(four["sidePoints"][0][error].asDouble(), one["sidePoints"][0][error].asDouble() / 2.0, 1e-9) << error;
  }
}

// Source: samples/README.md. It rounds corrections and increments to centimetres on the way: 7 mm.
TEST(TraverseCommand, AgreesWithThePublishedLoopOnOneKnownPoint) {
  Json::Value const json =
      Program().run({"adjust", test::samplePath("trav_closed_5sides.in2"), "--method", "closed", "--json"}).json();
  EXPECT_NEAR(json["misclosure"]["angle"].asDouble() * 206264.8, -36.0, 0.005);
  EXPECT_TRUE(json["misclosure"]["along"].isNull());
  double const published[][2] = {{1103.94, 2103.93}, {1222.60, 2066.40}, {1235.18, 1934.68}, {1086.82, 1860.86}};
  ASSERT_EQ(json["points"].size(), 6U);
  for (Json::ArrayIndex i = 0; i < 4; ++i) {
    EXPECT_NEAR(json["points"][i + 2]["x"].asDouble(), published[i][0], 0.007);
    EXPECT_NEAR(json["points"][i + 2]["y"].asDouble(), published[i][1], 0.007);
  }
}

TEST(TraverseCommand, ShowsTheMisclosureOfACheckShot) {
  Program const program;
  program.write("check.in2",
                "5,5,5\nB,0,-100\nA,0,0\nC,0,300\nA\nB,L,0\nP,L,180\nP,S,150\nP\nA,L,0\nC,L,180\nC,S,150.004\n");
  Json::Value const json = program.run({"adjust", "check.in2", "--method", "traverse", "--json"}).json();
  EXPECT_EQ(json["method"].asString(), "open");
  EXPECT_NEAR(json["misclosure"]["fy"].asDouble(), 0.004, 1e-9);
  EXPECT_NEAR(json["misclosure"]["along"].asDouble(), 0.004, 1e-9);
  // Two legs of 150 m by 5 mm + 5 ppm; across, angles of two directions of 5" that turn 300 m and 150 m.
  EXPECT_NEAR(json["misclosure"]["alongAllowed"].asDouble(), 2.576 * std::sqrt(2.0) * 0.00575, 1e-6);
  double const angle = 5.0 * std::sqrt(2.0) / 206264.8;
  EXPECT_NEAR(json["misclosure"]["acrossAllowed"].asDouble(), 2.576 * angle * std::hypot(300.004, 150.004), 1e-6);
  EXPECT_TRUE(json["misclosure"]["angle"].isNull());
}

TEST(TraverseCommand, TakesAPolygonWalkedClockwise) {
  Program const program;
  std::string const clockwise =
      "1,1,1\nK1,0,0\nK2,-100,0\nK1\nK2,L,0\nP,L,270\nP,S,100\nP\nK1,L,0\nQ,L,270\nQ,S,100\nQ\nP,L,0\nK2,L,270\n"
      "K2,S,100\nK2\nQ,L,0\nK1,L,270\n";
  program.write("polygon.in2", clockwise);
  Json::Value const points = program.run({"adjust", "polygon.in2", "--method", "closed", "--json"}).json()["points"];
  ASSERT_EQ(points.size(), 4U);
  EXPECT_NEAR(points[2]["x"].asDouble(), -100, 1e-6);  // Q, the square being exact
  EXPECT_NEAR(points[2]["y"].asDouble(), 100, 1e-6);
  // Folded into two circles as the library does, the outer angles lose 90 degrees each; that is told.
  test::Run const literal = program.run({"adjust", "polygon.in2", "--method", "closed", "--as-read"});
  EXPECT_THAT(literal.err, HasSubstr(u8"Warning: The angles are off by 360°00′00.00″; the stations must go around"));
}

TEST(TraverseCommand, NamesWhereATraverseFails) {
  Program const program;
  std::string const head = "1,1,1\nA,0,0\nB,100,0\n";
  std::string const start = "B\nA,L,0\nP,L,90\nP,S,50\n";
  struct Case {
    char const* method;
    std::string lines;
    char const* says;
  };
  Case const cases[] = {
      {"connect", start + "P\nB,L,0\nQ,L,90\nQ,S,50\n",
       "Known points are not enough: the traverse ends at P and looks forward to Q, which both have to be known\n"},
      {"closed", start + "P\nB,L,0\nQ,L,90\nQ,S,50\n", "Known points are not enough: Q (the last station is known"},
      {"open", start + "P\nB,L,0\nQ,L,90\n", "Station name [P] distance is 0\n"},
      {"connect", start + "P\nB,L,0\nQ,L,90\nR,L,95\n", "Station Point Name P Repeat (a station has just two"},
      {"open", start + "R\nB,L,0\nQ,L,90\nQ,S,5\n", "Data error (the stations make no single chain"},
      {"open", "P\nB,L,0\nQ,L,90\n", "Known points are not enough: No start data (no known station has a known back"},
      {"closed", start + "P\nB,S,-3\nB,L,0\nA,L,90\n", "line 9 the distance is negative: B,S,-3\n"},
  };
  for (Case const& c : cases) {
    program.write("net.in2", head + c.lines);
    test::Run const run = program.run({"adjust", "net.in2", "--method", c.method});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr(std::string("kelvane: net.in2: ") + c.says));
    EXPECT_EQ(run.out, "");
  }
}

}  // namespace
