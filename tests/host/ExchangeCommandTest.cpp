// Files for other programs, as the program writes them.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <json/value.h>
#include <fstream>

namespace {

using test::Program;
using testing::HasSubstr;

TEST(ExchangeCommand, WritesEveryKindOfAnAdjustedJobWithItsResults) {
  Program const program;
  QString const sample = test::samplePath("net_niemeier2008.in2");
  Json::Value const result = program.run({"adjust", sample, "--json"}).json();
  program.shell("mkdir -p a/b");
  for (char const* kind : {"csv", "geojson", "dxf", "svg"}) {
    test::Run const run = program.run({"adjust", sample, "--save", QString("a/b/out.") + kind});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "") << "nothing is left out";
  }
  Json::Value const features = test::json(program.read("a/b/out.geojson"))["features"];
  ASSERT_EQ(features.size(), 13U);  // 6 points and 7 lines
  for (Json::ArrayIndex p = 0; p < result["points"].size(); ++p) {
    Json::Value const& properties = features[p]["properties"];
    EXPECT_EQ(properties["name"], result["points"][p]["name"]);
    if (properties["kind"] == "known") continue;
    EXPECT_EQ(properties["north_m"], result["points"][p]["x"]);
    EXPECT_EQ(properties["sigma_east_mm"].asDouble(), 1000.0 * result["points"][p]["my"].asDouble());
  }
  EXPECT_THAT(program.read("a/b/out.csv"), HasSubstr("\r\nZ108,27816.11664"));
  EXPECT_THAT(program.read("a/b/out.dxf"), HasSubstr("\r\nELLIPSES_X"));
  EXPECT_THAT(program.read("a/b/out.svg"), HasSubstr("Adjusted by least squares"));
}

TEST(ExchangeCommand, WritesTraversesAndTheLiteralRoad) {
  Program const program;
  program.write("book.txt",
                "STA,A,1.5,,1000,1000,50\nSC,B,1.6,,0.0000,90.0000,,0,0,0\nSC,P,1.6,,60.0000,87.0000,100,0,0,0\n"
                "SC,P,1.6,,240.0000,273.0000,100,0,0,0\nSC,B,1.6,,180.0000,270.0000,,0,0,0\nSTA,B,1.5,,1000,1100,50\n");
  struct {
    QStringList arguments;
    char const* holds;
  } const cases[] = {
      {{test::samplePath("trav_closed_5sides.in2"), "--method", "closed"}, "\r\n3,1222.603"},
      {{test::samplePath("trav_connecting_fr_5legs.in2"), "--method", "connect", "--as-read"}, "\r\n3,215323.9666"},
      {{test::samplePath("net_niemeier2008.in2"), "--as-read"}, "\r\nZ108,27816.11"},
      // A field book without heights: every known one is 0.
      {{test::samplePath("trav_connecting_fr_5legs.txt"), "--method", "connect"}, ",,new,adjusted,yes,"},
      // With heights, as `heights` gives them: 100 sin 3° + 1.5 - 1.6 above 50.
      {{"book.txt", "--method", "open"}, ",55.1"},
  };
  for (auto const& test : cases) {
    test::Run const run = program.run(QStringList{"adjust", "--save", "out.csv"} + test.arguments);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(program.read("out.csv"), HasSubstr(test.holds)) << run.err;
  }
}

TEST(ExchangeCommand, ConvertsWhatHasCoordinatesAndTellsTheRest) {
  Program const program;
  program.write("net.in2", test::kNetworkFile);
  test::Run const net = program.run({"convert", "net.in2", "net.csv", "--bom"});
  EXPECT_EQ(net.exitCode, 0) << net.err;
  EXPECT_THAT(net.err, HasSubstr("Left out, since they have no coordinates: P"));
  EXPECT_THAT(program.read("net.csv"), testing::StartsWith("\xEF\xBB\xBFname,north_m,"));
  EXPECT_THAT(program.read("net.csv"), HasSubstr("\r\nB,0,100,,known,given,"));
  // Bytes of GBK in a coordinate file, with heights.
  program.write("gbk.dat", "\xBF\xD8,,1,2,3\n\"a\" <b>,,4,5,0\n");
  test::Run const list = program.run({"convert", "gbk.dat", "list.geojson", "--encoding", "GBK", "--crs", "epsg:4547"});
  EXPECT_EQ(list.exitCode, 0) << list.err;
  Json::Value const json = test::json(program.read("list.geojson"));
  EXPECT_EQ(json["features"][0]["properties"]["name"].asString(), "\xE6\x8E\xA7");
  EXPECT_EQ(json["features"][1]["properties"]["height_m"].asDouble(), 0.0);
  EXPECT_THAT(json["crs"]["properties"]["name"].asString(), testing::EndsWith("::4547"));
  test::Run const exec = program.run({"exec", "--open", "net.in2", "--save", "exec.svg"}, "[]");
  EXPECT_EQ(exec.exitCode, 0) << exec.err;
  EXPECT_THAT(program.read("exec.svg"), HasSubstr("Not adjusted"));
}

TEST(ExchangeCommand, KeepsEachRowOfAPointThatIsGivenTwice) {
  Program const program;
  program.write("d.dat", "P1,,1,2,3\nQ,,5,5,0\nP1,,9,9,9\n");
  test::Run const table = program.run({"convert", "d.dat", "-", "--to", "csv", "-q"});
  EXPECT_EQ(table.err, "Warning: Given more than once, in different places: P1\n");
  EXPECT_THAT(table.out, HasSubstr("\r\nP1,2,1,3,"));
  EXPECT_THAT(table.out, HasSubstr("\r\nP1,9,9,9,"));
  test::Run const places = program.run({"convert", "d.dat", "-", "--to", "geojson"});
  EXPECT_THAT(places.out, HasSubstr("[1,2,3]"));
  EXPECT_THAT(places.out, HasSubstr("[9,9,9]"));
}

TEST(ExchangeCommand, RunsWhatItsPagesShow) {
  Program const program;
  int commands = 0;
  for (char const* page : {"exchange", "map"}) {
    std::ifstream file(std::string(KELVANE_SOURCE_DIR "/docs/") + page + ".md");
    for (std::string line; std::getline(file, line);) {
      if (line.rfind("    kelvane ", 0) != 0) continue;
      QString command = QString::fromStdString(line).trimmed();
      command.replace("kelvane ", "\"$KELVANE\" ").replace("samples/", KELVANE_SOURCE_DIR "/samples/");
      test::Run const run = program.shell(command);
      EXPECT_EQ(run.exitCode, 0) << line << '\n' << run.err;
      ++commands;
    }
  }
  EXPECT_EQ(commands, 9);
  EXPECT_THAT(program.read("points.geojson"), HasSubstr("EPSG::31467"));
  // B has a height and no place.
  EXPECT_THAT(program.read("heights.csv"), HasSubstr("\r\nB,,,285.007"));
}

TEST(ExchangeCommand, RefusesWhatItCannotWrite) {
  Program const program;
  program.write("loose.in2", "2,3,2\nA\nB,S,5\n");
  program.write("net.in2", test::kNetworkFile);
  program.write("out.csv", "old");
  struct {
    QStringList arguments;
    int exitCode;
    char const* says;
  } const cases[] = {
      {{"convert", "loose.in2", "out.csv"}, 1, "out.csv was not written: there is no point with coordinates to write"},
      {{"convert", "net.in2", "out.xls"},
       1,
       "what can be written: .txt, .lqf, .in2, .dat, .kvn, .csv, .geojson, .dxf, .svg"},
      {{"adjust", "net.in2", "--save", "out.csv", "--crs", "EPSG:25832"}, 2, "--crs is for a .geojson file"},
      {{"convert", "net.in2", "out.geojson", "--crs", "UTM32"},
       2,
       "--crs needs a reference system such as EPSG:25832: UTM32"},
      {{"convert", "net.in2", "out.dxf", "--bom"}, 2, "--bom is for a .csv file"},
  };
  for (auto const& test : cases) {
    test::Run const run = program.run(test.arguments);
    EXPECT_EQ(run.exitCode, test.exitCode) << run.err;
    EXPECT_THAT(run.err, HasSubstr(test.says));
    EXPECT_EQ(program.read("out.csv"), "old");
  }
}

}  // namespace
