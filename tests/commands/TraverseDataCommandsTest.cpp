// Removing and modifying observation rows.
#include "commands/DataCommands.h"
#include "support/FieldRows.h"

namespace {

using namespace kvn;

struct TraverseData : test::DataCommands {
  /// Known rows, then those of two stations, with ids from "0", drawn twice.
  void use(test::Rows rows) {
    auto const append = [&rows](test::Rows const& more) { rows.insert(rows.end(), more.begin(), more.end()); };
    append({test::station("S")});
    append(test::twoFaces({test::sight("T", 5, 90, 100)}));
    append({test::station("100%1")});
    append(test::twoFaces({test::sight("Ü", 90, 90)}));
    rows = test::grouped(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i].id = std::to_string(i);
    project = system.createProject();
    project->setTraverseDataList(rows);
    project->build();
    project->build();
  }

  test::Rows& rows() const { return project->getTraverseDataList(); }
};

TEST_F(TraverseData, AnIdRemovesItsWholeGroup) {
  std::string const three =
      "I Traverse point [100%1] remove successfully\n"
      "I Traverse point [Ü] remove successfully\nI Traverse point [Ü] remove successfully\n";
  std::tuple<char const*, char const*, std::string, char const*> const cases[] = {
      {R"({"data": {"ids": ["5"]}})", "0123", three, "2/4/0"},
      {R"({"data": {"ids": ["6", "5", "6"]}})", "0123", three, "2/4/0"},
      {R"({"data": {"ids": ["x", ""]}})", "0123456", "", "4/7/0"},
      {R"({"data": {"Ids": ["5"]}, "ids": ["5"]})", "0123456", "", "4/7/0"}};
  for (auto const& [in, left, messages, drawing] : cases) {
    use({test::known("K", 0, 0)});
    expect("RemoveTraverseDataCMD", in);
    EXPECT_EQ(test::idsIn(rows()), left);
    EXPECT_EQ(told(), messages);
    EXPECT_EQ(project->isModified(), !messages.empty());
    EXPECT_EQ(drawn(), drawing);
    EXPECT_EQ(project->getNetwork().knownPoints.size(), 1U) << "the network is generated in any case";
  }
}

TEST_F(TraverseData, ANetworkThatCannotBeGeneratedIsTold) {
  for (bool const removal : {true, false}) {
    use({test::known("K", 0, 0), test::known("K", 0, 0)});
    project->getNetwork().lines.resize(1);
    expect(removal ? "RemoveTraverseDataCMD" : "ModifyTraverseDataCMD", R"({"data": {"ids": ["x"], "id": "2"}})");
    EXPECT_EQ(told(), removal ? "W Know point name repeat\n" : "E Know point name repeat\n");
    EXPECT_EQ(project->getNetwork().isEmpty(), removal) << "a modification keeps the network";
    EXPECT_EQ(project->isModified(), !removal);
    EXPECT_EQ(drawn(), "4/8/0");
  }
}

TEST_F(TraverseData, AModificationTakesTheValuesOfTheRightTypeAndChecksAllRowsAgain) {
  use({test::known("K", 0, 0)});
  auto const fields = [this] {
    TraverseDataInfo const& row = rows()[6];
    return std::tuple(row.name, row.instrument, row.isKnown, row.N, row.E, row.Z, row.horizontal_angle,
                      row.vertical_angle, row.slant_distance, row.horizontal_distance, row.isSlantDistanceHave);
  };
  rows()[2].isVerticalAngleValid = false;
  rows()[6].horizontal_angle = rows()[6].vertical_angle = 0.5;
  auto const before = fields();
  expect("ModifyTraverseDataCMD", R"({"data": {"id": 6, "Name": 5, "Height": "1.5", "IsKnowPoint": 1, "N": true,
      "E": null, "Z": [1], "HorizontalAngle": false, "VerticalAngle": {}, "SlantDistance": "7", "name": "x"}})");
  EXPECT_EQ(fields(), before) << "the id alone is text whatever its type";
  EXPECT_TRUE(rows()[2].isVerticalAngleValid && project->isModified());
  EXPECT_EQ(drawn(), "4/7/0");

  expect("ModifyTraverseDataCMD", R"({"data": {"id": "6", "Name": "Ä", "Height": 1.5, "IsKnowPoint": true, "N": 1,
      "E": 10000000000000000000, "Z": -3, "HorizontalAngle": 6.3, "VerticalAngle": 1.25, "SlantDistance": 7,
      "HorizontalDistance": 6.5}})");
  EXPECT_EQ(fields(), std::tuple("Ä", 1.5, true, 1.0, 1e19, -3.0, 6.3, 1.25, 7.0, 6.5, false));
  EXPECT_FALSE(rows()[6].isHorizontalAngleValid) << "more than a circle";
  EXPECT_EQ(project->getNetwork().knownPoints.size(), 2U) << "the network follows";
}

}  // namespace
