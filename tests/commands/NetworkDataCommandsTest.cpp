// Removing and modifying lines of the network.
#include <sstream>

#include "commands/DataCommands.h"

namespace {

using namespace kvn;

struct NetworkData : test::DataCommands {
  /// Observation rows of one line, drawn twice, and a network of three lines.
  void fill(bool withRepeatedPoint) {
    project = system.createProject();
    drawOneOfEach();
    project->build();
    auto& [knownPoints, lines] = project->getNetwork();
    knownPoints = {{"%2", 0, 0, 9}, {"B", 0, 100, 9}};
    if (withRepeatedPoint) knownPoints.push_back(knownPoints[0]);
    for (KnownPoint& point : knownPoints) point.id = "k";
    lines.resize(3);
    std::tuple<char const*, char const*, double, double> const targets[] = {
        {"a", "B", 0, 100}, {"b", "P", 0.7, 70}, {"c", "Ö", 0.5, 50}};
    for (std::size_t i = 0; i < 3; ++i) {
      lines[i].start_name = "%2";
      std::tie(lines[i].id, lines[i].end_name, lines[i].horizontal_angle, lines[i].horizontal_distance) = targets[i];
    }
  }

  /// The line "b", then the known points.
  std::string text() const {
    std::ostringstream text;
    NetworkDataInfo const& line = project->getNetwork().lines[1];
    text << line.start_name << '>' << line.end_name << ' ' << line.horizontal_angle << ' ' << line.horizontal_distance;
    for (KnownPoint const& point : project->getNetwork().knownPoints) {
      text << '|' << point.name << point.id << ' ' << point.x << ' ' << point.y << ' ' << point.z;
    }
    return text.str();
  }
};

TEST_F(NetworkData, ARemovalEmptiesTheRowsIfThereWasSuchALine) {
  for (char const* ids : {R"(["c", "x", "c"])", R"(["x"])", "null"}) {
    bool const removed = ids[2] == 'c';
    fill(false);
    expect("RemoveNetworkDataCMD", R"({"data": {"ids": )" + std::string(ids) + "}}");
    EXPECT_EQ(test::idsIn(project->getNetwork().lines), removed ? "ab" : "abc");
    EXPECT_EQ(told(), removed ? "I Network Data [%2] - [Ö] remove successfully\n" : "");
    EXPECT_EQ(project->getTraverseDataList().empty(), removed);
    EXPECT_EQ(project->isModified(), removed);
    EXPECT_EQ(drawn(), removed ? "2/3/1" : "1/2/1");
  }
}

TEST_F(NetworkData, AModificationTakesTheValuesOfTheRightType) {
  std::string const line = "%2>P 0.7 70";
  std::string const known = "|%2k 0 0 9|Bk 0 100 9|%2k 0 0 9";
  std::string const moved = "|%2 5 0 0|Bk 0 100 9|%2 5 0 0";
  std::string const noText = "in Json::Value::asCString(): requires stringValue";
  std::tuple<char const*, std::string, std::string> const cases[] = {
      {R"("StartName": "B", "EndName": "Q", "HorizontalAngle": 1, "HorizontalDistance": 2.5)", "B>Q 1 2.5" + known, ""},
      {R"("StartName": 1, "HorizontalAngle": true, "HorizontalDistance": "3", "horizontalDistance": 3, "StartN": "5")",
       line + known, ""},
      {R"("StartName": "%2", "StartN": 5)", line + moved, ""},
      {R"("EndName": "B", "EndE": 7, "EndN": null)", "%2>B 0.7 70|%2k 0 0 9|B 0 7 0|%2k 0 0 9", ""},
      {R"("StartName": "New", "StartN": 5)", "New>P 0.7 70" + known, ""},
      {R"("StartN": 5, "HorizontalAngle": 1)", "%2>P 1 70" + known, noText},
      {R"("StartName": "%2", "StartN": 5, "EndE": 1)", line + moved, noText},
      {R"("StartName": "%2", "StartN": 5, "StartE": "1")", line + known, "Value is not convertible to double."}};
  for (auto const& [values, left, failure] : cases) {
    fill(true);
    expect("ModifyNetworkDataCMD", R"({"data": {"id": "b", )" + std::string(values) + "}}", failure);
    EXPECT_EQ(text(), left) << values;
    EXPECT_EQ(project->getTraverseDataList().empty(), failure.empty());
    EXPECT_EQ(project->isModified(), failure.empty());
    EXPECT_EQ(drawn() != "2/4/2", failure.empty());
  }
}

}  // namespace
