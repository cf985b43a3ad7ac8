// What the commands on rows, lines and points have in common.
#include "commands/DataCommands.h"

namespace {

using namespace kvn;

struct DataCommand : test::DataCommands {
  /// A row, a line and a point of the id "1", and a point without id; nothing is drawn or generates another network.
  void fill() {
    project = system.createProject();
    project->setFileType(Project::CosaFile);
    project->setTraverseDataList({row("1", TraversePointType::StationPoint, 0, 0)});
    project->getNetwork().lines.resize(1);
    project->getNetwork().lines[0].id = "1";
    project->setCoordinatePointList({point("1", "", 0, 0), point("", "", 0, 0)});
  }

  std::string lists() const {
    return test::idsIn(project->getTraverseDataList()) + "/" + test::idsIn(project->getNetwork().lines) + "/" +
           test::idsIn(project->getCoordinatePointList());
  }
};

TEST_F(DataCommand, IdsAreAnArrayOfTexts) {
  std::pair<char const*, char const*> const cases[] = {
      {R"({"data": {"ids": ["1", 1]}})", "in Json::Value::asCString(): requires stringValue"},
      {R"({"data": {"ids": "1"}})", "requires arrayValue"},
      {R"({"data": {"ids": 1}})", "requires arrayValue"},
      {R"({"data": {"ids": {"id": "1"}}})", "requires arrayValue"}};
  for (char const* command : {"RemoveTraverseDataCMD", "RemoveNetworkDataCMD", "RemoveCoordinateDataCMD"}) {
    fill();
    for (auto const& [in, failure] : cases) {
      expect(command, in, failure);
      EXPECT_TRUE(host.messages.empty() && !project->isModified() && project->getMapScene() == nullptr);
    }
    expect(command, R"({"data": {"ids": ["1\u0000"]}})");
    EXPECT_EQ(lists(), "1/1/1") << "an id with a null character is another one";
  }
}

TEST_F(DataCommand, WhatIsNotThereIsNotModified) {
  for (char const* kind : {"Traverse", "Network", "Coordinate"}) {
    fill();
    project->build();
    std::string const text = std::string(kind) == "Coordinate" ? "Can not find the " : "Can not find The ";
    expect(std::string("Modify") + kind + "DataCMD", R"({"data": {"id": "x", "Name": "N", "EndName": "N"}})",
           text + kind + " Point");
    EXPECT_TRUE(!project->isModified() && host.messages.empty() && drawn() == "0/1/2");
    expect(std::string("Modify") + kind + "DataCMD", R"({"data": {"id": [1], "Name": "N"}})", "string");
  }
}

TEST_F(DataCommand, ACancelLeavesTheChangeAndEndsTheCommand) {
  std::tuple<char const*, char const*, bool> const cases[] = {
      {"RemoveTraverseDataCMD", "/1/1", true},    {"ModifyTraverseDataCMD", "1/1/1", true},
      {"RemoveNetworkDataCMD", "//1", true},      {"ModifyNetworkDataCMD", "/1/1", true},
      {"RemoveCoordinateDataCMD", "1/1/", false}, {"ModifyCoordinateDataCMD", "1/1/1", false}};
  for (auto const& [command, left, modified] : cases) {
    fill();
    project->getOrCreateMapScene();
    project->getTraverseDataList()[0].isNameValid = false;
    project->setCancelCall([] { return true; });
    expect(command, R"({"data": {"ids": ["1"], "id": "1", "Name": "N"}})", "User Cancel");
    EXPECT_EQ(lists(), left) << command;
    EXPECT_EQ(project->isModified(), modified);
    EXPECT_EQ(project->getCoordinatePointList()[0].name, left == std::string("1/1/1") && !modified ? "N" : "");
    for (auto const& row : project->getTraverseDataList()) EXPECT_FALSE(row.isNameValid) << "not checked again";
  }
}

TEST_F(DataCommand, ASwitchReplacesTheDataAndLeavesNetworkAndMap) {
  std::string const rows = R"({"data": )" +
                           file("r.txt",
                                "STA,K,0,,1,2,3\nSC,T,0,,10.0000,90.0000,50,0,0,0\n"
                                "SC,T,0,,190.0000,270.0000,50,0,0,0\n") +
                           "}";
  std::string const points = R"({"data": )" + file("p.dat", "P,,2,1,0\nQ,,2,1,0\n") + "}";
  std::string const bad = R"({"data": )" + file("b.dat", "STA,K") + "}";
  std::tuple<char const*, std::string, std::size_t, char const*> const cases[] = {
      {"SwitchTraverseDataCMD", rows, 4, "1/2/1"},
      {"SwitchNetworkDataCMD", rows, 4, "1/2/1"},
      {"SwitchCoordinateDataCMD", points, 4, "1/2/0"}};
  for (auto const& [command, good, records, drawing] : cases) {
    fill();
    expect(command, good, "kvn core error:MapScene is not exist");
    EXPECT_EQ(lists(), "1/1/1");
    drawOneOfEach();
    for (auto const& [in, failure] : {std::pair(bad, "wrong"), {R"({"data": {"file": []}})", "not convertible"}}) {
      recorder->pick(test::featuresOf(*project->getMapScene(), FeatureDataType::CoordData)[0]);
      expect(command, in, failure);
      EXPECT_TRUE(project->getMapScene()->getSelectIDList(FeatureDataType::CoordData).empty());
      EXPECT_TRUE(lists() == "st/1/c" && !project->isModified());
    }
    expect(command, good);
    EXPECT_EQ(project->getTraverseDataList().size() + project->getCoordinatePointList().size(), records);
    EXPECT_TRUE(project->isModified() && host.messages.empty() && project->getNetwork().knownPoints.empty());
    EXPECT_EQ(drawn(), drawing);
  }
}

TEST(DataCommandAlone, NeedsAProjectAndTheRemovalOfLinesAndPointsASystem) {
  Json::Value const in = test::json(R"({"file": "", "data": {"id": "1", "Name": "", "ids": [""]}})");
  Json::Value out;
  CommandManager nobody(nullptr);
  for (char const* name : {"OpenFile", "RemoveTraverseData", "ModifyTraverseData", "SwitchTraverseData",
                           "RemoveNetworkData", "ModifyNetworkData", "SwitchNetworkData", "RemoveCoordinateData",
                           "ModifyCoordinateData", "SwitchCoordinateData"}) {
    EXPECT_FALSE(nobody.execute((name + std::string("CMD")).c_str(), in, out, {}));
    EXPECT_EQ(out["message"], "kvn core error:project is not open") << name;
  }
  Project project;
  project.getCoordinatePointList().resize(1);
  project.getCoordinatePointList()[0].id.clear();
  for (char const* command : {"RemoveNetworkDataCMD", "RemoveCoordinateDataCMD"}) {
    EXPECT_FALSE(project.getCommandManager()->execute(command, in, out, {}));
    EXPECT_EQ(out["message"], "kvn core error:system is not init");
  }
  EXPECT_TRUE(project.isCoordinateData() && !project.isModified());
}

}  // namespace
