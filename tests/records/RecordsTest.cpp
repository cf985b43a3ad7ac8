// Identities and comparisons of the records, their name tables, and the horizontal distance of a row.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <cmath>
#include <map>
#include <set>

#include "support/Support.h"

namespace {

using namespace kvn;
using testing::ElementsAre;
using testing::MatchesRegex;

double const kPi = std::acos(-1.0);

TEST(Identity, IsNewForEveryRecordAndKeptByCopies) {
  TraverseDataInfo const row;
  EXPECT_EQ(row.id.size(), 38U);
  EXPECT_THAT(row.id, MatchesRegex("\\{[0-9a-f]+-[0-9a-f]+-[0-9a-f]+-[0-9a-f]+-[0-9a-f]+\\}"));
  EXPECT_EQ(row.groupId, row.id);
  TraverseDataInfo const copy = row;
  EXPECT_EQ(copy.id, row.id);
  EXPECT_EQ(copy.groupId, row.id);

  std::set<std::string> const ids{row.id,
                                  TraverseDataInfo(ElevationAngle).id,
                                  NetworkDataInfo().id,
                                  NetworkDataInfo().id,
                                  KnownPoint().id,
                                  CoordinatePointInfo().id,
                                  CoordinatePointInfo().id};
  EXPECT_EQ(ids.size(), 7U);
  EXPECT_EQ(KnownPoint("A", 1, 2, 3).id, "") << "a point made from its values is found by name";
}

TEST(TraverseRow, IsFoundByIdAndOrderedByName) {
  TraverseDataInfo row;
  row.name = "A";
  TraverseDataInfo sameName;
  sameName.name = "A";
  sameName.horizontal_angle = 1.0;
  TraverseDataInfo lower;
  lower.name = "a";
  EXPECT_TRUE(row == row.id);
  EXPECT_FALSE(row == row.name);
  std::map<TraverseDataInfo, int> rows{{row, 1}};
  EXPECT_FALSE(rows.emplace(sameName, 2).second);
  EXPECT_TRUE(rows.emplace(lower, 3).second);
  EXPECT_LT(row, lower);
}

TEST(TraverseRow, GivesTheHorizontalDistanceOfItsCircleReading) {
  struct Case {
    char const* reason;
    VerticalAngleType type;
    double vertical;
    double distance;
  };
  Case const cases[] = {
      {"zenith, level", ZenithAngle, kPi / 2, 100.0},
      {"zenith, 30 degrees up", ZenithAngle, kPi / 3, 50.0 * std::sqrt(3.0)},
      {"zenith, 30 degrees down", ZenithAngle, 2 * kPi / 3, 50.0 * std::sqrt(3.0)},
      {"zenith of the second face has no absolute value", ZenithAngle, 3 * kPi / 2, -100.0},
      {"full circle, first face", FullCircleZenith, kPi / 6, 50.0},
      {"full circle, second face", FullCircleZenith, 11 * kPi / 6, 50.0},
      {"full circle, negative reading", FullCircleZenith, -kPi / 6, 50.0},
      {"elevation, level", ElevationAngle, 0.0, 100.0},
      {"elevation, up", ElevationAngle, kPi / 3, 50.0},
      {"elevation, down", ElevationAngle, -kPi / 3, 50.0},
      {"no such type", static_cast<VerticalAngleType>(3), kPi / 3, 0.0},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.reason);
    TraverseDataInfo row(c.type);
    row.slant_distance = 100.0;
    row.vertical_angle = c.vertical;
    // 100 m times the rounding of an angle of up to 6 rad and of its sine: 1e-13 m.
    EXPECT_NEAR(row.getHorizontalDisance(), c.distance, 1e-13);
    TraverseDataInfo other(row);
    other.verticalAngleType = c.type == ZenithAngle ? ElevationAngle : ZenithAngle;
    EXPECT_NEAR(other.getHorizontalDisance(c.type), c.distance, 1e-13);
  }
}

TEST(KnownPoints, AreTheKnownRowsInTheirOrder) {
  std::vector<TraverseDataInfo> rows(3);
  EXPECT_TRUE(getKnownPoint(rows).empty());
  rows[2].isKnown = true;
  rows[2].name = "B";
  rows[0].isKnown = true;
  rows[0].name = "A";
  rows[0].N = 1.0;
  rows[0].E = 2.0;
  rows[0].Z = 3.0;
  auto const points = getKnownPoint(rows);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[1].name, "B");
  EXPECT_THAT((std::vector<double>{points[0].x, points[0].y, points[0].z}), ElementsAre(1.0, 2.0, 3.0));
  EXPECT_EQ(points[0].id, "");
}

TEST(NetworkLine, ComparesByAngleByEndsAndById) {
  NetworkDataInfo line;
  line.start_name = "A";
  line.end_name = "B";
  line.horizontal_angle = 1.0;
  NetworkDataInfo same = line;
  same.id = "other";
  same.horizontal_angle = 2.0;
  NetworkDataInfo back = line;
  std::swap(back.start_name, back.end_name);
  EXPECT_TRUE(line == same);
  EXPECT_FALSE(line == back);
  EXPECT_FALSE(same == line.id);
  EXPECT_TRUE(same == std::string("other"));
  std::set<NetworkDataInfo> const set{line, back, same};
  ASSERT_EQ(set.size(), 2U) << "equal angles are one entry, whatever their ends";
  EXPECT_EQ(set.begin()->start_name, "A") << "the first one stays";
}

TEST(CoordinatePoint, EqualsWhenAllSixFieldsDo) {
  CoordinatePointInfo const point;
  EXPECT_TRUE(point == CoordinatePointInfo(point));
  EXPECT_TRUE(point == point.id);
  for (auto const& change : std::vector<std::function<void(CoordinatePointInfo&)>>{
           [](auto& p) { p.id = "x"; }, [](auto& p) { p.name = "x"; }, [](auto& p) { p.signal = "x"; },
           [](auto& p) { p.N = 1e-9; }, [](auto& p) { p.E = 1e-9; }, [](auto& p) { p.Z = 1e-9; }}) {
    CoordinatePointInfo other = point;
    change(other);
    EXPECT_FALSE(point == other);
  }
}

TEST(DrawLine, EqualsInEitherDirectionByName) {
  DrawPoint const a(1, 2, 3, "A");
  DrawPoint const elsewhere(9, 9, 9, "A");
  DrawPoint const b(4, 5, 6, "B");
  DrawPoint const c(4, 5, 6, "C");
  EXPECT_TRUE(DrawLine(a, b) == DrawLine(elsewhere, b));
  EXPECT_TRUE(DrawLine(a, b) == DrawLine(b, elsewhere));
  EXPECT_FALSE(DrawLine(a, b) == DrawLine(a, c));
  EXPECT_FALSE(DrawLine(a, b) == DrawLine(a, a));
  EXPECT_FALSE(DrawLine(a, a) == DrawLine(a, b));
}

template <typename Type>
void expectNames(std::vector<std::string> const& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    auto const value = static_cast<typename Type::Value>(i);
    EXPECT_EQ(Type(value).toString(), names[i]);
    ASSERT_TRUE(Type::fromString(names[i]).has_value()) << names[i];
    EXPECT_EQ(Type::fromString(names[i])->toString(), names[i]);
    EXPECT_EQ(static_cast<std::size_t>(*Type::fromString(names[i])), i);
  }
  EXPECT_EQ(Type(static_cast<typename Type::Value>(names.size())).toString(), "");
  EXPECT_EQ(Type(static_cast<typename Type::Value>(-1)).toString(), "");
  std::string otherCase = names.front();
  otherCase.front() = static_cast<char>(otherCase.front() ^ 0x20);  // the bit between the cases of ASCII
  for (std::string const& name : {otherCase, names.front() + " ", std::string()}) {
    EXPECT_EQ(Type::fromString(name), std::nullopt) << name;
  }
}

TEST(NameTables, ConvertBothWaysWithCase) {
  expectNames<TraversePointType>({"StationPoint", "PrismPoint", "NetworkData", "CoordinatePoint", "CosaViewLine",
                                  "CosaViewAngle", "CosaKnowPoint", "CosaAzimuth"});
  char const* const shown[] = {"Station Point", "Prism Point", "NetworkDataInfo", "Coordinate Point", "", "", "", ""};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(translate(static_cast<TraversePointType::Value>(i)), shown[i]);
  expectNames<FeatureDataType>({"Default", "TraverseData", "CoordData", "NetworkData", "ViewPointData"});
  expectNames<cmd::CmdErrorCode>({"unknown", "Good", "noCommand", "noRedo", "noUndo"});
}

}  // namespace
