// Files for other programs, read back by readers of others.
#include "support/Support.h"

#include <gmock/gmock.h>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>
#include <limits>

namespace {

using namespace kvn;
using testing::HasSubstr;

/// Awkward names, coordinates with all digits, and what may be missing. The name in place of a Chinese one is what is
/// left of the bytes of GBK when a reader takes them for UTF-8.
SiteDrawing awkward() {
  SiteDrawing drawing;
  drawing.title = "site \"7\"";
  drawing.source = SiteDrawing::Source::LeastSquares;
  drawing.confidence = 0.95;
  drawing.confidenceFactor = 2.5;
  char const* const names[] = {"<script>",
                               "\"]]>",
                               "a, \"b\"",
                               " two\r\nlines\t",
                               "\xEF\xBF\xBD\xEF\xBF\xBD",
                               "\xE7\x82\xB9\xF0\x9F\x98\x80",
                               "50%%d^J\\U+0041",
                               ""};
  for (char const* name : names) {
    SitePoint point;
    point.name = name;
    double const number = static_cast<double>(drawing.points.size());
    point.x = 5123456.0 + 0.1 + number / 3.0;
    point.y = -400000.0 - number * 0.7 - 1e-9;
    drawing.points.push_back(point);
  }
  drawing.points[0].isKnown = drawing.points[0].isHeld = true;
  drawing.points[0].height = -0.25;
  drawing.points[1].ellipse = SiteEllipse{0.002, 0.001, 0.3};
  drawing.points[1].mx = 0.001 / 3.0;
  drawing.points[1].my = std::numeric_limits<double>::quiet_NaN();
  drawing.points[2].isSidePoint = true;
  drawing.points[2].isChecked = false;
  SiteLine line;
  line.from = 0;
  line.to = 1;
  line.hasDirection = true;
  drawing.lines.push_back(line);
  line.to = 5;
  line.hasDirection = false;
  line.hasDistance = line.isSuspect = true;
  line.test = 3.25;
  drawing.lines.push_back(line);
  return drawing;
}

class Exchange : public testing::Test {
 protected:
  QString path(QString const& name) const { return folder.filePath(name); }

  Json::Value readBack(QString const& name) const {
    QProcess reader;
    reader.start(KELVANE_PYTHON, {"-X", "utf8", KELVANE_READ_BACK, path(name)});
    reader.waitForFinished(-1);
    EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
    return test::json(reader.readAllStandardOutput().toStdString());
  }

  QTemporaryDir folder;
  SiteDrawing const drawing = awkward();
};

TEST_F(Exchange, CsvIsReadBackWithAllNamesAndDigits) {
  writeExchange(path("out.csv"), drawing);
  Json::Value const rows = readBack("out.csv");
  ASSERT_EQ(rows.size(), drawing.points.size());
  for (Json::ArrayIndex i = 0; i < rows.size(); ++i) {
    SitePoint const& point = drawing.points[i];
    EXPECT_EQ(rows[i]["name"].asString(), point.name);
    EXPECT_EQ(QString::fromStdString(rows[i]["north_m"].asString()).toDouble(), point.x);
    EXPECT_EQ(QString::fromStdString(rows[i]["east_m"].asString()).toDouble(), point.y);
  }
  EXPECT_EQ(rows[0]["height_m"].asString(), "-0.25");
  EXPECT_EQ(rows[0]["coordinates"].asString(), "held");
  EXPECT_EQ(rows[1]["height_m"].asString(), "");
  EXPECT_EQ(QString::fromStdString(rows[1]["sigma_north_mm"].asString()).toDouble(), 1000.0 * (0.001 / 3.0));
  EXPECT_EQ(rows[1]["sigma_east_mm"].asString(), "") << "NaN is no number";
  EXPECT_EQ(rows[1]["ellipse_minor_mm"].asString(), "1");
  EXPECT_EQ(rows[2]["kind"].asString() + ' ' + rows[2]["checked"].asString(), "side no");
  // Spreadsheets take the text for the local encoding without it; Python's reader would give it to the first head.
  ExchangeOptions options;
  options.hasByteOrderMark = true;
  std::string const plain = test::fileBytes(path("out.csv"));
  writeExchange(path("bom.csv"), drawing, options);
  EXPECT_EQ(test::fileBytes(path("bom.csv")), "\xEF\xBB\xBF" + plain);
}

TEST_F(Exchange, GeoJsonHasPointsAndLinesAndSaysWhatItsPositionsAre) {
  ExchangeOptions options;
  options.epsg = 25832;
  writeExchange(path("plain.geojson"), drawing);
  writeExchange(path("system.geojson"), drawing, options);
  Json::Value const plain = test::json(test::fileBytes(path("plain.geojson")));
  Json::Value const system = test::json(test::fileBytes(path("system.geojson")));
  EXPECT_FALSE(plain.isMember("crs"));
  EXPECT_THAT(plain["kelvane"]["note"].asString(), HasSubstr("without a reference system"));
  EXPECT_EQ(system["crs"]["properties"]["name"].asString(), "urn:ogc:def:crs:EPSG::25832");
  EXPECT_THAT(system["kelvane"]["note"].asString(), testing::Not(HasSubstr("without")));
  EXPECT_EQ(plain["name"].asString(), "site \"7\"");
  Json::Value const& features = plain["features"];
  ASSERT_EQ(features.size(), drawing.points.size() + drawing.lines.size());
  for (Json::ArrayIndex i = 0; i < drawing.points.size(); ++i) {
    Json::Value const& feature = features[i];
    EXPECT_EQ(feature["properties"]["name"].asString(), drawing.points[i].name);
    EXPECT_EQ(feature["geometry"]["coordinates"][0].asDouble(), drawing.points[i].y) << "east comes first";
    EXPECT_EQ(feature["geometry"]["coordinates"][1].asDouble(), drawing.points[i].x);
    EXPECT_EQ(feature["geometry"]["coordinates"].size(), i == 0 ? 3U : 2U) << "only the first one has a height";
  }
  EXPECT_TRUE(features[1]["properties"]["sigma_east_mm"].isNull());
  EXPECT_FALSE(features[1]["properties"].isMember("shift_north_mm")) << "no point has one";
  Json::Value const& suspect = features[features.size() - 1];
  EXPECT_EQ(suspect["geometry"]["type"].asString(), "LineString");
  EXPECT_TRUE(suspect["properties"]["suspect"].asBool() && suspect["properties"]["distance"].asBool());
  EXPECT_EQ(suspect["properties"]["test"].asDouble(), 3.25);
  EXPECT_TRUE(features[features.size() - 2]["properties"]["test"].isNull());
}

TEST_F(Exchange, DxfIsReadBackWithoutAnErrorByAnotherReader) {
  ExchangeOptions options;
  options.svg.ellipseScale = 2000.0;
  writeExchange(path("out.dxf"), drawing, options);
  for (char const sign : test::fileBytes(path("out.dxf"))) ASSERT_LT(static_cast<unsigned char>(sign), 0x7F);
  Json::Value const seen = readBack("out.dxf");
  EXPECT_EQ(seen["version"].asString(), "AC1009");
  EXPECT_EQ(seen["errors"].size(), 0U) << seen["errors"].toStyledString();
  EXPECT_EQ(seen["layers"]["LINES_SUSPECT"].asInt(), 1);
  std::vector<std::string> names;
  std::size_t points = 0;
  for (Json::Value const& entity : seen["entities"]) {
    std::string const type = entity["type"].asString();
    if (type == "TEXT" && entity["layer"].asString() == "NAMES") names.push_back(entity["text"].asString());
    if (type == "POINT") {
      EXPECT_EQ(entity["at"][0].asDouble(), drawing.points[points].y);
      EXPECT_EQ(entity["at"][1].asDouble(), drawing.points[points].x);
      EXPECT_EQ(entity["at"][2].asDouble(), drawing.points[points].height.value_or(0.0));
      ++points;
    }
    if (type == "LINE") {
      EXPECT_EQ(entity["linetype"].asString(), entity["layer"].asString() == "LINES" ? "DASHED" : "DOTTED");
    }
    if (type == "POLYLINE") {
      EXPECT_EQ(entity["layer"].asString(), "ELLIPSES_X2000");
      EXPECT_TRUE(entity["closed"].asBool());
      // The first corner lies on the major axis: 2 mm × 2.5 × 2000 to the azimuth 0.3. Corners are rounded to 0.01 mm.
      EXPECT_NEAR(entity["at"][0][0].asDouble(), drawing.points[1].y + 10.0 * std::sin(0.3), 6e-6);
      EXPECT_NEAR(entity["at"][0][1].asDouble(), drawing.points[1].x + 10.0 * std::cos(0.3), 6e-6);
    }
  }
  EXPECT_EQ(points, drawing.points.size());
  std::vector<std::string> given;
  for (SitePoint const& point : drawing.points) {
    if (!point.name.empty()) given.push_back(point.name);
  }
  EXPECT_EQ(names, given);
}

TEST_F(Exchange, RefusesWhatItCannotWriteAndLeavesTheOldFile) {
  test::writeFile(path("old.csv"), "old");
  struct {
    char const* file;
    SiteDrawing drawing;
    char const* says;
  } const cases[] = {{"old.csv", {}, "there is no point with coordinates to write"},
                     {"old.xls", drawing, "what can be written: .csv, .geojson, .dxf, .svg"},
                     {"old.csv/out.csv", drawing, "old.csv/out.csv: "}};
  for (auto const& test : cases) {
    EXPECT_THAT(test::failureOf<JobException>([&] { writeExchange(path(test.file), test.drawing); }),
                HasSubstr(test.says));
    EXPECT_EQ(test::fileBytes(path("old.csv")), "old");
  }
}

}  // namespace
