// check, convert, and adjust on field books, as they are used.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <cmath>
#include <sstream>

namespace {

using test::Program;
using testing::HasSubstr;

// The published connecting traverse, booked on both faces with circles that are set near zero, some just below.
QString const kTraverse = "trav_connecting_fr_5legs.txt";

// A closed triangle with a mark, every fault of the test below put in one at a time.
constexpr char const* kJob =
    "STA,A,1.60,,1000,1000,50\n"
    "SC,B,1.6,,0.0000,90.0000,100,0,0,0\n"
    "SC,P,1.6,,60.0000,90.0000,100,0,0,0\n"
    "SC,P,1.6,,240.0000,270.0000,100,0,0,0\n"
    "SC,B,1.6,,180.0000,270.0000,100,0,0,0\n"
    "STA,B,1.60,,1000,1100,50\n"
    "SC,P,1.6,,0.0000,90.0000,100,0,0,0\n"
    "SC,A,1.6,,60.0000,90.0000,100,0,0,0\n"
    "SC,A,1.6,,240.0000,270.0000,100,0,0,0\n"
    "SC,P,1.6,,180.0000,270.0000,100,0,0,0\n";

std::string changed(std::string const& from, std::string const& to) {
  std::string text = kJob;
  return text.replace(text.find(from), from.size(), to);
}

TEST(FieldAdjust, AgreesWithThePublishedTraverseAndTurnsCirclesThatReadBelowZero) {
  Program const program;
  Json::Value const json = program.run({"adjust", test::samplePath(kTraverse), "--method", "connect", "--json"}).json();
  // Published: misclosure -77.76" over six angles; the readings are kept to 0.01", which moves a mean by as much.
  double const second = std::acos(-1.0) / 180 / 3600;
  EXPECT_NEAR(json["misclosure"]["angleCorrection"].asDouble() / second, 77.76 / 6, 0.01);
  EXPECT_NEAR(json["misclosure"]["fx"].asDouble(), 0.016, 0.001);
  EXPECT_NEAR(json["misclosure"]["fy"].asDouble(), -0.039, 0.001);
  // The bound of 0 takes 3" from the circles, which is told nowhere.
  Json::Value const literal =
      program.run({"adjust", test::samplePath(kTraverse), "--method", "connect", "--as-read", "--json"}).json();
  EXPECT_NEAR(literal["misclosure"]["angleCorrection"].asDouble() / second, 80.76 / 6, 0.01);
}

TEST(FieldAdjust, TellsAFewOfTheWarningsThatDifferInWhatTheyQuoteAlone) {
  std::string job = kJob;
  char letter = 'a';
  for (std::size_t at = 0; (at = job.find(",1.6,", at)) != std::string::npos; at += 5) job.insert(at + 4, 1, letter++);
  Program const program;
  program.write("job.txt", job);
  std::string const said = program.run({"adjust", "job.txt"}).err;
  EXPECT_THAT(said, HasSubstr("Warning: something stands behind the number: 1.6b: A to P\n"));
  EXPECT_THAT(said, HasSubstr("something stands behind the number: 1.6c: A to P; and 5 more of this kind\n"));
  EXPECT_EQ(said.find("1.6d"), std::string::npos);
}

TEST(FieldAdjust, RefusesWhatItWouldOnlyPretendToComputeAndTellsWhatIsDoubtful) {
  struct Case {
    char const *from, *to, *says;
    int exitCode = 1;
  };
  Case const cases[] = {
      {"60.0000,90", "6o.0000,90", "job.txt: line 3: A to P: the angle is no number: 6o.0000"},
      {"240.0000,270", "250.0000,270", "job.txt: line 4: A to P: the readings of the target do not belong together"},
      {"STA,B,1.60,,1000", "STA,B,1.60,,x", "job.txt: line 6 The Format of Data is wrong"},
      {"STA,B,1.60", "STA,B,m", "job.txt: line 6 a number is missing or cannot be read"},
      {"STA,B,1.60,", "STA,B,1.60", "job.txt: The line 6 is wrong"},
      {"STA,B,1.60,,1000,1100,50", "STA,A,1.60,,1000,1100,50", "job.txt: line 6: A: the known point has two positions"},
      {"SC,B,1.6,,180.0000", "SC,B,1.6,,181.0000", "line 5: A to B: the readings of the first target do not belong"},
      {"STA,B", "STA,\xB5\xE3", "job.txt: line 6 is no text in the encoding UTF-8; --encoding names another one"},
      {"100,0,0,0", "inf,0,0,0", "job.txt: line 2: A to B: the number is not finite: inf"},
      {"240.0000,270", "240.0300,270", "the sights of the target do not differ by half a circle", 0},
      {"STA,A", "STA,M,0,,0,0,9\nSTA,A", "known by its height alone, the station counts as known at 0, 0", 0},
      {"60.0000,90.0000,100", "60.0000,90.0000,105", "the distances to the target differ by 5000.0 mm, more than", 0},
      {"1000,1100,50", "1000,1200,50", "The unit weight error is far above 1", 0},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.to);
    Program const program;
    program.write("job.txt", changed(c.from, c.to));
    test::Run const run = program.run({"adjust", "job.txt"});
    EXPECT_EQ(run.exitCode, c.exitCode);
    EXPECT_THAT(run.err, HasSubstr(c.says));
    EXPECT_EQ(run.out.empty(), c.exitCode == 1);
  }
}

TEST(FieldAdjust, RefusesAJobWhoseRecordsDoNotHold) {
  std::string const head = "STA B,0,\nXYZ 1100,1000,9\nSTA A,0,\nXYZ 1000,1000,9\n";
  std::string repeats;
  for (int i = 0; i < 20; ++i) repeats += "SC B,0,\nHVD 0,324000,100\n";
  struct Case {
    std::string records;
    char const* says;
  };
  for (Case const& c : {Case{"SC B,0,\nSC P,0,\nHVD 324000,324000,100\n", "line 5: B: the sight has no readings"},
                        {"SC B,0,\nHVD 1,5,324000.0,100\n", "line 6: A to B: more than three values"},
                        {"BS B,0,\nHVD 0,324000\n" + repeats + "STA P,0,\nSC B,0,\nHVD 0,324000\n",
                         "line 47: P: the station is lost"}}) {
    SCOPED_TRACE(c.says);
    Program const program;
    program.write("job.lqf", head + c.records);
    test::Run const run = program.run({"adjust", "job.lqf"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr(c.says));
  }
}

TEST(Check, TellsWhatIsWrongAndWhereItStands) {
  struct Case {
    char const *from, *to;
    int exitCode;
    char const* says;
  };
  Case const cases[] = {
      {"240.0000,270.0000", "240.0040,269.5900", 1,
       "Note: line 3: A to P: double collimation error -40.0\", index error -30.0\"\n"},
      {"240.0000,270", "240.0040,270", 1, "Warning: line 4: A to P: the sights of the target do not differ by half a"},
      {"SC,P,1.6,,240.0000,270.0000,100,0,0,0\n", "", 0, "Warning: line 3: A to P: sighted on one face only"},
      {"SC,B,1.6,,180", "SC,Q,1.6,,180", 0, "Note: line 2: A to B, Q: a program that pairs faces by their place"},
      {"60.0000,90", "60.7000,90", 1, "Warning: line 3: A to P: minutes or seconds of 60 and above: 60.7000"},
      {"STA,B,1.60,", "STA,B,1.60m,", 0, "Warning: line 6: B: something stands behind the number: 1.60m"},
      {"STA,B,", "STA,A,", 1, "Note: line 1: A: the station comes twice"},
      {"0.0000,90.0000,100", "0.0000,90.0000,100.04", 0,
       "Warning: line 8: B to A: the distances from both ends differ by 20.0 mm"},
      {"STA,A", "STA,Z,0,,1,1,1\nSTA,A", 0, "Warning: Z: the known point is not observed"},
      {"90.0000,100,", "-90.0000,-100,", 1, "Error: line 2: A to B: the distance is negative"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(std::string(c.from) + " to " + c.to);
    Program const program;
    program.write("job.txt", changed(c.from, c.to));
    test::Run const run = program.run({"check", "job.txt"});
    EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
    EXPECT_THAT(run.out, HasSubstr(c.says));
    EXPECT_EQ(program.run({"check", "job.txt", "--json"}).json()["ok"].asBool(), c.exitCode == 0);
  }
}

TEST(Check, TellsNoMoreThanThereIs) {
  Program const program;
  program.write("job.txt", kJob);
  EXPECT_EQ(program.run({"check", "job.txt"}).out,
            "Note: line 7: B to P: a program that keeps distances forward only drops this one at both ends\n");
  program.write("job.txt", changed("180.0000,270.0000", "180.0010,270.0000"));
  EXPECT_THAT(program.run({"check", "job.txt"}).out,
              HasSubstr("Note: line 2: A to B: double collimation error -10.0\", index error 0.0\"\n"));
}

// 3 standard errors of a difference of two: 3 √2 (3 mm + 3 ppm of 100 m) = 14.00 mm.
TEST(Check, ComparesDistancesByTheirErrors) {
  Program const program;
  auto const said = [&program](char const* distance) {
    program.write("job.txt", changed("240.0000,270.0000,100", std::string("240.0000,270.0000,") + distance));
    return program.run({"check", "job.txt"}).out;
  };
  EXPECT_THAT(said("100.0139"), testing::Not(HasSubstr("differ by")));
  EXPECT_THAT(said("100.0141"), HasSubstr("Warning: line 4: A to P: the distances to the target differ by 14.1 mm"));
}

TEST(Check, ComparesHeightsBeforeTheyAreAdjusted) {
  auto const faces = [](char const* target, char const* height, char const* hz, char const* distance) {
    std::string rows;
    for (char const* circle : {"0", "180"}) {
      std::string const reading = std::to_string(std::stoi(circle) + std::stoi(hz));
      rows += std::string("SC,") + target + "," + height + ",," + reading + ".0000," + (*circle == '0' ? "90" : "270") +
              ".0000," + distance + ",0,0,0\n";
    }
    return rows;
  };
  std::string const station = "STA,A,1.500,,1000,1000,50\n";
  std::string const both = faces("B", "1.5", "0", "100") + faces("P", "1.5", "60", "100");
  std::string const again = faces("Q", "1.5", "20", "50");
  std::string const end = "STA,B,1.500,,1000,1100,50\n";
  struct Case {
    char const* what;
    std::string rows;
    char const* says;  ///< nothing of heights where it is empty
  };
  Case const cases[] = {
      {"good", station + both + end + faces("A", "1.5", "0", "100"), ""},
      {"both ends", station + both + end + faces("A", "1.6", "0", "100"),
       "Warning: line 7: B to A: the height differences of both ends differ by 98.7 mm\n"},
      {"a set-up with another tripod",
       station + both + "STA,A,1.6,,1000,1000,50\n" + faces("B", "1.6", "0", "100") + faces("P", "1.6", "60", "100") +
           end,
       ""},
      {"a set-up whose height is wrong", station + both + "STA,A,1.6,,1000,1000,50\n" + both + end,
       "Warning: line 6: A: the heights of the instrument in two set-ups, 1.5000 m and 1.6000 m, do not agree: by "
       "their "
       "common targets one of them is off by 100.0 mm\n"},
      {"one common target, which may have moved",
       station + both + "STA,A,1.5,,1000,1000,50\n" + faces("B", "1.6", "0", "100") + again + end,
       "Warning: line 7: A to B: the height differences of two set-ups differ by 100.0 mm\n"},
      {"nothing in common, a typing error", station + both + "STA,A,1.505,,1000,1000,50\n" + again + end,
       "Warning: line 6: A: the heights of the instrument in two set-ups, 1.5000 m and 1.5050 m, differ by little"},
      {"nothing in common, another tripod", station + both + "STA,A,1.62,,1000,1000,50\n" + again + end,
       "Note: line 6: A: the heights of the instrument in two set-ups are 1.5000 m and 1.6200 m, and no common target"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Program const program;
    program.write("job.txt", c.rows);
    std::string const said = program.run({"check", "job.txt"}).out;
    if (*c.says != '\0') {
      EXPECT_THAT(said, HasSubstr(c.says));
    } else {
      EXPECT_THAT(said, testing::Not(HasSubstr("height")));
    }
  }
}

TEST(Check, TellsAStationOnOneFaceOnce) {
  std::string rows = kJob;
  for (std::string const second : {"SC,P,1.6,,240", "SC,B,1.6,,180"}) {
    std::size_t const at = rows.find(second);
    rows.erase(at, rows.find('\n', at) + 1 - at);
  }
  Program const program;
  program.write("job.txt", rows);
  std::string const said = program.run({"check", "job.txt"}).out;
  EXPECT_THAT(said, HasSubstr("Warning: line 1: A: observed on one face only: collimation and index errors stay in"));
  EXPECT_THAT(said, testing::Not(HasSubstr("sighted on one face only")));
}

TEST(Check, NamesTheLinesOfAJobFile) {
  Program const program;
  program.write("job.lqf",
                "JOB x\nSTA A,1.5,\nBS K,1.6,\nHVD 0,324000\nWHAT ever\nSC K,1.6,\nHVD 0,324000,5x\nSC P Q,1.6,\n"
                "SC P,1,\nHVD 3600,nan\n");
  test::Run const run = program.run({"check", "job.lqf"});
  EXPECT_EQ(run.exitCode, 1);
  for (char const* line :
       {"Warning: line 5: A to K: the line is passed over: WHAT ever", "Warning: line 2: A: observed on one face only",
        "Warning: line 7: A to K: something stands behind the number: 5x",
        "Warning: line 8: A to K: what stands behind a blank", "Error: line 8: A: the row has no name",
        "Error: line 10: A to P: the number is not finite"}) {
    EXPECT_THAT(run.out, HasSubstr(line));
  }
}

TEST(Convert, WritesNothingThatCouldNotBeReadBack) {
  Program const program;
  program.write("job.txt", changed("SC,P,1.6,,60", "SC,P 1,1.6,,60"));
  program.write("points.dat", "A,,1,2,3");
  program.write("net.in2", "2,3,3\nA,0,0\nB,0,1\nA\nB,L,0.0\n");
  for (char const* name : {"B,1", "B&#10;1"}) {
    program.write(name[1] == ',' ? "comma.kvn" : "break.kvn",
                  std::string("<K Version='1.0.1' FileType='1'><ViewData><Point name='") + name +
                      "' pointType='StationPoint' isKnown='true' instrument='0' N='0' E='0' Z='0'/></ViewData></K>");
  }
  struct Case {
    char const *in, *out, *says;
  };
  for (Case const& c : {Case{"job.txt", "old.lqf", "the name \"P 1\" cannot stand"},
                        {"comma.kvn", "old.txt", "the name \"B,1\" cannot stand"},
                        {"break.kvn", "old.dat", "the name \"B 1\" cannot stand"},
                        {"net.in2", "old.txt", "a file of this kind holds the readings of a field book"},
                        {"points.dat", "old.lqf", "a file of this kind holds the readings"},
                        {"job.txt", "old.xml", "unknown kind of file; what can be written: .txt, .lqf, .in2, .dat"}}) {
    SCOPED_TRACE(c.out);
    program.write(c.out, "old");
    test::Run const run = program.run({"convert", c.in, c.out});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr(c.says));
    EXPECT_EQ(program.read(c.out), "old");
  }
}

TEST(Convert, KeepsRoundsThatOneCircleCannotHoldAsSetUps) {
  Program const program;
  // The second round of A sees Q and R alone, the first one B and P: no circle for both, as a traverse needs.
  program.write("job.txt",
                "STA,A,1.60,,0,1,1\nSC,B,1.5,,0.0,90.0,,0,0,0\nSC,P,1.5,,60.0,90.0,100,0,0,0\n"
                "STA,A,1.60,,0,1,1\nSC,Q,1.5,,0.0,90.0,,0,0,0\nSC,R,1.5,,30.0,90.0,100,0,0,0\nSTA,B,1.60,,0,101,1\n"
                "SC,A,1.5,,0.0,90.0,,0,0,0\nSC,Q,1.5,,20.0,90.0,50,0,0,0\nSC,R,1.5,,30.0,90.0,51.764,0,0,0\n");
  test::Run const run = program.run({"adjust", "job.txt", "--method", "open"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err,
              HasSubstr("line 5: A to Q, R: the round has no target in common with the others of its station"));
  EXPECT_EQ(program.run({"convert", "job.txt", "net.in2"}).exitCode, 0);
  EXPECT_THAT(program.read("net.in2"), HasSubstr("\nA\nB,L,0.000000\nP,L,60.000000\nP,S,100.0000\n"
                                                 "A\nQ,L,0.000000\nR,L,30.000000\nR,S,100.0000\nB\n"));
}

// Two known points and P, which fits within the errors.
constexpr char const* kJudged =
    "2,3,2\nA,1000,1000\nB,1000,1200\nA\nB,L,0.0000\nP,L,315.0000\nP,S,141.42\nB\nP,L,0.0000\nP,S,141.43\nA,L,314."
    "5958\n";

// A distance and a set-up of A are there twice: those of lines 8 to 11.
constexpr char const* kRepeated =
    "2,5,0\nA,0.0000,0.0000\nB,0.0000,100.0000\nA\nB,L,0.000000\nP,L,270.000000\nP,S,100.0020\nP,S,99.9980\n"
    "A\nB,L,30.000000\nP,S,100.0010\n";

TEST(Convert, WritesEveryObservationOfANetwork) {
  Program const program;
  program.write("net.in2", kRepeated);
  EXPECT_EQ(program.run({"convert", "net.in2", "net.in2", "-q"}).err, "");
  EXPECT_EQ(program.read("net.in2"), kRepeated);
}

TEST(FieldCheck, JudgesAsAdjustDoes) {
  Program const program;
  program.write("agree.in2", kJudged);
  std::string off = kJudged;
  program.write("off.in2", off.replace(off.find("141.43"), 6, "141.45"));
  program.write("flat.txt", "STA,A,1.5,,0,0,100\nSC,B,1.5,,0,90.0,0,0,0,0\n");
  program.write("minus.txt", "STA,A,1.5,,0,0,100\nSC,B,1.5,,0,90.0,-50,0,0,0\n");
  struct Case {
    QString file;
    int exitCode;
    char const* says;
  };
  for (Case const& c : {
           Case{"agree.in2", 0, "Nothing found."},
           {"off.in2", 0, "Warning: the observations do not agree with their a-priori errors: unit weight error 5."},
           {test::samplePath("trav_connecting_fr_5legs.txt"), 0,
            "The angular misclosure is -77.8″, where the a-priori errors allow 17.8″"},
           // Neither plane nor heights.
           {"flat.txt", 1, "Error: Known points are not enough"},
           {"minus.txt", 1, "Error: line 2: A to B: the distance is negative"},
       }) {
    SCOPED_TRACE(c.file.toStdString());
    test::Run const run = program.run({"check", c.file});
    EXPECT_EQ(run.exitCode, c.exitCode);
    EXPECT_THAT(run.out, HasSubstr(c.says));
    if (c.exitCode == 0) continue;
    EXPECT_THAT(program.run({"check", c.file, "-q"}).err, HasSubstr(std::string(c.says).substr(7)));
  }
  for (char const* command : {"heights", "adjust"}) {
    EXPECT_THAT(program.run({command, "minus.txt"}).err, HasSubstr("line 2: A to B: the distance is negative"));
  }
}

TEST(FieldCheck, TellsEachThingOnce) {
  Program const program;
  program.write("odd.in2", "2,3,2\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,315.7000\nX;Y,Z\nQ\nR,L,0\n");
  test::Run const run = program.run({"check", "odd.in2"});
  EXPECT_EQ(run.err, "kelvane: odd.in2: the job cannot be computed as it stands\n");
  EXPECT_THAT(run.out, HasSubstr("315.7000"));
  EXPECT_THAT(run.out, HasSubstr("Error: R: cannot be placed"));
  EXPECT_THAT(run.out, testing::Not(HasSubstr("nothing connects the point")));
}

TEST(FieldAdjust, HasTheSameHeightsWhateverIsSaved) {
  Program const program;
  QString const book = test::samplePath("trav_connecting_fr_5legs.txt");  // all known heights are 0
  for (char const* file : {"j.kvn", "j.dat", "j.csv"}) {
    SCOPED_TRACE(file);
    test::Run const run = program.run({"adjust", book, "--save", file});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.err, HasSubstr("No heights: every known height is 0"));
    EXPECT_THAT(run.out, testing::Not(HasSubstr("The heights agree")));
  }
  std::istringstream rows(program.read("j.dat"));
  for (std::string row; std::getline(rows, row);) EXPECT_THAT(row, testing::EndsWith(",0.0000"));
  program.run({"convert", "j.kvn", "k.csv"});
  EXPECT_THAT(program.read("k.csv"), testing::ContainsRegex("\n1,[0-9.]+,[0-9.]+,,new"));
}

TEST(Convert, TellsWhatAFileLacksThoughQuiet) {
  Program const program;
  program.write("net.in2", kRepeated);
  char const* const says =
      "3 of 6 observations are given more than once from a station and count once, by their mean: line 10, line 8, "
      "line 11\n";
  EXPECT_THAT(program.run({"convert", "net.in2", "net.kvn", "-q"}).err, HasSubstr(says));
  EXPECT_THAT(program.run({"adjust", "net.in2", "--save", "net.kvn", "-q"}).err, HasSubstr(says));
  // Commands know one observation of a kind in a line.
  program.run({"exec", "--open", "net.in2", "--save", "same.in2"}, "[]");
  EXPECT_EQ(program.read("same.in2"), kRepeated);
}

TEST(Convert, RefusesToReplaceAFileByOneThatLacksSomething) {
  Program const program;
  struct Case {
    char const *file, *text, *says;
  };
  for (Case const& c :
       {Case{"net.in2", "2,3,3\nA,0,0\nA\nB,L,0\nB,S,1O5\n", "line 5: the line is passed over: B,S,1O5"},
        {"letter.in2", "2,3,3\nA,0,0\nA\nB,L,0\nB,S,4,m\n", "line 5: the line is passed over: B,S,4,m"},
        {"job.lqf", "JOB N\nSTA A,1.5\nSC P,1.5\nHVD 30.0,90.0,50\nNOTE rain\n",
         "line 5: A to P: the line is passed over: NOTE rain"}}) {
    SCOPED_TRACE(c.says);
    program.write(c.file, c.text);
    test::Run const run = program.run({"convert", c.file, c.file, "-q"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr(std::string("the file would lose what it holds; another name keeps it: ") + c.says));
    EXPECT_EQ(program.read(c.file), c.text);
    EXPECT_EQ(program.run({"convert", c.file, QString("other.") + QString(c.file).section('.', -1)}).exitCode, 0);
  }
}

TEST(Convert, WritesANetworkOfKnownPointsOrOfLinesAlone) {
  Program const program;
  for (char const* text : {"2,3,3\nA,0.0000,1.0000\n", "2,3,3\nA\nB,L,0.000000\nB,S,5.0000\n"}) {
    program.write("half.in2", text);
    EXPECT_EQ(program.run({"convert", "half.in2", "same.in2"}).exitCode, 0) << text;
    EXPECT_EQ(program.read("same.in2"), text);
  }
}

}  // namespace
