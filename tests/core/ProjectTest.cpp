// State of a project: what counts as empty, modified or observed, and what a reset leaves alone.
#include <gtest/gtest.h>
#include <QDateTime>

#include "support/Support.h"

namespace {

using namespace kvn;

void fill(Project& project, std::size_t knownPoints, std::size_t lines, std::size_t rows, std::size_t points) {
  Network network;
  network.knownPoints.resize(knownPoints);
  network.lines.resize(lines);
  project.setNetwork(network);
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
  auto const& rows = project.getTraverseDataList();
  fill(project, 1, 1, 1, 1);
  EXPECT_EQ(rows.size(), 1U) << "references handed out earlier stay valid";
  project.getConfigure().AdjustMethod = 2;
  project.setFileType(Project::CosaFile);
  project.addKnownPoint(KnownPoint("A", 1, 2, 3));
  project.resetData();
  EXPECT_TRUE(rows.empty() && project.isEmpty() && project.getNetwork().knownPoints.empty());
  EXPECT_EQ(project.getConfigure().AdjustMethod, 0);
  EXPECT_EQ(project.getProjectFile() + project.getVersion(), "");
  EXPECT_EQ(project.getName(), "job.one");
  EXPECT_EQ(project.getFileType(), Project::CosaFile);
  EXPECT_TRUE(project.removeKnownPoint("A"));
}

TEST(Project, HasAModifiedStateWithAResolutionOfOneSecond) {
  std::vector<bool> modified;
  qint64 begin = 0;
  do {  // once more when the clock went on in between
    begin = QDateTime::currentSecsSinceEpoch();
    modified.clear();
    Project project;
    for (bool const change : {true, false, true}) {
      project.setModify(change);
      modified.push_back(project.isModified());
    }
  } while (begin != QDateTime::currentSecsSinceEpoch());
  EXPECT_EQ(modified, (std::vector<bool>{true, false, false}));
}

TEST(Project, KeepsOneKnownPointANameAndRemovesOneCoordinateAnId) {
  Project project;
  project.addKnownPoint(KnownPoint("K", 1, 2, 3));
  project.addKnownPoint(KnownPoint("K", 4, 5, 6));
  EXPECT_TRUE(project.removeKnownPoint("K"));
  EXPECT_FALSE(project.removeKnownPoint("K")) << "the second point replaced the first";
  fill(project, 0, 0, 0, 3);
  auto const points = project.getCoordinatePointList();
  project.removeCoordinatePoint("none");
  project.removeCoordinatePoint(QString::fromStdString(points[1].id));
  ASSERT_EQ(project.getCoordinatePointList().size(), 2U);
  EXPECT_TRUE(project.getCoordinatePointList()[1] == points[2]);
}

}  // namespace
