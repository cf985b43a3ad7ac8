// The command engine with commands and a user object of the test's own: it knows nothing of surveying.
#include <gmock/gmock.h>
#include <functional>
#include <stdexcept>
#include <utility>

#include "commands/cmd/CommandMgr.h"

namespace {

using testing::ElementsAre;

/// What the commands work on: they note what was done, and refuse to undo or redo the word it is stubborn about.
struct Desk {
  std::string notes;  ///< each ends in |
  std::string stubborn;
  std::function<void()> callBack;  ///< called once by the next undo or redo
};
using Interface = cmd::ICommand<std::string, Desk>;
using Engine = cmd::CommandMgr<Interface>;
int livingCommands = 0;

/// Does what its input says: "refuse" returns false, "number" and the like fail, anything else succeeds.
template <bool Undoable>
struct Step : Interface {
  Step() { ++livingCommands; }
  ~Step() override { --livingCommands; }
  bool execute(std::string const& in) override {
    word = in;
    obey(isCancel() ? "cancel" : "do");
    if (in == "number") throw 7;
    if (in == "noRedo") throw cmd::CmdException(cmd::CmdErrorCode::noRedo);
    return in != "refuse";
  }
  void undo() override { obey("undo"); }
  void redo() override { obey("redo"); }
  bool isUndoable() override { return Undoable; }
  char const* className() const override { return "Step"; }
  void getResult(std::string& out) override { out = "result of " + word; }
  void obey(char const* action) {
    if (getUserdata()->stubborn == word) throw std::runtime_error("stubborn");
    getUserdata()->notes += std::string(action) + " " + word + "|";
    if (*action != 'd' && getUserdata()->callBack) std::exchange(getUserdata()->callBack, nullptr)();
  }
  static Interface* Create() { return new Step; }
  std::string word;
};

struct CommandEngine : testing::Test {
  CommandEngine() {
    Engine::Register("Step", {&Step<true>::Create, &Interface::DeleteClass});
    Engine::Register("Plain", {&Step<false>::Create, &Interface::DeleteClass});
  }
  ~CommandEngine() override {
    EXPECT_EQ(std::size_t(livingCommands), lengths()[0] + lengths()[1]) << "others were released";
    engine.reset();
    EXPECT_EQ(livingCommands, 0) << "and so are those of the queue and the stack";
  }
  bool run(char const* name, std::string const& in) { return engine->execute(name, in, out, {}); }
  void runSteps(std::vector<char const*> const& words) {
    for (char const* word : words) ASSERT_TRUE(run("Step", word));
    desk.notes.clear();
  }
  /// Lengths of the undo queue and the redo stack.
  std::vector<std::size_t> lengths() const { return {engine->getUndoQueue().size(), engine->getRedoQueue().size()}; }
  Desk desk;
  std::unique_ptr<Engine> engine = std::make_unique<Engine>(&desk);
  std::string out;
};

TEST_F(CommandEngine, WalksBackAndForth) {
  EXPECT_THROW(engine->undo(0), cmd::CmdException);
  EXPECT_EQ(engine->getErrorMessage(), "noUndo");
  EXPECT_THROW(engine->redo(1), cmd::CmdException);
  EXPECT_EQ(engine->getErrorCode(), 3U);
  runSteps({"a", "b", "c"});
  engine->undo(2);
  engine->redo(1);
  EXPECT_EQ(desk.notes, "undo c|undo b|redo b|");
  ASSERT_TRUE(run("Plain", "p"));
  ASSERT_FALSE(run("Step", "refuse"));
  EXPECT_THAT(lengths(), ElementsAre(2, 1)) << "what cannot be undone leaves the redo stack alone";
  ASSERT_TRUE(run("Step", "d"));
  EXPECT_THAT(lengths(), ElementsAre(3, 0)) << "new work makes the undone work void";
  engine->undo(9);
  engine->setErrorCallFunc([](Engine* teller) { teller->redo(1); });  // a hook may call back
  engine->undo(1);
  EXPECT_EQ(engine->getErrorCode(), 4U);
  EXPECT_THAT(lengths(), ElementsAre(1, 2));
}

TEST_F(CommandEngine, LetsTheOldestGoOneAtATime) {
  engine->setMaxQueueLen(2);
  runSteps({"a", "b", "c"});
  engine->setMaxQueueLen(1);
  runSteps({"d"});
  engine->undo(9);
  EXPECT_EQ(desk.notes, "undo d|undo c|") << "one in, one out";
  engine->redo(2);
  EXPECT_THAT(lengths(), ElementsAre(2, 0)) << "redo does not shorten the queue";
}

TEST_F(CommandEngine, KeepsAStubbornCommandWhereItIs) {
  runSteps({"a", "b", "c"});
  desk.stubborn = "b";
  EXPECT_THROW(engine->undo(3), std::runtime_error);
  EXPECT_THAT(lengths(), ElementsAre(2, 1)) << "c stays moved, b did not move";
  desk.stubborn = "c";
  EXPECT_THROW(engine->redo(3), std::runtime_error);
  EXPECT_THAT(lengths(), ElementsAre(2, 1));
}

TEST_F(CommandEngine, LetsACommandCallBackWhileItIsUndoneOrRedone) {
  // The sanitizers see a command that is deleted twice, or while it runs.
  runSteps({"a"});
  desk.callBack = [this] { run("Step", "inner"); };
  engine->undo(1);
  EXPECT_THAT(lengths(), ElementsAre(1, 1)) << "inner is done, a undone";
  desk.callBack = [this] { run("Step", "second"); };
  engine->redo(1);
  EXPECT_THAT(lengths(), ElementsAre(3, 0));
}

TEST_F(CommandEngine, TellsTheFailureOfACommandAndNotThatOfItsUndo) {
  desk.callBack = [] { throw std::logic_error("undo"); };
  EXPECT_THROW(run("Step", "number"), int);
}

TEST_F(CommandEngine, NotesAFailureAndPassesItOnWhenNoHookTakesIt) {
  std::tuple<char const*, char const*, unsigned, char const*, char const*> const cases[] = {
      {"Unknown", "a", 2, "noCommand", ""},
      {"Plain", "noRedo", 3, "noRedo", "do noRedo|"},
      {"Step", "number", 0, "noRedo", "do number|undo number|"}};  // nothing to tell: the earlier text stays
  for (auto const& [name, in, code, message, notes] : cases) {
    desk.notes.clear();
    engine->setErrorCallFunc({});
    EXPECT_ANY_THROW(run(name, in));
    EXPECT_EQ(desk.notes, notes);
    engine->setErrorCallFunc([this](Engine* teller) { out = teller == engine.get() ? "told" : "told by another"; });
    EXPECT_TRUE(!run(name, in) && out == "told");
    EXPECT_FALSE(run("Plain", "refuse"));
    EXPECT_EQ(engine->getErrorMessage(), message) << "only a failure changes the error state";
    EXPECT_EQ(engine->getErrorCode(), code) << in;
  }
}

TEST_F(CommandEngine, CallsItsHooksAroundACommandAndLendsItTheCancelFunction) {
  engine->setExecuteBeforeCall([this](std::string const& in) { desk.notes += "before " + in + "|"; });
  engine->setExecuteAfterCall([this](std::string const& result) { desk.notes += "after " + result + "|"; });
  EXPECT_TRUE(engine->execute("Step", "a", out, [] { return true; }));
  EXPECT_FALSE(engine->getUndoQueue().front()->isCancel()) << "what it holds may be gone after the call";
  EXPECT_FALSE(run("Plain", "refuse"));
  EXPECT_EQ(out, "result of refuse") << "a refusal hands its result over too";
  EXPECT_THROW(run("Unknown", "b"), cmd::CmdException);
  EXPECT_EQ(desk.notes, "before a|cancel a|after result of a|before refuse|do refuse|before b|");
  engine->setExecuteAfterCall([](std::string const&) { throw std::runtime_error("after"); });
  EXPECT_THROW(run("Step", "kept"), std::runtime_error);
  EXPECT_THAT(lengths(), ElementsAre(2, 0)) << "the command itself had succeeded";
}

TEST_F(CommandEngine, KeepsTheEntryRegisteredLast) {
  EXPECT_FALSE(Engine::Register(nullptr, {&Step<true>::Create, &Interface::DeleteClass}));
  EXPECT_FALSE(Engine::Register("Plain", {nullptr, &Interface::DeleteClass}));
  EXPECT_FALSE(Engine::Register("Plain", {&Step<true>::Create, nullptr}));
  EXPECT_TRUE(Engine::Register("Plain", {&Step<true>::Create, &Interface::DeleteClass}));
  EXPECT_TRUE(run("Plain", "b"));
  EXPECT_THAT(lengths(), ElementsAre(1, 0));
}

}  // namespace
