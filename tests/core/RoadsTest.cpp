// The two roads of a host application, walked whole: a file through a command, and a calculation.
#include <gtest/gtest.h>
#include <QTemporaryDir>
#include <cmath>

#include "map/MapFixture.h"
#include "support/FieldRows.h"

namespace {

using namespace kvn;

class Roads : public test::MapProject {
 protected:
  /// `out` of a command that must succeed.
  Json::Value run(char const* name, std::string const& in) {
    Json::Value out("untouched");
    EXPECT_TRUE(project->getCommandManager()->execute(name, test::json(in), out, {})) << out.toStyledString();
    return out;
  }
  void open(QString const& file) {
    EXPECT_TRUE(run("OpenFileCMD", R"({"file": ")" + file.toStdString() + "\"}").isNull());
  }

  std::size_t drawn(FeatureDataType type) { return test::featuresOf(*project->getOrCreateMapScene(), type).size(); }

  void adjust() {
    auto adjustment = std::make_unique<AlgorithmAdjust>();
    adjustment->setConfigure(project->getConfigure());
    adjustment->setNetworkData(project->getNetwork());
    adjustment->calculateAdjust();
    project->setAlgorithmAdjust(std::move(adjustment));
  }

  CoordinatePointInfo pointOf(std::string const& name) const {
    for (CoordinatePointInfo const& point : project->getCoordinatePointList()) {
      if (point.name == name) return point;
    }
    ADD_FAILURE() << name;
    return {};
  }

  QTemporaryDir folder;
};

// A and B known, 100 m apart to the east; P 60 degrees to the right of B, 100 m away and 3 degrees up.
constexpr double kRise = 3 * test::kDegree;
double const kAcross = 100 * std::cos(kRise);

/// P by hand: the angle lift of the reader and the rounding of the file are well below 1e-6 m.
void expectP(CoordinatePointInfo const& p) {
  EXPECT_NEAR(p.N, 1000 + kAcross * std::cos(150 * test::kDegree), 1e-6);
  EXPECT_NEAR(p.E, 1000 + kAcross * std::sin(150 * test::kDegree), 1e-6);
}

TEST_F(Roads, ATraverseFileIsOpenedEditedComputedAndSaved) {
  QString const source = folder.filePath("job.txt");
  test::writeFile(source, QString(test::kFieldBook).replace("1000,1100", "1000,1090").toStdString());
  open(source);
  // The command has made the network and drawn the rows.
  EXPECT_EQ(test::shortText(project->getNetwork().lines), "A>B 0.0000 0.0000\nA>P 60.0000 99.8630\n");
  EXPECT_EQ(project->getNetwork().knownPoints.size(), 2U);
  EXPECT_EQ(project->getProjectFile(), source);
  EXPECT_NE(project->getLegendCodeXmlMannager(), nullptr);
  EXPECT_GT(drawn(FeatureDataType::NetworkData), 0U);
  EXPECT_EQ(drawn(FeatureDataType::ViewPointData), 6U);

  // B stands 10 m further away: the network follows the edit.
  std::string const id = project->getTraverseDataList().back().id;
  run("ModifyTraverseDataCMD", R"({"data": {"id": ")" + id + R"(", "E": 1100}})");
  EXPECT_EQ(project->getNetwork().knownPoints[1].y, 1100);
  EXPECT_TRUE(project->isModified());

  EXPECT_EQ(test::failureOf<QLogicError>([this] { project->algorithmPointConvertCoord(); }),
            "There is no adjustment result");
  adjust();
  project->setTraverseDataList(elevationRows(project->getTraverseDataList()).rows);
  project->setVerticalAngleType(ElevationAngle);
  project->calculateTriangleHeight();
  project->algorithmPointConvertCoord();
  expectP(pointOf("P"));
  // Slope, instrument and target height, curvature and refraction with the radius of the library, as a float's 0.16.
  double const curvature = (1 - double(0.16F)) * kAcross * kAcross / (2 * 6371393.0);
  EXPECT_NEAR(pointOf("P").Z, 50 + 100 * std::sin(kRise) - 0.1 + curvature, 1e-9);
  project->getConfigure().TraversePointAdjust = 1;  // heights are another road
  project->algorithmPointConvertCoord();
  EXPECT_EQ(pointOf("P").Z, 0);

  QString const saved = folder.filePath("job.kvn");
  project->saveAs(saved);
  project = system.createProject();
  open(saved);
  expectP(pointOf("P"));
  EXPECT_EQ(project->getFileType(), Project::VrdFile);
  EXPECT_EQ(drawn(FeatureDataType::CoordData), 3U);
}

TEST_F(Roads, TheStationMapIsNeverOlderThanTheRows) {
  QString const job = test::samplePath("fieldbook_full_circle_2rounds.lqf");
  project->read(job);
  project->buildStationMap();
  project->generateNetworkData();
  std::string const before = test::shortText(project->getNetwork().lines);
  // Rows move in memory, and a row goes before the others: pointers into the old list would be read here.
  project->getTraverseDataList().insert(project->getTraverseDataList().begin(), 1000, TraverseDataInfo());
  project->generateNetworkData();
  EXPECT_EQ(test::shortText(project->getNetwork().lines), before);
  project->setTraverseDataList({});
  project->generateNetworkData();
  EXPECT_TRUE(project->getNetwork().isEmpty());
  project->read(job);  // other rows: not reduced yet
  project->generateNetworkData();
  EXPECT_TRUE(project->getNetwork().isEmpty());
}

TEST_F(Roads, AMessageOfTheMapMayLeadToAnotherNetwork) {
  project->read(test::samplePath("trav_open_2legs.in2"));
  project->getNetwork().knownPoints.emplace_back("unseen", 1, 2, 0);
  int told = 0;
  system.setSendMessageFunc([&](QString const&, MessType) {
    ++told;
    project->setNetwork({});
  });
  project->build();  // draws the network that it began with
  EXPECT_EQ(told, 1);
  EXPECT_EQ(drawn(FeatureDataType::NetworkData), 4U);
}

TEST_F(Roads, AProjectTellsThatLinesAreNotSavedWithoutTheirRows) {
  QString const job = folder.filePath("job.txt");
  test::writeFile(job, test::fileBytes(test::samplePath("trav_connecting_fr_5legs.txt")));
  open(job);
  run("RemoveNetworkDataCMD", R"({"data": {"ids": [")" + project->getNetwork().lines[0].id + R"("]}})");
  host.messages.clear();
  project->saveAs(folder.filePath("job.kvn"));
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].second, Warning);
}

}  // namespace
