// adjust by default: every observation counts by itself and is told with what checks it.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <json/reader.h>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>

namespace {

using test::Program;
using testing::HasSubstr;

Json::Value adjusted(Program const& program, QString const& file, QStringList const& options = {}) {
  return program.run(QStringList{"adjust", file, "--json"} + options).json();
}

std::set<std::string> keysOf(Json::Value const& object) {
  std::vector<std::string> const names = object.getMemberNames();
  return {names.begin(), names.end()};
}

TEST(EveryObservation, ADistanceFromBothEndsHasTwoRowsAndCountsTwice) {
  Program const program;
  // P lies 100 m north of A; each distance is good to 5 mm.
  program.write("net.in2", "2,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,270\nP,S,100.002\nP\nA,S,99.998\n");
  Json::Value const json = adjusted(program, "net.in2", {"--sigma0", "a-priori"});
  ASSERT_EQ(json["distances"].size(), 2U);
  EXPECT_EQ(json["counts"]["distances"].asInt(), 2);
  EXPECT_EQ(json["redundancy"].asInt(), 1);
  EXPECT_NEAR(json["points"][2]["x"].asDouble(), 100.0, 1e-6);
  EXPECT_NEAR(json["points"][2]["mx"].asDouble(), 0.005 / std::sqrt(2.0), 1e-8);
  EXPECT_NEAR(json["unitError"].asDouble(), std::sqrt(2.0) * 0.002 / 0.005, 1e-6);
  for (Json::Value const& distance : json["distances"]) {
    bool const isBack = distance["from"] == "P";
    EXPECT_EQ(distance["line"].asInt(), isBack ? 9 : 7);
    EXPECT_NEAR(distance["residual"].asDouble(), isBack ? 0.002 : -0.002, 1e-6);
    EXPECT_NEAR(distance["redundancy"].asDouble(), 0.5, 1e-6);
    // 4.13 standard errors over the root of the redundancy.
    EXPECT_NEAR(distance["detectable"].asDouble(), 4.13 * 0.005 * std::sqrt(2.0), 1e-6);
  }
  // Its direction is one of two that make one angle: nothing checks it, and P moves with it.
  EXPECT_FALSE(json["points"][2]["checked"].asBool());
  ASSERT_EQ(json["unchecked"].size(), 3U);
  EXPECT_EQ(json["unchecked"][0]["kind"].asString() + json["unchecked"][0]["name"].asString(), "pointP");
  EXPECT_EQ(json["unchecked"][1]["kind"], "direction");
  EXPECT_EQ(json["messages"][0]["text"].asString(), "Nothing checks: P");
}

TEST(EveryObservation, SetUpsOfAStationKeepTheirOrientations) {
  Program const program;
  std::string const head = "2,5,0\nA,0,0\nB,0,100\n";
  std::string const first = "A\nB,L,0\nP,L,270\nP,S,100\n";
  // The circle stands 30° further.
  std::string const second = "A\nB,L,30\nP,L,300.0003\n";
  std::string const between = "B\nA,L,0\nP,L,45\n";
  program.write("apart.in2", head + first + between + second);
  program.write("behind.in2", head + first + second + between);
  program.write("book.txt",
                "STA,A,1.5,,0,0.001,1\nSC,B,1.5,,0.0000,90.0000,,0,0,0\nSC,P,1.5,,270.0000,90.0000,100,0,0,0\n"
                "STA,B,1.5,,0,100,1\nSC,A,1.5,,0.0000,90.0000,,0,0,0\nSC,P,1.5,,45.0000,90.0000,,0,0,0\n"
                "STA,A,1.5,,0,0.001,1\nSC,B,1.5,,30.0000,90.0000,,0,0,0\nSC,P,1.5,,300.0003,90.0000,,0,0,0\n");
  struct Case {
    char const* file;
    int line;  // of the first observation, or the station row, of the second set-up
  };
  for (Case const& c : {Case{"apart.in2", 12}, {"behind.in2", 9}, {"book.txt", 7}}) {
    SCOPED_TRACE(c.file);
    Json::Value const json = adjusted(program, c.file);
    EXPECT_EQ(json["counts"]["stations"].asInt(), 2);
    EXPECT_EQ(json["counts"]["setUps"].asInt(), 3);
    std::vector<double> degrees;
    std::vector<int> lines;
    for (Json::Value const& circle : json["directions"]) {
      if (circle["station"] != "A") continue;
      degrees.push_back(circle["orientation"].asDouble() * 180.0 / std::acos(-1.0));
      EXPECT_EQ(circle["setUp"].asInt(), static_cast<int>(degrees.size()));
      lines.push_back(circle["line"].asInt());
    }
    // B lies to the east; within the 3" by which the set-ups differ.
    ASSERT_EQ(degrees.size(), 2U);
    EXPECT_EQ(lines[1], c.line);
    EXPECT_NEAR(degrees[0], 90.0, 0.001);
    EXPECT_NEAR(degrees[1], 60.0, 0.001);
    EXPECT_THAT(program.run({"adjust", c.file}).out, HasSubstr("  A (2)    B "));
  }
}

TEST(EveryObservation, AgreesWithAnotherProgramObservationByObservation) {
  Program const program;
  // Computed by another adjustment program (tests/adjust/peer has the list); it prints 1e-7 of m0 and redundancy.
  for (char const* name : {"start_gama-local", "synth_chain50"}) {
    SCOPED_TRACE(name);
    QString const base = QString(KELVANE_SOURCE_DIR "/tests/adjust/peer/") + name;
    Json::Value expected;
    std::ifstream file(base.toStdString() + ".json");
    ASSERT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), file, &expected, nullptr));
    Json::Value const json = adjusted(program, base + ".in2");
    EXPECT_NEAR(json["unitError"].asDouble(), expected["m0"].asDouble(), 1e-4);
    EXPECT_EQ(json["redundancy"].asInt(), expected["dof"].asInt());
    for (Json::Value const& point : json["points"]) {
      Json::Value const& other = expected["points"][point["name"].asString()];
      EXPECT_NEAR(point["x"].asDouble(), other["N"].asDouble(), 1e-6);
      EXPECT_NEAR(point["y"].asDouble(), other["E"].asDouble(), 1e-6);
    }
    std::vector<std::pair<int, double>> redundancies;  // by line, as the file has them
    for (Json::Value const& circle : json["directions"]) {
      for (Json::Value const& target : circle["targets"]) {
        redundancies.emplace_back(target["line"].asInt(), target["redundancy"].asDouble());
      }
    }
    for (Json::Value const& distance : json["distances"]) {
      redundancies.emplace_back(distance["line"].asInt(), distance["redundancy"].asDouble());
    }
    std::sort(redundancies.begin(), redundancies.end());
    ASSERT_EQ(redundancies.size(), expected["observations"].size());
    for (Json::ArrayIndex i = 0; i < redundancies.size(); ++i) {
      EXPECT_NEAR(redundancies[i].second, expected["observations"][i]["r"].asDouble(), 1e-3) << redundancies[i].first;
    }
  }
}

TEST(EveryObservation, IsLeftOutOnRequestWhenItIsSuspected) {
  Program const program;
  QString const base = QStringLiteral(KELVANE_SOURCE_DIR "/tests/adjust/peer/synth_grid100");
  std::string text = test::fileBytes(base + ".in2");
  std::string const line = "P014,S,180.9368\n";  // line 105, of the block of P013; 250 mm more is 70 of its errors
  std::size_t const at = text.find(line);
  ASSERT_NE(at, std::string::npos);
  program.write("bad.in2", text.replace(at, line.size(), "P014,S,181.1868\n"));
  Json::Value const kept = adjusted(program, "bad.in2");
  EXPECT_EQ(kept["suspects"].size(), 1U);
  EXPECT_FALSE(kept["globalTest"]["passed"].asBool());
  Json::Value const json = adjusted(program, "bad.in2", {"--leave-out"});
  ASSERT_EQ(json["leftOut"].size(), 1U);
  Json::Value const& left = json["leftOut"][0];
  EXPECT_EQ(left["from"].asString() + left["to"].asString() + left["kind"].asString(), "P013P014distance");
  EXPECT_EQ(left["line"].asInt(), 105);
  EXPECT_NEAR(left["gross"].asDouble(), 0.25, 0.02);  // and the error of the distance itself, 3.5 mm
  EXPECT_TRUE(json["globalTest"]["passed"].asBool());
  EXPECT_EQ(json["redundancy"].asInt(), kept["redundancy"].asInt() - 1);
  EXPECT_EQ(json["suspects"].size(), 0U);
  // Weighed down it loses all weight, others that are in the tail of their errors a part; the figure is the same.
  Json::Value const robust = adjusted(program, "bad.in2", {"--robust"});
  EXPECT_TRUE(robust["globalTest"]["passed"].asBool());
  EXPECT_EQ(robust["redundancy"], json["redundancy"]);
  ASSERT_EQ(robust["suspects"].size(), 1U);
  EXPECT_EQ(robust["suspects"][0]["line"].asInt(), 105);
  int less = 0;
  for (Json::Value const& distance : robust["distances"]) {
    bool const isGone = distance["line"].asInt() == 105;
    EXPECT_EQ(distance["weight"].asDouble() == 0.0, isGone);
    less += distance["weight"].asDouble() < 1.0 ? 1 : 0;
  }
  EXPECT_GT(less, 1);
  for (Json::ArrayIndex p = 0; p < json["points"].size(); ++p) {
    double const error = 0.5 * json["points"][p]["mp"].asDouble() + 1e-9;
    EXPECT_NEAR(robust["points"][p]["x"].asDouble(), json["points"][p]["x"].asDouble(), error);
  }
  std::string const table = program.run({"adjust", "bad.in2", "--robust"}).out;
  EXPECT_THAT(table, HasSubstr(", 1 of them nothing: not counted in the redundancy\n"));
  EXPECT_THAT(table, testing::ContainsRegex("P014 +181.1868 .* 0.00 +180.9"));
  EXPECT_THAT(table, HasSubstr("Weight"));
  EXPECT_THAT(program.run({"adjust", "bad.in2"}).out, testing::Not(HasSubstr("Weight")));
}

TEST(EveryObservation, TellsWhatHoldsTheNetwork) {
  Program const program;
  QString const sample = test::samplePath("net_charamza1990_p238.in2");
  auto const head = [&](QStringList const& options) {
    return program.run(QStringList{"adjust", sample} + options).out;
  };
  EXPECT_THAT(head({}), HasSubstr("\n  Datum              known points, held\n"));
  EXPECT_THAT(head({"--control-error", "5"}),
              HasSubstr("\n  Datum              known points, each with its own error\n"));
  EXPECT_THAT(head({"--free"}), HasSubstr("\n  Datum              free: laid on the known points, none"));
}

TEST(EveryObservation, HasTheKeysThatProgramsReadItBy) {
  using Keys = std::set<std::string>;
  Program const program;
  Json::Value const json = adjusted(program, test::samplePath("net_charamza1990_p238.in2"), {"--control-error", "5"});
  EXPECT_EQ(json["version"].asInt(), 2);
  EXPECT_EQ(json["datum"].asString(), "weighted");
  struct Case {
    char const* what;
    Json::Value object;
    Keys keys;
  };
  Keys const observation{"detectable", "distanceError", "effect",       "error", "gross",    "line",
                         "observed",   "redundancy",    "standardised", "test",  "residual", "weight"};
  auto const with = [&observation](Keys keys) {
    keys.insert(observation.begin(), observation.end());
    return keys;
  };
  for (Case const& c : {
           Case{"all", json, {"approximate", "byKind",     "confidence", "configure", "counts",    "datum",
                              "directions",  "distances",  "ellipses",   "file",      "findings",  "globalTest",
                              "heights",     "iterations", "leftOut",    "messages",  "method",    "points",
                              "redundancy",  "setUps",     "suspects",   "unchecked", "unitError", "version"}},
           {"counts", json["counts"], {"points", "knownPoints", "stations", "setUps", "directions", "distances"}},
           {"test", json["globalTest"], {"lower", "upper", "value", "passed"}},
           {"known",
            json["points"][0],
            {"checked", "height", "heightError", "known", "moved", "mp", "mx", "my", "name", "x", "y"}},
           {"unknown",
            json["points"][2],
            {"checked", "height", "heightError", "known", "mp", "mx", "my", "name", "x", "y"}},
           {"moved", json["points"][0]["moved"], {"north", "east", "residualNorth", "residualEast", "test"}},
           {"kinds", json["byKind"], {"directions", "distances"}},
           {"kind", json["byKind"]["distances"], {"LineFixedError", "LineProportionError", "unitError"}},
           {"ellipse",
            json["ellipses"][0],
            {"angle", "confidenceMajor", "confidenceMinor", "name", "semiMajor", "semiMinor"}},
           {"set-up",
            json["directions"][0],
            {"line", "orientation", "orientationError", "setUp", "station", "targets"}},
           {"direction", json["directions"][0]["targets"][0], with({"azimuth", "azimuthError", "distance", "name"})},
           {"distance", json["distances"][0], with({"adjusted", "azimuth", "azimuthError", "from", "to"})},
       }) {
    EXPECT_EQ(keysOf(c.object), c.keys) << c.what;
  }
}

TEST(EveryObservation, NamesAGrossErrorInItsUnitAndMarksItsRow) {
  Program const program;
  // A braced square of 100 m; the diagonal from A is booked 0.1 m too long.
  program.write("net.in2",
                "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nC,L,315\nD,L,270\nC,S,141.52136\nD,S,100\nB\nA,L,0\nD,L,45\nC,L,90\n"
                "C,S,100\nD,S,141.42136\nC\nB,L,0\nA,L,45\nD,L,90\nD,S,100\nD\nC,L,0\nB,L,45\nA,L,90\n");
  Json::Value const json = adjusted(program, "net.in2");
  ASSERT_EQ(json["suspects"].size(), 1U);
  Json::Value const suspect = json["suspects"][0];
  EXPECT_EQ(suspect["kind"].asString() + suspect["from"].asString() + suspect["to"].asString(), "distanceAC");
  EXPECT_EQ(suspect["line"].asInt(), 8);
  EXPECT_NEAR(suspect["difference"].asDouble(), 0.1, 1e-3);
  EXPECT_GT(json["distances"][0]["test"].asDouble(), 1.0);
  EXPECT_NEAR(json["distances"][0]["gross"].asDouble(), 0.1, 1e-3);
  EXPECT_FALSE(json["globalTest"]["passed"].asBool());
  std::string const text = program.run({"adjust", "net.in2"}).out;
  EXPECT_THAT(text, testing::ContainsRegex("A +C +141\\.5214 .* \\* +141\\.43"));
  EXPECT_THAT(text, HasSubstr(" at 95 %: fails\n"));
}

TEST(EveryObservation, SuspectsBetweenOnePairOfPointsHaveTheirOwnLinesAndAreToldOnce) {
  Program const program;
  // The braced square; of four distances from A to C those of lines 8 and 10 are wrong.
  program.write("net.in2",
                "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nC,L,315\nD,L,270\nC,S,141.92136\nC,S,141.42336\nC,S,141.12136\n"
                "C,S,141.41936\nD,S,100\nB\nA,L,0\nD,L,45\nC,L,90\nC,S,100\nD,S,141.42136\nC\nB,L,0\nA,L,45\n"
                "D,L,90\nD,S,100\nD\nC,L,0\nB,L,45\nA,L,90\n");
  Json::Value const json = adjusted(program, "net.in2");
  auto const linesOf = [](Json::Value const& list, std::string const& says) {
    std::set<int> lines;
    for (Json::Value const& entry : list) {
      if (entry["text"].asString().rfind(says, 0) == 0) lines.insert(entry["line"].asInt());
    }
    return lines;
  };
  std::set<int> const wrong{8, 10};
  EXPECT_EQ(linesOf(json["suspects"], ""), wrong);
  EXPECT_EQ(linesOf(json["findings"], "suspected gross error"), wrong);
  Json::Value const without = adjusted(program, "net.in2", {"--leave-out"});
  EXPECT_EQ(without["leftOut"].size(), 2U);
  EXPECT_EQ(without["suspects"].size(), 0U);
  EXPECT_EQ(linesOf(without["findings"], "left out: the distance, observed 0."), wrong);
  EXPECT_EQ(without["messages"].size(), 1U);
}

TEST(EveryObservation, TellsWhatToLookAtFirstInTheTextTheJsonAndOnceBesideThem) {
  Program const program;
  // C to A is 0.1 m too long, and what A and D measure of each other differs by 14 mm.
  program.write("net.in2",
                "3,3,0\nA,0,0\nB,0,100\nA\nB,L,0\nC,L,315\nD,L,270\nC,S,141.52136\nD,S,100\nB\nA,L,0\nD,L,45\n"
                "C,L,90\nC,S,100\nD,S,141.42136\nC\nB,L,0\nA,L,45\nD,L,90\nD,S,100\nD\nC,L,0\nB,L,45\nA,L,90\n"
                "A,S,100.014\n");
  std::vector<std::string> const texts{"suspected gross error of the distance", "the distances from both ends differ"};
  Json::Value const json = adjusted(program, "net.in2");
  ASSERT_EQ(json["findings"].size(), texts.size());
  for (Json::ArrayIndex i = 0; i < json["findings"].size(); ++i) {
    EXPECT_THAT(json["findings"][i]["text"].asString(), HasSubstr(texts[i]));
  }
  EXPECT_EQ(json["findings"][0]["line"].asInt(), 8);
  EXPECT_GT(json["findings"][0]["cost"].asDouble(), 0.01);
  EXPECT_NEAR(json["findings"][1]["cost"].asDouble(), 0.007, 1e-9);
  test::Run const run = program.run({"adjust", "net.in2"});
  EXPECT_THAT(run.out,
              testing::ContainsRegex("\nTo look at first\n  suspected gross error of the distance: observed 0"
                                     "[^\n]*: A to C\n  the distances from both ends differ by 14.0 mm: D to A\n"
                                     "\nPoints\n"));
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 2) << run.err;
}

TEST(EveryObservation, AsReadGivesWhatTheLiteralCalculatorGives) {
  Program const program;
  // Line 8 measures B - P a second time, and P - B is a third.
  program.write("net.in2",
                "3,5,2\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,315\nP,S,70.71\nB\nA,L,0\nP,L,45\nP,S,70.72\n"
                "P\nA,L,0\nB,L,90.0003\nB,S,70.73\n");
  Json::Value const json = adjusted(program, "net.in2", {"--as-read"});
  kvn::CosaCollection file;
  std::istringstream stream(program.read("net.in2"));
  file.read(stream);
  kvn::AlgorithmAdjust literal;
  literal.setConfigure(file.getConfigure());
  literal.setNetworkData(file.takeNetwork());
  literal.calculateAdjust();
  EXPECT_EQ(json["version"].asInt(), 2);
  EXPECT_EQ(json["unitError"].asDouble(), literal.getSummary().unitError);
  EXPECT_EQ(json["redundancy"].asInt(), literal.getSummary().redundancy);
  ASSERT_EQ(json["distances"].size(), literal.getLineErrorInfoList().size());
  EXPECT_EQ(json["distances"].size(), 2U) << "one for each line, whatever the number of its measurements";
  for (Json::ArrayIndex i = 0; i < json["points"].size(); ++i) {
    EXPECT_EQ(json["points"][i]["x"].asDouble(), literal.getPointErrorInfoList()[i].x);
    EXPECT_EQ(json["points"][i]["mp"].asDouble(), literal.getPointErrorInfoList()[i].mp);
  }
  EXPECT_EQ(keysOf(json["distances"][0]), (std::set<std::string>{"adjusted", "azimuth", "azimuthError", "distanceError",
                                                                 "from", "observed", "residual", "to"}));
}

}  // namespace
