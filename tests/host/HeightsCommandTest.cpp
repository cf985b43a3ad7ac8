// kelvane heights, as it is used.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <json/writer.h>

namespace {

using test::Program;

using testing::HasSubstr;

// Worked by hand, K = 0.16, R = 6371393 m.
//   A, i = 1.500, to B, t = 1.600, S = 500.000 on both faces:
//     87°30'10" gives a = 2°29'50", 272°29'56" gives 2°29'56"; mean 2°29'53", tan a = 0.04362694
//     horizontal 500 cos a = 499.52485; 499.52485 tan a = 21.79274
//     499.52485² / 12742786 * 0.84 = 0.01645
//     21.79274 + 1.500 - 1.600 + 0.01645 = 21.70919
//   B, i = 1.450, to A, t = 1.700, S = 500.002:
//     92°29'45" gives -2°29'45", 267°30'21" gives -2°29'39"; mean -2°29'42", tan a = -0.04357351
//     horizontal 499.52801; times tan a = -21.76619; curvature and refraction 0.01645
//     -21.76619 + 1.450 - 1.700 + 0.01645 = -21.99974
//   mean (21.70919 + 21.99974) / 2 = 21.85447; height of B 100 + 21.85447 = 121.8545: both have the same errors but for
//   a part in 10⁵. They are 290 mm from each other.
// D has no distance; nobody sights K.
constexpr char const* kFieldBook =
    "STA,K,0,,2000,1000,50\n"
    "STA,A,1.500,,1000,1000,100\n"
    "SC,B,1.600,,0.0000,87.3010,500.000,0,0,0\n"
    "SC,C,1.500,,40.0000,90.0000,200.000,0,0,0\n"
    "SC,D,0,,50.0000,89.0000,,0,0,0\n"
    "SC,D,0,,230.0000,271.0000,,0,0,0\n"
    "SC,C,1.500,,220.0000,270.0000,200.000,0,0,0\n"
    "SC,B,1.600,,180.0000,272.2956,500.000,0,0,0\n"
    "STA,B,1.450,,0,0,0\n"
    "SC,A,1.700,,0.0000,92.2945,500.002,0,0,0\n"
    "SC,A,1.700,,180.0000,267.3021,500.002,0,0,0\n";

TEST(HeightsCommand, PrintsHeightsAsTextAndJson) {
  Program program;
  program.write("job.txt", kFieldBook);
  test::Run const asJson = program.run({"heights", "job.txt", "--json"});
  ASSERT_EQ(asJson.exitCode, 0) << asJson.err;
  Json::Value const json = asJson.json();
  EXPECT_EQ(json.getMemberNames(),
            (std::vector<std::string>{"findings", "globalTest", "lines", "loops", "messages", "points", "redundancy",
                                      "refraction", "sharedHeights", "unitError", "version"}));
  EXPECT_EQ(json["points"][2]["name"], "B");
  EXPECT_NEAR(json["points"][2]["height"].asDouble(), 121.8545, 1e-4);
  EXPECT_NEAR(json["points"][2]["approximate"].asDouble(), 121.7092, 1e-4);  // by the first sight alone
  EXPECT_TRUE(json["points"][2]["checked"].asBool());
  EXPECT_FALSE(json["points"][3]["checked"].asBool());
  EXPECT_NEAR(json["points"][3]["height"].asDouble(), 100.0026, 1e-4);  // 200² / 12742786 * 0.84 = 0.0026
  EXPECT_EQ(json["lines"].size(), 3U);
  EXPECT_EQ(json["lines"][0]["from"], "A");
  EXPECT_EQ(json["lines"][0]["line"], 3);
  EXPECT_NEAR(json["lines"][0]["difference"].asDouble(), 21.7092, 1e-4);
  EXPECT_NEAR(json["lines"][2]["difference"].asDouble(), -21.9997, 1e-4);
  EXPECT_EQ(json["redundancy"], 1);
  EXPECT_FALSE(json["globalTest"]["passed"].asBool());
  EXPECT_EQ(json["loops"].size(), 1U);
  EXPECT_THAT(asJson.err, HasSubstr("the height differences of both ends differ by 290.6 mm: B to A"));
  EXPECT_THAT(asJson.err, HasSubstr("suspected gross error of the height difference: 290.6 mm too small: A to B"));
  EXPECT_NEAR(json["lines"][0]["horizontalDistance"].asDouble(), 499.5249, 1e-4);
  EXPECT_THAT(asJson.err, HasSubstr("no height from a sight without a distance: A to D"));
  EXPECT_FALSE(json["messages"].empty());
  std::string const text = program.run({"heights", "job.txt", "--refraction", "1"}).out;
  EXPECT_THAT(text, HasSubstr("C        100.0000"));
  EXPECT_THAT(text, HasSubstr("Loops that do not close"));
}

// The document is written piece by piece; read into a tree and written as a whole it is the same.
TEST(HeightsCommand, HasTheLayoutOfAllJson) {
  Program program;
  program.write("job.txt", std::string(kFieldBook) + "SC,\xE7\x82\xB9,0,,9.0000,89.0000,,0,0,0\n");
  Json::StreamWriterBuilder builder;
  builder["precision"] = 17;
  builder["emitUTF8"] = true;
  builder["indentation"] = "  ";
  builder["enableYAMLCompatibility"] = true;
  for (QStringList const& arguments :
       {QStringList{"job.txt"}, {test::samplePath("trig_height_reciprocal.txt"), "--as-read"}}) {
    test::Run const run = program.run(QStringList{"heights", "--json"} + arguments);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, Json::writeString(builder, run.json()) + '\n');
  }
}

// Source: samples/README.md. B at 285.007 without curvature and refraction; single ways give 284.97 and 285.04.
TEST(HeightsCommand, AgreesWithThePublishedReciprocalSighting) {
  Json::Value const json =
      Program().run({"heights", test::samplePath("trig_height_reciprocal.txt"), "--refraction", "1", "--json"}).json();
  EXPECT_NEAR(json["points"][1]["height"].asDouble(), 285.007, 0.0006);
  EXPECT_NEAR(258.26 + json["lines"][0]["difference"].asDouble(), 284.97, 0.005);
  EXPECT_NEAR(258.26 - json["lines"][1]["difference"].asDouble(), 285.04, 0.005);
}

// Level sights rise 0.200 m from A to B (100 m), 0.290 m from B to C (200 m), 0.500 m from A to C (400 m): a loop of
// 700 m that is 10 mm open, of which each line takes a share by its length. Weights are 1 / length, so that the sum of
// p v v is 10² / 700, the unit weight error 10 / √700 mm for 1 m and 10 √(1000 / 700) mm for 1 km. Two ways lead to B,
// 100 m and 600 m long: its error is 10 / √700 √(100 · 600 / 700) mm, that of C 10 / √700 √(400 · 300 / 700) mm.
TEST(HeightsCommand, PrintsTheUnitWeightErrorOfAKilometreForRowsAsRead) {
  Program const program;
  program.write("loop.txt",
                "STA,A,1.5,,1000,1000,100\nSC,B,1.3,,0.0000,90.0000,100,0,0,0\nSC,C,1.0,,50.0000,90.0000,400,0,0,0\n"
                "SC,C,1.0,,230.0000,270.0000,400,0,0,0\nSC,B,1.3,,180.0000,270.0000,100,0,0,0\n"
                "STA,B,1.5,,0,0,0\nSC,C,1.21,,0.0000,90.0000,200,0,0,0\nSC,C,1.21,,180.0000,270.0000,200,0,0,0\n");
  std::string const text = program.run({"heights", "loop.txt", "--as-read", "--refraction", "1"}).out;
  EXPECT_THAT(text, HasSubstr("  Unit weight error  11.95 mm for a line of 1 km\n"));
  EXPECT_THAT(text, HasSubstr("  B        100.2014    3.50\n  C        100.4943    4.95\n"));
}

// Level sights of 100 m among A, B and C, which are known at 100 m, and P at 100 m, where the instrument stood at 1.5 m
// and 1.6 m were booked. Targets at P have three heights, so that nothing else explains it. Curvature and refraction
// lift each end by 0.66 mm, so that both ends differ by 101.3 mm.
TEST(HeightsCommand, NamesTheHeightOfAnInstrumentWhereItIsWrongOrNotChecked) {
  Program program;
  std::string known;
  std::string toP;
  std::string fromP = "STA,P,1.6,,0,0,0\n";
  for (auto const& [name, height] : {std::pair("A", "1.4"), std::pair("B", "1.5"), std::pair("C", "1.6")}) {
    std::string const station = std::string("STA,") + name + "," + height + ",,1000,1000,100\n";
    known += station;
    toP += station + "SC,P," + height + ",,0.0000,90.0000,100.000,0,0,0\n";
    fromP += std::string("SC,") + name + ",1.5,,0.0000,90.0000,100.000,0,0,0\n";
  }
  program.write("checked.txt", toP + fromP);
  test::Run const checked = program.run({"heights", "checked.txt"});
  EXPECT_THAT(checked.err, HasSubstr("the height of the instrument seems to be 101.3 mm too large: P\n"));
  EXPECT_THAT(checked.err, testing::Not(HasSubstr("nothing checks the height of the instrument")));
  // One height of all prisms at P would explain it as well.
  std::string oneHeight = toP;
  for (char const* height : {"SC,P,1.4", "SC,P,1.6"}) oneHeight.replace(oneHeight.find(height), 8, "SC,P,1.5");
  for (char const* height : {"STA,A,1.4", "STA,C,1.6"}) {
    oneHeight.replace(oneHeight.find(height), 9, std::string(height, 6) + "1.5");
  }
  program.write("one.txt", oneHeight + fromP);
  test::Run const either = program.run({"heights", "one.txt"});
  EXPECT_THAT(either.err, HasSubstr("the height of the instrument seems to be 101.3 mm too large: P\n"));
  EXPECT_THAT(either.err, HasSubstr("the height of the target (1.500 m) cannot be told apart from a suspected height: "
                                    "P\n"));
  program.write("alone.txt", known + fromP);
  test::Run const alone = program.run({"heights", "alone.txt"});
  EXPECT_THAT(alone.err, HasSubstr("nothing checks the height of the instrument: P\n"));
  EXPECT_THAT(alone.err, HasSubstr("nothing checks the height of the point: P\n"));
  EXPECT_THAT(alone.err, testing::Not(HasSubstr("seems to be")));
}

// A and B known, 100 m apart; P is sighted from both, under 60 degrees.
TEST(HeightsCommand, AreLeftOutOfThePlaneForOneReason) {
  auto const book = [](std::string const& height, std::string const& vertical, std::string const& distance) {
    std::string const end = "," + vertical + "," + distance + ",0,0,0\n";
    return "STA,A,1.5,,1000,1000," + height + "\nSC,B,1.5,,0.0000" + end + "SC,P,1.5,,60.0000" + end +
           "STA,B,1.5,,1000,1100," + height + "\nSC,A,1.5,,0.0000" + end + "SC,P,1.5,,300.0000" + end;
  };
  std::string const unknown =
      "STA,Z,1.5,,0,0,0\nSC,A,1.5,,0.0000,90.0000,,0,0,0\nSC,B,1.5,,300.0000,90.0000,,0,0,0\n"
      "SC,P,1.5,,330.0000,90.0000,,0,0,0\n";
  std::string noPlaces = book("0", "90.0000", "100");
  for (char const* place : {"1000,1000", "1000,1100"}) noPlaces.replace(noPlaces.find(place), 9, "0,0");
  struct Case {
    std::string file;
    QStringList options;
    char const* says;
    bool hasHeights;
  };
  Case const cases[] = {
      {book("50", "", ""), {}, "Info: No heights: no sight gives a height difference\n", false},
      {book("50", "", "100"), {}, "no vertical reading to make it horizontal and is left out: A to B; A to P;", false},
      {book("50", "90.0000", ""), {}, "Info: No heights: no sight gives a height difference\n", false},
      {book("0", "90.0000", "100"), {}, "Info: No heights: every known height is 0\n", false},
      {noPlaces, {"--free"}, "Info: No heights: no station has a known height\n", false},
      {book("50", "90.0000", "100") + unknown, {}, "it is left out of the heights: Z\n", true},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.file);
    Program const program;
    program.write("book.txt", c.file);
    test::Run const run = program.run(QStringList{"adjust", "book.txt", "--json"} + c.options);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.err, HasSubstr(c.says));
    EXPECT_EQ(run.json()["heights"].isNull(), !c.hasHeights);
    EXPECT_EQ(run.json()["points"].size(), c.hasHeights ? 4U : 3U);
  }
}

TEST(HeightsCommand, TakesTheStationsOfAnInstrumentJobThatHaveCoordinatesAsKnown) {
  Program program;
  program.write("job.lqf",
                "JOB     J\nINST    I\nSTA     A,1.5,\nXYZ     1000,1000,100\n"
                "SC      B,1.5,\nHVD     0,324000,200\n");  // level, 90 degrees in seconds
  test::Run const run = program.run({"heights", "job.lqf", "--json"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NEAR(run.json()["points"][1]["height"].asDouble(), 100.0026, 1e-4);  // the curvature less refraction above
}

TEST(HeightsCommand, TellsOnceOfAKnownStationWithTwoHeights) {
  Program program;
  program.write("job.txt", std::string(test::kFieldBook) + "STA,A,1.5,,1000,1000,51\n");
  for (char const* command : {"heights", "adjust"}) {
    QString const told = QString::fromStdString(program.run({command, "job.txt"}).err);
    EXPECT_EQ(told.count("heights, of which the first counts: A\n"), 1) << told.toStdString();
  }
}

TEST(HeightsCommand, RefusesWithAReason) {
  Program program;
  std::string const book = kFieldBook;
  program.write("net.in2", "2,3,3\nA,0,0\nB,100,0\nA\nB,L,0\nB,S,100\n");
  program.write("one.txt", book);
  std::string const apart = "SC,F,1.5,,0.0000,90.0000,100,0,0,0\n";
  program.write("apart.txt", book + "STA,E,1.5,,0,0,0\n" + apart + apart);
  struct Case {
    QStringList arguments;
    int exitCode;
    char const* says;
  };
  for (Case const& c : {Case{{"net.in2"}, 1, "no rows of a field book"},
                        Case{{"one.txt", "--as-read"}, 1, "Triangulation Height Require The Information Of Distance"},
                        Case{{"apart.txt"}, 1, "no line connects these points to a known height: E, F"},
                        Case{{"one.txt", "--refraction", "x"}, 2, "--refraction needs a number: x"}}) {
    SCOPED_TRACE(c.says);
    test::Run const run = program.run(QStringList{"heights"} + c.arguments);
    EXPECT_EQ(run.exitCode, c.exitCode);
    EXPECT_THAT(run.err, HasSubstr(c.says));
    EXPECT_EQ(run.out, "");
  }
}

}  // namespace
