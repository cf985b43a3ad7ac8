// adjust with traverses: what checks them, and what is told where they do not fit.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <cmath>
#include <string>

namespace {

using test::Program;
using testing::HasSubstr;
using testing::Not;

constexpr double kSeconds = 206264.8;  // in a radian

/// Known points first, then stations; all errors 5" and 5 mm + 5 ppm. The lines lie east of each other.
std::string const kHead = "5,5,5\nB,0,-100\nA,0,0\n";
std::string const kToP = "A\nB,L,0\nP,L,180\nP,S,150\n";

struct Computed {
  test::Run run;
  Json::Value json;
};

Computed adjusted(std::string const& file, char const* method, QStringList const& more = {}) {
  Program const program;
  program.write("net.in2", file);
  test::Run const run = program.run(QStringList{"adjust", "net.in2", "--method", method, "--json"} + more);
  return {run, run.json()};
}

Json::Value pointOf(Json::Value const& json, std::string const& name) {
  Json::Value found;
  for (Json::Value const& point : json["points"]) {
    if (point["name"].asString() != name) continue;
    EXPECT_TRUE(found.isNull()) << name << " stands twice";
    found = point;
  }
  return found;
}

// The end, a known station, the mark of the start or the start itself is missed by a leg that is 40 mm too long; one
// from 100 m north of P points there by atan(100/250), atan(100/150).
TEST(TraverseChecks, JudgeTheKnownPointThatAnOpenOneEndsOn) {
  std::string const toQ = "P\nA,L,0\nQ,L,90\nQ,S,100\nQ\nP,L,0\n";
  struct Case {
    std::string file;
    char const* end;
    double x;
    double y;
  };
  Case const cases[] = {
      {kHead + "C,0,300\n" + kToP + "P\nA,L,0\nC,L,180\nC,S,150.04\nC\nP,L,0\nX,L,90\nX,S,20\n", "C", 0, 300},
      {kHead + kToP + toQ + "B,L,68.11549\nB,S,269.2982\n", "B", 0, -100},
      {kHead + kToP + toQ + "A,L,56.18357\nA,S,180.3176\n", "A", 0, 0},
  };
  for (Case const& c : cases) {
    for (char const* method : {"open", "traverse"}) {
      SCOPED_TRACE(std::string(c.end) + " by " + method);
      Computed const done = adjusted(c.file, method);
      ASSERT_EQ(done.run.exitCode, 0) << done.run.err;
      EXPECT_EQ(done.json["method"].asString(), "open");
      EXPECT_NEAR(done.json["misclosure"]["fs"].asDouble(), 0.04, 1e-4);
      EXPECT_THAT(done.run.err, HasSubstr("it would be explained by "));
      Json::Value const end = pointOf(done.json, c.end);
      EXPECT_TRUE(end["known"].asBool());
      EXPECT_EQ(end["x"].asDouble(), c.x);
      EXPECT_EQ(end["y"].asDouble(), c.y);
      EXPECT_EQ(end["mp"].asDouble(), 0.0);
    }
  }
  Program const program;
  program.write("net.in2", cases[0].file);
  program.run({"adjust", "net.in2", "--method", "open", "--save", "out.dat"});
  EXPECT_THAT(program.read("out.dat"), HasSubstr("C,,300.0000,0.0000,"));
  // From the given place of C, oriented by the leg that comes there: 20 m and three angles of two directions.
  Json::Value const x = adjusted(cases[0].file, "traverse").json["sidePoints"][0];
  EXPECT_NEAR(x["x"].asDouble(), 20.0, 1e-9);
  EXPECT_NEAR(x["y"].asDouble(), 300.0, 1e-9);
  EXPECT_NEAR(x["mx"].asDouble(), 0.0051, 1e-9);
  EXPECT_NEAR(x["my"].asDouble(), 20.0 * 5.0 * std::sqrt(6.0) / kSeconds, 1e-9);
}

// K between A and C, which both have marks: the calculators alone would move it.
TEST(TraverseChecks, NeverMoveAKnownPoint) {
  std::string const file = kHead +
                           "C,0,300\nD,0,400\nK,0,150\nA\nB,L,0\nP,L,180\nP,S,75\nP\nA,L,0\nK,L,180\nK,S,75.003\n" +
                           "K\nP,L,0\nQ,L,180\nQ,S,75\nQ\nK,L,0\nC,L,180\nC,S,75\nC\nQ,L,0\nD,L,180\n";
  for (char const* method : {"open", "traverse"}) {
    Computed const done = adjusted(file, method);
    ASSERT_EQ(done.json["traverses"].size(), 2U) << done.run.err;
    for (Json::Value const& traverse : done.json["traverses"]) EXPECT_EQ(pointOf(traverse, "K")["y"].asDouble(), 150.0);
  }
  Computed const refused = adjusted(file, "connect");
  EXPECT_EQ(refused.run.exitCode, 1);
  EXPECT_THAT(refused.run.err, HasSubstr("goes on over the known point K"));
}

// Sights that no chain needs. A second mark is compared with the first one, by two directions; a direction from P with
// what places P, 150 m east of A: its own two directions and those of the angle at A, which turns the ray and moves P,
// and the error of the leg across a ray to the north.
TEST(TraverseChecks, CompareKnownPointsThatTheChainDoesNotNeed) {
  double const second = 5.0 / kSeconds;
  std::string const end = "P\nA,L,0\nQ,L,180\nQ,S,150\n";
  std::string const north = "P\nA,L,0\nQ,L,180\nQ,S,150\nE,L,";
  struct Case {
    std::string file;
    char const* kind;
    double off;
    double allowed;
    char const* says;  // beyond
  };
  double const fromP = 2.576 * std::sqrt(2 * second * second + 2 * second * second + std::pow(0.00575 / 100, 2));
  Case const cases[] = {
      {kHead + "E,100,0\n" + kToP + "E,L,90.0010\n" + end, "direction", 10 / kSeconds, 2.576 * second * std::sqrt(2.0),
       nullptr},
      {kHead + "E,100,0\n" + kToP + "E,L,90.1000\n" + end, "direction", 600 / kSeconds, 2.576 * second * std::sqrt(2.0),
       "the known point and the mark B contradict each other by 600.0"},
      {kHead + "E,100,150\n" + kToP + north + "90.0030\n", "direction", 30 / kSeconds, fromP, nullptr},
      {kHead + "E,100,150\n" + kToP + north + "90.0300\n", "direction", 180 / kSeconds, fromP,
       "the direction misses the known point by 180.0"},
      {kHead + "A\nB,L,0\nB,S,100.02\nP,L,180\nP,S,150\n" + end, "distance", 0.02, 2.576 * 0.0055,
       "the distance differs from the known coordinates by 20.0 mm"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.file);
    // A file that is a chain and no more goes another way with `open`.
    Computed const done = adjusted(c.file, c.kind == std::string("distance") ? "open" : "traverse");
    ASSERT_EQ(done.json["checks"].size(), 1U);
    Json::Value const& check = done.json["checks"][0];
    EXPECT_EQ(check["kind"].asString(), c.kind);
    EXPECT_NEAR(check["off"].asDouble(), c.off, 1e-8);
    EXPECT_NEAR(check["allowed"].asDouble(), c.allowed, 1e-3 * c.allowed);
    if (c.says == nullptr) {
      EXPECT_EQ(done.run.err, "");
    } else {
      EXPECT_THAT(done.run.err, HasSubstr(c.says));
    }
    Program const program;
    program.write("net.in2", c.file);
    EXPECT_THAT(
        program.run({"adjust", "net.in2", "--method", "traverse", "--short"}).out,
        HasSubstr(c.says == nullptr ? "Nothing closes an open traverse; sights to known points that check it in "
                                      "part, and fit: 1.\n"
                                    : "A sight to a known point does not fit it"));
  }
}

std::string const kTwoKnown = kHead + "C,0,300\nD,0,400\n";
std::string const kEnd = "C\nP,L,0\nD,L,180\n";

// What the file lacks, or says twice, is the reason; a single leg or angle only explains.
TEST(TraverseChecks, TellWhatIsMissingAheadOfWhatWouldExplain) {
  Computed const missing = adjusted(kTwoKnown + kToP + "P\nA,L,0\nC,L,180\nX,L,90\nX,S,10\n" + kEnd, "connect");
  EXPECT_EQ(missing.run.exitCode, 1);
  EXPECT_THAT(missing.run.err, HasSubstr("kelvane: net.in2: The leg from P to C has no distance and counts as 0. The "
                                         "misclosure along the traverse is -150.000 m"));
  EXPECT_THAT(missing.run.err, Not(HasSubstr("explained")));
  EXPECT_EQ(missing.json["findings"][0]["text"].asString(), "The leg from P to C has no distance and counts as 0");
  // 1 m between both ends makes 0.5 m of the mean; the sight from P to B stays told.
  Computed const contradicted =
      adjusted(kTwoKnown + kToP + "P\nA,L,0\nB,L,0.1000\nC,L,180\nC,S,150\nC\nP,L,0\nP,S,151\nD,L,180\n", "connect");
  EXPECT_EQ(contradicted.run.exitCode, 1);
  EXPECT_THAT(contradicted.run.err, HasSubstr(": C to P: the distances from both ends differ by 1000.0 mm. The "));
  EXPECT_THAT(contradicted.run.err, HasSubstr("Warning: the direction misses the known point by 600.0"));
}

// From A over P and over R to C; at R the angle is 20 degrees too large.
TEST(TraverseChecks, NameTheTraverseThatMissesAndKeepTheOthers) {
  std::string const file = kTwoKnown + "A\nB,L,0\nP,L,180\nP,S,150\nR,L,170\nR,S,152.3140\n" +
                           "P\nA,L,0\nC,L,180\nC,S,150\nR\nA,L,0\nC,L,220\nC,S,152.3140\n" +
                           "C\nP,L,0\nD,L,180\nR,L,10\n";
  Computed const kept = adjusted(file, "traverse");
  EXPECT_EQ(kept.run.exitCode, 1);
  EXPECT_THAT(kept.run.err, HasSubstr("Error: A to C: the traverse over R is refused: The angular misclosure is 20"));
  EXPECT_THAT(kept.run.err, Not(HasSubstr("left out")));
  EXPECT_EQ(kept.json["findings"][0]["severity"].asString(), "Error");
  EXPECT_EQ(kept.json["findings"][0]["station"].asString(), "A");
  EXPECT_FALSE(kept.json.isMember("traverses"));
  EXPECT_EQ(pointOf(kept.json, "P")["y"].asDouble(), 150.0);
  Computed const forced = adjusted(file, "traverse", {"--force"});
  EXPECT_EQ(forced.run.exitCode, 0);
  EXPECT_THAT(forced.run.err, HasSubstr(": traverse from A over R to C\n"));
  EXPECT_EQ(forced.json["traverses"].size(), 2U);
  EXPECT_EQ(forced.json["findings"][0]["targets"].size(), 2U);
}

// Errors of a chain are those of the points that hang on it: a side point 1 mm from P adds nothing, where a distance
// has no fixed error.
TEST(TraverseChecks, GiveThePointsOfAChainTheirErrors) {
  Computed const done = adjusted(kTwoKnown + kToP + "P\nA,L,0\nS,L,90\nS,S,0.001\nC,L,180\nC,S,150\n" + kEnd,
                                 "traverse", {"--fixed-error", "0", "--proportional-error", "30"});
  Json::Value const p = pointOf(done.json, "P");
  Json::Value const& side = done.json["sidePoints"][0];
  EXPECT_GT(p["mx"].asDouble(), 0.001);
  EXPECT_NEAR(p["mx"].asDouble(), side["mx"].asDouble(), 1e-6);
  EXPECT_NEAR(p["my"].asDouble(), side["my"].asDouble(), 1e-6);
}

}  // namespace
