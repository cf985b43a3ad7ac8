// Opening a job: once, with findings that lead to lines, and nothing of it where the file is refused.
#include "Folder.h"
#include "support/OpenCount.h"

#include <gmock/gmock.h>

namespace {

using namespace kvn;
using test::JobInFolder;
using testing::HasSubstr;

TEST_F(JobInFolder, ReadsAFileOfAnyKindOnce) {
  QString const files[] = {written("a.txt", test::kFieldBook), written("b.lqf", test::kTwoSetUps),
                           written("c.in2", test::kFirstNetwork), written("d.dat", "P,kerb,2,1,3\n"), path("e.kvn")};
  job.open(files[0]);
  job.save(files[4]);
  for (QString const& file : files) {
    SCOPED_TRACE(file.toStdString());
    for (Job::Reading const reading : {Job::Reading::Careful, Job::Reading::AsRead}) {
      test::OpenCount const opened(file);
      job.open(file, reading);
      EXPECT_EQ(opened.take(), 1);
    }
  }
}

std::string told(FieldFinding const& finding) {
  return std::to_string(finding.severity) + " " + worded(finding).toStdString();
}

TEST_F(JobInFolder, FindingsLeadToTheirLinesInOrder) {
  std::string book = test::kFieldBook;
  book.replace(book.find("1.6,,60.0000"), 12, "1.6m,,60.6000");
  job.open(written("book.txt", book));
  std::vector<std::string> lines;
  for (FieldFinding const& finding : job.findings()) lines.push_back(told(finding));
  // Of the text, of the row checks, of the faces, of the network and of the start. 60.60 is 61°, 1° off the other face.
  EXPECT_THAT(lines, testing::Contains("1 line 3: A to P: minutes or seconds of 60 and above: 60.6000"));
  EXPECT_THAT(lines, testing::Contains("1 line 3: A to P: something stands behind the number: 1.6m"));
  EXPECT_THAT(lines,
              testing::Contains(HasSubstr("2 line 4: A to P: the readings of the target do not belong together")));
  std::vector<FieldFinding> const findings = job.findings();
  EXPECT_TRUE(std::is_sorted(findings.begin(), findings.end(),
                             [](FieldFinding const& a, FieldFinding const& b) { return a.line < b.line; }));
  try {
    job.adjust();
    ADD_FAILURE() << "adjusted";
  } catch (JobException const& failure) {
    EXPECT_EQ(failure.file, job.file());
    EXPECT_EQ(failure.line, 4);
    EXPECT_EQ(failure.what(), job.file().toStdString() + ": " + failure.text.toStdString());
  }
}

TEST_F(JobInFolder, GroupsTheWarningsOfManyPlaces) {
  FieldFinding finding;
  std::vector<FieldFinding> findings;
  for (char const* number : {"1", "2", "2", "2", "2", "3", "4", "5"}) {
    finding.station = number;
    finding.text = QString("off by %1 mm").arg(number);
    findings.push_back(finding);
  }
  finding.severity = FieldFinding::Error;
  findings.push_back(finding);
  EXPECT_EQ(warningLines(findings), (QStringList{"off by 1 mm: 1", "off by 2 mm: 2; 2; 2; and 1 more",
                                                 "off by 3 mm: 3; and 2 more of this kind"}));
}

TEST_F(JobInFolder, ARefusedFileLeavesTheProjectAsItWas) {
  job.open(written("good.in2", test::kFirstNetwork));
  job.adjust();
  job.takeResults();
  struct Case {
    char const *name, *bytes, *says;
    int line;
    bool isRefusedAsRead = true;
  };
  Case const cases[] = {
      {"missing.in2", nullptr, "no such file", 0},
      {"job.doc", "x", "unknown kind of file", 0},
      {"head.in2", "2,3\n", "line 1 The Format of Data is wrong", 1},
      {"empty.in2", "", "The import file data is empty", 0},
      {"station.txt", "STA,A,1.5,,1,2\n", "The line 1 is wrong", 0},
      {"number.txt", "STA,A,1.5,,x,2,3\n", "line 1 The Format of Data is wrong", 1},
      {"record.lqf", "JOB     J\nSTA     A,x,\n", "line 2", 2},
      {"cut.kvn", "<Kelvane>\n<Config>\n", "is not well-formed XML", 2},
      {"other.kvn", "<Other/>", "the file is no project file", 0, false},
      {"points.dat", "Q,,1,2,3\nP,,1\n", "line 2 The Format of Data is wrong", 2},
      {"points.dat", "P,,1,2,3\nQ\xE9,,1,2,3\n", "line 2 is no text in the encoding UTF-8", 2},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.says);
    QString const file = c.bytes == nullptr ? path(c.name) : written(c.name, c.bytes);
    for (Job::Reading const reading : {Job::Reading::Careful, Job::Reading::AsRead}) {
      if (reading == Job::Reading::AsRead && !c.isRefusedAsRead) continue;
      try {
        job.open(file, reading);
        ADD_FAILURE() << "opened";
      } catch (JobException const& failure) {
        EXPECT_EQ(failure.file, file);
        EXPECT_EQ(std::string(failure.what()).rfind(file.toStdString() + ": ", 0), 0U) << failure.what();
        if (reading == Job::Reading::AsRead) continue;  // whose reader may name no line
        EXPECT_THAT(failure.what(), HasSubstr(c.says));
        EXPECT_EQ(failure.line, c.line);
      }
    }
    EXPECT_EQ(job.file(), path("good.in2"));
    EXPECT_EQ(job.project()->getProjectFile(), path("good.in2"));
    EXPECT_EQ(job.project()->getNetworkFile(), path("good.in2"));
    EXPECT_EQ(job.project()->getNetwork().lines.size(), 4U);
    EXPECT_EQ(job.project()->getConfigure().AngleError, 20.0F);
    EXPECT_EQ(job.project()->getCoordinatePointList().size(), 3U);
    EXPECT_NE(job.planeAdjustment(), nullptr);
  }
}

TEST_F(JobInFolder, ReplacesAllOfTheOldDataButTheSettingsThatTheFileDoesNotHave) {
  job.project()->getConfigure().AtmosphericIndex = 0.13F;
  job.project()->getConfigure().AngleError = 1.0F;
  job.open(written("first.in2", test::kFirstNetwork));
  job.adjust();
  job.takeResults();
  EXPECT_EQ(job.project()->getConfigure().AngleError, 20.0F);
  EXPECT_EQ(job.project()->getConfigure().LineProportionError, 2.0F);
  std::vector<TraverseDataInfo> const* const rows = &job.project()->getTraverseDataList();
  job.open(written("book.txt", test::kFieldBook));
  EXPECT_EQ(job.project()->getConfigure().AtmosphericIndex, 0.13F);
  EXPECT_EQ(&job.project()->getTraverseDataList(), rows) << "references of the host stay valid";
  EXPECT_EQ(rows->size(), 6U);
  EXPECT_EQ(job.project()->getNetwork().knownPoints.size(), 2U);
  EXPECT_TRUE(job.project()->getCoordinatePointList().empty());
  EXPECT_TRUE(job.project()->getNetworkFile().isEmpty());
  EXPECT_EQ(job.planeAdjustment(), nullptr);
  EXPECT_FALSE(job.project()->isModified());
}

TEST_F(JobInFolder, AdjustsTheLinesThatTheHostHasEdited) {
  // Two distances of one line, 4 mm apart: their mean counts, until the host edits the line that the project has of
  // them.
  job.open(written("net.in2", "2,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,270\nP,S,100.002\nP,S,99.998\n"));
  job.adjust();
  EXPECT_NEAR(job.planeAdjustment()->result().points[2].x, 100.0, 1e-6);
  EXPECT_EQ(job.planeAdjustment()->network().distances[1].origin.line, 8);
  Network network = job.project()->getNetwork();
  network.lines[1].horizontal_distance = 50.0;
  job.project()->setNetwork(network);
  job.adjust();
  EXPECT_NEAR(job.planeAdjustment()->result().points[2].x, 50.0, 1e-6);
  network.lines[1].horizontal_distance = -50.0;
  job.project()->setNetwork(network);
  EXPECT_THAT(test::failureOf<JobException>([this] { job.adjust(); }), HasSubstr("Data error: line from A to P"));
  PlaneOptions options;
  options.confidence = 95.0;
  EXPECT_THAT(test::failureOf<JobException>([&] { job.setPlaneOptions(options); }),
              HasSubstr("the confidence must be from 0.5 to 0.9999"));
}

TEST_F(JobInFolder, MakesTheNetworkOfEditedRows) {
  job.open(written("book.txt", test::kFieldBook));
  auto& rows = job.project()->getTraverseDataList();
  rows[2].slant_distance = rows[3].slant_distance = 50.0;
  job.reduce();
  // 50 m at 3°.
  EXPECT_NEAR(job.project()->getNetwork().lines[1].horizontal_distance, 50.0 * std::cos(3.0 * 0.017453292519943), 1e-9);
  // What is behind a row that has gone is no more found in the file.
  rows.erase(rows.begin() + 4);
  job.reduce();
  for (FieldFinding const& finding : job.findingsOf(Job::FieldReduced | Job::RowChecks)) EXPECT_EQ(finding.line, 0);
}

}  // namespace
