#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <cmath>

namespace {

using test::Program;
using testing::HasSubstr;

constexpr double kCoordinate = 1e-4;  // 0.1 mm, the digits of the sources
constexpr double kError = 1e-5;       // 0.01 mm
constexpr double kUnitError = 1e-4;

Json::Value named(Json::Value const& list, std::string const& name) {
  for (Json::Value const& entry : list) {
    if (entry["name"] == name) return entry;
  }
  return {};
}

// One point of each sample; the library's own tests hold all of them against the published results.
void expectPoint403(Json::Value const& json) {
  Json::Value const point = named(json["points"], "403");
  EXPECT_FALSE(point["known"].asBool());
  EXPECT_NEAR(point["x"].asDouble(), 1054612.595217, kCoordinate);
  EXPECT_NEAR(point["y"].asDouble(), 644373.608482, kCoordinate);
  EXPECT_NEAR(point["mx"].asDouble(), 0.003717, kError);
  EXPECT_NEAR(point["my"].asDouble(), 0.004261, kError);
  EXPECT_NEAR(point["mp"].asDouble(), std::hypot(0.003717, 0.004261), kError);
  Json::Value const ellipse = named(json["ellipses"], "403");
  EXPECT_NEAR(ellipse["semiMajor"].asDouble(), 0.004329, kError);
  EXPECT_NEAR(ellipse["semiMinor"].asDouble(), 0.003638, kError);
  EXPECT_NEAR(ellipse["angle"].asDouble() * 180.0 / std::acos(-1.0), 70.966, 0.01);
}

void expectPoint30(Json::Value const& json) {
  Json::Value const point = named(json["points"], "30");
  EXPECT_NEAR(point["x"].asDouble(), 999.9831, kCoordinate);
  EXPECT_NEAR(point["my"].asDouble(), 0.01211, kError);
}

TEST(AdjustCommand, AgreesWithThePublishedNetworkOfDirectionsAndDistances) {
  Program const program;
  test::Run const run = program.run({"adjust", test::samplePath("net_charamza1990_p238.in2"), "--json"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  Json::Value const json = run.json();
  expectPoint403(json);
  EXPECT_NEAR(json["unitError"].asDouble(), 0.9636082, kUnitError);
  EXPECT_EQ(json["redundancy"].asInt(), 37);
  EXPECT_EQ(json["counts"]["directions"].asInt(), 46);
  ASSERT_EQ(json["distances"].size(), 23U);
  EXPECT_TRUE(named(json["points"], "1")["known"].asBool());
  // Between the two known points the distance cannot change: 845.7783 m from their coordinates, 845.777 m observed.
  Json::Value const control = json["distances"][0];
  EXPECT_EQ(control["from"].asString() + control["to"].asString(), "12");
  EXPECT_NEAR(control["residual"].asDouble(), std::hypot(46.683, 844.489) - 845.777, 1e-9);
  Json::Value const target = json["directions"][0]["targets"][1];
  EXPECT_EQ(target["name"].asString(), "422");
  EXPECT_NEAR(target["observed"].asDouble(), 252306.468, 1e-3);  // DDDMMSS.ss
  Json::Value const distance = json["distances"][1];
  EXPECT_EQ(distance["to"].asString(), "422");
  EXPECT_NEAR(target["distanceError"].asDouble(), distance["distanceError"].asDouble(), 1e-12);
}

TEST(AdjustCommand, TakesTheErrorsOfTheOptionsBeforeThoseOfTheFile) {
  Program const program;
  QString const file = test::samplePath("net_lother_strehle2007_directions.in2");
  Json::Value const json =
      program.run({"adjust", file, "--angle-error", "6.48", "--distance-error-form", "sum", "--json"}).json();
  // Directions alone: twice the error tells half the unit weight error, and the point errors stay.
  EXPECT_NEAR(json["unitError"].asDouble(), 1.26753 / 2.0, kUnitError);
  expectPoint30(json);
  EXPECT_TRUE(json["configure"]["LineCalculateExpression"].asBool());
  EXPECT_EQ(json["configure"]["LineFixedError"].asDouble(), 1.0);
}

TEST(AdjustCommand, PrintsTablesThatLineUpWithChineseNames) {
  Program const program;
  program.write("net.in2", u8"3,5,0\n基点,0,0\nB,0,100\n基点\nB,L,0\nP,L,45.0\nP,S,70.71\n");
  test::Run const run = program.run({"adjust", "net.in2"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  // A Chinese sign is two columns wide. The pole stands 50 m off the base line; nothing is redundant.
  EXPECT_THAT(run.out, HasSubstr(u8"\n  基点        0.0000      0.0000    known\n"
                                 u8"  B           0.0000    100.0000    known\n"
                                 u8"  P         -49.9995     49.9995        -        -        -  unchecked\n"));
}

TEST(AdjustCommand, TellsDistanceErrorsBelowATenthOfAMillimetre) {
  Program const program;
  // A triangle that closes to 0.3", observed to 0.1": 50 m away that is some hundredths of a millimetre.
  program.write("net.in2",
                "0.1,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45\nP,S,70.7107\nB\nP,L,0\nA,L,45\nP\nA,L,0\nB,L,90.00003\n");
  Json::Value const json = program.run({"adjust", "net.in2", "--json"}).json();
  for (Json::Value const& error :
       {json["distances"][0]["distanceError"], json["directions"][0]["targets"][1]["distanceError"]}) {
    EXPECT_GT(error.asDouble(), 1e-6);
    EXPECT_LT(error.asDouble(), 1e-4);
  }
}

TEST(AdjustCommand, PrintsNoAzimuthOfAFullTurn) {
  Program const program;
  // B lies 0.0002" west of north.
  program.write("net.in2", "3,5,0\nA,0,0\nB,100,-0.0000001\nA\nB,L,0\nP,L,45.0\nP,S,70.71\n");
  EXPECT_THAT(program.run({"adjust", "net.in2"}).out,
              HasSubstr(u8"  A        B        0°00′00.00″   0.00  0.00  -     0°00′00.00″"));
}

TEST(AdjustCommand, MakesNoDirectionOfADistanceAlone) {
  Program const program;
  // P lies at 50, 50. From A only its distance was measured; as a direction of 0 it would turn A's circle by 22.5
  // degrees.
  program.write("net.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,S,70.711\nB\nA,L,0\nP,L,45.0\nP,S,70.71\n");
  Json::Value const json = program.run({"adjust", "net.in2", "--json"}).json();
  EXPECT_EQ(json["counts"]["directions"].asInt(), 3);
  EXPECT_NEAR(json["points"][2]["x"].asDouble(), 50.0, 0.001);
  EXPECT_NEAR(json["points"][2]["y"].asDouble(), 50.0, 0.001);
  Json::Value const asRead = program.run({"adjust", "net.in2", "--json", "--as-read"}).json();
  EXPECT_EQ(asRead["counts"]["directions"].asInt(), 4);
  EXPECT_THAT(program.run({"show", "net.in2"}).out, HasSubstr("70.7110"));
}

TEST(AdjustCommand, PrintsNullWhereNothingIsRedundant) {
  Program const program;
  program.write("net.in2", test::kNetworkFile);
  Json::Value const json = program.run({"adjust", "net.in2", "--json"}).json();
  EXPECT_EQ(json["redundancy"].asInt(), 0);
  for (Json::Value const& value :
       {json["unitError"], json["points"][2]["mx"], json["points"][2]["mp"], json["distances"][0]["distanceError"],
        json["distances"][0]["azimuthError"], json["directions"][0]["targets"][1]["azimuthError"],
        json["directions"][0]["targets"][1]["distanceError"]}) {
    EXPECT_TRUE(value.isNull()) << value.toStyledString();
  }
  EXPECT_TRUE(json["ellipses"].isArray() && json["ellipses"].empty());
}

}  // namespace
