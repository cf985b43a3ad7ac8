// plan: a network before it is measured.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <json/value.h>
#include <cmath>
#include <fstream>
#include <sstream>

namespace {

using test::Program;
using testing::HasSubstr;

/// The indented blocks of a page, without the indent.
std::vector<std::string> blocksOf(std::string const& page) {
  std::ifstream file(page);
  std::vector<std::string> blocks;
  bool isInside = false;
  std::string empty;
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("    ", 0) == 0) {
      if (!isInside) blocks.emplace_back();
      blocks.back() += (isInside ? empty : std::string()) + line.substr(4) + '\n';
      isInside = true;
      empty.clear();
    } else if (line.empty() && isInside) {
      empty += '\n';
    } else {
      isInside = false;
      empty.clear();
    }
  }
  return blocks;
}

TEST(PlanCommand, PrintsWhatItsPageShows) {
  std::vector<std::string> const blocks = blocksOf(KELVANE_SOURCE_DIR "/docs/planning.md");
  ASSERT_EQ(blocks.size(), 6U);
  Program const program;
  program.write("plan.in2", blocks[0]);
  program.write("points.dat", blocks[1]);
  test::Run const run = program.run({"plan", "plan.in2", "--points", "points.dat"});
  EXPECT_EQ("$ kelvane plan plan.in2 --points points.dat\n" + run.out, blocks[2]);
  EXPECT_EQ(run.err, blocks[3]);
  Json::Value const json = program.run({"plan", "plan.in2", "--points", "points.dat", "--json"}).json();
  ASSERT_EQ(json["findings"].size(), 1U);
  EXPECT_EQ(json["findings"][0]["targets"][0], "Q");
  program.write("plan.in2", blocks[0] + blocks[4]);
  test::Run const more = program.run({"plan", "plan.in2", "--points", "points.dat"});
  EXPECT_THAT(more.out, HasSubstr('\n' + blocks[5] + '\n'));
  EXPECT_EQ(more.err, "");
}

// The coordinates are rounded to 1e-4 m, and distances of some hundred metres differ from the planned ones by as much
// as their errors of 5 mm.
TEST(PlanCommand, PromisesWhatTheAdjustmentOfTheMeasuredNetworkDoes) {
  Program const program;
  QString const sample = test::samplePath("net_charamza1990_p238.in2");
  Json::Value const adjusted =
      program.run({"adjust", sample, "--sigma0", "a-priori", "--save", "points.dat", "--json"}).json();
  Json::Value const planned = program.run({"plan", sample, "--points", "points.dat", "--json"}).json();
  EXPECT_EQ(planned["method"], "plan");
  EXPECT_EQ(planned["version"].asInt(), 2);
  EXPECT_EQ(planned.getMemberNames(), adjusted.getMemberNames());
  for (char const* key : {"unitError", "iterations"}) EXPECT_TRUE(planned[key].isNull()) << key;
  EXPECT_EQ(planned["redundancy"], adjusted["redundancy"]);
  ASSERT_EQ(planned["points"].size(), adjusted["points"].size());
  for (Json::ArrayIndex p = 2; p < planned["points"].size(); ++p) {
    double const expected = adjusted["points"][p]["mp"].asDouble();
    EXPECT_NEAR(planned["points"][p]["mp"].asDouble(), expected, 1e-5 * expected);
  }
  for (Json::ArrayIndex d = 0; d < planned["distances"].size(); ++d) {
    Json::Value const& distance = planned["distances"][d];
    for (char const* key : {"observed", "residual", "standardised", "test", "gross"}) {
      EXPECT_TRUE(distance[key].isNull()) << key;
    }
    EXPECT_NEAR(distance["redundancy"].asDouble(), adjusted["distances"][d]["redundancy"].asDouble(), 1e-5);
    EXPECT_EQ(distance.getMemberNames(), adjusted["distances"][d].getMemberNames());
  }
  Json::Value const& target = planned["directions"][0]["targets"][0];
  for (char const* key : {"observed", "residual", "standardised", "test", "gross"}) {
    EXPECT_TRUE(target[key].isNull()) << key;
  }
  EXPECT_TRUE(planned["directions"][0]["orientation"].isNull());
}

TEST(PlanCommand, TakesAFieldBookAndAllOptionsOfWeights) {
  Program const program;
  QString const sample = test::samplePath("trav_connecting_fr_5legs.txt");
  program.run({"adjust", sample, "--save", "points.dat"});
  auto const errorOf = [&](QStringList const& options) {
    Json::Value const json =
        program.run(QStringList{"plan", sample, "--points", "points.dat", "--json"} + options).json();
    for (Json::Value const& point : json["points"]) {
      if (!point["known"].asBool()) return point["mp"].asDouble();
    }
    return 0.0;
  };
  double const usual = errorOf({});
  EXPECT_GT(usual, 0.0);
  EXPECT_NEAR(errorOf({"--angle-error", "6", "--fixed-error", "9", "--proportional-error", "9"}), 3.0 * usual,
              1e-5 * usual);
  EXPECT_GT(errorOf({"--centring", "1"}), 1.01 * usual);
  EXPECT_GT(errorOf({"--control-error", "5"}), 1.01 * usual);
  EXPECT_NE(errorOf({"--free"}), usual);
}

TEST(PlanCommand, RefusesWhatItCannotPlan) {
  Program const program;
  program.write("plan.in2", "2,3,2\nA,0,0\nB,0,100\nA\nB,L\nP,LS\nQ,LS\nR,XY\n,LS\n");
  program.write("points.dat", "P,,50,50,0\n");
  program.write("all.dat", "P,,50,50,0\nQ,,60,60,0\nR,,1,1,1\n");
  struct Case {
    QStringList options;
    int exitCode;
    char const* says;
  };
  for (Case const& c : {Case{{}, 2, "--points is missing"},
                        {{"--points", "points.dat"}, 1, "plan.in2: Points without coordinates: Q\n"},
                        {{"--points", "none.dat"}, 1, "none.dat: no such file"},
                        {{"--points", "all.dat", "--free", "--control-error", "1"}, 2, "does not go with --free"},
                        {{"--points", "all.dat"}, 0, "the line is passed over: R,XY: line 8"}}) {
    test::Run const run = program.run(QStringList{"plan", "plan.in2"} + c.options);
    EXPECT_EQ(run.exitCode, c.exitCode);
    EXPECT_THAT(run.err, HasSubstr(c.says));
  }
  // What has no values is not adjusted.
  EXPECT_THAT(program.run({"adjust", "plan.in2"}).err, HasSubstr("the line is passed over: B,L: line 5"));
}

}  // namespace
