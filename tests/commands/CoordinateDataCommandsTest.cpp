// Removing and modifying points of the coordinate list.
#include <sstream>

#include "commands/DataCommands.h"

namespace {

using namespace kvn;

struct CoordinateData : test::DataCommands {
  CoordinateData() { fill(); }

  /// A line of rows and a point on the map, and three points of two names in the list.
  void fill() {
    project = system.createProject();
    drawOneOfEach();
    project->setCoordinatePointList({point("a", "A", 1, 2), point("b", "B", 3, 4), point("c", "B", 5, 6)});
  }

  std::string text() const {
    std::ostringstream text;
    for (CoordinatePointInfo const& point : project->getCoordinatePointList()) {
      text << point.id << ' ' << point.name << '/' << point.signal << ' ' << point.N << ' ' << point.E << ' ' << point.Z
           << '|';
    }
    return text.str();
  }
};

TEST_F(CoordinateData, ARemovalDrawsTheLayerAgainAndFramesIt) {
  for (bool const found : {true, false}) {
    fill();
    expect("RemoveCoordinateDataCMD", found ? R"({"data": {"ids": ["c", "a"]}})" : R"({"data": {"ids": ["x", " a"]}})");
    EXPECT_EQ(test::idsIn(project->getCoordinatePointList()), found ? "b" : "abc");
    EXPECT_TRUE(project->isModified() && host.messages.empty());
    EXPECT_EQ(drawn(), found ? "1/2/1" : "1/2/3") << "the other layers stay as they are";
    EXPECT_THAT(recorder->framed, testing::ElementsAre("CoordData;"));
  }
}

TEST_F(CoordinateData, ARemovalTakesTheFirstPointOfEachId) {
  std::vector<CoordinatePointInfo> points;
  for (char const* id : {"a", "ü", "b", "a", "ü", "a"})
    points.push_back(point(id, std::to_string(points.size()), 0, 0));
  project->setCoordinatePointList(points);
  expect("RemoveCoordinateDataCMD", R"({"data": {"ids": ["ü", "a", "x", "a"]}})");
  EXPECT_EQ(project->getCoordinatePointList(),
            (std::vector<CoordinatePointInfo>{points[2], points[3], points[4], points[5]}));
}

TEST_F(CoordinateData, AModificationTakesTheValuesOfTheRightType) {
  std::string const text = "in Json::Value::asCString(): requires stringValue";
  std::string const none = "Can not find the Coordinate Point";
  std::tuple<char const*, char const*, std::string> const cases[] = {
      {R"("id": "a", "Name": "N", "Signal": "s", "N": 7, "E": -8.5, "Z": 3000000000)", "a N/s 7 -8.5 3e+09", ""},
      {R"("id": "a", "Name": " A\t", "Signal": 5, "Mark": "m", "N": "7", "E": true, "Z": null)", "a  A\t/ 1 2 0", ""},
      {R"("id": "a", "Name": " B ", "N": 7)", nullptr, "The point name [ B ] same, please reset it"},
      {R"("id": "c", "Name": "B", "N": 7)", nullptr, "The point name [B] same, please reset it"},
      {R"("id": " ", "Name": "N")", nullptr, none},
      {R"("id": "a ", "Name": "N")", nullptr, none},
      {R"("id": "a", "N": 7)", nullptr, text},
      {R"("id": 1, "Name": "N")", nullptr, text}};
  for (auto const& [values, first, failure] : cases) {
    fill();
    expect("ModifyCoordinateDataCMD", R"({"data": {)" + std::string(values) + "}}", failure);
    EXPECT_EQ(this->text(), std::string(first == nullptr ? "a A/ 1 2 0" : first) + "|b B/ 3 4 0|c B/ 5 6 0|") << values;
    EXPECT_EQ(project->isModified(), failure.empty());
    EXPECT_EQ(drawn(), failure.empty() ? "1/2/3" : "1/2/1");
    EXPECT_EQ(recorder->framed.size(), failure.empty() ? 1U : 0U);
  }
}

TEST_F(CoordinateData, TextsAreStoredInTheLocalEncoding) {
  test::LocalEncoding const gbk("GBK");
  expect("ModifyCoordinateDataCMD", R"({"data": {"id": "a", "Name": "点", "Signal": "点"}})");
  EXPECT_EQ(project->getCoordinatePointList()[0].name + project->getCoordinatePointList()[0].signal,
            "\xB5\xE3\xB5\xE3");
  project->getCoordinatePointList()[1].id = "\xB5\xE3";
  expect("RemoveCoordinateDataCMD", R"({"data": {"ids": ["点"]}})");
  EXPECT_EQ(test::idsIn(project->getCoordinatePointList()), "ac");
}

}  // namespace
