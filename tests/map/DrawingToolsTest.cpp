// What the tools make of records: features, their texts and looks, and what they find in the list.
#include <gmock/gmock.h>
#include <utils/QLogicError.h>
#include <cmath>
#include <cstdio>
#include <osgEarth/FeatureNode>
#include <osgEarth/PlaceNode>

#include "map/MapFixture.h"
#include "mvz/detail/OsgEarthVersions.h"

namespace {

using namespace kvn;
using test::featuresOf;
using testing::ElementsAre;

struct DrawingTools : test::MapProject {
  MapScene& scene = *project->getOrCreateMapScene();
  std::string systemTag = address(&system);
  std::string projectTag = address(project.get());

  static std::string address(void const* object) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", object);
    return text + 2;  // without the 0x
  }

  void describe(bool value) const { system.getConfig()->root()["Globle"]["Configuration"]["DisplayDescribe"] = value; }
};

std::string textAndIcon(osgEarth::AnnotationNode* node) {
  auto* const place = dynamic_cast<osgEarth::PlaceNode*>(node);
  auto const* const both = dynamic_cast<mvz::SelectablePlaceNode const*>(node);
  if (place == nullptr || both == nullptr) return "no place";
  return place->getText() + "|" + mvz::detail::iconUrl(both->getNormalStyle()) + "|" +
         mvz::detail::iconUrl(both->getSelectedStyle());
}

TEST_F(DrawingTools, NamesGoToAnotherSideWhereTheirOwnIsTaken) {
  // 800 pixels show 1000 m: the second point stands where the name of the first one would begin, the third is alone.
  view->fullMap(osg::BoundingBoxd(0, 0, 0, 600, 300, 0));
  double const pixel = view->metresPerPixel();
  CoordinateDataTool tool(&scene);
  tool.build(point("1", "first", 150, 200));
  tool.build(point("2", "second", 150, 200 + 20 * pixel));
  tool.build(point("3", "third", 50, 500));
  SketchDataTool(&scene).drawText(coord::xyh(150 + 17 * pixel, 200 - 60 * pixel, 0), "a title", {0xFF, 15.0F});
  arrangeNames(scene, *view);
  auto const alignment = [this](std::size_t feature) {
    auto const* const node = featuresOf(scene, FeatureDataType::CoordData)[feature];
    return node->getStyle().get<osgEarth::TextSymbol>()->alignment().get();
  };
  EXPECT_EQ(alignment(0), osgEarth::TextSymbol::ALIGN_RIGHT_CENTER);
  EXPECT_EQ(alignment(1), osgEarth::TextSymbol::ALIGN_LEFT_CENTER);
  EXPECT_NE(alignment(2), osgEarth::TextSymbol::ALIGN_RIGHT_CENTER);
}

TEST_F(DrawingTools, EllipsesOfASketchTurnFromNorthToEast) {
  SketchDataTool tool(&scene);
  tool.drawEllipse(coord::xyh(4000000, 500000, 0), 20.0, 10.0, std::acos(-1.0) / 2.0, {0x0B7A75FF, 2.0F});
  auto const drawn = featuresOf(scene, FeatureDataType::Default);
  ASSERT_EQ(drawn.size(), 1U);
  auto const bounds = dynamic_cast<osgEarth::FeatureNode&>(*drawn[0]).getFeature()->getGeometry()->getBounds();
  // Corners stand at the ends of both axes.
  EXPECT_NEAR(bounds.xMax() - bounds.xMin(), 40.0, 1e-9);
  EXPECT_NEAR(bounds.yMax() - bounds.yMin(), 20.0, 1e-9);
  tool.drawPath({coord::xyh(0, 0, 0)}, {});
  EXPECT_EQ(featuresOf(scene, FeatureDataType::Default).size(), 1U);
}

TEST_F(DrawingTools, PointsCarryIconTextPlaceAndInfo) {
  PointDataTool tool(&scene);
  DrawPoint station(4000000, 500000, 12, "A");
  station.id = "1";
  station.pointType = TraversePointType::StationPoint;
  DrawPoint target(4000100, 500000, 13, "A");
  target.id = "2";
  tool.build(station);
  tool.build(target);
  CoordinateDataTool(&scene).build(point("3", "P", 10, 20));
  auto const points = featuresOf(scene, FeatureDataType::ViewPointData);
  auto const coordinates = featuresOf(scene, FeatureDataType::CoordData);
  ASSERT_TRUE(points.size() == 2 && coordinates.size() == 1);
  std::string const folder = "config\\earth\\img\\kvn_";
  EXPECT_EQ(textAndIcon(points[0]), "A|" + folder + "stationpoint.png|" + folder + "stationpoint_2x.png");
  EXPECT_EQ(textAndIcon(points[1]), "A|" + folder + "prismpoint.png|" + folder + "prismpoint_2x.png");
  EXPECT_EQ(textAndIcon(coordinates[0]), "P|" + folder + "coordpoint.png|" + folder + "coordpoint_2x.png");
  EXPECT_THAT(test::infoOf(points[0]), ElementsAre("1", "ViewPointData:StationPoint", "A", systemTag, projectTag));
  EXPECT_THAT(test::infoOf(points[1]), ElementsAre("2", "ViewPointData:PrismPoint", "A", systemTag, projectTag));
  EXPECT_THAT(test::infoOf(coordinates[0]), ElementsAre("3", "CoordData", "P", systemTag, projectTag));
  EXPECT_EQ(dynamic_cast<osgEarth::PlaceNode&>(*points[0]).getPosition().vec3d(), osg::Vec3d(500000, 4000000, 12));
  ASSERT_NE(dynamic_cast<osgEarth::PlaceNode&>(*points[0]).getIconImage(), nullptr);
  EXPECT_EQ(dynamic_cast<osgEarth::PlaceNode&>(*points[0]).getIconImage()->s(), 18);
  dynamic_cast<mvz::ISelectable&>(*points[0]).setSelected(true);
  EXPECT_EQ(dynamic_cast<osgEarth::PlaceNode&>(*points[0]).getIconImage()->s(), 36);
}

TEST_F(DrawingTools, LinesLieAtHeightZeroInTheirColours) {
  LineDataTool tool(&scene);
  tool.build(DrawLine(DrawPoint(4000000, 500000, 12, "A"), DrawPoint(4000100, 500050, 13, "B")));
  auto const lines = featuresOf(scene, FeatureDataType::NetworkData);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(test::infoOf(lines[0]), ElementsAre("", "NetworkData", "KelvaneData", systemTag, projectTag));
  auto& node = dynamic_cast<mvz::SelectableFeatureNode&>(*lines[0]);
  osgEarth::Geometry const& geometry = *node.getFeature()->getGeometry();
  EXPECT_THAT(std::vector<osg::Vec3d>(geometry.begin(), geometry.end()),
              ElementsAre(osg::Vec3d(500000, 4000000, 0), osg::Vec3d(500050, 4000100, 0)));
  EXPECT_EQ(node.getFeature()->getSRS(), scene.getSRS());
  EXPECT_TRUE(tool.getColor() == 0xB1A8D6FF && LineDataTool::GetDataTypeName() == "KelvaneData");
}

TEST_F(DrawingTools, DescriptionsStandBehindTheNameOnlyOnRequest) {
  struct Tool : CoordinateDataTool {
    using CoordinateDataTool::CoordinateDataTool;
    using CoordinateDataTool::getDisplayText;
  };
  CoordinatePointInfo marked = point("1", "P1", 0, 0);
  EXPECT_EQ(Tool(&scene).getDisplayText(marked), "P1");
  marked.signal = "A";
  EXPECT_EQ(Tool(&scene).getDisplayText(marked), "P1");
  describe(true);
  EXPECT_EQ(Tool(&scene).getDisplayText(marked), "P1,A");
  EXPECT_EQ(Tool(&scene).getDisplayText(point("1", "P1", 0, 0)), "P1");
  describe(false);
  EXPECT_EQ(Tool(&scene).getDisplayText(marked), "P1");
}

TEST_F(DrawingTools, FindsPointsByIdByFeatureAndByName) {
  project->setCoordinatePointList({point("a", "P", 1, 2), point("b", " Q", 3, 4), point("a", "Q", 5, 6)});
  CoordinateDataTool tool(&scene);
  auto& list = project->getCoordinatePointList();
  EXPECT_EQ(tool.getCoordinateDataList(), &list);
  bool ok = true;
  EXPECT_EQ(tool.findData(QString("a"), &ok), &list[0]);
  EXPECT_EQ(tool.findData(QString("  "), &ok), nullptr);
  EXPECT_EQ(tool.findData(QString(" a"), &ok), nullptr);  // blanks around an id count
  EXPECT_TRUE(ok);                                        // told for features alone
  osg::ref_ptr<osgEarth::PlaceNode> const stranger = new osgEarth::PlaceNode();
  EXPECT_TRUE(tool.findData(stranger.get(), &ok) == nullptr && !ok);
  tool.build(list[1]);
  EXPECT_EQ(tool.findData(featuresOf(scene, FeatureDataType::CoordData)[0], &ok), &list[1]);
  EXPECT_TRUE(ok);
  EXPECT_EQ(tool.findName(" Q "), &list[2]);
  EXPECT_EQ(tool.findName("q"), nullptr);
}

TEST_F(DrawingTools, RemovingTakesAllPointsOfTheIdOutOfTheListAndNoneOffTheMap) {
  project->setCoordinatePointList({point("a", "P", 1, 2), point("b", "Q", 3, 4), point("a", "R", 5, 6)});
  project->buildCoordData();
  CoordinateDataTool tool(&scene);
  EXPECT_FALSE(tool.remove(project->getCoordinatePointList()[0]));
  ASSERT_EQ(project->getCoordinatePointList().size(), 1U);
  EXPECT_EQ(project->getCoordinatePointList()[0].name, "Q");
  EXPECT_EQ(featuresOf(scene, FeatureDataType::CoordData).size(), 3U);
  EXPECT_FALSE(tool.updateMap("b") || tool.modify(point("b", "Q", 0, 0)) || tool.GeometryDataTool::remove("b"));
}

TEST_F(DrawingTools, ALayerOfAnotherClassIsNotDrawnInto) {
  osg::ref_ptr<osgEarth::AnnotationLayer> const foreign = new osgEarth::AnnotationLayer;
  foreign->setName("NetworkData");
  scene.addLayer(foreign);
  LineDataTool tool(&scene);
  EXPECT_EQ(tool.getOrCreateLayer(), nullptr);
  tool.build(DrawLine());
  EXPECT_EQ(foreign->getGroup()->getNumChildren(), 0U);
}

TEST_F(DrawingTools, WithoutASceneNothingIsDrawn) {
  LineDataTool lines(nullptr);
  lines.build(DrawLine());
  lines.setProject(project.get());
  lines.build(DrawLine());
  PointDataTool(nullptr).build(DrawPoint());
  CoordinateDataTool(nullptr).build(CoordinatePointInfo());
  EXPECT_TRUE(scene.getLayers().empty());
  EXPECT_EQ(lines.getProject(), project.get());
}

}  // namespace
