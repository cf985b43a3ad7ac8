// Identities and comparisons of the records, their name tables, and the horizontal distance of a row.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <cmath>
#include <functional>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "records/NewId.h"
#include "support/Support.h"

namespace {

using namespace kvn;

using utils::kPi;

TEST(Identity, IsNewForEveryRecordAndKeptByCopies) {
  TraverseDataInfo const row;
  EXPECT_THAT(row.id, testing::MatchesRegex("\\{[0-9a-f]+-[0-9a-f]+-[0-9a-f]+-[0-9a-f]+-[0-9a-f]+\\}"));
  EXPECT_EQ(row.groupId, row.id);
  EXPECT_EQ(TraverseDataInfo(row).id, row.id);
  EXPECT_NE(TraverseDataInfo(ElevationAngle).id, TraverseDataInfo(ElevationAngle).id);
  EXPECT_TRUE(NetworkDataInfo().id != NetworkDataInfo().id && CoordinatePointInfo().id != CoordinatePointInfo().id);
  EXPECT_EQ(KnownPoint("A", 1, 2, 3).id, "") << "a point made from its values is found by name";
}

TEST(Identity, IsARandomUuidInEveryThread) {
  std::regex const form("\\{[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\\}");
  constexpr std::size_t kOfEach = 2000;
  std::array<std::vector<std::string>, 3> lists;
  auto const fill = [](std::vector<std::string>& list) {
    for (std::size_t i = 0; i < kOfEach; ++i) list.push_back(newId());
  };
  std::thread first(fill, std::ref(lists[0]));
  std::thread second(fill, std::ref(lists[1]));
  fill(lists[2]);
  first.join();
  second.join();
  // A thread that took the seed of another would repeat all of its identities.
  std::set<std::string> distinct;
  for (auto const& list : lists) distinct.insert(list.begin(), list.end());
  EXPECT_EQ(distinct.size(), lists.size() * kOfEach);
  for (std::string const& id : lists[0]) ASSERT_TRUE(std::regex_match(id, form)) << id;
}

TEST(Identity, IsAnotherInAForkedProcess) {
  newId();  // the generator is running
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  pid_t const child = fork();
  if (child == 0) {
    std::string const id = newId();
    _exit(write(ends[1], id.data(), id.size()) == ssize_t(id.size()) ? 0 : 1);
  }
  std::array<char, 38> id{};
  EXPECT_EQ(read(ends[0], id.data(), id.size()), ssize_t(id.size()));
  EXPECT_NE(std::string(id.data(), id.size()), newId());
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  close(ends[0]);
  close(ends[1]);
}

TEST(TraverseRow, GivesTheHorizontalDistanceOfItsCircleReading) {
  // The second face has no absolute value at the zenith circle, and has one at the full circle.
  std::tuple<VerticalAngleType, double, double> const cases[] = {{ZenithAngle, kPi / 6, 50.0},
                                                                 {ZenithAngle, 3 * kPi / 2, -100.0},
                                                                 {FullCircleZenith, 11 * kPi / 6, 50.0},
                                                                 {ElevationAngle, -kPi / 3, 50.0},
                                                                 {static_cast<VerticalAngleType>(3), kPi / 3, 0.0}};
  for (auto const& [type, vertical, distance] : cases) {
    TraverseDataInfo row(type);
    row.slant_distance = 100.0;
    row.vertical_angle = vertical;
    // 100 m times the rounding of an angle of up to 6 rad and of its sine: 1e-13 m.
    EXPECT_NEAR(row.getHorizontalDisance(), distance, 1e-13) << type;
  }
}

TEST(Records, CompareEachByItsOwnRule) {
  TraverseDataInfo row;
  TraverseDataInfo sameName;
  sameName.horizontal_angle = 1.0;
  EXPECT_TRUE(row == row.id && !(row == sameName.id || row < sameName || sameName < row)) << "rows are ordered by name";

  NetworkDataInfo line;
  line.start_name = "A";
  NetworkDataInfo same = line;
  same.id = "other";
  same.horizontal_angle = 2.0;
  NetworkDataInfo back = line;
  back.start_name = "B";
  NetworkDataInfo longer = line;
  longer.end_name = "B";
  EXPECT_TRUE(line == same && !(line == back || line == longer) && same == std::string("other") && !(same == line.id));
  EXPECT_EQ((std::set<NetworkDataInfo>{line, back, same}).size(), 2U) << "equal angles are one, whatever their ends";

  CoordinatePointInfo const point;
  EXPECT_TRUE(point == CoordinatePointInfo(point) && point == point.id);
  std::vector<CoordinatePointInfo> others(6, point);
  others[0].id = others[1].name = others[2].signal = "x";
  others[3].N = others[4].E = others[5].Z = 1e-9;
  for (auto const& other : others) EXPECT_FALSE(point == other) << &other - others.data();

  DrawPoint const a(1, 2, 3, "A");
  DrawPoint const b(4, 5, 6, "B");
  EXPECT_TRUE(DrawLine(a, b) == DrawLine(b, DrawPoint(9, 9, 9, "A"))) << "by name, in either direction";
  EXPECT_FALSE(DrawLine(a, b) == DrawLine(a, a) || DrawLine(a, a) == DrawLine(a, b));
}

template <typename Type>
void expectNames(std::vector<std::string> const& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(Type(static_cast<typename Type::Value>(i)).toString(), names[i]);
    EXPECT_EQ(static_cast<std::size_t>(Type::fromString(names[i]).value()), i);
  }
  EXPECT_EQ(Type(static_cast<typename Type::Value>(names.size())).toString(), "");
  std::string otherCase = names.back();
  otherCase.front() = static_cast<char>(otherCase.front() ^ 0x20);  // the bit between the cases of ASCII
  EXPECT_EQ(Type::fromString(otherCase), std::nullopt) << otherCase;
}

TEST(NameTables, ConvertBothWaysWithCase) {
  expectNames<TraversePointType>({"StationPoint", "PrismPoint", "NetworkData", "CoordinatePoint", "CosaViewLine",
                                  "CosaViewAngle", "CosaKnowPoint", "CosaAzimuth"});
  char const* const shown[] = {"Station Point", "Prism Point", "NetworkDataInfo", "Coordinate Point", ""};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(translate(static_cast<TraversePointType::Value>(i)), shown[i]);
  expectNames<FeatureDataType>({"Default", "TraverseData", "CoordData", "NetworkData", "ViewPointData"});
  expectNames<cmd::CmdErrorCode>({"unknown", "Good", "noCommand", "noRedo", "noUndo"});
}

}  // namespace
