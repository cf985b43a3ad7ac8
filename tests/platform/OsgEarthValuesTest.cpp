#include <osgEarth/Feature>
#include <osgEarth/GeoData>
#include <osgEarth/Style>
#include <osgEarth/Version>

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace osgEarth {
namespace {

TEST(OsgEarthColor, ComesBackFromItsTextForEveryByte) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    unsigned const value = byte << 24u | (255u - byte) << 16u | 0x55u << 8u | byte;
    std::string const text = Color(value).toHTML();
    EXPECT_EQ(Color(text).as(Color::RGBA), value) << text;
    EXPECT_EQ(Color(Color(value).toHTML(Color::ABGR), Color::ABGR).toHTML(), text);
  }
}

TEST(OsgEarthColor, ReadsItsFormsAndTakesWhatIsTooShortForBlack) {
  struct Case {
    char const *text, *html;
  };
  Case const cases[] = {{"", "#000000ff"},
                        {"#12345", "#000000ff"},
                        {" 9893D8\t", "#9893d8ff"},
                        {"0x9893d87F", "#9893d87f"},
                        {"#f80", "#ff8800ff"},
                        {"rgb(255, 0, 51)", "#ff0033ff"},
                        {"rgba(255,0,51,0.2)", "#ff003333"},
                        // Blue, and half of orange: 127.5 of 255 is cut.
                        {"HSL(240, 100%, 50%)", "#0000ffff"},
                        {"hsl(-330,100%,25%)", "#7f3f00ff"}};
  for (Case const& c : cases) EXPECT_EQ(Color(c.text).toHTML(), c.html) << c.text;
  EXPECT_EQ(Color().toHTML(), "#ffffffff");
}

TEST(OsgEarthOptional, IsSetByEveryWayToAWritableValueAndByNoReading) {
  optional<Fill> fill;
  optional<Fill> const& reading = fill;
  EXPECT_EQ(reading->color().toHTML(), reading.get().color().toHTML());
  EXPECT_FALSE(fill.isSet());
  fill->color() = Color::Red;
  EXPECT_TRUE(fill.isSet());
  fill.unset();
  EXPECT_EQ((*reading).color().toHTML(), "#ffffffff");
  fill.mutable_value();
  EXPECT_TRUE(fill.isSet());
}

TEST(OsgEarthStyle, CopiesItsSymbolsUnlessToldToShareThem) {
  Style style("station");
  style.getOrCreate<LineSymbol>()->stroke()->color() = Color::Red;
  style.getOrCreate<IconSymbol>()->url().mutable_value().setLiteral(std::string("config\\img\\a b.png"));
  EXPECT_EQ(style.getOrCreate<LineSymbol>(), style.get<LineSymbol>());
  Style const copy(style);
  Style assigned;
  assigned = style;
  Style const shared(style, osg::CopyOp::SHALLOW_COPY);
  style.get<LineSymbol>()->stroke()->width() = Expression<Distance>(Distance(4.0, Units::PIXELS));
  EXPECT_EQ(style.get<LineSymbol>()->stroke()->color().toHTML(), "#ff0000ff") << "the width leaves the colour alone";
  EXPECT_FALSE(copy.get<LineSymbol>()->stroke()->width().isSet());
  EXPECT_FALSE(assigned.get<LineSymbol>()->stroke()->width().isSet());
  EXPECT_TRUE(shared.get<LineSymbol>()->stroke()->width().isSet());
  EXPECT_EQ(copy.get<InstanceSymbol>()->url()->literal().base(), "config\\img\\a b.png");
  EXPECT_EQ(copy.getName(), "station");
}

// Symbols are common to copies until one may be changed.
TEST(OsgEarthStyle, NoCopyChangesWithAnother) {
  Style first;
  first.getOrCreate<LineSymbol>()->stroke()->color() = Color::Red;
  first.getOrCreate<TextSymbol>()->size() = 18.0f;
  Style const second = first;
  Style third = second;
  Style fourth = third;
  std::as_const(third).get<TextSymbol>();
  EXPECT_EQ(std::as_const(third).get<TextSymbol>(), second.get<TextSymbol>()) << "nobody has asked to change it";
  fourth.get<LineSymbol>()->stroke()->color() = Color::Blue;
  third.getOrCreate<TextSymbol>()->size() = 9.0f;
  auto* const held = third.get<TextSymbol>();
  Style const fifth = third;
  held->size() = 11.0f;  // a pointer from before the copy
  third.symbols().front() = new LineSymbol;
  EXPECT_EQ(second.get<LineSymbol>()->stroke()->color().toHTML(), "#ff0000ff");
  EXPECT_EQ(second.get<TextSymbol>()->size()->literal(), 18.0f);
  EXPECT_EQ(std::as_const(fourth).get<LineSymbol>()->stroke()->color().toHTML(), "#0000ffff");
  EXPECT_EQ(std::as_const(fourth).get<TextSymbol>()->size()->literal(), 18.0f);
  EXPECT_EQ(fifth.get<TextSymbol>()->size()->literal(), 9.0f);
  EXPECT_EQ(fifth.get<LineSymbol>()->stroke()->color().toHTML(), "#ff0000ff");
  EXPECT_EQ(std::as_const(third).get<TextSymbol>()->size()->literal(), 11.0f);
}

TEST(OsgEarthStyle, CopiesOfEqualOnesHaveTheirSymbolsInCommon) {
  struct OwnSymbol : LineSymbol {};
  auto const make = [](float size, LineSymbol* line) {
    Style style;
    style.getOrCreate<TextSymbol>()->size() = size;
    style.add(line);
    return Style(std::as_const(style));
  };
  Style const first = make(18.0f, new LineSymbol);
  Style second = make(18.0f, new LineSymbol);
  EXPECT_EQ(first.get<TextSymbol>(), std::as_const(second).get<TextSymbol>());
  EXPECT_EQ(first.get<LineSymbol>(), std::as_const(second).get<LineSymbol>());
  Style const larger = make(19.0f, new OwnSymbol);
  EXPECT_EQ(larger.get<TextSymbol>()->size()->literal(), 19.0f);
  EXPECT_NE(larger.get<LineSymbol>(), first.get<LineSymbol>()) << "only the host knows what its own class has";
  LineSymbol* const named = new LineSymbol;
  named->setName("of the host");
  EXPECT_EQ(make(18.0f, named).get<LineSymbol>()->getName(), "of the host");
  second.get<TextSymbol>()->size() = 9.0f;
  second.combineWith(first).get<TextSymbol>()->size() = 7.0f;
  EXPECT_EQ(first.get<TextSymbol>()->size()->literal(), 18.0f);
  EXPECT_EQ(make(18.0f, new LineSymbol).get<TextSymbol>()->size()->literal(), 18.0f);
}

TEST(OsgEarthStyle, HoldsOneSymbolOfAClass) {
  Style base;
  base.getOrCreate<TextSymbol>()->size() = 18.0f;
  base.getOrCreate<IconSymbol>();
  Style over;
  over.add(new TextSymbol);
  Style const both = base.combineWith(over);
  EXPECT_EQ(both.symbols().size(), 2u);
  EXPECT_FALSE(both.get<TextSymbol>()->size().isSet());
  EXPECT_TRUE(base.get<TextSymbol>()->size().isSet());
  EXPECT_TRUE(base.remove<InstanceSymbol>());
  EXPECT_FALSE(base.has<IconSymbol>() || base.remove<IconSymbol>());
}

TEST(OsgEarthSpatialReference, IsOneObjectForOneText) {
  EXPECT_EQ(SpatialReference::create("epsg:4547"), SpatialReference::get("epsg:4547"));
  EXPECT_EQ(SpatialReference::create(" "), nullptr);
  struct Case {
    char const* text;
    bool geographic, projected;
  };
  Case const cases[] = {
      {"wgs84", true, false},        {"EPSG:4490", true, false},  {"+proj=longlat +datum=WGS84", true, false},
      {"epsg:4547", false, true},    {"epsg:4978", false, false}, {"+proj=tmerc +lon_0=114", false, true},
      {"GEOGCS[\"x\"]", true, false}};
  for (Case const& c : cases) {
    EXPECT_EQ(SpatialReference::get(c.text)->isGeographic(), c.geographic) << c.text;
    EXPECT_EQ(SpatialReference::get(c.text)->isProjected(), c.projected) << c.text;
  }
}

TEST(OsgEarthGeoPoint, IsNeverTransformedInSilence) {
  auto* const grid = SpatialReference::create("epsg:4547");
  GeoPoint const point(grid, 500000.0, 4000000.0, 12.5, ALTMODE_ABSOLUTE);
  EXPECT_TRUE(GeoPoint(SpatialReference::create("EPSG:4547"), point).isValid());
  EXPECT_FALSE(point.transform(SpatialReference::create("wgs84")).isValid());
  osg::Vec3d world;
  EXPECT_TRUE(point.toWorld(world));
  EXPECT_EQ(world, point.vec3d());
  EXPECT_FALSE(GeoPoint(grid, 1.0, 2.0).toWorld(world)) << "relative to a terrain that is not there";
  EXPECT_FALSE(GeoPoint().isValid() || GeoPoint().toWorld(world));
  EXPECT_EQ(point, GeoPoint(grid, point.vec3d()));
}

TEST(OsgEarthFeature, ConvertsItsAttributesWithAPointInNumbers) {
  osg::ref_ptr<Feature> const feature = new Feature(new Ring, nullptr);
  feature->set("a", 1.5);
  feature->set("b", "2.5");
  feature->set("c", 1e300);
  feature->set("d", true);
  EXPECT_EQ(feature->getString("a") + feature->getString("d") + feature->getString("none"), "1.5true");
  EXPECT_EQ(feature->getDouble("b"), 2.5);
  EXPECT_EQ(feature->getInt("b"), 2);
  EXPECT_EQ(feature->getInt("c", -1), -1) << "beyond an int";
  EXPECT_TRUE(feature->getBool("a") && feature->getBool("d") && !feature->getBool("b"));
  for (double x : {0.0, 3.0}) feature->getGeometry()->push_back(x, 0.0);
  feature->getGeometry()->push_back(3.0, 4.0);
  EXPECT_EQ(feature->getGeometry()->getLength(), 12.0) << "a ring is closed";
}

static_assert(OSGEARTH_VERSION_GREATER_OR_EQUAL(3, 7, 9) && OSGEARTH_VERSION_LESS_THAN(3, 8, 1) &&
              !OSGEARTH_VERSION_LESS_THAN(3, 8, 0));

}  // namespace
}  // namespace osgEarth
