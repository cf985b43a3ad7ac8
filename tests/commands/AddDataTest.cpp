// The three commands that insert a record: what they read, where they put it, and what they refuse.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/reader.h>
#include <json/writer.h>
#include <sstream>

#include "support/Support.h"

namespace {

using namespace kvn;
using testing::ElementsAre;
using testing::HasSubstr;

std::string numbers(std::vector<double> const& values) {
  std::ostringstream out;
  for (double const value : values) out << ' ' << value;
  return out.str();
}

/// The project's lists as text, one record a line.
std::string contents(Project const& project) {
  std::string text;
  for (auto const& row : project.getTraverseDataList()) {
    text += "row " + row.name + " " + row.pointType.toString() + (row.isKnown ? " known" : " measured") +
            numbers({row.N, row.E, row.Z}) + "\n";
  }
  for (auto const& line : project.getNetwork().lines) {
    text += "line " + line.start_name + ">" + line.end_name +
            numbers({line.horizontal_angle, line.horizontal_distance}) + "\n";
  }
  for (auto const& point : project.getCoordinatePointList()) {
    text += "point " + point.name + "/" + point.signal + numbers({point.N, point.E, point.Z}) + "\n";
  }
  return text;
}

/// A measured row, two lines and two points.
void fill(Project& project) {
  project.setTraverseDataList(std::vector<TraverseDataInfo>(1));
  project.getTraverseDataList()[0].name = "T";
  project.getNetwork().lines.resize(2);
  project.getNetwork().lines[0].start_name = "L1";
  project.getNetwork().lines[1].start_name = "L2";
  project.getCoordinatePointList().resize(2);
  project.getCoordinatePointList()[0].name = "C1";
  project.getCoordinatePointList()[1].name = "C2";
}
std::string const kRow = "row T PrismPoint measured 0 0 0\n";
std::string const kLines = "line L1> 0 0\nline L2> 0 0\n";
std::string const kPoints = "point C1/ 0 0 0\npoint C2/ 0 0 0\n";

bool run(Project& project, char const* command, std::string const& data, Json::Value& out) {
  Json::Value in;
  std::istringstream(R"({"index": 77, "data": )" + data + "}") >> in;
  return project.getCommandManager()->execute(command, in, out, {});
}

TEST(AddData, InsertsWhatItReads) {
  struct Case {
    char const* reason;
    char const* command;
    char const* data;
    std::string contents;
    char const* message;
  };
  char const* const row = "AddTraverseDataCMD";
  char const* const line = "AddNetworkDataCMD";
  char const* const point = "AddCoordinateDataCMD";
  Case const cases[] = {
      {"row at the beginning", row, R"({"index": 0, "Name": "Ü", "N": 1.5, "E": -2, "Z": 3})",
       "row Ü StationPoint known 1.5 -2 3\n" + kRow + kLines + kPoints, "Know Point [Ü] insert successfully"},
      {"row at the end, numbers absent or null", row, R"({"index": 1, "Name": "A", "N": null})",
       kRow + "row A StationPoint known 0 0 0\n" + kLines + kPoints, "Know Point [A] insert successfully"},
      {"row without anything", row, "{}", "row  StationPoint known 0 0 0\n" + kRow + kLines + kPoints,
       "Know Point [] insert successfully"},
      {"row with a number as its name", row, R"({"Name": 12, "Index": 1, "n": 4})",
       "row 12 StationPoint known 0 0 0\n" + kRow + kLines + kPoints, "Know Point [12] insert successfully"},
      {"line in the middle empties the rows", line,
       R"({"index": 1, "StartName": "S", "EndName": "E", "HorizontalAngle": 0.5, "horizontalDistance": 12})",
       "line L1> 0 0\nline S>E 0.5 12\nline L2> 0 0\n" + kPoints, "Know Point [S] insert successfully"},
      {"line at the end; the distance has a small h", line, R"({"index": 2, "EndName": "E", "HorizontalDistance": 12})",
       kLines + "line >E 0 0\n" + kPoints, "Know Point [] insert successfully"},
      {"point at the end", point, R"({"Index": 2, "Name": "P", "Mark": "m", "N": 1, "E": 2, "Z": 3.5})",
       kRow + kLines + kPoints + "point P/m 1 2 3.5\n", "Coordinate Point [P] insert successfully"},
      {"point of a name that is there; its index has a capital", point, R"({"index": 2, "Name": "C2", "Mark": ""})",
       kRow + kLines + "point C2/ 0 0 0\n" + kPoints, "Coordinate Point [C2] insert successfully"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.reason);
    test::Host const host;
    Project project;
    fill(project);
    Json::Value out;
    EXPECT_TRUE(run(project, c.command, c.data, out)) << out;
    EXPECT_TRUE(out.isNull());
    EXPECT_EQ(contents(project), c.contents);
    EXPECT_THAT(host.messages, ElementsAre(std::make_pair(QString(c.message), Info)));
    EXPECT_TRUE(project.isModified());
    EXPECT_TRUE(project.getCommandManager()->getUndoQueue().empty());
  }
}

TEST(AddData, RefusesWhatItCannotRead) {
  struct Case {
    char const* command;
    char const* data;
    std::vector<char const*> says;
  };
  char const* const row = "AddTraverseDataCMD";
  char const* const line = "AddNetworkDataCMD";
  char const* const point = "AddCoordinateDataCMD";
  char const* const noText = "in Json::Value::asCString(): requires stringValue";
  Case const cases[] = {
      {row, R"({"index": 2})", {"index 2", "0 to 1"}},
      {row, R"({"index": -1})", {"index -1", "0 to 1"}},
      {row, R"({"index": "0"})", {"Value is not convertible to Int."}},
      {row, R"({"index": 1e10})", {"double out of Int range"}},
      {row, R"({"Name": []})", {"Type is not convertible to string"}},
      {row, R"({"N": "1.5"})", {"Value is not convertible to double."}},
      {row, "[1]", {"requires objectValue"}},
      {line, R"({"index": 3})", {"index 3", "0 to 2"}},
      {line, R"({"index": -2147483648})", {"index -2147483648", "0 to 2"}},
      {line, R"({"EndName": {}})", {"Type is not convertible to string"}},
      {line, R"({"HorizontalAngle": "1"})", {"Value is not convertible to double."}},
      {point, R"({"Index": 3, "Name": "P", "Mark": "m"})", {"index 3", "0 to 2"}},
      {point, R"({"Name": "P"})", {noText}},
      {point, R"({"Mark": "m"})", {noText}},
      {point, R"({"Name": 5, "Mark": "m"})", {noText}},
      {point, R"({"Name": "P", "Mark": "m", "E": "x"})", {"Value is not convertible to double."}},
  };
  test::Host const host;
  Project project;
  fill(project);
  std::string const before = contents(project);
  for (Case const& c : cases) {
    SCOPED_TRACE(std::string(c.command) + " " + c.data);
    Json::Value out;
    EXPECT_FALSE(run(project, c.command, c.data, out));
    EXPECT_EQ(out["code"], 0);
    for (char const* part : c.says) EXPECT_THAT(out["message"].asString(), HasSubstr(part));
    EXPECT_EQ(contents(project), before);
  }
  EXPECT_TRUE(host.messages.empty());
  EXPECT_FALSE(project.isModified());
}

TEST(AddData, NeedsAProjectAndASystem) {
  for (char const* command : {"AddTraverseDataCMD", "AddNetworkDataCMD", "AddCoordinateDataCMD"}) {
    SCOPED_TRACE(command);
    Json::Value in;
    in["data"]["Name"] = "P";
    in["data"]["Mark"] = "m";
    Json::Value out;
    CommandManager nobody(nullptr);
    EXPECT_FALSE(nobody.execute(command, in, out, {}));
    EXPECT_EQ(out["message"], "kvn core error:project is not open");

    Project project;
    EXPECT_FALSE(project.getCommandManager()->execute(command, in, out, {}));
    EXPECT_EQ(out["message"], "kvn core error:system is not init");
    EXPECT_FALSE(project.isEmpty()) << "the record is in before the message goes out";
  }
}

}  // namespace
