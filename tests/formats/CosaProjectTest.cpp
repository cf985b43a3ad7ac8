// The way of a COSA file into a project and out of it.
#include "support/Support.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

constexpr char const* kNetwork = "2,3,3\nK1,0,0\nK2,0,100\nK1\nK2,L,0.0\nP,L,45.0\nP,S,50\n";

class CosaProject : public testing::Test {
 protected:
  QString file(QString const& name, std::string const& bytes) const {
    test::writeFile(folder.filePath(name), bytes);
    return folder.filePath(name);
  }

  test::Host host;
  QTemporaryDir folder;
  std::shared_ptr<kvn::Project> project = host.system.createProject();
};

TEST_F(CosaProject, ReplacesTheNetworkAndDropsTheRowsAndTheResults) {
  project->getTraverseDataList().emplace_back();
  project->setAlgorithmAdjust(std::make_unique<kvn::AlgorithmAdjust>());
  kvn::Network const& network = project->getNetwork();  // stays valid
  project->read(file("job.one.In2", kNetwork));
  EXPECT_EQ(network.lines.size(), 2U);
  EXPECT_EQ(network.knownPoints.size(), 2U);
  EXPECT_TRUE(project->getTraverseDataList().empty());
  EXPECT_EQ(project->getAlgorithmAdjust(), nullptr);
  EXPECT_EQ(project->getFileType(), kvn::Project::CosaFile);
  EXPECT_EQ(project->getName(), "job.one");
  EXPECT_EQ(project->getNetworkFile(), folder.filePath("job.one.In2"));
  EXPECT_EQ(project->getProjectFile(), project->getNetworkFile());
}

TEST_F(CosaProject, AcceptsKnownPointsWithoutLines) {
  project->read(file("points.in2", "2,3,3\nK1,0,0\n"));
  EXPECT_TRUE(project->getNetwork().isEmpty());
  EXPECT_EQ(project->getNetwork().knownPoints.size(), 1U);
}

TEST_F(CosaProject, TakesThePathOfAnUnknownKindAndNothingElse) {
  project->read(file("good.in2", kNetwork));
  project->read("/nowhere/other.name.xyz");
  EXPECT_EQ(project->getNetwork().lines.size(), 2U);
  EXPECT_EQ(project->getName(), "other.name");
  EXPECT_EQ(project->getProjectFile(), "/nowhere/other.name.xyz");
}

TEST_F(CosaProject, ExportsAndSavesWithDefaultAccuraciesAndCreatesTheFolder) {
  project->read(file("in.in2", "9,9,9\nK1,0,0\nK1\nP,S,50\n"));
  QString const target = folder.filePath("new/deep/out.in2");
  EXPECT_TRUE(project->exportCosaTraverseFile(target));
  EXPECT_EQ(test::fileBytes(target), "2,3,3\nK1,0.0000,0.0000\nK1\nP,L,0.000000\nP,S,50.0000\n");
  project->getNetwork().lines[0].horizontal_distance = 60;
  project->save();
  EXPECT_EQ(test::fileBytes(folder.filePath("in.in2")), "2,3,3\nK1,0.0000,0.0000\nK1\nP,L,0.000000\nP,S,60.0000\n");
}

TEST_F(CosaProject, ExportRefusesAnEmptyNetworkUnlessThereAreRows) {
  QString const target = folder.filePath("out.in2");
  EXPECT_FALSE(project->exportCosaTraverseFile());
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->exportCosaTraverseFile(target); }), "Network Data is empty");
  project->getTraverseDataList().emplace_back();
  EXPECT_TRUE(project->exportCosaTraverseFile(target));
  EXPECT_EQ(test::fileBytes(target), "2,3,3\n");
}

TEST_F(CosaProject, SaysSoWhenAFileCannotBeWrittenAndLeavesTheOldOne) {
  project->read(file("in.in2", kNetwork));
  // A folder stands where the file should go.
  QDir(folder.path()).mkdir("taken.in2");
  EXPECT_TRUE(project->exportCosaTraverseFile(folder.filePath("taken.in2")));
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].second, kvn::Error);
  EXPECT_TRUE(host.messages[0].first.contains("taken.in2"));
  EXPECT_TRUE(QFileInfo(folder.filePath("taken.in2")).isDir());
}

}  // namespace
