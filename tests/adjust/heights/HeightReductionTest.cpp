// From field-book rows to height differences.
#include "adjust/heights/HeightRows.h"
#include "adjust/heights/MergeViews.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using namespace kvn;
using namespace test;

constexpr double kLengthRounding = 1e-11;  // metres: some operations on lengths of up to 1000 m, 1e-13 each
constexpr char const* kNoDistance = "Triangulation Height Require The Information Of Distance";

std::string described(std::vector<TriangleViewData> const& views) {
  std::string text;
  for (TriangleViewData const& view : views) {
    text += view.start_name + ">" + view.end_name + " " + std::to_string(view.heightDifference) + "\n";
  }
  return text;
}

std::vector<std::string> ends(std::vector<TriangleViewData> const& views) {
  std::vector<std::string> list(views.size());
  for (std::size_t i = 0; i < views.size(); ++i) list[i] = views[i].start_name + views[i].end_name;
  return list;
}

TEST(HeightReduction, ReducesTheFacesByTheKindOfCircle) {
  struct Case {
    char const* what;
    VerticalAngleType type;
    std::vector<double> readings;  // degrees
    double elevation;              // degrees
  };
  // 5 degrees above the horizon; 90 + 3 in the zenith form. Rounds beyond the first are reduced once each.
  Case const cases[] = {
      {"elevations stay", ElevationAngle, {3, 3}, 3},
      {"zenith: the horizontal at 90 on both faces", ZenithAngle, {93, 95}, 4},
      {"full circle: the index term alone", FullCircleZenith, {85, 275}, 0},
      {"full circle: faces in turn", FullCircleZenith, {85, 275, 85, 281}, 1.5},
      {"zenith: three sightings", ZenithAngle, {93, 94, 98}, 5},
      {"below the horizon", ElevationAngle, {-2, -4}, -3},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Rows rows{stationRow("A", 1.5)};
    double distance = 0;
    for (double const reading : c.readings) rows.push_back(sightRow("B", degrees(reading), 100.0, 1.2));
    auto const views = reduced(rows, c.type);
    ASSERT_EQ(views.size(), 1U);
    EXPECT_NEAR(views[0].verticalAngle, degrees(c.elevation), 1e-14);
    distance = views[0].horizontalDistance;
    EXPECT_GT(distance, 98.0);  // 100 cos 11 degrees
    EXPECT_NEAR(views[0].heightDifference, distance * std::tan(degrees(c.elevation)) + 0.3, kLengthRounding);
  }
}

TEST(HeightReduction, RefusesALineWithoutAUsableValue) {
  double const nan = std::nan("");
  Rows const good{stationRow("A", 1.5), sightRow("B", 0.01, 100, 1.6), sightRow("B", 0.01, 100, 1.6)};
  EXPECT_EQ(failureOf<std::exception>([&] { reduced(good); }), "no failure");
  struct Case {
    char const* fault;
    double vertical, slant, targetHeight;
  };
  for (Case const& c : {Case{"no distance", 0.01, 0, 1.6}, Case{"straight up", degrees(90), 100, 1.6},
                        Case{"angle not a number", nan, 100, 1.6}, Case{"distance not a number", 0.01, nan, 1.6},
                        Case{"missing angle", 1e30, 100, 1.6}, Case{"missing distance", 0.01, 1e30, 1.6},
                        Case{"missing target height", 0.01, 100, 1e30}, Case{"the same as NaN", 0.01, 100, nan}}) {
    SCOPED_TRACE(c.fault);
    Rows rows = good;
    rows[1] = sightRow("B", c.vertical, c.slant, c.targetHeight);
    EXPECT_EQ(failureOf<std::exception>([&] { reduced(rows); }), kNoDistance);
  }
  Rows rows = good;
  rows[0].instrument = nan;
  EXPECT_EQ(failureOf<std::exception>([&] { reduced(rows); }), kNoDistance);
  rows = good;
  rows.pop_back();  // one face
  EXPECT_EQ(failureOf<std::exception>([&] { reduced(rows); }), kNoDistance);
}

TEST(HeightReduction, BelongsSightsToTheStationBeforeThem) {
  EXPECT_TRUE(reduced({}).empty());
  Rows rows{sightRow("P", 0.01, 100), sightRow("P", 0.01, 100)};
  EXPECT_EQ(failureOf<std::exception>([&] { reduced(rows); }), "Fine Station Instrument Height");
  // A station occupied twice: one line, and the height of the instrument is the first one.
  rows = {stationRow("A", 1.0), sightRow("B", 0.0, 100)};
  rows.push_back(rows[0]);
  rows.back().instrument = 2.0;
  rows.push_back(rows[1]);
  auto const views = reduced(rows);
  ASSERT_EQ(views.size(), 1U);
  EXPECT_EQ(views[0].heightDifference, 1.0);
}

TEST(HeightReduction, TellsStationsWhoseHeightsDiffer) {
  Host const host;
  Rows rows{knownRow("K", 1.5, 100), knownRow("L", 1.5, 7), knownRow("K", 1.5, 100.5), knownRow("K", 1.6, 101),
            stationRow("A", 1.5)};
  rows.push_back(rows[1]);
  rows.push_back(rows[4]);
  rows.back().Z = 3;  // of no meaning where it is not known
  auto const known = converted(rows).getTriangleStationData();
  ASSERT_EQ(known.size(), 2U);
  EXPECT_EQ(known[0].height, 100);
  ASSERT_EQ(host.messages.size(), 2U);
  EXPECT_EQ(host.messages[0].first,
            "Stations that were set up with different instrument heights, of which the first counts: K");
  EXPECT_EQ(host.messages[1].first, "Known stations with different heights, of which the first counts: K");
  EXPECT_EQ(host.messages[1].second, Warning);
}

TEST(HeightReduction, DropsLinesBetweenKnownStationsButNotTheSecondOfTwoNeighbours) {
  Rows rows{knownRow("K1", 0, 10), knownRow("K2", 0, 11), knownRow("K3", 0, 12), knownRow("K1", 0, 99)};
  addLine(rows, "K1", "K2", 1, 100);
  addLine(rows, "A", "K1", 1, 100);
  addLine(rows, "K3", "K1", 1, 100);
  addLine(rows, "K2", "K3", 1, 100);
  EXPECT_EQ(ends(reduced(rows)), (std::vector<std::string>{"AK1", "K2K3"}));
  TriangleHeightDataConvert const convert = converted(rows);
  EXPECT_EQ(convert.getKnPnumber(), 3);
  EXPECT_EQ(convert.getTriangleStationData()[0].height, 10);  // of two entries the first
  EXPECT_EQ(convert.getPnumber(), 4);
  EXPECT_EQ(converted({knownRow("K", 0, 10)}).getPnumber(), 1);  // without any line
}

TEST(HeightReduction, MakesTheTwoDirectionsOfALineOne) {
  Rows rows;
  addLine(rows, "A", "B", 1.20, 100);
  addLine(rows, "B", "C", 5.0, 100);
  addLine(rows, "B", "A", -1.18, 100);
  auto const views = reduced(rows);
  EXPECT_EQ(ends(views), (std::vector<std::string>{"AB", "BC"}));
  EXPECT_NEAR(views[0].heightDifference, 1.19, kLengthRounding);
}

// a stands for the next line when something before it is erased; where nothing is left at a, the loops end.
void plainLoops(std::vector<TriangleViewData>& views) {
  for (std::size_t a = 0; a + 1 < views.size(); ++a) {
    for (std::size_t b = 0; b < views.size() && a < views.size(); ++b) {
      if (views[a].start_name != views[b].end_name || views[a].end_name != views[b].start_name) continue;
      views[a].heightDifference = (views[a].heightDifference - views[b].heightDifference) / 2;
      views.erase(views.begin() + static_cast<std::ptrdiff_t>(b));
    }
  }
}

TEST(HeightReduction, MergesOppositeLinesAsThePlainLoopsDo) {
  for (unsigned seed = 0; seed < 1000; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    // Few names: repeats, neighbours, and stations that sight themselves.
    std::uniform_int_distribution<int> name(0, 1 + static_cast<int>(seed % 5));
    std::uniform_int_distribution<int> length(0, 40);
    std::vector<TriangleViewData> views(static_cast<std::size_t>(length(random)));
    for (TriangleViewData& view : views) {
      view.start_name = std::to_string(name(random));
      view.end_name = std::to_string(name(random));
      view.heightDifference = length(random);
    }
    auto expected = views;
    plainLoops(expected);
    detail::mergeOppositeViews(views);
    EXPECT_EQ(described(views), described(expected));
  }
}

}  // namespace
