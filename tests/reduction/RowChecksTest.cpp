// The row checks, the gate after opening, and the words for findings.
#include "support/FieldRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>

namespace {

using namespace test;
using kvn::TraverseDataManage;

std::string flagsOf(Rows const& rows) {
  std::string text;
  for (kvn::TraverseDataInfo const& row : rows) {
    text += row.isNameValid ? "" : "N";
    text += row.isHorizontalAngleValid ? "" : "H";
    text += row.isVerticalAngleValid ? "" : "V";
    text += row.isSlantDistanceValid ? "" : "D";
    text += ".";
  }
  return text;
}

TEST(RowChecks, MarkTheRowsThatCannotBeRight) {
  auto const withAngle = [](double radians, double kvn::TraverseDataInfo::*field) {
    kvn::TraverseDataInfo row = sight("B", 10, 90, 5);
    row.*field = radians;
    return row;
  };
  auto const horizontal = &kvn::TraverseDataInfo::horizontal_angle;
  auto const vertical = &kvn::TraverseDataInfo::vertical_angle;
  auto const slant = &kvn::TraverseDataInfo::slant_distance;
  kvn::TraverseDataInfo noDistance = withAngle(-5, slant);
  noDistance.isSlantDistanceHave = false;
  struct Case {
    char const* what;
    Rows rows;
    char const* flags;
  };
  Case const cases[] = {
      {"two occupations of one point", {station("S"), station("T"), station("S")}, "N..N."},
      {"a station that sights itself", {station("S"), sight("S", 1, 90), sight("T", 2, 90)}, "N.N.."},
      {"the name in another group", {station("S"), station("T"), sight("S", 1, 90)}, "..."},
      {"a target before its station row", {sight("S", 1, 90), station("S")}, ".."},
      {"good faces", {station("S"), sight("A", 10, 90), sight("A", 190, 270)}, "..."},
      {"29 seconds apart", {station("S"), sight("A", 10, 90), sight("A", 190 + 29 / 3600.0, 270)}, "..."},
      {"31 seconds apart", {station("S"), sight("A", 10, 90), sight("A", 190 + 31 / 3600.0, 270)}, ".H.H."},
      {"not on the circle", {station("S"), sight("A", 10, 90), sight("A", 350, 270)}, ".H.H."},
      {"equal faces and one that fits both",
       {station("S"), sight("A", 190, 270), sight("A", 10, 90), sight("A", 190, 270)},
       ".H..H."},
      {"one face in each of two groups", {station("S"), sight("A", 10, 90), station("T"), sight("A", 20, 90)}, "...."},
      {"full circle", {station("S"), withAngle(6.283185307179586, horizontal)}, ".."},
      {"above it", {station("S"), withAngle(6.284, horizontal)}, ".H."},
      {"a little below zero", {station("S"), withAngle(-9e-7, horizontal)}, ".."},
      {"below zero", {station("S"), withAngle(-2e-6, vertical)}, ".V."},
      {"not a number", {station("S"), withAngle(std::nan(""), vertical)}, ".V."},
      {"a distance that is no number", {station("S"), withAngle(std::nan(""), slant)}, ".D."},
      {"negative distance", {station("S"), withAngle(-5, slant)}, ".D."},
      {"negative, but there is none", {station("S"), noDistance}, ".."},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Rows rows = grouped(c.rows);
    bool const isGood = std::string(c.flags).find_first_not_of('.') == std::string::npos;
    EXPECT_EQ(TraverseDataManage::checkData(rows), isGood);
    EXPECT_EQ(flagsOf(rows), c.flags);
  }
}

TEST(RowChecks, AResetLeavesTheNameOfATarget) {
  Rows rows = grouped({station("S"), sight("S", -1, -1, -5)});
  TraverseDataManage::checkData(rows);
  EXPECT_EQ(flagsOf(rows), "N.NHVD.");
  TraverseDataManage::resetVRDDataState(rows);
  EXPECT_EQ(flagsOf(rows), ".N.");
}

TEST(Gate, TellsOnceThatAFileCannotBeRight) {
  struct Case {
    char const* what;
    double horizontal, vertical, slant, lineAngle, lineDistance;
    bool isGood;
  };
  Case const cases[] = {
      {"good", 1, 1, 1, 1, 1, true},
      {"the bound is the number 360", 360, 360, 1, 360, 1, true},
      {"above it", 360.1, 1, 1, 1, 1, false},
      {"vertical below zero", 1, -1e-7, 1, 1, 1, false},
      {"distance below zero, there or not", 1, 1, -1e-7, 1, 1, false},
      {"angle of a line", 1, 1, 1, -1e-7, 1, false},
      {"distance of a line", 1, 1, 1, 1, -1e-7, false},
      {"row and line: one message", -1, 1, 1, -1, 1, false},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Host host;
    auto const project = host.system.createProject();
    kvn::TraverseDataInfo row = station("S");
    row.horizontal_angle = c.horizontal;
    row.vertical_angle = c.vertical;
    row.slant_distance = c.slant;
    row.isSlantDistanceHave = false;
    kvn::NetworkDataInfo line;
    line.horizontal_angle = c.lineAngle;
    line.horizontal_distance = c.lineDistance;
    project->setTraverseDataList({row});
    project->setNetwork({{}, {line}});
    EXPECT_EQ(kvn::CheckData::checkInitData(project.get()), c.isGood);
    ASSERT_EQ(host.messages.size(), c.isGood ? 0U : 1U);
    if (!c.isGood) {
      EXPECT_EQ(host.messages[0], std::make_pair(QString("The data is error"), kvn::Error));
    }
  }
  EXPECT_FALSE(kvn::CheckData::checkInitData(nullptr));
}

TEST(Findings, AreWordedWithTheirNames) {
  std::vector<kvn::ErrorInfo> findings(4);
  findings[0].errorCode = 5;
  findings[0].stationName = "S%2";  // a name is no place for another argument
  findings[0].prismPointList = {"P1", "P2"};
  findings[1].errorCode = 13;
  findings[2].errorCode = -1;
  findings[3].errorCode = 4;
  findings[3].stationName = "T";
  Host host;
  host.system.createProject()->printErrorInfo(findings, true);
  std::vector<std::pair<QString, kvn::MessType>> const expected{
      {"The data is error or inconsistent, please check the data", kvn::Error},
      {"The Station S%2 of Prism Point P1,P2 of 2C value error of horizontal angle exist error", kvn::Warning},
      {"The Station T of Back View are multiple", kvn::Warning}};
  EXPECT_EQ(host.messages, expected);
  EXPECT_TRUE(kvn::Translation(std::vector<kvn::ErrorInfo>()).isEmpty());
}

}  // namespace
