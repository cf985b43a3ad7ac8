// State of a project: what it holds, what a reset leaves alone; and the texts of the failures.
#include <gtest/gtest.h>
#include <utils/QLogicError.h>
#include <QDateTime>
#include <QStringList>

#include "support/Support.h"

namespace {

using namespace kvn;

void fill(Project& project, std::size_t knownPoints, std::size_t lines, std::size_t rows, std::size_t points) {
  project.getNetwork().knownPoints.resize(knownPoints);
  project.getNetwork().lines.resize(lines);
  project.setTraverseDataList(std::vector<TraverseDataInfo>(rows));
  project.setCoordinatePointList(std::vector<CoordinatePointInfo>(points));
}

TEST(Project, TellsWhatItHolds) {
  for (int kind = 0; kind < 4; ++kind) {  // known points alone do not count
    SCOPED_TRACE(kind);
    Project project;
    fill(project, kind == 0, kind == 1, kind == 2, kind == 3);
    EXPECT_EQ(project.isEmpty(), kind == 0);
    EXPECT_EQ(project.isNetworkViewData(), kind == 1 || kind == 2);
    EXPECT_EQ(project.isUsingViewData(), kind == 2);
    EXPECT_EQ(project.isCoordinateData(), kind == 3);
  }
}

TEST(Project, ResetEmptiesTheDataAndLeavesTheRest) {
  Project project;
  project.setName("/data/job.one.txt");
  fill(project, 1, 1, 1, 1);
  project.getConfigure().AdjustMethod = 2;
  project.setFileType(Project::CosaFile);
  project.addKnownPoint(KnownPoint("A", 1, 2, 3));
  project.resetData();
  EXPECT_TRUE(project.isEmpty() && project.getNetwork().knownPoints.empty());
  EXPECT_TRUE(project.getProjectFile().isEmpty() && project.getConfigure().AdjustMethod == 0);
  EXPECT_TRUE(project.getName() == "job.one" && project.getFileType() == Project::CosaFile);
  EXPECT_TRUE(project.removeKnownPoint("A"));
}

TEST(Project, HasAModifiedStateWithAResolutionOfOneSecond) {
  std::string modified;
  qint64 begin = 0;
  do {  // once more when the clock went on in between
    begin = QDateTime::currentSecsSinceEpoch();
    Project project;
    modified.clear();
    for (bool const change : {true, false, true}) {
      project.setModify(change);
      modified += project.isModified() ? "yes " : "no ";
    }
  } while (begin != QDateTime::currentSecsSinceEpoch());
  EXPECT_EQ(modified, "yes no no ");
}

TEST(Project, KeepsOneKnownPointANameAndRemovesOneCoordinateAnId) {
  Project project;
  project.addKnownPoint(KnownPoint("K", 1, 2, 3));
  project.addKnownPoint(KnownPoint("K", 4, 5, 6));
  EXPECT_TRUE(project.removeKnownPoint("K") && !project.removeKnownPoint("K")) << "the second point replaced the first";
  // Those behind a removed one move; a name that comes back stands at the end.
  for (char const* name : {"A", "B", "C"}) project.addKnownPoint(KnownPoint(name, 0, 0, 0));
  project.removeKnownPoint("A");
  for (char const* name : {"C", "A", "B"}) project.addKnownPoint(KnownPoint(name, 1, 0, 0));
  project.setFileType(Project::LqfFile);
  project.generateNetworkData();
  std::string known;
  for (KnownPoint const& point : project.getNetwork().knownPoints) known += point.name + std::to_string(int(point.x));
  EXPECT_EQ(known, "B1C1A1");
  fill(project, 0, 0, 0, 3);
  auto const points = project.getCoordinatePointList();
  project.removeCoordinatePoint(QString::fromStdString(points[1].id));
  EXPECT_TRUE(project.getCoordinatePointList().size() == 2 && project.getCoordinatePointList()[1] == points[2]);
}

}  // namespace
