// What a project draws, and when.
#include <gmock/gmock.h>
#include <utils/QLogicError.h>
#include <QTemporaryDir>
#include <chrono>
#include <future>

#include "map/MapFixture.h"

namespace {

using namespace kvn;
using test::featuresOf;
using testing::ElementsAre;

struct ProjectMap : test::MapProject {
  /// Lines and view points on the map, as "lines/points"; "none" without a scene.
  std::string drawn() const {
    MapScene* const scene = project->getMapScene();
    if (scene == nullptr) return "none";
    return std::to_string(featuresOf(*scene, FeatureDataType::NetworkData).size()) + "/" +
           std::to_string(featuresOf(*scene, FeatureDataType::ViewPointData).size());
  }

  unsigned features() const {
    unsigned count = 0;
    for (osgEarth::Layer const* layer : project->getMapScene()->getLayers()) {
      count += layer->getNode()->asGroup()->getNumChildren();
    }
    return count;
  }

  static Network publishedNetwork() {
    CosaCollection collection;
    collection.INetworkDataCollection::read(test::samplePath("net_charamza1990_p238.in2").toStdString());
    return {collection.getKnownPointList(), collection.getNetworkDataList()};
  }
};

TEST_F(ProjectMap, AnEmptyProjectDrawsNothingAndHasNoScene) {
  project->build();
  project->fullShowMap();
  project->clearMapData();
  EXPECT_EQ(drawn(), "none");
}

TEST_F(ProjectMap, ShowsRowsOrTheNetworkByTheOperationType) {
  Network const network = publishedNetwork();
  std::string const ofNetwork = std::to_string(network.lines.size()) + "/12";  // the network has 12 points
  std::vector<TraverseDataInfo> const rows{row("s", TraversePointType::StationPoint, 1, 2),
                                           row("t", TraversePointType::PrismPoint, 3, 4)};
  struct {
    bool hasRows, hasNetwork;
    Project::OperationType type;
    std::string drawn;
  } const cases[] = {{true, true, Project::ObservationView, "1/2"},
                     {false, true, Project::ObservationView, ofNetwork},
                     {true, true, Project::NetworkView, ofNetwork},
                     {true, false, Project::ObservationView, "1/2"},
                     {true, false, Project::NetworkView, "0/0"}};
  for (auto const& test : cases) {
    project = system.createProject();
    if (test.hasRows) project->setTraverseDataList(rows);
    if (test.hasNetwork) project->setNetwork(network);
    project->setOperationType(test.type);
    project->build();
    EXPECT_EQ(drawn(), test.drawn);
    unsigned const once = features();
    project->build();
    EXPECT_EQ(features(), 2 * once) << "something was cleared before";
    view->drawn();
    project->clearMapData();
    EXPECT_EQ(drawn(), "0/0");
    EXPECT_TRUE(view->needsRedraw());
  }
}

TEST_F(ProjectMap, ANetworkThatCannotBePlacedIsReportedAndNotDrawn) {
  Network network;
  network.lines.resize(1);
  network.lines[0].start_name = "A";
  network.lines[0].end_name = "B";
  project->setNetwork(network);
  project->build();
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_TRUE(host.messages[0].first.endsWith(",generate map data failed"));
  EXPECT_EQ(host.messages[0].second, Error);
  EXPECT_EQ(drawn(), "none");
}

TEST_F(ProjectMap, ACancelStopsBetweenTwoCoordinatePoints) {
  project->setCoordinatePointList(std::vector<CoordinatePointInfo>(5));
  int left = 2;
  std::vector<std::future<void>> waiting;
  bool wasFree = false;
  project->setCancelCall([&] {
    std::promise<void> started;
    waiting.push_back(std::async(std::launch::async, [&] {
      started.set_value();
      auto const hold = viewers->lock();
    }));
    started.get_future().wait();
    // A free lock is had long before the time is over.
    wasFree = wasFree || waiting.back().wait_for(std::chrono::milliseconds(50)) == std::future_status::ready;
    return left-- == 0;
  });
  EXPECT_EQ(test::failureOf<QLogicError>([this] { project->build(); }), "User Cancel");
  EXPECT_EQ(featuresOf(*project->getMapScene(), FeatureDataType::CoordData).size(), 2U);
  EXPECT_FALSE(wasFree) << "the viewers' lock was not held for the whole list";
}

TEST_F(ProjectMap, FramesTheCoordinatesThenTheNetworkIfThereIsOne) {
  osg::ref_ptr<test::FramingRecorder> const recorder = new test::FramingRecorder;
  system.setMvzViewerManager(recorder);
  project->setCoordinatePointList(std::vector<CoordinatePointInfo>(1));
  project->build();
  project->fullShowMap();
  EXPECT_THAT(recorder->framed, ElementsAre("CoordData;"));
  recorder->framed.clear();
  project->setNetwork(publishedNetwork());
  project->build();
  project->fullShowMap();
  EXPECT_THAT(recorder->framed, ElementsAre("NetworkData;", "CoordData;", "NetworkData;"));
  recorder->framed.clear();
  system.fullMapSystem();
  EXPECT_THAT(recorder->framed, ElementsAre("CoordData;NetworkData;ViewPointData;"));
  recorder->framed.clear();
  project->setNetwork({});
  project->setAlgorithmAdjust(std::make_unique<AlgorithmAdjust>());
  project->fullShowMap();
  EXPECT_THAT(recorder->framed, ElementsAre("CoordData;", "NetworkData;"));
}

TEST_F(ProjectMap, NewCoordinatesFromAFileTakeTheOldOnesOffTheMap) {
  QTemporaryDir const folder;
  test::writeFile(folder.filePath("p.dat"), "P,,2,1,0");
  project->setCoordinatePointList(std::vector<CoordinatePointInfo>(2));
  project->build();
  view->drawn();
  project->importCoordFile(folder.filePath("p.dat"));
  EXPECT_FALSE(view->needsRedraw());
  EXPECT_TRUE(featuresOf(*project->getMapScene(), FeatureDataType::CoordData).empty());
}

}  // namespace
