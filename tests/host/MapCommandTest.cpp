// map, as it is used.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <osg/Version>

namespace {

using test::Program;
using testing::HasSubstr;

/// Width and height in the head of a PNG file, as "WxH"; "none" for anything else.
std::string sizeOf(std::string const& png) {
  if (png.size() < 24 || png.substr(1, 3) != "PNG") return "none";
  auto const number = [&png](std::size_t at) {
    int value = 0;
    for (std::size_t i = at; i < at + 4; ++i) value = value * 256 + static_cast<unsigned char>(png[i]);
    return std::to_string(value);
  };
  return number(16) + "x" + number(20);
}

TEST(MapCommand, DrawsEveryKindOfFile) {
  Program const program;
  program.write("点.dat", "P,,1,2,3\n控制点,,100,50,3");
  program.write("one.dat", "P,,1,2,3");
  program.write("known.in2", "2,3,2\nA,1,2\nB,10,20\n");
  QString const traverse = test::samplePath("trav_connecting_fr_5legs.txt");
  ASSERT_EQ(program.run({"convert", traverse, "job.lqf"}).exitCode, 0);
  program.shell("mkdir 图");
  struct {
    QString file;
    unsigned points, lines;
  } const cases[] = {{test::samplePath("net_charamza1990_p238.in2"), 12, 23},
                     {traverse, 8, 7},
                     {"job.lqf", 8, 7},
                     {"点.dat", 2, 0},
                     {"one.dat", 1, 0},
                     {"known.in2", 2, 0}};
  for (auto const& test : cases) {
    test::Run const run = program.run({"map", test.file, "图/map.png", "--size", "300x200", "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.json()["points"].asUInt(), test.points) << test.file.toStdString();
    EXPECT_EQ(run.json()["lines"].asUInt(), test.lines) << test.file.toStdString();
    EXPECT_EQ(sizeOf(program.read("图/map.png")), "300x200");
  }
}

TEST(MapCommand, RunsNothingThatLiesInTheWorkingDirectory) {
  Program const clean;
  clean.write("net.dat", "A,,0,0,0\nB,,100,100,0");
  test::Run const good = clean.run({"map", "net.dat", "map.png", "--size", "300x200"});
  ASSERT_EQ(good.exitCode, 0) << good.err;
  Program const planted;
  planted.write("net.dat", "A,,0,0,0\nB,,100,100,0");
  for (char const* plugIn : {"png", "freetype", "glsl"}) {
    planted.write(QString("osgPlugins-%1/osgdb_%2.so").arg(osgGetVersion(), plugIn), "no library");
  }
  for (char const* shader : {"vert", "frag"})
    planted.write(QString("shaders/osgText_Text.%1").arg(shader), "void main() {}");
  planted.write("libQt5Core.so.5", "no library");
  test::Run const run = planted.run({"map", "net.dat", "map.png", "--size", "300x200"});
  EXPECT_EQ(run.out, good.out);
  EXPECT_EQ(run.err, good.err);
  EXPECT_TRUE(planted.read("map.png") == clean.read("map.png")) << "names drawn by a foreign shader";
}

TEST(MapCommand, DrawsWhatLeastSquaresAlonePlaces) {
  // Distances alone: the search of the map finds no place, and would leave it at a warning.
  Program const program;
  program.write("net.in2", "5,2,2\nA,0,0\nB,100,0\nC,0,100\nP\nA,S,70.71\nB,S,70.71\nC,S,70.71\n");
  test::Run const run = program.run({"map", "net.in2", "map.png", "--size", "300x200", "--json"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.json()["points"].asUInt(), 4U);
  EXPECT_EQ(run.json()["lines"].asUInt(), 3U);
}

TEST(MapCommand, LeavesOutAndTellsWhatHasNoCoordinates) {
  Program const program;
  program.write("job.txt",
                "STA,A,1.5,,1000,1000,50\nSC,B,1.6,,0.0000,90.0000,100,0,0,0\nSC,P,1.6,,60.0000,90.0000,100,0,0,0\n"
                "SC,P,1.6,,240.0000,270.0000,100,0,0,0\nSC,B,1.6,,180.0000,270.0000,100,0,0,0\n"
                "STA,B,1.5,,1000,1100,50\nSTA,X,1.5,,0,0,0\n");
  test::Run const run = program.run({"map", "job.txt", "map.png"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("Not drawn, since they have no usable coordinates: X"));
  program.write("far.dat", "A,,0,0,0\nB,,100,100,1e300\nC,,nan,50,0\nD,,1e30,50,0");
  test::Run const far = program.run({"map", "far.dat", "map.png", "--json"});
  EXPECT_THAT(far.err, HasSubstr("Not drawn, since they have no usable coordinates: C, D"));
  EXPECT_EQ(far.json()["points"].asUInt(), 2U);
}

TEST(MapCommand, DrawsVectorsWithEllipsesWhereTheJobCanBeAdjusted) {
  Program const program;
  QString const sample = test::samplePath("net_niemeier2008.in2");
  test::Run const run =
      program.run({"map", sample, "map.svg", "--ellipses", "700", "--title", "<Site>", "--size", "800x600", "--json"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "") << "findings are told by adjust";
  EXPECT_EQ(run.json()["lines"].asUInt(), 7U);
  std::string const text = program.read("map.svg");
  EXPECT_THAT(text, HasSubstr("data-scale=\"700\""));
  EXPECT_THAT(text, HasSubstr("width=\"800\" height=\"600\""));
  EXPECT_THAT(text, HasSubstr("&lt;Site&gt;"));
  EXPECT_EQ(program.run({"map", sample, "map.svg", "--ellipses", "none"}).exitCode, 0);
  EXPECT_THAT(program.read("map.svg"), testing::Not(HasSubstr("<ellipse")));
  // A single direction leads to Q: no network with it has approximate coordinates.
  program.write("loose.in2", "2,3,2\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,70.71\nQ,L,90.0\n");
  test::Run const loose = program.run({"map", "loose.in2", "map.svg"});
  EXPECT_EQ(loose.exitCode, 0) << loose.err;
  EXPECT_THAT(loose.err, HasSubstr("Not adjusted, so that there are no error ellipses: "));
  EXPECT_THAT(loose.err, HasSubstr("Left out, since they have no coordinates: P, Q"));
}

TEST(MapCommand, TellsTheResolutionOfAPictureForPaper) {
  Program const program;
  QString const sample = test::samplePath("net_niemeier2008.in2");
  ASSERT_EQ(program.run({"map", sample, "screen.png", "--size", "600x400"}).exitCode, 0);
  ASSERT_EQ(program.run({"map", sample, "paper.png", "--size", "1200x800", "--dpi", "192"}).exitCode, 0);
  EXPECT_EQ(program.read("screen.png").find("pHYs"), std::string::npos);
  // 192 dots an inch are 7559 a metre; then the unit, the metre, and the check sum of RFC 2083 over all of that.
  EXPECT_EQ(program.read("paper.png").substr(33, 21),
            std::string("\0\0\0\x09pHYs\0\0\x1D\x87\0\0\x1D\x87\x01\x8F\xE5\xF1\x65", 21));
  EXPECT_EQ(sizeOf(program.read("paper.png")), "1200x800");
}

// Icons lie beside the program, or with the installed library.
TEST(MapCommand, NamesAnIconThatCannotBeReadOnce) {
  Program const program;
  program.write("points.dat", "A,,0,0,0\nB,,100,100,0");
  test::Run const run = program.shell(R"sh(mkdir -p a/bin/config/earth/img && cp "$KELVANE" a/bin/kelvane
      ln -s "$(dirname "$KELVANE")/../lib" a/lib
      echo "no picture" > a/bin/config/earth/img/kvn_coordpoint.png
      a/bin/kelvane map points.dat map.png --size 300x200)sh");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(run.err,
              testing::MatchesRegex("Warning: The icon [^\n]*/a/bin/config/earth/img/kvn_coordpoint.png cannot "
                                    "be read: points show by their names alone\n"));
}

TEST(MapCommand, RefusesWhatItCannotDrawAndLeavesTheOldPicture) {
  Program const program;
  program.write("empty.dat", "");
  program.write("free.in2", "2,3,2\nA,1,2\nB\nC,S,100\n");
  program.write("gbk.in2", "2,3,2\n\xBF\xD8\xD6\xC6,1,2\nB,10,20\n");
  program.write("map.png", "old");
  struct {
    QStringList arguments;
    int exitCode;
    char const* says;
  } const cases[] = {
      {{"empty.dat", "map.png"}, 1, "the file is empty"},
      {{"free.in2", "map.png"}, 1, "generate map data failed"},
      {{"gbk.in2", "map.png"}, 1, "gbk.in2: line 2 is no text in the encoding UTF-8; --encoding names"},
      {{"none.dat", "map.png"}, 1, "none.dat: no such file"},
      {{"empty.dat", "map.jpg"}, 1, "what can be written: .png"},
      {{"empty.dat"}, 2, "FILE is missing"},
      {{"empty.dat", "map.svg"}, 1, "the file is empty"},
      {{"empty.dat", "map.png", "--ellipses", "big"}, 2, "--ellipses needs a number: big"},
      {{"empty.dat", "map.svg", "--dpi", "300"}, 2, "--dpi is for a .png file"},
      {{"empty.dat", "map.png", "--size", "300"}, 2, "--size needs two numbers such as 1200x900: 300"},
      {{"empty.dat", "map.png", "--size", "300x9000"}, 2, "--size goes from 100 to 8192 pixels: 300x9000"},
  };
  for (auto const& test : cases) {
    test::Run const run = program.run(QStringList{"map"} + test.arguments);
    EXPECT_EQ(run.exitCode, test.exitCode) << test.says;
    EXPECT_THAT(run.err, HasSubstr(test.says));
    EXPECT_EQ(program.read("map.png"), "old");
  }
}

}  // namespace
