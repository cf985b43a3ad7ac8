// State of a project: what counts as empty, modified or observed, and what a reset leaves alone.
#include <gtest/gtest.h>
#include <QDateTime>
#include <memory>

#include "support/Support.h"

namespace {

using namespace kvn;

std::vector<TraverseDataInfo> rowsNamed(std::vector<std::string> const& names) {
  std::vector<TraverseDataInfo> rows(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) rows[i].name = names[i];
  return rows;
}

Network networkWith(std::size_t points, std::size_t lines) {
  Network network;
  network.knownPoints.resize(points);
  network.lines.resize(lines);
  return network;
}

TEST(Project, TellsWhatItHolds) {
  struct Case {
    char const* holds;
    std::size_t knownPoints, lines, rows, coordinates;
    bool empty, networkView, usingView, coordinateData;
  };
  Case const cases[] = {
      {"nothing", 0, 0, 0, 0, true, false, false, false},
      {"known points alone do not count", 2, 0, 0, 0, true, false, false, false},
      {"lines", 0, 1, 0, 0, false, true, false, false},
      {"rows", 0, 0, 1, 0, false, true, true, false},
      {"coordinates", 0, 0, 0, 1, false, false, false, true},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.holds);
    Project project;
    project.setNetwork(networkWith(c.knownPoints, c.lines));
    project.setTraverseDataList(std::vector<TraverseDataInfo>(c.rows));
    project.setCoordinatePointList(std::vector<CoordinatePointInfo>(c.coordinates));
    EXPECT_EQ(project.isEmpty(), c.empty);
    EXPECT_EQ(project.isNetworkViewData(), c.networkView);
    EXPECT_EQ(project.isUsingViewData(), c.usingView);
    EXPECT_EQ(project.isCoordinateData(), c.coordinateData);
  }
}

TEST(Project, ResetEmptiesTheDataAndLeavesTheRest) {
  Project project;
  EXPECT_EQ(project.getVersion(), "1.0.1");
  EXPECT_EQ(project.getFileType(), 1);
  EXPECT_FALSE(project.isModified());
  project.setName("/data/job.one.txt");
  EXPECT_EQ(project.getName(), "job.one");
  EXPECT_EQ(project.getProjectFile(), "/data/job.one.txt");
  auto const& rows = project.getTraverseDataList();
  auto const& network = project.getNetwork();
  auto const& points = project.getCoordinatePointList();
  project.setTraverseDataList(rowsNamed({"A"}));
  project.setNetwork(networkWith(1, 1));
  project.setCoordinatePointList(std::vector<CoordinatePointInfo>(1));
  EXPECT_EQ(rows.size() + network.lines.size() + points.size(), 3U) << "references handed out earlier stay valid";
  project.getConfigure().AdjustMethod = 2;
  project.setFileType(Project::CosaFile);
  project.addKnownPoint(KnownPoint("A", 1, 2, 3));

  project.resetData();
  EXPECT_TRUE(rows.empty() && network.lines.empty() && network.knownPoints.empty() && points.empty());
  EXPECT_EQ(project.getConfigure().AdjustMethod, 0);
  EXPECT_EQ(project.getProjectFile(), "");
  EXPECT_EQ(project.getVersion(), "");
  EXPECT_EQ(project.getName(), "job.one");
  EXPECT_EQ(project.getFileType(), Project::CosaFile);
  EXPECT_TRUE(project.removeKnownPoint("A"));
}

TEST(Project, HasAModifiedStateWithAResolutionOfOneSecond) {
  qint64 begin = 0;
  bool afterChange = false;
  bool afterSave = true;
  bool afterChangeInTheSameSecond = true;
  do {  // once more when the clock went on in between
    begin = QDateTime::currentSecsSinceEpoch();
    Project project;
    project.setModify(true);
    afterChange = project.isModified();
    project.setModify(false);
    afterSave = project.isModified();
    project.setModify(true);
    afterChangeInTheSameSecond = project.isModified();
  } while (begin != QDateTime::currentSecsSinceEpoch());
  EXPECT_TRUE(afterChange);
  EXPECT_FALSE(afterSave);
  EXPECT_FALSE(afterChangeInTheSameSecond);
}

TEST(Project, FindsRowsByNameAndRemovesPoints) {
  Project project;
  project.setTraverseDataList(rowsNamed({"A", "B"}));
  EXPECT_TRUE(project.isTraverseNameExist("B"));
  EXPECT_FALSE(project.isTraverseNameExist("b"));

  project.addKnownPoint(KnownPoint("K", 1, 2, 3));
  project.addKnownPoint(KnownPoint("K", 4, 5, 6));
  EXPECT_TRUE(project.removeKnownPoint("K"));
  EXPECT_FALSE(project.removeKnownPoint("K")) << "the second point replaced the first";

  std::vector<CoordinatePointInfo> points(3);
  points[1].id = points[2].id = "Ü";
  points[1].name = "first";
  project.setCoordinatePointList(points);
  project.removeCoordinatePoint("none");
  EXPECT_EQ(project.getCoordinatePointList().size(), 3U);
  project.removeCoordinatePoint(QStringLiteral("Ü"));
  ASSERT_EQ(project.getCoordinatePointList().size(), 2U);
  EXPECT_TRUE(project.getCoordinatePointList()[1] == points[2]);
}

struct Report : OutputReport {
  std::shared_ptr<int> token;
};

TEST(Project, OwnsTheReportOfItsHost) {
  auto const token = std::make_shared<int>();
  {
    Project project;
    for (int i = 0; i < 2; ++i) {
      auto report = std::make_unique<Report>();
      report->token = token;
      project.setOutputReport(std::move(report));
    }
    EXPECT_EQ(token.use_count(), 2) << "the second report replaced the first";
  }
  EXPECT_EQ(token.use_count(), 1);
}

}  // namespace
