#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>

namespace {

using test::kNetworkFile;
using test::Program;
using testing::HasSubstr;
using testing::StartsWith;

TEST(CommandLine, TellsWrongUsageFromDataThatCannotBeUsed) {
  Program const program;
  program.write("net.in2", kNetworkFile);
  program.write("net.xyz", kNetworkFile);
  program.write("NET.TXT", kNetworkFile);
  program.write("empty.in2", "");
  program.write("one.in2", "3,5,0\nA,0,0\nA\nB,L,0\nP,L,45.0\n");
  program.write("far.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nC,L,0\nC,S,9\nP\nQ,L,0\nQ,S,5\n");
  program.write("headless.in2", "A,0,0\nB,0,100\nA\nB,L,0\n");
  program.write("twice.in2", "2,3,2\nA,0,0\nA,0,1\nA\nB,L,0\n");
  program.write("itself.in2", "2,3,2\nA,0,0\nB,0,100\nA\nA,S,5\nB,S,100\n");
  program.write("nothing.in2", "2,3,2\nA,0,0\n");
  program.write("minus.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,-7\n");
  program.write("head.in2", "0,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\n");
  program.write("nan.in2", "nan,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,7\n");
  program.write("below.in2", "3,-5,3\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,7\n");
  program.write("points.in2", "3,5,0\nA,0,0\nB,0,100\n");
  program.write("exact.in2", "3,0,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,7\n");
  struct Case {
    QStringList arguments;
    int exitCode;
    char const* says;
  };
  Case const cases[] = {
      {{}, 2, "Usage: kelvane"},
      {{"plot", "net.in2"}, 2, "unknown subcommand: plot"},
      {{"adjsut", "net.in2"}, 2, "unknown subcommand: adjsut; did you mean adjust? (see kelvane help)\n"},
      {{"help", "draw"}, 2, "unknown subcommand: draw (see kelvane help)\n"},
      {{"adjust", "net.in2", "--angel-error", "2"}, 2, "did you mean --angle-error? (see kelvane help adjust)\n"},
      {{"adjust", "net.in2", "--Q"}, 2, "Unknown option 'Q' (see kelvane help adjust)\n"},
      {{"adjust", "net.in2", "--save"}, 2, "(see kelvane help adjust)\n"},
      {{"adjust", "-"}, 2, "- needs --kind, such as --kind in2"},
      {{"check", "-", "-", "--kind", "in2"}, 2, "standard input can be read once"},
      {{"show", "-", "--kind", "doc"}, 2, "unknown kind: doc"},
      {{"show", "net.in2", "--kind", "in2"}, 2, "--kind is for standard input, -"},
      {{"convert", "net.in2", "-"}, 2, "- needs --to, such as --to dat"},
      {{"convert", "net.in2", "x.dat", "--to", "dat"}, 2, "--to is for standard output, -"},
      {{"adjust", "net.in2", "--save", "-", "--to", "dat", "--json"}, 2, "--json does not go with standard output"},
      {{"exec", "--save", "-"}, 2, "--save needs a file: the results are on standard output"},
      {{"show", "net.in2", "--language", "de"}, 2, "--language is en or zh, not de"},
      {{"adjust", "net.in2", "--save", "none/x.dat"}, 1, "kelvane: none/x.dat: there is no folder none\n"},
      {{"report", "net.in2", "net.in2/x.html"}, 1, "kelvane: net.in2/x.html: net.in2 is no folder\n"},
      {{"convert", "net.in2"}, 2, "FILE is missing"},
      {{"adjust"}, 2, "FILE is missing"},
      {{"show", "net.in2", "far.in2"}, 2, "too many arguments"},
      {{"adjust", "net.in2", "--save", ""}, 2, "--save needs a file"},
      {{"adjust", "net.in2", "--method", "guess"}, 2, "unknown method: guess"},
      {{"adjust", "net.in2", "--angle-error", "0"}, 2, "--angle-error must be above 0"},
      {{"adjust", "net.in2", "--angle-error", "nan"}, 2, "--angle-error needs a number"},
      {{"adjust", "net.in2", "--fixed-error", "1e99"}, 2, "--fixed-error needs a number"},
      {{"adjust", "net.in2", "--proportional-error", "-1"}, 2, "--proportional-error must be 0 or more"},
      {{"adjust", "net.in2", "--distance-error-form", "mean"}, 2, "sum or root"},
      {{"adjust", "net.in2", "--centring", "-1"}, 2, "--centring goes from 0 to 1000: -1"},
      {{"adjust", "net.in2", "--control-error", "1e6"}, 2, "--control-error goes from 0 to 100000: 1e6"},
      {{"adjust", "net.in2", "--confidence", "95"}, 2, "--confidence goes from 0.5 to 0.9999: 95"},
      {{"adjust", "net.in2", "--sigma0", "1"}, 2, "--sigma0 is a-posteriori or a-priori, not 1"},
      {{"adjust", "net.in2", "--free", "--control-error", "3"}, 2, "--control-error does not go with --free"},
      {{"adjust", "net.in2", "--as-read", "--free"}, 2, "--free does not go with --as-read"},
      {{"adjust", "net.in2", "--robust", "--leave-out"}, 2, "--robust does not go with --leave-out"},
      {{"adjust", "net.in2", "--as-read", "--robust"}, 2, "--robust does not go with --as-read"},
      {{"adjust", "net.in2", "--as-read", "--approximate", "a.dat"}, 2, "--approximate does not go with --as-read"},
      {{"adjust", "net.in2", "--approximate", "far.in2"}, 1, "far.in2: approximate coordinates are read from a"},
      {{"adjust", "net.in2", "--as-read", "--confidence", "0.9"}, 2, "--confidence does not go with --as-read"},
      {{"adjust", "net.in2", "--method", "open", "--control-error", "1"}, 2, "--control-error is for least squares"},
      {{"adjust", "net.in2", "--force"}, 2, "--force is for a traverse, read with care"},
      {{"adjust", "net.in2", "--method", "closed", "--allowed-angle", "-1"}, 2, "--allowed-angle goes from 0 to 1"},
      {{"heights", "job.txt", "--as-read", "--zenith-error", "5"}, 2, "--zenith-error does not go with --as-read"},
      {{"show", "net.in2", "--encoding", "GBX"}, 2, "unknown encoding: GBX"},
      {{"show", "net.in2", "--encoding", "GBKK"}, 2, "kelvane: unknown encoding: GBKK; did you mean GBK? (see"},
      {{"adjust", "net.in2", "--method", "conect"},
       2,
       "unknown method: conect; did you mean connect? (least-squares, open, connect, closed, traverse)"},
      {{"show", "-", "--kind", "in"}, 2, "unknown kind: in (in2, kvn, txt, dat, lqf)"},
      {{"convert", "net.in2", "-", "--to", "kv"}, 2, "unknown kind: kv (txt, lqf, in2, dat, kvn, csv, geojson"},
      {{"convert", "net.in2", ""}, 2, "FILE is missing"},
      {{"map", "net.in2", "-"}, 2, "- needs --to, such as --to svg"},
      {{"heights", "job.txt", "--save", "-"}, 2, "- needs --to, such as --to csv"},
      {{"plan", "net.in2", "--points", "-", "--kind", "dat"}, 2, "--points needs a file, not standard input"},
      {{"--hlep"}, 2, "unknown subcommand: --hlep; did you mean --help?"},
      {{"help", "adjust", "foo"}, 2, "too many arguments: foo"},
      {{"-q", "--language", "en", "show", "none.in2"}, 1, "kelvane: none.in2: no such file\n"},
      {{"adjust", "headless.in2"},
       1,
       "kelvane: headless.in2: line 1 three a-priori errors are to stand here, such as 2,3,2, and not: A,0,0"},
      {{"adjust", "twice.in2"}, 1, "kelvane: twice.in2: line 3 the known point A is given twice\n"},
      {{"adjust", "itself.in2"}, 1, "kelvane: itself.in2: line 5: A: an observation from a point to itself\n"},
      {{"adjust", "nothing.in2"}, 1, "kelvane: nothing.in2: there are no observations to adjust\n"},
      {{"show", "net.in2", "--encoding", "UTF-16"}, 2, "not an 8-bit encoding: UTF-16"},
      {{"adjust", "net.in2", "--method", "closed"}, 1, "kelvane: net.in2: Known points are not enough: P ("},
      {{"show", "none.in2"}, 1, "kelvane: none.in2: no such file"},
      {{"show", "."}, 1, "kelvane: .: not a regular file"},
      {{"show", "net.xyz"}, 1, "kelvane: net.xyz: unknown kind of file; what can be read: .in2"},
      {{"show", "NET.TXT"}, 1, "kelvane: NET.TXT: The line 1 is wrong"},
      {{"show", "empty.in2"}, 1, "kelvane: empty.in2: The import file data is empty"},
      {{"adjust", "one.in2"}, 1, "kelvane: one.in2: Known points are not enough\n"},
      {{"adjust", "points.in2", "--free"}, 1, "kelvane: points.in2: there are no observations to adjust\n"},
      {{"adjust", "far.in2"},
       1,
       "kelvane: far.in2: No approximate coordinates: P, Q (no connection to the known points)\n"},
      {{"adjust", "minus.in2"}, 1, "kelvane: minus.in2: line 7 the distance is negative: P,S,-7\n"},
      {{"adjust", "head.in2"}, 1, "kelvane: head.in2: the a-priori error of a direction"},
      {{"adjust", "nan.in2"}, 1, "kelvane: nan.in2: the a-priori error of a direction"},
      {{"adjust", "below.in2"},
       1,
       "kelvane: below.in2: the a-priori errors of a distance (in a network file the second and third"},
      {{"adjust", "exact.in2"}, 1, "kelvane: exact.in2: the a-priori errors of a distance are both 0"},
      {{"exec", "--save", "x.xml"}, 1, "kelvane: x.xml: unknown kind of file; what can be written: .txt, .lqf, .in2"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.arguments.join(' ').toStdString());
    test::Run const run = program.run(c.arguments);
    EXPECT_EQ(run.exitCode, c.exitCode);
    EXPECT_THAT(run.err, HasSubstr(c.says));
    EXPECT_EQ(run.out, "");
    if (c.exitCode == 2) continue;
    // Before the failure may stand the one message that names the points.
    bool const hasMessage =
        QString::fromStdString(run.err).startsWith("Error: No approximate coordinates: P, Q (no conn");
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), hasMessage ? 2 : 1) << run.err;
    Json::Value const failure = program.run(c.arguments + QStringList{"--json"}).json();
    EXPECT_EQ(failure["code"], Json::Value(0));
    EXPECT_THAT(run.err, HasSubstr(failure["message"].asString()));
  }
}

TEST(CommandLine, OpensAndWritesFilesAsAShellKnowsThem) {
  Program const program;
  program.write("net.in2", "2,3,2\nA,1000,1000\nB,1000,1200\nA\nB,L,0.0000\nP,L,315.0000\nP,S,141.42\n");
  struct Case {
    char const* command;
    int exitCode;
    char const* out;
    char const* err;
  };
  Case const cases[] = {
      // A name in Latin-1, which is no text in UTF-8.
      {R"sh(n=$(printf 'raw\351.in2'); cp net.in2 "$n"; "$KELVANE" convert "$n" "2$n" && test -s "2$n" && ls | wc -l)sh",
       0, "3\n", ""},
      {R"sh("$KELVANE" show "$(printf 'none\351.in2')")sh", 1, "", "kelvane: none\\xE9.in2: no such file\n"},
      {R"sh(rm -f *2raw* raw*; mkfifo p.dat; cat p.dat & "$KELVANE" convert net.in2 p.dat 2> /dev/null; wait)sh", 0,
       "A,,1000.0000,1000.0000,0.0000\nB,,1200.0000,1000.0000,0.0000", ""},
      {R"sh(ln -s /dev/stdout out.dat; echo first; "$KELVANE" convert net.in2 out.dat 2> /dev/null)sh", 0,
       "first\nA,,1000.0000,1000.0000,0.0000\nB,,1200.0000,1000.0000,0.0000", ""},
      {R"sh(cp net.in2 kept.in2; chmod 444 kept.in2; "$KELVANE" convert net.in2 kept.in2)sh", 1, "",
       "Error: kept.in2 was not written: the file is write-protected\n"},
      {R"sh((ulimit -f 0; "$KELVANE" convert net.in2 large.in2))sh", 1, "",
       "Error: large.in2 was not written: File too large\n"},
      // Names of a coordinate file in Latin-1 would be lost; a byte order mark is none of them.
      {R"sh(printf 'Q,,1,2,3\nP\351,,1,2,3' > l.dat; "$KELVANE" convert l.dat l.dat)sh", 1, "",
       "kelvane: l.dat: line 2 is no text in the encoding UTF-8; --encoding names another one\n"},
      {R"sh("$KELVANE" convert l.dat m.dat --encoding ISO-8859-1 && tail -n 1 m.dat | od -An -tx1 -N 2)sh", 0,
       " 50 e9\n", ""},
      {R"sh(printf '\357\273\277P\347\202\271,,1,2,3\r\n' > b.dat; "$KELVANE" convert b.dat c.dat && cat c.dat)sh", 0,
       "P点,,1.0000,2.0000,3.0000", ""},
      {R"sh(: > e.dat; "$KELVANE" convert e.dat c.dat)sh", 1, "", "kelvane: e.dat: the file is empty\n"},
      {R"sh("$KELVANE" adjust - --kind in2 --save - --to dat -q < net.in2 | tail -n 1)sh", 0,
       "P,,1099.9990,1099.9990,0.0000", ""},
      {R"sh("$KELVANE" show - --kind in2 -q < e.dat)sh", 1, "",
       "kelvane: standard input: The import file data is empty\n"},
      {R"sh("$KELVANE" adjust net.in2 -q)sh", 0, "", ""},
      // What one file lacks does not keep the others from being looked at.
      {R"sh("$KELVANE" check none.in2 - c.dat --kind dat < c.dat)sh", 1,
       "standard input: Error: a coordinate file has no observations to adjust\n"
       "c.dat: Error: a coordinate file has no observations to adjust\n",
       "kelvane: none.in2: no such file\nkelvane: standard input: the job cannot be computed as it stands\n"
       "kelvane: c.dat: the job cannot be computed as it stands\n"},
      // Names in another encoding: a network becomes UTF-8, coordinates are written in it, a job is given back in it.
      {R"sh(sed 's/A/点/' net.in2 | iconv -f UTF-8 -t GBK > g.in2
            "$KELVANE" convert g.in2 - --to dat --encoding GBK -q | head -n 1 | iconv -f GBK -t UTF-8)sh",
       0, "点,,1000.0000,1000.0000,0.0000\n", "Warning: Only the known points have coordinates to write\n"},
      {R"sh("$KELVANE" convert g.in2 g.kvn --encoding GBK && "$KELVANE" convert g.kvn - --to in2 | sed -n 2p)sh", 0,
       "点,1000.0000,1000.0000\n", ""},
      {R"sh(printf 'JOB 测\nINST T2\nSTA 点,1.5,\nXYZ 10,20,5\nSC B,1.6,\nHVD 3600,324000,7\n' | iconv -f UTF-8 -t GBK > g.lqf
            "$KELVANE" convert g.lqf h.lqf --encoding GBK && iconv -f GBK -t UTF-8 h.lqf | grep -o '[测点]')sh",
       0, "测\n点\n", ""},
      {R"sh("$KELVANE" convert g.lqf - --to in2 --encoding GBK | sed -n 2p)sh", 0, "点,20.0000,10.0000\n", ""},
      {R"sh(for k in in2 lqf; do "$KELVANE" convert g.$k lost.$k; done; ls lost.* 2> /dev/null)sh", 2, "",
       "kelvane: g.in2: line 2 is no text in the encoding UTF-8; --encoding names another one\n"
       "kelvane: g.lqf: line 1 is no text in the encoding UTF-8; --encoding names another one\n"},
      // A project names its encoding in its first line; one that does not keep to it needs the name.
      {R"sh(sed 's/="UTF-8"/="GBK"/' g.kvn | iconv -f UTF-8 -t GBK > d.kvn
            "$KELVANE" convert d.kvn - --to in2 | sed -n 2p)sh",
       0, "点,1000.0000,1000.0000\n", ""},
      {R"sh(iconv -f UTF-8 -t GBK g.kvn > u.kvn; "$KELVANE" convert u.kvn u.kvn)sh", 1, "",
       "kelvane: u.kvn: line 6 is no text in the encoding UTF-8; --encoding names another one\n"},
      {R"sh("$KELVANE" convert u.kvn - --to in2 --encoding GBK | sed -n 2p)sh", 0, "点,1000.0000,1000.0000\n", ""},
      // What rounds to zero has no sign, in no kind of file.
      {R"sh(printf 'A,,-0.00001,-0.0,-0.00004' > z.dat
            for k in dat in2 csv geojson dxf; do "$KELVANE" convert z.dat - --to $k -q; echo; done |
              grep -E -- '(^|[^0-9.e])-0(\.0*)?([^0-9.]|$)')sh",
       1, "", ""},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.command);
    test::Run const run = program.shell(c.command);
    EXPECT_EQ(run.exitCode, c.exitCode);
    EXPECT_EQ(run.out, c.out);
    EXPECT_EQ(run.err, c.err);
  }
}

// Latin-1, which is no text in UTF-8 and which JSON cannot hold.
TEST(CommandLine, NamesAFileWhoseBytesAreNoTextTheSameEverywhere) {
  Program const program;
  program.write("net.in2", kNetworkFile);
  ASSERT_EQ(program.shell("cp net.in2 $(printf 'raw\\351.in2')").exitCode, 0);
  for (char const* command : {"adjust RAW.in2 --json", "check RAW.in2 RAW.in2 --json", "show RAW.in2 --json",
                              "convert RAW.in2 RAW.kvn --json", "map RAW.in2 RAW.svg --json", "map RAW.in2 RAW.svg",
                              "map RAW.in2 RAW.svg -q && cat RAW.svg", "report RAW.in2 RAW.html --json",
                              "show RAW.txt --json", "map RAW.in2 RAW/map.svg --json"}) {
    SCOPED_TRACE(command);
    QString const line = QString(command).replace("RAW", "\"$raw\"");
    test::Run const run = program.shell("raw=$(printf 'raw\\351'); \"$KELVANE\" " + line);
    bool const isJson = line.contains("--json");
    EXPECT_THAT(run.out, HasSubstr(isJson ? "raw\\\\xE9" : "raw\\xE9"));
    EXPECT_THAT(run.out + run.err, testing::Not(HasSubstr("raw?")));
  }
}

TEST(CommandLine, CheckTellsWhatAnAdjustmentWouldRunInto) {
  Program const program;
  // A square of 100 m: all sides and diagonals are seen; P is seen from A alone.
  std::string const square = "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nC,L,315.0\nD,L,270.0\nC,S,141.42136\nD,S,100\n";
  std::string const rest = "B\nA,L,0\nD,L,45.0\nC,L,90.0\nC,S,100\nC\nB,L,0\nA,L,45.0\nD,L,90.0\nD,S,100\n";
  std::string const last = "D\nC,L,0\nB,L,45.0\nA,L,90.0\n";
  struct Case {
    char const* what;
    std::string text;
    int exitCode;
    char const* says;
  };
  Case const cases[] = {
      {"sound", square + rest + last, 0, "Nothing found.\n"},
      {"a distance that is 10 m too long", square + rest + "D\nC,L,0\nB,L,45.0\nA,L,90.0\nB,S,151.42136\n", 0,
       "Warning: line 24: D to B: suspected gross error of the distance: observed 10.0000 m too long\n"},
      {"a point seen once", square + rest + last + "A2\nP,L,0\nP,S,7\n", 1, "no connection to the known points"},
      {"two points at one place", "3,5,0\nA,0,0\nB,0,100\nK,0,0\nA\nB,L,0\nK,L,9.0\nP,L,45.0\nP,S,7\n", 1,
       "Error: A to K: an observation between points at one place\n"},
      {"two distances that meet on both sides", "3,5,0\nA,0,0\nB,0,100\nA\nP,S,70\nB\nP,S,70\n", 1,
       "Error: P: cannot be placed: different places agree with the observations\n"},
      {"distances alone", "3,5,0\nA,0,0\nB,0,100\nC,90,50\nA\nP,S,70.711\nB\nP,S,70.711\nC\nP,S,40\n", 0,
       "Nothing found.\n"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    program.write("job.in2", c.text);
    test::Run const run = program.run({"check", "job.in2"});
    EXPECT_EQ(run.exitCode, c.exitCode);
    EXPECT_THAT(run.out, HasSubstr(c.says));
  }
}

TEST(CommandLine, PrintsHelpAndVersionOnStandardOutput) {
  Program const program;
  for (QStringList const& arguments : {QStringList{"--help"}, {"show", "--help"}, {"adjust", "-h"}, {"exec", "-h"}}) {
    test::Run const run = program.run(arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, StartsWith("Usage: kelvane "));
    EXPECT_EQ(run.err, "");
  }
  EXPECT_THAT(program.run({"--version"}).out, StartsWith("kelvane "));
}

TEST(CommandLine, FailsWhereItsOutputCannotBeWritten) {
  Program program;
  program.write("net.in2", kNetworkFile);
  program.outputFile = "/dev/full";
  for (QStringList const& arguments :
       {QStringList{"adjust", "net.in2"}, {"adjust", "net.in2", "--json"}, {"show", "net.in2"}, {"check", "net.in2"}}) {
    EXPECT_EQ(program.run(arguments).exitCode, 1) << arguments.join(' ').toStdString();
  }
}

TEST(ShowCommand, PrintsWhatTheFileHolds) {
  Program const program;
  program.write(u8"网.IN2", kNetworkFile);
  test::Run const text = program.run({"show", u8"网.IN2"});
  EXPECT_THAT(text.out, HasSubstr("B        0.0000  100.0000"));
  EXPECT_THAT(text.out, HasSubstr(u8"P   45°00′00.00″       70.7100\n"));
  program.write("tie.in2", "3,5,0\nA,0.03125,-0.03125\n");
  EXPECT_THAT(program.run({"show", "tie.in2"}).out, HasSubstr("A        0.0313   -0.0313 ")) << "away from zero";
  // The name of the file stays in the charset of the system, whatever the texts in it are.
  EXPECT_EQ(program.run({"show", u8"网.IN2", "--encoding", "GBK"}).out, text.out);

  Json::Value const json = program.run({"show", u8"网.IN2", "--json"}).json();
  EXPECT_EQ(json["file"].asString(), u8"网.IN2");
  EXPECT_EQ(json["name"].asString(), u8"网");
  EXPECT_EQ(json["fileType"].asInt(), 2);
  EXPECT_EQ(json["knownPoints"][1]["y"].asDouble(), 100.0);
  ASSERT_EQ(json["lines"].size(), 2U);
  EXPECT_EQ(json["lines"][1]["end_name"].asString(), "P");
  EXPECT_EQ(json["lines"][1]["horizontal_distance"].asDouble(), 70.71);
  EXPECT_TRUE(json["rows"].isArray() && json["coordinates"].isArray() && json["messages"].isArray());
}

TEST(CommandLine, KeepsOutOfTheUsersHome) {
  Program const program;
  program.write("net.in2", kNetworkFile);
  ASSERT_EQ(program.run({"adjust", "net.in2"}).exitCode, 0);
  ASSERT_EQ(program.run({"exec"}, "[]").exitCode, 0);
  EXPECT_EQ(program.home(), QStringList());
}

}  // namespace
