// The JSON result of a command, the one registry of the process, and the guarded access of commands.
#include <gtest/gtest.h>
#include <json/reader.h>
#include <json/writer.h>
#include <mvz/ViewerManager.h>
#include <utils/QLogicError.h>
#include <osg/ref_ptr>
#include <sstream>
#include <stdexcept>

#include "support/Support.h"

namespace {

using namespace kvn;

/// Ends as its input says: {"do": "good" | "refuse" | "throw" | "number" | "codeN", "result": any}.
class OutcomeCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    result = in["result"];
    std::string const what = in["do"].asString();
    if (what == "throw") throw std::runtime_error("broken");
    if (what == "number") throw 7;
    if (what.rfind("code", 0) == 0) {
      throw cmd::CmdException(static_cast<cmd::CmdErrorCode::Value>(what.back() - '0'));
    }
    return what == "good";
  }
  char const* className() const override { return "OutcomeCMD"; }
};

/// An undoable command that looks at the rows of its project at its very end.
class LingeringCMD : public Command {
 public:
  ~LingeringCMD() override { rowsAtTheEnd = getProjectNothrow()->getTraverseDataList().size(); }
  bool execute(Json::Value const&) override { return true; }
  bool isUndoable() override { return true; }
  static std::size_t rowsAtTheEnd;
};
std::size_t LingeringCMD::rowsAtTheEnd = 0;

CommandRegistration<OutcomeCMD> const outcome("OutcomeCMD");
CommandRegistration<LingeringCMD> const lingering("LingeringCMD");

class Views : public mvz::ViewerManager {
 public:
  void requestRedraw() override { ++redraws; }
  int redraws = 0;

 protected:
  ~Views() override = default;
};

Json::Value outcomeOf(std::string const& what, Json::Value const& result = {}) {
  Json::Value in;
  in["do"] = what;
  in["result"] = result;
  return in;
}

Json::Value failure(int code, std::string const& message) {
  Json::Value value;
  value["code"] = code;
  value["message"] = message;
  return value;
}

Json::Value json(char const* document) {
  Json::Value value;
  std::istringstream(document) >> value;
  return value;
}

TEST(CommandManager, TellsTheOutcomeInJson) {
  struct Case {
    char const* reason;
    char const* name;
    Json::Value in;
    bool ok;
    Json::Value out;
  };
  Json::Value const own = json(R"({"message": "own text"})");
  Json::Value const noText = json(R"({"message": "unknown error"})");
  Json::Value const list = json("[1]");
  Case const cases[] = {
      {"success without a result", "OutcomeCMD", outcomeOf("good"), true, Json::Value()},
      {"success with one", "OutcomeCMD", outcomeOf("good", own), true, own},
      {"success with one that is no object", "OutcomeCMD", outcomeOf("good", list), true, list},
      {"no such command", "NoSuchCMD", {}, false, failure(2, "cat not find Command")},
      {"no name", nullptr, {}, false, failure(2, "cat not find Command")},
      {"engine failure 3", "OutcomeCMD", outcomeOf("code3"), false, failure(3, "noRedo")},
      {"engine failure 4", "OutcomeCMD", outcomeOf("code4"), false, failure(4, "noUndo")},
      {"engine failure without a text", "OutcomeCMD", outcomeOf("code0"), false, failure(0, "")},
      {"any other failure", "OutcomeCMD", outcomeOf("throw"), false, failure(0, "broken")},
      {"what is no exception", "OutcomeCMD", outcomeOf("number"), false, failure(0, "unknown error")},
      {"refusal", "OutcomeCMD", outcomeOf("refuse"), false, noText},
      {"refusal with a text", "OutcomeCMD", outcomeOf("refuse", own), false, own},
      {"refusal with a list", "OutcomeCMD", outcomeOf("refuse", list), false, noText},
  };
  osg::ref_ptr<Views> const views(new Views);
  Project project;
  for (Case const& c : cases) {
    for (Json::Value const& before : {Json::Value(), Json::Value("no object")}) {
      SCOPED_TRACE(c.reason);
      views->redraws = 0;
      Json::Value out = before;
      EXPECT_EQ(project.getCommandManager()->execute(c.name, c.in, out, {}), c.ok);
      EXPECT_EQ(out, c.out);
      EXPECT_EQ(views->redraws, c.ok ? 1 : 0) << "the map follows a success alone";
    }
  }
}

TEST(CommandManager, LeavesAFailureToTheErrorHookOfTheHost) {
  Project project;
  CommandManager& manager = *project.getCommandManager();
  manager.setErrorCallFunc([](auto*) {});
  Json::Value out;
  EXPECT_FALSE(manager.execute("NoSuchCMD", {}, out, {}));
  EXPECT_EQ(out, failure(1, "unknown error"));
  EXPECT_EQ(manager.getErrorCode(), 2U);
}

TEST(CommandManager, HasNothingToUndoAfterCommandsThatAreNotUndoable) {
  Project project;
  CommandManager& manager = *project.getCommandManager();
  Json::Value out;
  ASSERT_TRUE(manager.execute("OutcomeCMD", outcomeOf("good"), out, {}));
  EXPECT_EQ(test::failureOf<cmd::CmdException>([&] { manager.undo(1); }), "noUndo");
  EXPECT_EQ(test::failureOf<cmd::CmdException>([&] { manager.redo(1); }), "noRedo");
}

TEST(CommandManager, ReleasesItsCommandsWhileTheProjectStillHasItsData) {
  Json::Value out;
  {
    Project project;
    project.setTraverseDataList(std::vector<TraverseDataInfo>(3));
    ASSERT_TRUE(project.getCommandManager()->execute("LingeringCMD", {}, out, {}));
    LingeringCMD::rowsAtTheEnd = 0;
  }
  EXPECT_EQ(LingeringCMD::rowsAtTheEnd, 3U);
}

/// What a host sees that uses the engine's template by itself.
class HostEngine : public cmd::CommandMgr<Command> {
 public:
  using CommandMgr::CmdMap;
  using CommandMgr::CommandMgr;
};

TEST(CommandRegistry, IsOneForTheLibraryAndItsHost) {
  test::Host const host;
  EXPECT_EQ(HostEngine::CmdMap().count("AddTraverseDataCMD"), 1U);
  EXPECT_EQ(HostEngine::CmdMap().count("OutcomeCMD"), 1U);
  Project project;
  HostEngine engine(&project);
  Json::Value out;
  Json::Value in;
  in["data"]["Name"] = "A";
  EXPECT_TRUE(engine.execute("AddTraverseDataCMD", in, out, {}));
  EXPECT_EQ(project.getTraverseDataList().size(), 1U);
}

TEST(GuardedAccess, RefusesWithATextWhatIsNotThere) {
  OutcomeCMD command;
  EXPECT_EQ(command.getProjectNothrow(), nullptr);
  EXPECT_EQ(command.getMapSceneNothrow(), nullptr);
  EXPECT_EQ(test::failureOf<QLogicError>([&] { command.getProject(); }), "kvn core error:project is not open");
  EXPECT_EQ(test::failureOf<QLogicError>([&] { command.getSystem(); }), "kvn core error:system is not init");
  EXPECT_EQ(test::failureOf<QLogicError>([&] { command.getMapScene(); }), "kvn core error:MapScene is not exist");
  System system;
  Project project;
  command.setUserdata(&project);
  EXPECT_EQ(command.getProject(), &project);
  EXPECT_EQ(command.getSystem(), &system);
}

}  // namespace
