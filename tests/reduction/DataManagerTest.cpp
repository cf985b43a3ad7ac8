// The station map: grouping by station, occupation and target, faces, means on both sides of the zero direction.
#include "support/FieldRows.h"

#include <gtest/gtest.h>

namespace {

using namespace test;

// Sums of a few doubles of size 6 and their quotient: a handful of units in the last place, 1e-15 each.
constexpr double kRounding = 1e-14;

kvn::TraverseDataInfo const& foreSight(kvn::StationMap const& map, std::string const& target) {
  for (auto const& entry : map.begin()->second.front().foreSightMap) {
    if (entry.first.name == target) return entry.first;
  }
  throw std::runtime_error("no target " + target);
}

TEST(DataManager, GroupsByStationOccupationAndTarget) {
  kvn::TraverseDataInfo other;
  other.pointType = kvn::TraversePointType::CoordinatePoint;
  Rows rows{sight("early", 1, 90), station("S"),         sight("A", 10, 85), sight("B", 40, 90), other,
            sight("A", 190, 275),  sight("B", 220, 270), station("T"),       station("S"),       sight("B", 70, 90)};
  kvn::StationMap const map = kvn::DataManager().buildStationMap(rows);
  ASSERT_EQ(map.size(), 2U);
  auto const& ofS = map.at(rows[1]);
  ASSERT_EQ(ofS.size(), 2U);  // two occupations stay apart
  EXPECT_EQ(ofS[0].backSightMap.at(rows[2]), (std::vector<kvn::TraverseDataInfo*>{&rows[2], &rows[5]}));
  EXPECT_EQ(ofS[0].foreSightMap.at(rows[3]), (std::vector<kvn::TraverseDataInfo*>{&rows[3], &rows[6]}));
  EXPECT_EQ(ofS[1].backSightMap.count(rows[3]), 1U);
  EXPECT_EQ(map.begin()->first.id, rows[1].id);
  ASSERT_EQ(map.at(rows[7]).size(), 1U);  // a station without targets is an occupation all the same
  EXPECT_TRUE(map.at(rows[7])[0].backSightMap.empty());
}

TEST(DataManager, CountsEveryReadingFromTheFirstOneOfItsOccupation) {
  struct Case {
    char const* what;
    double firstH, firstV;  // degrees
    double h, v;
    double reduced;          // degrees
    double reducedVertical;  // degrees; the old value is 7
  };
  Case const cases[] = {
      {"first face", 10, 85, 40, 80, 30, -10},
      {"second face", 10, 85, 220, 275, 30, 5},
      {"second face below half a circle", 10, 85, 30, 275, 200, 5},
      {"the first reading is taken as it stands, whatever its face", 190, 275, 190, 275, 180, 5},
      {"a reading before the first one", 10, 85, 5, 90, 355, 0},
      {"a hair before it stays negative", 10, 85, 10 - 1e-8 / kDegree, 90, -1e-8 / kDegree, 0},
      {"vertical reading of half a circle: no face", 10, 85, 40, 180, 30, 7},
      {"within 1e-7 of it too", 10, 85, 40, 180 + 9e-8 / kDegree, 30, 7},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Rows rows{station("S"), sight("A", c.firstH, c.firstV), sight("B", c.h, c.v)};
    rows[2].reduced_vertical_angle = 7 * kDegree;
    kvn::DataManager().buildStationMap(rows);
    EXPECT_NEAR(rows[2].reduced_horizontal_angle, c.reduced * kDegree, kRounding);
    EXPECT_NEAR(rows[2].reduced_vertical_angle, c.reducedVertical * kDegree, kRounding);
  }
}

TEST(DataManager, MeansStayWholeAcrossTheZeroDirection) {
  struct Case {
    char const* what;
    std::vector<double> seconds;  // readings of B less that of A
    double mean;                  // seconds
  };
  Case const cases[] = {
      {"first above, second below", {10, -10}, 0},
      {"first below, second above", {-10, 10}, 0},
      {"both below", {-10, -20}, 360 * 3600 - 15},
      {"three, the first below", {-10, 10, 30}, 10},
      {"three, the first above", {10, -10, -30}, -10},
      {"four, two on each side", {-30, 10, -10, 10}, -5},
      {"three beside each other", {-10, -20, -30}, 360 * 3600 - 20},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Rows rows{station("S"), sight("A", 20, 90)};
    for (double const seconds : c.seconds) rows.push_back(sight("B", 20 + seconds / 3600, 90));
    kvn::StationMap const map = kvn::DataManager().buildStationMap(rows);
    EXPECT_NEAR(foreSight(map, "B").reduced_horizontal_angle, c.mean * kSecond, kRounding);
  }
}

TEST(DataManager, AMissingDistanceCountsInTheMeanWithItsZero) {
  Rows rows{station("S"), sight("A", 0, 90), sight("B", 30, 90, 100), sight("B", 210, 270)};
  kvn::StationMap const map = kvn::DataManager().buildStationMap(rows);
  EXPECT_DOUBLE_EQ(foreSight(map, "B").slant_distance, 50);
  EXPECT_DOUBLE_EQ(foreSight(map, "B").horizontal_distance, 50);
  EXPECT_DOUBLE_EQ(rows[2].slant_distance, 100);
}

}  // namespace
