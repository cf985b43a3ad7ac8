// Project files through the program: saved, opened again, and refused with the place of the fault.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <QRegularExpression>

namespace {

using test::kNetworkFile;
using test::Program;
using testing::HasSubstr;

/// The field book as an instrument job, with a point code.
constexpr char const* kJob =
    "JOB J1\nINST T2\nSTA A,1.5,\nXYZ 1000,1000,50\nSC B,1.6,\nHVD 0,324000\nSC P,1.6,TREE\nHVD 216000,313200,100\n"
    "STA B,1.5,\nXYZ 1100,1000,50\n";

/// Adjusted coordinates, with all their digits.
std::string point(Program const& program, QString const& file, char const* name) {
  Json::Value const adjusted = program.run({"adjust", file, "--json"}).json();
  for (Json::Value const& entry : adjusted["points"]) {
    if (entry["name"] == name) return entry["x"].asString() + " " + entry["y"].asString();
  }
  return "no such point";
}

TEST(ProjectFileCommands, AJobComputesTheSameFromItsProjectFile) {
  Program const program;
  program.write("job.txt", test::kFieldBook);
  program.write("job.lqf", kJob);
  program.write("job.in2", kNetworkFile);
  for (char const* job : {"job.txt", "job.lqf", "job.in2"}) {
    SCOPED_TRACE(job);
    test::Run const run = program.run({"convert", job, "job.kvn"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    std::string const computed = point(program, job, "P");
    EXPECT_NE(computed, "no such point");
    EXPECT_EQ(point(program, "job.kvn", "P"), computed);
    EXPECT_EQ(program.run({"convert", "job.kvn", "back.in2"}).exitCode, 0);
    EXPECT_EQ(program.run({"convert", job, "direct.in2"}).exitCode, 0);
    EXPECT_EQ(program.read("back.in2"), program.read("direct.in2")) << "the a-priori errors come back too";
  }
  EXPECT_THAT(program.run({"convert", "job.lqf", "job.kvn"}).err, HasSubstr("no place for point codes"));
  EXPECT_THAT(program.run({"show", "job.kvn"}).out, HasSubstr("Kind          instrument job file"));
  for (char const* back : {"back.lqf", "back.txt"}) {
    EXPECT_EQ(program.run({"convert", "job.kvn", back}).exitCode, 0);
    EXPECT_EQ(point(program, back, "P"), point(program, "job.lqf", "P"));
  }
  for (QStringList const& files : {QStringList{"job.txt", "new.lqf"}, {"new.lqf", "new.txt"}, {"job.txt", "job.dat"}}) {
    EXPECT_EQ(program.run(QStringList{"convert"} + files).exitCode, 0);
  }
  EXPECT_EQ(point(program, "new.txt", "P"), point(program, "job.txt", "P"));
  EXPECT_EQ(program.read("job.dat"), "A,,1000.0000,1000.0000,50.0000\nB,,1100.0000,1000.0000,50.0000");
}

TEST(ProjectFileCommands, ASightWithoutReadingsIsNoDirectionOfZero) {
  Program const program;
  program.write("job.kvn",
                "<Kelvane Version='1.0.1' FileType='0'><ViewData>"
                "<Point name='A' pointType='StationPoint' isKnown='false' instrument='0' N='1' E='0' Z='0'/>"
                "<Point name='B' pointType='PrismPoint' instrument='0' horizontal_angle='1' vertical_angle='0' "
                "slant_distance='0' isSlantDistanceHave='false'/>"
                "<Point name='Q' pointType='PrismPoint'/></ViewData></Kelvane>");
  Json::Value const shown = program.run({"show", "job.kvn", "--json"}).json();
  EXPECT_EQ(shown["lines"].size(), 1U);
  EXPECT_EQ(shown["knownPoints"].size(), 1U) << "a station of a job that has coordinates is known";
}

TEST(ProjectFileCommands, AdjustSavesItsResults) {
  Program const program;
  program.write("job.txt", test::kFieldBook);
  program.write("net.in2", kNetworkFile);
  program.shell("mkdir out");
  EXPECT_EQ(program.run({"adjust", "job.txt", "--save", "out/job.kvn", "--angle-error", "5"}).exitCode, 0);
  Json::Value const shown = program.run({"show", "out/job.kvn", "--json"}).json();
  EXPECT_EQ(shown["rows"].size(), 6U);
  ASSERT_EQ(shown["coordinates"].size(), 3U);
  // 100 m at 3 degrees above the horizontal, instrument 0.1 m lower than the target; curvature gives 0.7 mm.
  for (Json::Value const& entry : shown["coordinates"]) {
    EXPECT_NEAR(entry["Z"].asDouble(), entry["name"] == "P" ? 50 + 5.2336 - 0.1 : 50, 1e-3);
  }
  EXPECT_THAT(program.read("out/job.kvn"), HasSubstr("AngleError=\"5\""));
  EXPECT_EQ(program.run({"convert", "out/job.kvn", "job.dat"}).exitCode, 0);
  EXPECT_THAT(program.read("job.dat"), HasSubstr("P,,"));

  test::Run const plane = program.run({"adjust", "net.in2", "--save", "net.dat", "--json"});
  EXPECT_THAT(plane.err, HasSubstr("3 of 3 coordinates have no height"));
  EXPECT_EQ(plane.json()["messages"].size(), 2U);
  EXPECT_THAT(plane.err, HasSubstr("Nothing checks: P\n")) << "nothing is redundant";
  EXPECT_THAT(program.read("net.dat"), HasSubstr("P,,49.9995,-49.9995,0.0000"));
  EXPECT_EQ(program.run({"adjust", "net.in2", "--save", "net.in2/x.dat"}).exitCode, 1);
  EXPECT_EQ(program.read("net.in2"), kNetworkFile);
}

TEST(ProjectFileCommands, WhatAProjectFileCannotHoldIsNotWritten) {
  Program const program;
  program.write("net.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,S,70.71\nB\nA,L,0\nP,L,315\n");
  program.write("old.kvn", "old");
  test::Run const run = program.run({"convert", "net.in2", "old.kvn"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("cannot tell that no direction was observed from A to P"));
  EXPECT_EQ(program.read("old.kvn"), "old");
}

TEST(ProjectFileCommands, NameTheLineOfAFault) {
  Program const program;
  std::string const head = "<Kelvane Version=\"1.0.1\" FileType=\"1\">\n";
  struct Case {
    std::string text;
    char const* says;
  };
  for (Case const& c : {
           Case{"<Kelvane>\n<ViewData>\n</Kelvane>", "line 2: the file is not well-formed XML"},
           Case{"", "the file is not well-formed XML"},
           Case{"<html/>", "the file is no project file"},
           Case{head + "<P" + test::xmlAttributes(101) + "/></Kelvane>",
                "line 2: an element has more than 100 attributes"},
           Case{head + "<ViewData><Point name='A' N='12,5'/></ViewData></Kelvane>",
                "line 2: A: the attribute N is no number: 12,5"},
           Case{head + "<ViewData>\n<Point name='A' isKnown='yes'/></ViewData></Kelvane>",
                "line 3: A: the attribute isKnown is neither true nor false: yes"},
           Case{head + "<ViewData><Point name='A' pointType='Prism'/></ViewData></Kelvane>",
                "is no kind of row: Prism"},
           Case{head + "<Config AngleError='x'/></Kelvane>", "line 2: the attribute AngleError is no number: x"},
           Case{head + "<NetworkData><NetworkLines><Line start_name='A' horizontal_angle='inf'/></NetworkLines>"
                       "</NetworkData></Kelvane>",
                "line 2: A: the attribute horizontal_angle is not finite: inf"},
           Case{head + "<NetworkData><NetworkLines><Line start_name='A' horizontal_angle='315'/></NetworkLines>"
                       "</NetworkData></Kelvane>",
                "line 2: A: the attribute horizontal_angle is no angle in radians: 315"},
       }) {
    SCOPED_TRACE(c.says);
    program.write("bad.kvn", c.text);
    test::Run const run = program.run({"adjust", "bad.kvn"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr(c.says));
  }
  // Each attribute that is not there would be a 0 that looks like a reading.
  for (QString const& book : {QString("job.txt"), QString("net.in2"), QString("list.dat")}) {
    program.write("job.txt", test::kFieldBook);
    program.write("net.in2", kNetworkFile);
    program.write("list.dat", "A,,1.5,2.5,3.5\n");
    EXPECT_EQ(program.run({"convert", book, "whole.kvn"}).exitCode, 0);
    QString const whole = QString::fromStdString(program.read("whole.kvn"));
    for (char const* name : {"instrument", "horizontal_angle", "vertical_angle", "slant_distance", "isKnown",
                             "isSlantDistanceHave", "N", "E", "Z", "x", "y", "horizontal_distance"}) {
      static QRegularExpression const record("<(Point|Line) [^>]*>");
      QRegularExpression const attribute(QString(" %1=\"[^\"]*\"").arg(name));
      // The first record of a field book is a station, which has no readings.
      bool const isOfSight = book == "job.txt" && (QString(name).contains("angle") || QString(name).contains("lant"));
      int const from = isOfSight ? whole.indexOf("PrismPoint") : whole.indexOf(record);
      int const at = whole.indexOf(attribute, from);
      bool const isComputed = book == "job.txt" && qstrcmp(name, "horizontal_distance") == 0;
      if (at < 0 || isComputed) continue;
      QString text = whole;
      program.write("part.kvn", text.remove(at, attribute.match(whole, at).capturedLength()).toStdString());
      SCOPED_TRACE(book.toStdString() + ' ' + name);
      for (QStringList const& arguments : {QStringList{"check", "part.kvn"}, {"convert", "part.kvn", "part.csv"}}) {
        test::Run const run = program.run(arguments);
        std::string const line = ("line " + QString::number(text.left(at).count('\n') + 1) + ": ").toStdString();
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_THAT(run.out + run.err, HasSubstr(std::string("the attribute ") + name + " is missing"));
        EXPECT_THAT(run.out + run.err, HasSubstr(line));
      }
    }
  }
  program.write("later.kvn", "<Kelvane Version='2.0'><CoordinateData/></Kelvane>");
  EXPECT_THAT(program.run({"check", "later.kvn"}).out, HasSubstr("Warning: line 1: the version 2.0 is not known"));
}

}  // namespace
