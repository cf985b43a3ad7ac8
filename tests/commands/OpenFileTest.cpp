// Opening a file by command: what it loads, what it refuses, and what it tells.
#include <QDir>

#include "commands/DataCommands.h"

namespace {

using namespace kvn;

struct OpenFile : test::DataCommands {};

constexpr char const* kCommand = "OpenFileCMD";
constexpr char const* kRows =
    "STA,K,0,,1,2,3\n"
    "STA,A,1.5,,0,0,0\nSC,T,1.5,,10.0000,90.0000,50,0,0,0\nSC,T,1.5,,190.0000,270.0000,50,0,0,0\n";

TEST_F(OpenFile, LoadsGeneratesDrawsAndFrames) {
  project->setCoordinatePointList({point("c", "C", 1, 2)});
  QDir(folder.path()).mkdir("v1.2");
  expect(kCommand, file("v1.2/Ü.txt", kRows));
  EXPECT_EQ(project->getProjectFile(), folder.filePath("v1.2/Ü.txt"));
  EXPECT_EQ(project->getNetwork().lines.size(), 1U);
  EXPECT_EQ(drawn(), "2/4/1");
  EXPECT_THAT(recorder->framed, testing::ElementsAre("NetworkData;", "CoordData;", "NetworkData;"));
}

TEST_F(OpenFile, RefusesWhatItCannotLoad) {
  std::string const noText = "in Json::Value::asCString(): requires stringValue";
  std::pair<std::string, std::string> const cases[] = {
      {file("a.b.txt", kRows), "Project name cannot contant \".\""},
      {file("line.txt", "STA,A1,1.5,,1,2"), "The line 1 is wrong"},  // DataException
      {file("height.txt", "STA,A1,x,,1,2,3"), "The data is error"},  // std::invalid_argument
      {file("empty.txt", ""), "The data is error"},                  // QLogicError
      {R"({"data": {"file": "x.txt"}})", noText},
      {R"({"file": 5})", noText}};
  for (auto const& [in, failure] : cases) {
    expect(kCommand, in, failure);
    EXPECT_TRUE(project->isEmpty() && project->getProjectFile().isEmpty() && host.messages.empty());
  }
}

TEST_F(OpenFile, GivesAProjectWithoutAFileItsName) {
  expect(kCommand, R"({"file": ""})");
  EXPECT_EQ(project->getProjectFile(), ".kvn");
  expect(kCommand, R"({"file": "no/such.xyz"})");
  EXPECT_EQ(project->getProjectFile(), "no/such.xyz");
  EXPECT_TRUE(project->isEmpty());
}

TEST_F(OpenFile, TellsOfDataThatCannotBeRightAndShowsItAllTheSame) {
  expect(kCommand, file("minus.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,-70.71\n"));
  EXPECT_EQ(told(), "E The data is error\nE Data error,generate map data failed\n");

  struct OwnReader : Project {  // a host may load rows that make no network
    void importVRDFile(QString const& /*path*/) override { setTraverseDataList(std::vector<TraverseDataInfo>(2)); }
  };
  project = std::make_shared<OwnReader>();
  expect(kCommand, R"({"file": "own.txt"})");
  EXPECT_EQ(told(), "E The line 1 error\n");
  EXPECT_EQ(drawn(), "0/2/0");
}

}  // namespace
