// The three commands that insert a record: what they read, where they put it, and what they refuse.
#include <gmock/gmock.h>
#include <sstream>

#include "support/Support.h"

namespace {

using namespace kvn;

char const* const kRow = "AddTraverseDataCMD";
char const* const kLine = "AddNetworkDataCMD";
char const* const kPoint = "AddCoordinateDataCMD";

std::string contents(Project const& project) {
  std::ostringstream text;
  for (auto const& row : project.getTraverseDataList()) {
    text << row.name << (row.isKnown ? " known " : " ") << row.N << ' ' << row.E << ' ' << row.Z << '|';
  }
  for (auto const& line : project.getNetwork().lines) {
    text << line.start_name << '>' << line.end_name << line.horizontal_angle << ' ' << line.horizontal_distance << '|';
  }
  for (auto const& point : project.getCoordinatePointList()) {
    text << point.name << '/' << point.signal << ' ' << point.N << ' ' << point.E << ' ' << point.Z << '|';
  }
  return text.str();
}

/// Runs a command on a project of one measured row, two lines and a point.
bool run(Project& project, char const* command, char const* data, Json::Value& out) {
  project.setTraverseDataList(std::vector<TraverseDataInfo>(1));
  project.getNetwork().lines.resize(2);
  project.getCoordinatePointList().resize(1);
  auto const in = test::json(std::string(R"({"index": 77, "data": )") + data + "}");
  return project.getCommandManager()->execute(command, in, out, {});
}

TEST(AddData, InsertsWhatItReads) {
  std::tuple<char const*, char const*, char const*, char const*> const cases[] = {
      {kRow, R"({"index": 0, "Name": "Ü", "N": 1.5, "E": -2, "Z": 3})", "Ü known 1.5 -2 3| 0 0 0|>0 0|>0 0|/ 0 0 0|",
       "Know Point [Ü] insert successfully"},
      {kRow, R"({"index": 1, "Name": 12, "N": null, "e": 4})", " 0 0 0|12 known 0 0 0|>0 0|>0 0|/ 0 0 0|",
       "Know Point [12] insert successfully"},
      {kLine, R"({"index": 1, "StartName": "S", "EndName": "E", "HorizontalAngle": 0.5, "horizontalDistance": 12})",
       ">0 0|S>E0.5 12|>0 0|/ 0 0 0|", "Know Point [S] insert successfully"},
      {kPoint, R"({"Index": 1, "index": 0, "Name": "P", "Mark": "m", "N": 1, "E": 2, "Z": 3.5})",
       " 0 0 0|>0 0|>0 0|/ 0 0 0|P/m 1 2 3.5|", "Coordinate Point [P] insert successfully"}};
  for (auto const& [command, data, expected, message] : cases) {
    test::Host const host;
    Project project;
    Json::Value out;
    EXPECT_TRUE(run(project, command, data, out)) << data;
    EXPECT_EQ(contents(project), expected);
    EXPECT_THAT(host.messages, testing::ElementsAre(std::make_pair(QString(message), Info)));
    EXPECT_TRUE(project.isModified() && project.getCommandManager()->getUndoQueue().empty());
  }
}

TEST(AddData, RefusesWhatItCannotRead) {
  std::tuple<char const*, char const*, char const*> const cases[] = {
      {kRow, R"({"index": 2})", "The index 2 is not in the range 0 to 1"},
      {kRow, R"({"index": -1})", "The index -1 is not in the range 0 to 1"},
      {kRow, R"({"index": "0"})", "Value is not convertible to Int."},
      {kRow, R"({"N": "1.5"})", "Value is not convertible to double."},
      {kLine, R"({"index": 3})", "The index 3 is not in the range 0 to 2"},
      {kPoint, R"({"Index": 2, "Name": "P", "Mark": "m"})", "The index 2 is not in the range 0 to 1"},
      {kPoint, R"({"Name": 5, "Mark": "m"})", "in Json::Value::asCString(): requires stringValue"}};
  test::Host const host;
  for (auto const& [command, data, says] : cases) {
    Project project;
    Json::Value out;
    EXPECT_FALSE(run(project, command, data, out)) << data;
    EXPECT_EQ(out["code"], 0);
    EXPECT_THAT(out["message"].asString(), testing::HasSubstr(says));
    EXPECT_EQ(contents(project), " 0 0 0|>0 0|>0 0|/ 0 0 0|");
    EXPECT_TRUE(host.messages.empty() && !project.isModified());
  }
}

TEST(AddData, NeedsASystem) {
  Project project;
  Json::Value out;
  EXPECT_FALSE(run(project, kRow, "{}", out));
  EXPECT_EQ(out["message"], "kvn core error:system is not init");
  EXPECT_EQ(project.getTraverseDataList().size(), 2U) << "the record is in before the message goes out";
}

}  // namespace
