// The JSON result of a command, the one registry of the process, and the guarded access of commands.
#include <gtest/gtest.h>
#include <mvz/ViewerManager.h>
#include <utils/QLogicError.h>
#include <new>
#include <osg/ref_ptr>
#include <stdexcept>

#include "support/Support.h"

namespace {

using namespace kvn;
using test::json;

std::size_t rowsAtTheEnd = 0;

/// Ends as its input says: {"do": "good" | "refuse" | "throw" | "number" | "allocate" | "noRedo" | "undoable",
/// "result": any}.
struct OutcomeCMD : Command {
  ~OutcomeCMD() override {
    if (getProjectNothrow() != nullptr) rowsAtTheEnd = getProjectNothrow()->getTraverseDataList().size();
  }
  bool execute(Json::Value const& in) override {
    result = in["result"];
    what = in["do"].asString();
    if (what == "throw") throw std::runtime_error("broken");
    if (what == "number") throw 7;
    if (what == "allocate") throw std::bad_alloc();
    if (what == "noRedo") throw cmd::CmdException(cmd::CmdErrorCode::noRedo);
    return what != "refuse";
  }
  bool isUndoable() override { return what == "undoable"; }
  char const* className() const override { return "OutcomeCMD"; }
  std::string what;
};
CommandRegistration<OutcomeCMD> const outcome("OutcomeCMD");

struct Views : mvz::ViewerManager {
  void requestRedraw() override { ++redraws; }
  int redraws = 0;
};

TEST(CommandManager, TellsTheOutcomeInJson) {
  std::tuple<char const*, char const*, bool, char const*> const cases[] = {
      {"OutcomeCMD", R"({"do": "good"})", true, "null"},
      {"OutcomeCMD", R"({"do": "good", "result": [1]})", true, "[1]"},
      {"NoSuchCMD", "{}", false, R"({"code": 2, "message": "cat not find Command"})"},
      {"OutcomeCMD", R"({"do": "noRedo"})", false, R"({"code": 3, "message": "noRedo"})"},
      {"OutcomeCMD", R"({"do": "throw"})", false, R"({"code": 0, "message": "broken"})"},
      {"OutcomeCMD", R"({"do": "number"})", false, R"({"code": 0, "message": "unknown error"})"},
      {"OutcomeCMD", R"({"do": "allocate"})", false, R"({"code": 0, "message": "not enough memory"})"},
      {"OutcomeCMD", R"({"do": "refuse"})", false, R"({"message": "unknown error"})"},
      {"OutcomeCMD", R"({"do": "refuse", "result": {"message": "own"}})", false, R"({"message": "own"})"},
      {"OutcomeCMD", R"({"do": "refuse", "result": [1]})", false, R"({"message": "unknown error"})"}};
  osg::ref_ptr<Views> const views(new Views);
  Project project;
  for (auto const& [name, in, ok, result] : cases) {
    for (Json::Value out : {Json::Value(), Json::Value("no object")}) {
      views->redraws = 0;
      EXPECT_EQ(project.getCommandManager()->execute(name, json(in), out, {}), ok) << in;
      EXPECT_EQ(out, json(result)) << in;
      EXPECT_EQ(views->redraws, ok ? 1 : 0) << "the map follows a success alone";
    }
  }
  Json::Value out;
  project.getCommandManager()->setErrorCallFunc([](auto*) {});
  EXPECT_FALSE(project.getCommandManager()->execute("NoSuchCMD", {}, out, {}));
  EXPECT_EQ(out, json(R"({"code": 1, "message": "unknown error"})")) << "a failure is left to the host's hook";
}

TEST(CommandManager, ReleasesItsCommandsWhileTheProjectStillHasItsData) {
  Json::Value out;
  {
    Project project;
    project.setTraverseDataList(std::vector<TraverseDataInfo>(3));
    ASSERT_TRUE(project.getCommandManager()->execute("OutcomeCMD", json(R"({"do": "undoable"})"), out, {}));
    rowsAtTheEnd = 0;
  }
  EXPECT_EQ(rowsAtTheEnd, 3U);
}

TEST(CommandRegistry, IsOneForTheLibraryAndItsHost) {
  Json::Value out;  // the host that uses the engine's template by itself finds the commands of the library
  cmd::CommandMgr<Command> engine(nullptr);
  EXPECT_EQ(test::failureOf<QLogicError>([&] { engine.execute("AddTraverseDataCMD", {}, out, {}); }),
            "kvn core error:project is not open");
  EXPECT_EQ(test::failureOf<QLogicError>([] { OutcomeCMD().getMapScene(); }), "kvn core error:MapScene is not exist");
}

}  // namespace
