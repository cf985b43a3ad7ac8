// The map as SVG: where points lie, and that names give way to each other.
#include "support/Support.h"

#include <gmock/gmock.h>
#include <tinyxml2.h>
#include <QStringList>
#include <chrono>
#include <cmath>
#include <random>
#include <sstream>

namespace {

using namespace kvn;
using tinyxml2::XMLElement;

SitePoint newPoint(std::string const& name, double x, double y) {
  SitePoint point;
  point.name = name;
  point.x = x;
  point.y = y;
  return point;
}

SiteLine lineBetween(std::size_t from, std::size_t to) {
  SiteLine line;
  line.from = from;
  line.to = to;
  line.hasDirection = line.hasDistance = true;
  return line;
}

/// Every point is joined to the next one.
SiteDrawing scattered(std::size_t count, double size) {
  std::mt19937 random(20);
  std::uniform_real_distribution<double> place(0.0, size);
  SiteDrawing drawing;
  for (std::size_t p = 0; p < count; ++p) {
    drawing.points.push_back(newPoint("P" + std::to_string(p), 5e6 + place(random), 4e5 + place(random)));
    drawing.points.back().ellipse = SiteEllipse{0.004, 0.002, 0.5};
    if (p > 0) drawing.lines.push_back(lineBetween(p - 1, p));
  }
  drawing.confidence = 0.95;
  drawing.confidenceFactor = 2.5;
  return drawing;
}

std::string written(SiteDrawing const& drawing, SvgOptions const& options, SvgPicture* picture = nullptr) {
  std::ostringstream stream;
  SvgPicture const made = writeSvg(stream, drawing, options);
  if (picture != nullptr) *picture = made;
  return stream.str();
}

/// A number has a point whatever the locale; tinyxml2 reads it by that.
double numberOf(XMLElement const& element, char const* attribute) {
  return QString::fromUtf8(element.Attribute(attribute)).toDouble();
}

/// All elements of a name, whatever group they are in.
void collect(XMLElement const* element, char const* name, std::vector<XMLElement const*>& found) {
  for (; element != nullptr; element = element->NextSiblingElement()) {
    if (std::string(element->Name()) == name) found.push_back(element);
    collect(element->FirstChildElement(), name, found);
  }
}

std::string classOf(XMLElement const& element) {
  char const* const text = element.Attribute("class");
  return text == nullptr ? "" : ' ' + std::string(text) + ' ';
}

/// Of the class, by the numbers that `key` gives them.
std::vector<XMLElement const*> byNumber(tinyxml2::XMLDocument const& document, char const* element, char const* ofClass,
                                        char const* key) {
  std::vector<XMLElement const*> all;
  collect(document.RootElement(), element, all);
  std::vector<XMLElement const*> list;
  for (XMLElement const* one : all) {
    if (classOf(*one).find(ofClass) == std::string::npos || one->Attribute(key) == nullptr) continue;
    auto const number = static_cast<std::size_t>(one->IntAttribute(key));
    if (list.size() <= number) list.resize(number + 1, nullptr);
    list[number] = one;
  }
  return list;
}

std::pair<double, double> placeOf(XMLElement const& point) {
  QString text = point.Attribute("transform");
  EXPECT_TRUE(text.startsWith("translate(") && text.endsWith(')'));
  QStringList const parts = text.remove("translate(").remove(')').split(' ');
  EXPECT_EQ(parts.size(), 2);
  return {parts.first().toDouble(), parts.last().toDouble()};
}

TEST(SiteSvg, LaysEastToTheRightAndNorthUpInOneScale) {
  SiteDrawing drawing;
  drawing.points = {newPoint("SW", 5000.0, 300.0), newPoint("NE", 5300.0, 700.0)};
  drawing.points[0].isKnown = true;
  // Its major axis points to the azimuth 30°.
  drawing.points[1].ellipse = SiteEllipse{0.03, 0.01, std::acos(-1.0) / 6.0};
  drawing.lines = {lineBetween(0, 1)};
  drawing.lines[0].isSuspect = true;
  SvgOptions options;
  options.ellipseScale = 1000.0;
  for (bool const isInPage : {false, true}) {
    options.isInPage = isInPage;
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.Parse(written(drawing, options).c_str()), tinyxml2::XML_SUCCESS);
    auto const points = byNumber(document, "g", " p ", "data-p");
    ASSERT_EQ(points.size(), 2U);
    EXPECT_THAT(classOf(*points[0]), testing::HasSubstr(" known "));
    auto const [x0, y0] = placeOf(*points[0]);
    auto const [x1, y1] = placeOf(*points[1]);
    double const pixels = numberOf(*document.RootElement(), "data-pixels");
    // Places are written to a hundredth of a pixel.
    EXPECT_NEAR(x1 - x0, 400.0 * pixels, 0.011);
    EXPECT_NEAR(y0 - y1, 300.0 * pixels, 0.011);
    EXPECT_NEAR(numberOf(*document.RootElement(), "data-north") - y0 / pixels, 5000.0, 0.011 / pixels);
    auto const ellipses = byNumber(document, "ellipse", " e ", "data-p");
    ASSERT_EQ(ellipses.size(), 2U);
    EXPECT_NEAR(numberOf(*ellipses[1], "rx"), 30.0 * pixels, 0.006);
    EXPECT_THAT(ellipses[1]->Attribute("transform"), testing::HasSubstr("rotate(-60)"));
    auto const lines = byNumber(document, "line", " l ", "data-l");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(classOf(*lines[0]), testing::HasSubstr(" suspect "));
    EXPECT_NEAR(numberOf(*lines[0], "x2"), x1, 0.011);
  }
}

/// Box of a name as it is drawn, about: half an em a sign and 0.9 em high.
struct Box {
  double left, top, right, bottom;
};

TEST(SiteSvg, LeavesNoTwoNamesOnOneAnother) {
  SiteDrawing const drawing = scattered(200, 1000.0);
  SvgPicture picture;
  std::string const text = written(drawing, {}, &picture);
  EXPECT_EQ(picture.names + picture.crowded, 200U);
  EXPECT_GT(picture.names, 170U) << "names of 200 points are to be read";
  tinyxml2::XMLDocument document;
  ASSERT_EQ(document.Parse(text.c_str()), tinyxml2::XML_SUCCESS);
  std::vector<Box> boxes;
  std::size_t hidden = 0;
  for (XMLElement const* point : byNumber(document, "g", " p ", "data-p")) {
    XMLElement const* const name = point->FirstChildElement("text");
    ASSERT_NE(name, nullptr);
    if (classOf(*name).find(" crowded ") != std::string::npos) {
      ++hidden;
      continue;
    }
    constexpr double kSize = 10.5;  // of the names of 61 to 400 points
    auto const [x, y] = placeOf(*point);
    double const left = x + numberOf(*name, "x");
    double const base = y + numberOf(*name, "y");
    double const width = 0.5 * kSize * static_cast<double>(std::string(name->GetText()).size());
    boxes.push_back({left, base - 0.7 * kSize, left + width, base + 0.2 * kSize});
  }
  EXPECT_EQ(hidden, picture.crowded);
  for (std::size_t a = 0; a < boxes.size(); ++a) {
    for (std::size_t b = 0; b < a; ++b) {
      bool const isApart = boxes[a].left >= boxes[b].right || boxes[b].left >= boxes[a].right ||
                           boxes[a].top >= boxes[b].bottom || boxes[b].top >= boxes[a].bottom;
      EXPECT_TRUE(isApart) << a << " and " << b;
    }
  }
}

TEST(SiteSvg, TakesEveryNameAndEveryShape) {
  struct {
    char const* what;
    SiteDrawing drawing;
  } const cases[] = {
      {"nothing", {}},
      {"one point", scattered(1, 1.0)},
      {"all in one place", scattered(3, 0.0)},
      {"far apart",
       [] {
         SiteDrawing d = scattered(2, 1.0);
         d.points[1].x = 9e8;
         return d;
       }()},
      {"names",
       [] {
         SiteDrawing d = scattered(5, 100.0);
         d.points[0].name = "<script>alert(1)</script>";
         d.points[1].name = "\"]]>&'--><!--";
         d.points[2].name = std::string("a\0\x01\x1B\n\xEF\xBF\xBF", 8);
         d.points[3].name = "\xE6\x8E\xA7\xE5\x88\xB6\xE7\x82\xB9";
         d.points[4].name = std::string(10000, 'x');
         d.title = "</title><script>";
         return d;
       }()},
  };
  for (auto const& test : cases) {
    SCOPED_TRACE(test.what);
    std::string const text = written(test.drawing, {});
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.Parse(text.c_str()), tinyxml2::XML_SUCCESS);
    std::vector<XMLElement const*> scripts;
    collect(document.RootElement(), "script", scripts);
    EXPECT_TRUE(scripts.empty());
    EXPECT_THAT(text, testing::Not(testing::AnyOf(testing::HasSubstr("nan"), testing::HasSubstr("inf\""))));
    for (char const sign : text) ASSERT_TRUE(sign == '\n' || static_cast<unsigned char>(sign) >= 0x20);
    EXPECT_LT(text.size(), 12000U) << "a long name is cut";
  }
}

TEST(SiteSvg, GrowsNoFasterThanTheNetwork) {
  // Twenty-five times as many points in less than a hundred times the time: quadratic would be 625.
  auto const seconds = [](std::size_t count) {
    SiteDrawing const drawing = scattered(count, 1000.0 * std::sqrt(static_cast<double>(count)));
    auto const start = std::chrono::steady_clock::now();
    EXPECT_GT(written(drawing, {}).size(), 100 * count);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  EXPECT_LT(seconds(100000), 100.0 * std::max(seconds(4000), 0.01));
}

}  // namespace
