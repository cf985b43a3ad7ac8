// A view from above: where the world's places stand in the picture.
#include <gtest/gtest.h>
#include <mvz/View.h>
#include <mvz/detail/PlanScale.h>

#include <limits>
#include <osgUtil/UpdateVisitor>
#include <osgViewer/GraphicsWindow>

namespace {

constexpr double kEasting = 4000000;
constexpr double kNorthing = 500000;

osg::BoundingBoxd around(double width, double height, double top = 0) {
  return {kEasting, kNorthing, 0, kEasting + width, kNorthing + height, top};
}

TEST(View, FillsThePictureWithTheBoundsUpToTheMargins) {
  struct Case {
    int width, height;
    osg::BoundingBoxd bounds;
    double left, right, upright;  ///< margins, pixels
  };
  Case const cases[] = {
      {800, 600, around(300, 20), 60, 140, 60},       // fits the width
      {800, 600, around(20, 3e5, 8e3), 60, 140, 60},  // fits the height
      {800, 600, around(0, 0), 60, 140, 60},          // a point
      {800, 600, around(0, 90), 60, 140, 60},         // a line
      {100, 50, around(300, 200), 20, 20, 10},        // margins of a fifth
      {1, 1, around(300, 200), 0.2, 0.2, 0.2},
  };
  for (Case const& c : cases) {
    osg::ref_ptr<mvz::View> const view = new mvz::View(c.width, c.height);
    view->fullMap(c.bounds);
    osg::Vec2d const low = view->toPixel(c.bounds._min);
    osg::Vec2d const high = view->toPixel(c.bounds._max);
    double const free[] = {low.x() - c.left, c.width - c.right - high.x(), high.y() - c.upright,
                           c.height - c.upright - low.y()};
    // 4,000,000 m are held to 5e-10 m; the smallest pixel here is 0.02 m.
    for (double const room : free) EXPECT_GE(room, -1e-6);
    EXPECT_NEAR(free[0], free[1], 1e-6);
    EXPECT_NEAR(free[2], free[3], 1e-6);
    // A point has 5 m on each side of it.
    double const surroundings = c.bounds._min == c.bounds._max ? 5 / view->metresPerPixel() : 0;
    EXPECT_NEAR(std::min(free[0], free[2]), surroundings, 1e-6);
  }
}

TEST(View, LeavesTheMapWhereItIsWithoutUsableBounds) {
  double const infinite = std::numeric_limits<double>::infinity();
  double const none = std::numeric_limits<double>::quiet_NaN();
  osg::ref_ptr<mvz::View> const view = new mvz::View(800, 600);
  view->fullMap(around(300, 200));
  view->drawn();
  osg::Vec2d const before = view->toPixel({kEasting, kNorthing, 0});
  for (osg::BoundingBoxd const& bounds : {osg::BoundingBoxd(), around(infinite, 1), around(1, none), around(1, 1, none),
                                          around(1, 1, infinite), osg::BoundingBoxd(-1e308, 0, 0, 1e308, 0, 0)}) {
    view->fullMap(bounds);
    EXPECT_EQ(view->toPixel({kEasting, kNorthing, 0}), before);
  }
  EXPECT_FALSE(view->needsRedraw());
}

TEST(View, TellsPlacesAndPixelsApartToAHundredthOfAPixel) {
  osg::ref_ptr<mvz::View> const view = new mvz::View(801, 599);
  view->fullMap(around(1, 1));  // shown as 10 m: a pixel is 2 cm
  double const pixel = view->metresPerPixel();
  for (osg::Vec2d const& place : {osg::Vec2d(0, 0), osg::Vec2d(801, 599), osg::Vec2d(17.25, 300.5)}) {
    osg::Vec3d const world = view->toWorld(place);
    EXPECT_EQ(world.z(), 0);
    EXPECT_LT((view->toPixel(world) - place).length(), 0.01);
    // Easting to the right, northing up; the height makes no difference.
    osg::Vec2d const moved = view->toPixel(world + osg::Vec3d(3 * pixel, 5 * pixel, 70));
    EXPECT_LT((moved - place - osg::Vec2d(3, -5)).length(), 0.01);
  }
}

TEST(View, KeepsCentreAndScaleWhenItsSizeChanges) {
  osg::ref_ptr<mvz::View> const view = new mvz::View(800, 600);
  view->fullMap(around(300, 200));
  double const pixel = view->metresPerPixel();
  osg::Vec3d const centre = view->toWorld({400, 300});
  view->drawn();
  view->setSize(300, 0);
  EXPECT_TRUE(view->needsRedraw());
  EXPECT_EQ(view->getHeight(), 1);
  EXPECT_NEAR(view->metresPerPixel(), pixel, 1e-12);
  EXPECT_LT((view->toWorld({150, 0.5}) - centre).length(), 1e-8);
}

TEST(View, KeepsSizeAndScaleWhateverAWindowMakesOfTheViewport) {
  // A window that shrinks scales the viewport by the ratio of its sizes, also when the view has the new size already.
  for (bool const viewFirst : {true, false}) {
    SCOPED_TRACE(viewFirst);
    osg::ref_ptr<mvz::View> const view = new mvz::View(800, 600);
    view->setDisplayScale(1.5);
    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> const window =
        new osgViewer::GraphicsWindowEmbedded(0, 0, 1200, 900);
    view->getCamera()->setGraphicsContext(window);
    view->fullMap(around(300, 200));
    double const pixel = view->metresPerPixel();
    osg::Vec3d const centre = view->toWorld({400, 300});
    if (viewFirst) view->setSize(401, 200);
    window->resized(0, 0, 602, 300);
    if (!viewFirst) view->setSize(401, 200);
    osgUtil::UpdateVisitor update;
    view->getCamera()->getChild(0)->accept(update);
    EXPECT_EQ(view->getCamera()->getViewport()->width(), 602);  // 601.5: the half pixel is drawn
    EXPECT_EQ(view->getCamera()->getViewport()->height(), 300);
    EXPECT_EQ(view->getWidth(), 401);
    EXPECT_NEAR(view->metresPerPixel(), pixel, 1e-12);
    EXPECT_LT((view->toWorld({200.5, 100}) - centre).length(), 1e-8);
    view->getCamera()->setGraphicsContext(nullptr);
  }
}

TEST(View, PansAndZoomsUnderTheMouse) {
  osg::ref_ptr<mvz::View> const view = new mvz::View(801, 599);
  view->fullMap(around(300, 200));
  view->drawn();
  osg::Vec2d const mouse(120, 431);
  osg::Vec3d const under = view->toWorld(mouse);
  double const pixel = view->metresPerPixel();
  view->zoom(mouse, 2.5);
  EXPECT_TRUE(view->needsRedraw());
  EXPECT_NEAR(view->metresPerPixel(), pixel / 2.5, 1e-12);
  EXPECT_LT((view->toPixel(under) - mouse).length(), 1e-6);  // 5e-10 m at 4,000,000 m, of pixels of 0.2 m
  view->pan({30, -12.5});
  EXPECT_LT((view->toPixel(under) - mouse - osg::Vec2d(30, -12.5)).length(), 1e-6);
  EXPECT_NEAR(view->metresPerPixel(), pixel / 2.5, 1e-12);
  // To the bounds and no farther, and what is no number is no gesture.
  for (int i = 0; i < 200; ++i) view->zoom(mouse, 2);
  EXPECT_NEAR(view->metresPerPixel(), mvz::View::kFinest, 1e-12);
  for (int i = 0; i < 200; ++i) view->zoom(mouse, 0.5);
  EXPECT_NEAR(view->metresPerPixel(), mvz::View::kCoarsest, 1e-6);
  osg::Matrixd const before = view->getCamera()->getViewMatrix();
  double const none = std::numeric_limits<double>::quiet_NaN();
  for (double const factor : {0.0, -1.0, none, std::numeric_limits<double>::infinity()}) view->zoom(mouse, factor);
  view->zoom({none, 0}, 2);
  view->pan({0, none});
  EXPECT_EQ(view->getCamera()->getViewMatrix(), before);
}

TEST(ScaleBar, IsTheLongestRoundLengthThatFits) {
  struct Case {
    double limit, length;
    char const* text;
  };
  Case const cases[] = {{100, 100, "100 m"}, {99.9, 50, "50 m"},        {1, 1, "1 m"},       {0.7, 0.5, "0.5 m"},
                        {0.2, 0.2, "0.2 m"}, {0.001, 0.001, "0.001 m"}, {999, 500, "500 m"}, {1000, 1000, "1 km"},
                        {3e4, 2e4, "20 km"}, {9e6, 5e6, "5000 km"}};
  for (Case const& c : cases) {
    EXPECT_EQ(mvz::detail::scaleBarLength(c.limit), c.length) << c.limit;
    EXPECT_EQ(mvz::detail::scaleBarText(c.length).toStdString(), c.text);
  }
}

}  // namespace
