// Layers, features, selection and framing of a scene, without a picture.
#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QMetaObject>
#include <osg/Group>
#include <osgEarth/AnnotationLayer>

#include "map/MapFixture.h"

namespace {

using namespace kvn;
using test::featuresOf;
using testing::ElementsAre;

struct MapSceneTest : test::MapProject {};

TEST_F(MapSceneTest, MakesOneLayerOfATypeAndTakesItsFeaturesOff) {
  MapScene& scene = *project->getOrCreateMapScene();
  EXPECT_EQ(scene.getLayer(FeatureDataType::CoordData), nullptr);
  EXPECT_EQ(scene.getILayer(FeatureDataType::CoordData), nullptr);
  EXPECT_FALSE(scene.removeFeature(FeatureDataType::CoordData));
  EXPECT_TRUE(scene.getLayers().empty());
  osgEarth::Layer* const layer = scene.getOrCreateLayer(FeatureDataType::CoordData);
  EXPECT_EQ(scene.getOrCreateLayer(FeatureDataType::CoordData), layer);
  EXPECT_EQ(layer->getName(), "CoordData");
  CoordinateDataTool(&scene).build(point("1", "P", 1, 2));
  EXPECT_TRUE(scene.removeFeature(FeatureDataType::CoordData));
  EXPECT_EQ(featuresOf(scene, FeatureDataType::CoordData).size(), 0U);
  EXPECT_EQ(scene.getLayers(), std::vector<osgEarth::Layer*>{layer});
}

TEST_F(MapSceneTest, ItsLayersAreOnTheMapOfTheViewersAsLongAsItLives) {
  osgEarth::Map& map = *viewers->getMapNode()->getMap();
  project->getOrCreateMapScene()->getOrCreateLayer(FeatureDataType::CoordData);
  EXPECT_EQ(map.getNumLayers(), 1U);
  system.removeProject(project.get());
  project.reset();
  EXPECT_EQ(map.getNumLayers(), 0U);
}

TEST_F(MapSceneTest, TellsThePickedFeaturesOfAType) {
  drawOneOfEach();
  MapScene& scene = *project->getMapScene();
  for (auto const type : {FeatureDataType::CoordData, FeatureDataType::NetworkData, FeatureDataType::ViewPointData}) {
    for (osgEarth::AnnotationNode* node : featuresOf(scene, type)) viewers->pick(node);
  }
  osg::ref_ptr<osg::Group> const hosts = new osg::Group;  // something else that the host shows
  hosts->addChild(new osg::Group);
  viewers->pick(hosts->getChild(0));
  EXPECT_EQ(viewers->getPickNodeList().size(), 5U);
  EXPECT_EQ(scene.getSelectFeatureList(FeatureDataType::CoordData), featuresOf(scene, FeatureDataType::CoordData));
  EXPECT_EQ(scene.getSelectFeatureList(FeatureDataType::ViewPointData).size(), 2U);  // station and target
  EXPECT_TRUE(scene.getSelectFeatureList(FeatureDataType::TraverseData).empty());
  EXPECT_THAT(scene.getSelectIDList(FeatureDataType::CoordData), ElementsAre("c"));
  EXPECT_THAT(scene.getSelectIDList(FeatureDataType::ViewPointData), ElementsAre("s", "t"));
  EXPECT_TRUE(scene.getSelectIDList(FeatureDataType::TraverseData).empty());
  project->clearMapData();
  EXPECT_EQ(viewers->getPickNodeList(), std::vector<osg::Node*>{hosts->getChild(0)});
}

TEST_F(MapSceneTest, HighlightsByIdAndDropsTheFormerSelection) {
  drawOneOfEach();
  MapScene& scene = *project->getMapScene();
  auto const selected = [&scene](FeatureDataType type) {
    std::string ids;
    for (osgEarth::AnnotationNode* node : featuresOf(scene, type)) {
      if (dynamic_cast<mvz::ISelectable&>(*node).isSelected()) ids += test::infoOf(node)[0];
    }
    return ids;
  };
  // As a host does it that knows the slots by their names.
  QMetaObject::invokeMethod(&scene, "selectFeature", Q_ARG(QString, "c"),
                            Q_ARG(kvn::FeatureDataType, FeatureDataType::CoordData));
  EXPECT_EQ(selected(FeatureDataType::CoordData), "c");
  QMetaObject::invokeMethod(&scene, "selectFeature", Qt::QueuedConnection,
                            Q_ARG(QVector<QString>, (QVector<QString>{"t", "unknown", ""})),
                            Q_ARG(kvn::FeatureDataType, FeatureDataType::ViewPointData));
  QCoreApplication::sendPostedEvents(&scene);
  EXPECT_EQ(selected(FeatureDataType::CoordData) + selected(FeatureDataType::ViewPointData), "t");
  scene.clearSelect();
  EXPECT_EQ(selected(FeatureDataType::ViewPointData), "");
  for (QString const id : {"", "unknown"}) {
    scene.selectFeature(id, FeatureDataType::NetworkData);  // the line has no id
    for (osgEarth::AnnotationNode* node : featuresOf(scene, FeatureDataType::NetworkData)) {
      EXPECT_FALSE(dynamic_cast<mvz::ISelectable&>(*node).isSelected());
    }
  }
  EXPECT_STREQ(scene.metaObject()->className(), "kvn::MapScene");
}

/// "point known lines" of what a feature stands for.
std::string described(NetworkRecords const& records) {
  std::string text = records.point + (records.knownPoint == nullptr ? "" : "=" + records.knownPoint->name);
  for (NetworkDataInfo const* line : records.lines) text += " " + line->start_name + ">" + line->end_name;
  return text;
}

TEST_F(MapSceneTest, FindsTheRecordsBehindTheFeaturesOfANetwork) {
  project->read(test::samplePath("trav_open_2legs.in2"));
  std::vector<NetworkDataInfo>& network = project->getNetwork().lines;
  network.insert(network.begin(), NetworkDataInfo(network[0]));  // twice: the first is found
  project->build();
  MapScene& scene = *project->getMapScene();
  auto const points = featuresOf(scene, FeatureDataType::ViewPointData);
  ASSERT_EQ(points.size(), 4U);  // by name: 1, 2, A, B
  EXPECT_EQ(described(scene.findNetworkRecords(points[0])), "1 B>1 1>B 1>2");
  EXPECT_EQ(described(scene.findNetworkRecords(points[1])), "2 1>2");
  EXPECT_EQ(described(scene.findNetworkRecords(points[2])), "A=A B>A B>A");
  auto const lines = featuresOf(scene, FeatureDataType::NetworkData);
  ASSERT_EQ(lines.size(), 5U);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    NetworkRecords const records = scene.findNetworkRecords(lines[i]);
    ASSERT_EQ(records.lines.size(), 1U);
    EXPECT_EQ(records.lines[0], &network[i == 1 ? 0 : i]);
    EXPECT_EQ(records.point, "");
    EXPECT_EQ(test::infoOf(lines[i])[0], "");
  }
  auto const other = system.createProject();
  EXPECT_EQ(described(other->getOrCreateMapScene()->findNetworkRecords(lines[0])), "") << "of another project";
  project->setNetwork({});
  EXPECT_EQ(described(scene.findNetworkRecords(points[2])) + described(scene.findNetworkRecords(lines[0])), "");
  EXPECT_EQ(described(scene.findNetworkRecords(nullptr)), "");
}

TEST_F(MapSceneTest, FindsNoRecordOfTheNetworkBehindFeaturesOfRows) {
  drawOneOfEach();
  project->getNetwork().lines.resize(1);
  project->getNetwork().lines[0].start_name = "s";
  project->getNetwork().lines[0].end_name = "t";
  MapScene& scene = *project->getMapScene();
  for (auto const type : {FeatureDataType::CoordData, FeatureDataType::NetworkData, FeatureDataType::ViewPointData}) {
    for (osgEarth::AnnotationNode* node : featuresOf(scene, type)) {
      EXPECT_EQ(described(scene.findNetworkRecords(node)), "");
    }
  }
}

TEST_F(MapSceneTest, ForwardsTheRequestForAFeatureWithThePlainTypeName) {
  QString received;
  QObject::connect(project->getOrCreateMapScene(), &mvz::ProjectMapScene::featureRequested,
                   [&received](QString const& id, QString const& type) { received = id + "|" + type; });
  project->getMapScene()->addFeature("7", FeatureDataType::ViewPointData);
  EXPECT_EQ(received, "7|ViewPointData");
}

TEST_F(MapSceneTest, AClickHitsThePointBeforeTheLineBelowIt) {
  drawOneOfEach();  // the line runs between station and target
  system.fullMapSystem();
  auto const idAt = [this](double east, double north) -> std::string {
    osgEarth::AnnotationNode* const node = viewers->hit(*view, view->toPixel(osg::Vec3d(east, north, 0)));
    return node == nullptr ? "nothing" : test::infoOf(node)[1];
  };
  EXPECT_EQ(idAt(500000, 4000000), "ViewPointData:StationPoint");
  EXPECT_EQ(idAt(500050, 4000050), "NetworkData");
  EXPECT_EQ(idAt(500090, 4000010), "nothing");
}

TEST_F(MapSceneTest, AClickHitsTheAdjustedPointBeforeAnApproximateOneThatIsNearer) {
  // Three pixels apart, whichever was drawn first.
  for (bool const adjustedFirst : {true, false}) {
    auto const other = system.createProject();
    system.setCurrentProject(other);
    project->clearMapData();
    MapScene& scene = *other->getOrCreateMapScene();
    if (adjustedFirst) scene.getOrCreateLayer(FeatureDataType::CoordData);
    view->fullMap(osg::BoundingBoxd(0, 0, 0, 100, 100, 0));
    double const pixel = view->metresPerPixel();
    other->setTraverseDataList({row("s", TraversePointType::StationPoint, 50, 50)});
    other->setCoordinatePointList({point("c", "C", 50, 50 + 3 * pixel)});
    other->build();
    view->fullMap(osg::BoundingBoxd(0, 0, 0, 100, 100, 0));
    auto const idAt = [this](double east) {
      return test::infoOf(viewers->hit(*view, view->toPixel(osg::Vec3d(east, 50, 0))))[0];
    };
    EXPECT_EQ(idAt(50), "c");
    EXPECT_EQ(idAt(50 - 6 * pixel), "s") << "the other one lies beyond the tolerance of 8 pixels";
  }
}

TEST_F(MapSceneTest, FramingPutsTheLayersIntoEveryView) {
  osg::ref_ptr<mvz::View> const second = new mvz::View(300, 200);
  viewers->addView(second);
  drawOneOfEach();
  view->drawn();
  second->drawn();
  system.fullMapSystem();
  for (mvz::View const* each :
       {static_cast<mvz::View const*>(view.get()), static_cast<mvz::View const*>(second.get())}) {
    for (osg::Vec3d const& corner : {osg::Vec3d(500000, 4000000, 0), osg::Vec3d(500200, 4000100, 0)}) {
      osg::Vec2d const pixel = each->toPixel(corner);
      EXPECT_TRUE(pixel.x() > 0 && pixel.x() < each->getWidth() && pixel.y() > 0 && pixel.y() < each->getHeight());
    }
    EXPECT_TRUE(each->needsRedraw());
  }
}

TEST(MapScene, WorksWithoutViewers) {
  test::Host host;
  auto const project = host.system.createProject();
  host.system.setCurrentProject(project);
  project->setCoordinatePointList({CoordinatePointInfo()});
  project->build();
  project->fullShowMap();
  host.system.fullMapSystem();
  MapScene& scene = *project->getMapScene();
  EXPECT_EQ(featuresOf(scene, FeatureDataType::CoordData).size(), 1U);
  EXPECT_TRUE(scene.getSelectIDList(FeatureDataType::CoordData).empty());
  EXPECT_TRUE(scene.getSelectFeatureList(FeatureDataType::CoordData).empty());
  scene.clearSelect();
  // Viewers that come later frame and repaint it, and are none of its own.
  osg::ref_ptr<test::FramingRecorder> const late = new test::FramingRecorder;
  osg::ref_ptr<mvz::View> const view = new mvz::View(300, 200);
  late->addView(view);
  host.system.setMvzViewerManager(late);
  project->fullShowMap();
  EXPECT_THAT(late->framed, ElementsAre("CoordData;"));
  for (auto const& change : std::initializer_list<std::function<void()>>{
           [&] { scene.selectFeature("x", FeatureDataType::CoordData); }, [&] { scene.clearSelect(); }}) {
    view->drawn();
    change();
    EXPECT_TRUE(view->needsRedraw());
  }
  EXPECT_EQ(scene.getMvzViewerManager(), nullptr);
  project->clearMapData();
  EXPECT_EQ(featuresOf(scene, FeatureDataType::CoordData).size(), 0U);
}

}  // namespace
