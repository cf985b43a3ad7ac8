// The picture of a project: icons and lines stand where the coordinates say.
#include <gtest/gtest.h>
#include <osg/Image>

#include "map/MapFixture.h"

namespace {

using namespace kvn;

struct Picture {
  osg::ref_ptr<osg::Image> image;

  /// Whether a pixel within `radius` of the place has a colour within `slack` of red, green, blue of 0 to 255.
  bool has(osg::Vec2d const& pixel, int radius, osg::Vec3d const& colour, double slack) const {
    for (int y = int(pixel.y()) - radius; y <= int(pixel.y()) + radius; ++y) {
      for (int x = int(pixel.x()) - radius; x <= int(pixel.x()) + radius; ++x) {
        if (x < 0 || x >= image->s() || y < 0 || y >= image->t()) continue;
        osg::Vec4 const found = image->getColor(static_cast<unsigned>(x), static_cast<unsigned>(image->t() - 1 - y));
        osg::Vec3d const difference = osg::Vec3d(found.x(), found.y(), found.z()) * 255.0 - colour;
        if (difference.length() < slack) return true;
      }
    }
    return false;
  }
};

osg::Vec3d const kLine(0x98, 0x93, 0xD8);
osg::Vec3d const kStation(22, 74, 140);  // what the icon files are drawn with
osg::Vec3d const kTarget(20, 110, 60);
osg::Vec3d const kSelected(232, 89, 12);
osg::Vec3d const kWhite(255, 255, 255);
constexpr double kSlack = 60.0;  // a thin line is mixed with the paper

struct RenderedMap : test::MapProject {
  osg::ref_ptr<mvz::OffscreenView> offscreen = new mvz::OffscreenView(600, 400);

  RenderedMap() {
    viewers->addView(offscreen);
    drawOneOfEach();
    system.fullMapSystem();
  }

  Picture picture() { return {offscreen->render()}; }
  osg::Vec2d at(double north, double east) const { return offscreen->toPixel(osg::Vec3d(east, north, 0)); }
};

TEST_F(RenderedMap, IconsAndLinesStandWhereTheCoordinatesSay) {
  Picture const drawn = picture();
  ASSERT_TRUE(drawn.image->s() == 600 && drawn.image->t() == 400);
  EXPECT_TRUE(drawn.has(at(4000000, 500000), 1, kStation, kSlack));  // the dot in the triangle
  EXPECT_TRUE(drawn.has(at(4000100, 500100), 1, kTarget, kSlack));   // the dot in the ring
  EXPECT_FALSE(drawn.has(at(4000000, 500100), 20, kStation, kSlack));
  for (double const part : {0.3, 0.5, 0.7}) {
    EXPECT_TRUE(drawn.has(at(4000000 + 100 * part, 500000 + 100 * part), 1, kLine, kSlack));
    EXPECT_TRUE(drawn.has(at(4000000 + 100 * part, 500000 + 100 * part) + osg::Vec2d(8, 8), 0, kWhite, 1));
  }
}

TEST_F(RenderedMap, IsTheSameOnADenseScreenWithTwiceThePixels) {
  osg::Vec2d const station = at(4000000, 500000);
  Picture const plain = picture();
  offscreen->setDisplayScale(2);
  EXPECT_EQ(at(4000000, 500000), station);
  Picture const dense = picture();
  ASSERT_TRUE(dense.image->s() == 1200 && dense.image->t() == 800);
  // The triangle around the station's dot: four times its area, of which more than a half has the full colour (the rims
  // of the small one are thick). With icons of the old size there would be as many pixels as before.
  auto const count = [](Picture const& picture, osg::Vec2d const& place, int radius) {
    int found = 0;
    for (int y = -radius; y <= radius; ++y) {
      for (int x = -radius; x <= radius; ++x)
        found += picture.has(place + osg::Vec2d(x, y), 0, kStation, kSlack) ? 1 : 0;
    }
    return found;
  };
  int const before = count(plain, station, 16);
  ASSERT_GT(before, 20);
  EXPECT_GT(count(dense, station * 2, 32), 2 * before);
}

TEST_F(RenderedMap, PointsAreSeenAtAnyHeight) {
  for (double const height : {8848.0, -9999.9}) {  // the second stands for a height that is not known
    project->clearMapData();
    for (TraverseDataInfo& row : project->getTraverseDataList()) row.Z = height;
    project->build();
    EXPECT_TRUE(picture().has(at(4000000, 500000), 1, kStation, kSlack));
  }
}

TEST_F(RenderedMap, AnIconAndALineTurnIntoTheSelectedOnes) {
  for (auto const type : {FeatureDataType::ViewPointData, FeatureDataType::NetworkData}) {
    for (osgEarth::AnnotationNode* node : test::featuresOf(*project->getMapScene(), type)) viewers->pick(node);
  }
  Picture const drawn = picture();
  EXPECT_TRUE(drawn.has(at(4000000, 500000), 1, kSelected, kSlack));
  EXPECT_TRUE(drawn.has(at(4000050, 500050), 1, kSelected, kSlack));
  viewers->clearPick();
  EXPECT_FALSE(picture().has(at(4000000, 500000), 20, kSelected, kSlack));
}

}  // namespace
