// Pictures of the map that are drawn without a display.
#include <gmock/gmock.h>
#include <mvz/OffscreenView.h>
#include <mvz/detail/EglContext.h>
#include <mvz/detail/MapFont.h>
#include <mvz/detail/Shading.h>
#include <support/Support.h>
#include <utils/QLogicError.h>

#include <QLibrary>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <osg/BlendFunc>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osgEarth/FeatureNode>
#include <osgText/Text>

namespace {

constexpr double kEasting = 4000000;
constexpr double kNorthing = 500000;
constexpr int kWidth = 401;
constexpr int kHeight = 300;

using Colour = std::array<int, 3>;
constexpr Colour kRed = {255, 0, 0};
constexpr Colour kBlue = {0, 0, 255};
constexpr Colour kWhite = {255, 255, 255};

osg::ref_ptr<mvz::OffscreenView> viewOf(osg::Node* scene) {
  osg::ref_ptr<mvz::OffscreenView> view = new mvz::OffscreenView(kWidth, kHeight);
  view->setScene(scene);
  view->fullMap(osg::BoundingBoxd(kEasting, kNorthing, 0, kEasting + 10, kNorthing + 5, 0));
  return view;
}

/// Corners in metres from a place in the world that is only kept in double precision.
osg::ref_ptr<osg::Node> shape(GLenum mode, osg::Vec3d const& place, std::vector<osg::Vec3> const& corners,
                              Colour const& colour) {
  osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
  geometry->setVertexArray(new osg::Vec3Array(corners.begin(), corners.end()));
  osg::ref_ptr<osg::Vec4Array> colours = new osg::Vec4Array;
  colours->push_back(osg::Vec4(float(colour[0]) / 255, float(colour[1]) / 255, float(colour[2]) / 255, 1));
  geometry->setColorArray(colours, osg::Array::BIND_OVERALL);
  geometry->addPrimitiveSet(new osg::DrawArrays(mode, 0, static_cast<GLsizei>(corners.size())));
  osg::ref_ptr<osg::MatrixTransform> node = new osg::MatrixTransform(osg::Matrixd::translate(place));
  node->addChild(geometry);
  return node;
}

osg::Vec3d const kSquarePlace(kEasting + 2, kNorthing + 3, 40);

/// A red square of 1 m around its place.
osg::ref_ptr<osg::Node> square() {
  return shape(GL_TRIANGLE_FAN, kSquarePlace, {{-0.5F, -0.5F, 0}, {0.5F, -0.5F, 0}, {0.5F, 0.5F, 0}, {-0.5F, 0.5F, 0}},
               kRed);
}

/// Colour at a pixel, counted from the upper left corner.
Colour at(osg::Image const& image, int x, int y) {
  unsigned char const* const bytes = image.data(static_cast<unsigned>(x), static_cast<unsigned>(image.t() - 1 - y));
  return {bytes[0], bytes[1], bytes[2]};
}

struct Found {
  int count = 0;
  osg::Vec2d middle;
};

Found find(osg::Image const& image, std::function<bool(int, int)> const& wanted) {
  Found found;
  for (int y = 0; y < image.t(); ++y) {
    for (int x = 0; x < image.s(); ++x) {
      if (!wanted(x, y)) continue;
      ++found.count;
      found.middle += osg::Vec2d(x + 0.5, y + 0.5);
    }
  }
  found.middle /= std::max(found.count, 1);
  return found;
}

void expectSquare(mvz::OffscreenView& view) {
  osg::ref_ptr<osg::Image> const image = view.render();
  ASSERT_EQ(image->s(), view.getWidth());
  ASSERT_EQ(image->t(), view.getHeight());
  Found const red = find(*image, [&](int x, int y) { return at(*image, x, y) == kRed; });
  double const side = 1 / view.metresPerPixel();
  // Its rim may be a mixture: a pixel on each side.
  EXPECT_NEAR(std::sqrt(red.count), side - 1, 1.5);
  EXPECT_LT((red.middle - view.toPixel(kSquarePlace)).length(), 1);
}

// A pixel is a millimetre, and single precision at these coordinates has steps of a quarter of a metre: what is not
// kept relative to the first point is out of the picture. Relative to it there are steps of 6e-5 m at 900 m.
TEST(OffscreenView, ShowsTheEndOfALongLineToAMillimetre) {
  osg::Vec3d const end(kEasting + 900.7777, kNorthing - 800.3333, 56.1111);
  osg::ref_ptr<osgEarth::LineString> const line = new osgEarth::LineString;
  line->push_back(kEasting + 0.1234, kNorthing + 0.4321, 55.5555);
  line->push_back(end);
  osgEarth::Style style;
  style.getOrCreate<osgEarth::LineSymbol>()->stroke().mutable_value().color() = osgEarth::Color::Red;
  osg::ref_ptr<osgEarth::Feature> const feature = new osgEarth::Feature(line, nullptr);
  osg::ref_ptr<mvz::OffscreenView> const view = viewOf(new osgEarth::FeatureNode(feature, style));
  view->fullMap(osg::BoundingBoxd(end, end));
  view->zoom(view->toPixel(end), view->metresPerPixel() / 1e-3);
  osg::Vec2d const place = view->toPixel(end);
  osg::ref_ptr<osg::Image> const image = view->render();
  auto const isDrawn = [&image](int x, int y) {
    Colour const colour = at(*image, x, y);
    return colour[0] - colour[1] > 60;  // the scale bar is black
  };
  EXPECT_EQ(find(*image, [&](int x, int y) { return isDrawn(x, y) && x > place.x() + 1.5; }).count, 0);
  EXPECT_GT(find(*image,
                 [&](int x, int y) {
                   return isDrawn(x, y) && std::abs(x + 0.5 - place.x()) < 2.0 && std::abs(y + 0.5 - place.y()) < 2.0;
                 })
                .count,
            0);
  EXPECT_GT(find(*image, isDrawn).count, 100) << "it comes from the upper left";
}

TEST(OffscreenView, DrawsThingsWhereTheViewSaysTheyStand) {
  osg::ref_ptr<mvz::OffscreenView> const view = viewOf(square());
  expectSquare(*view);
  EXPECT_FALSE(view->needsRedraw());
  view->setSize(523, 211);
  expectSquare(*view);
}

TEST(OffscreenView, KeepsNeighbouringPixelsApartInLargeCoordinates) {
  // A third of a millimetre is a hundredth of a pixel, and much less than the 0.25 m of single precision.
  for (double const shift : {0.0, 0.0003, -0.0003}) {
    osg::ref_ptr<osg::Group> const scene = new osg::Group;
    osg::ref_ptr<mvz::OffscreenView> const view = viewOf(scene);
    osg::Vec3d const moved(shift, 0, 0);
    scene->addChild(shape(GL_LINES, view->toWorld({200.5, 200}) + moved, {{0, 0, 0}, {0, 5, 0}}, kRed));
    scene->addChild(shape(GL_LINES, view->toWorld({201.5, 200}) + moved, {{0, 0, 0}, {0, 5, 0}}, kBlue));
    osg::ref_ptr<osg::Image> const image = view->render();
    for (int y = 120; y < 198; ++y) {
      Colour const seen[] = {at(*image, 199, y), at(*image, 200, y), at(*image, 201, y), at(*image, 202, y)};
      EXPECT_THAT(seen, testing::ElementsAre(kWhite, kRed, kBlue, kWhite)) << y;
    }
  }
}

TEST(OffscreenView, SmoothsSlantingLines) {
  osg::ref_ptr<mvz::OffscreenView> const view =
      viewOf(shape(GL_LINES, {kEasting, kNorthing, 0}, {{0, 0, 0}, {10, 3, 0}}, kRed));
  osg::ref_ptr<osg::Image> const image = view->render();
  auto const isPink = [&](int x, int y) {
    Colour const c = at(*image, x, y);
    return c[0] == 255 && c[1] > 0 && c[1] < 255;
  };
  EXPECT_GT(find(*image, isPink).count, 100);
}

TEST(OffscreenView, SharesASceneWithOtherViewsWhicheverDiesFirst) {
  osg::ref_ptr<osg::Node> const scene = square();
  osg::ref_ptr<mvz::OffscreenView> first = viewOf(scene);
  expectSquare(*first);
  osg::ref_ptr<mvz::OffscreenView> second = viewOf(scene);
  expectSquare(*second);
  first = nullptr;
  expectSquare(*second);
  second->setScene(nullptr);  // and dies with the scene put aside
  second = nullptr;
  for (int again = 0; again < 2; ++again) expectSquare(*viewOf(scene));
}

class Shading : public testing::TestWithParam<bool> {};

TEST_P(Shading, DrawsLabelsAScaleBarAndANorthArrowOverTheMap) {
  auto const countDark = [](osg::Image const& image, int left, int right, int top, int bottom) {
    return find(image,
                [&](int x, int y) {
                  return x >= left && x < right && y >= top && y < bottom && at(image, x, y)[0] < 100;
                })
        .count;
  };
  osg::ref_ptr<osgText::Text> const label = new osgText::Text;
  label->setFont(mvz::detail::mapFontFile());
  label->setText("\xe6\xb5\x8b\xe7\xab\x99", osgText::String::ENCODING_UTF8);
  label->setCharacterSizeMode(osgText::Text::SCREEN_COORDS);
  label->setCharacterSize(24);
  label->setColor(osg::Vec4(0, 0, 0, 1));
  osg::ref_ptr<osg::MatrixTransform> const place = new osg::MatrixTransform(osg::Matrixd::translate(kSquarePlace));
  place->addChild(label);
  bool const isByAttributes = GetParam();
  mvz::detail::setUsesAttributes(isByAttributes);
  osg::ref_ptr<mvz::OffscreenView> const view = viewOf(place);
  osg::Vec2d const pixel = view->toPixel(kSquarePlace);
  int const x = static_cast<int>(pixel.x());
  int const y = static_cast<int>(pixel.y());
  // The largest of 1, 2, 5 m that a fifth of the width, 80 pixels, has room for.
  double const bar = 2 / view->metresPerPixel();
  for (int frame = 0; frame < 2; ++frame) {
    osg::ref_ptr<osg::Image> const image = view->render();
    EXPECT_GT(countDark(*image, x, x + 50, y - 25, y + 5), 100) << "two characters";
    EXPECT_NEAR(countDark(*image, 0, 100, kHeight - 18, kHeight - 16), 2 * bar, 4) << "the bar, two pixels thick";
    EXPECT_GT(countDark(*image, kWidth - 40, kWidth, 0, 80), 200) << "the arrow";
    EXPECT_EQ(countDark(*image, 100, kWidth - 40, kHeight - 40, kHeight), 0);
    osg::ref_ptr<osg::Image> const again = view->render();
    EXPECT_TRUE(std::equal(image->data(), image->data() + image->getTotalSizeInBytes(), again->data()));
  }
  mvz::detail::setUsesAttributes(false);
}
// By OpenGL's fixed functions, and by attributes and uniforms, as osgEarth has its contexts.
INSTANTIATE_TEST_SUITE_P(OffscreenView, Shading, testing::Bool());

TEST(OffscreenView, TheScaleBarLooksTheSameWhateverWasDrawnBefore) {
  osg::ref_ptr<osg::Node> const blended = square();
  blended->getOrCreateStateSet()->setAttributeAndModes(new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA));
  osg::ref_ptr<osg::Image> const afterBlending = viewOf(blended)->render();
  osg::ref_ptr<osg::Image> const onNothing = viewOf(nullptr)->render();
  for (int y = kHeight - 50; y < kHeight; ++y) {
    for (int x = 0; x < 100; ++x) ASSERT_EQ(at(*onNothing, x, y), at(*afterBlending, x, y)) << x << " " << y;
  }
}

TEST(OffscreenView, SaysWhatToInstallWithoutOpenGlAndDrawsWhenItIsThere) {
  osg::ref_ptr<mvz::OffscreenView> const view = viewOf(square());
  mvz::detail::useEglLibrary(QStringLiteral("no-such-library"));
  std::string const failure = test::failureOf<QLogicError>([&] { view->render(); });
  mvz::detail::useEglLibrary(QStringLiteral("EGL"));
  EXPECT_NE(failure.find("no-such-library"), std::string::npos) << failure;
  EXPECT_NE(failure.find("libegl1 libegl-mesa0 libgl1-mesa-dri"), std::string::npos) << failure;
  expectSquare(*view);
  view->setSize(1000000, 10);
  EXPECT_EQ(test::failureOf<QLogicError>([&] { view->render(); }),
            "OpenGL has no room for a picture of 1000000 by 10 pixels.");
  view->setSize(kWidth, kHeight);
  expectSquare(*view);
}

TEST(OffscreenView, LeavesTheContextOfItsCallerCurrent) {
  QLibrary egl(QStringLiteral("EGL"), 1);
  auto const current = reinterpret_cast<void* (*)()>(egl.resolve("eglGetCurrentContext"));
  ASSERT_NE(current, nullptr);
  mvz::detail::EglContext const own;
  {
    mvz::detail::EglContext::Current const hold(own);
    void* const before = current();
    ASSERT_NE(before, nullptr);
    expectSquare(*viewOf(square()));
    EXPECT_EQ(current(), before);
  }
  EXPECT_EQ(current(), nullptr);
}

TEST(OffscreenView, WritesAPngFileOrSaysWhyNot) {
  QTemporaryDir const folder;
  QString const path = folder.filePath(QString::fromUtf8("K\xc3\xa4rtchen \xe6\xb5\x8b.png"));
  test::writeFile(path, "old");
  osg::ref_ptr<mvz::OffscreenView> const view = viewOf(square());
  view->writeImage(path);
  // Signature and the first block of the format: sizes are big-endian.
  EXPECT_EQ(test::fileBytes(path).substr(0, 24),
            std::string("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x01\x91\0\0\x01\x2c", 24));
  std::string const failure = test::failureOf<QLogicError>([&] { view->writeImage(folder.filePath("no/where.png")); });
  EXPECT_EQ(failure, "No such file or directory");
}

}  // namespace
