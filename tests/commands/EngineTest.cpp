// The command engine with commands and a user object of the test's own: it knows nothing of surveying.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands/cmd/CommandMgr.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What the commands work on: they note what was done, and refuse to undo or redo the word it is stubborn about.
struct Desk {
  std::vector<std::string> notes;
  std::string stubborn;
  bool cancelSeen = false;
};

using Interface = cmd::ICommand<std::string, Desk>;
using Engine = cmd::CommandMgr<Interface>;

int livingCommands = 0;
int deletedByRegistry = 0;

/// Does what its input says: "refuse" returns false, "throw", "number" and "noRedo" throw, anything else succeeds.
template <bool Undoable>
class Step : public Interface {
 public:
  Step() { ++livingCommands; }
  ~Step() override { --livingCommands; }

  bool execute(std::string const& in) override {
    word = in;
    note("do");
    getUserdata()->cancelSeen = isCancel();
    if (in == "throw") throw std::runtime_error("broken");
    if (in == "number") throw 7;
    if (in == "noRedo") throw cmd::CmdException(cmd::CmdErrorCode::noRedo);
    return in != "refuse";
  }
  void undo() override { obey("undo"); }
  void redo() override { obey("redo"); }
  bool isUndoable() override { return Undoable; }
  char const* className() const override { return "Step"; }
  void getResult(std::string& out) override {
    if (word == "noResult") throw std::runtime_error("no result");
    out = "result of " + word;
  }

  static Interface* Create() { return new Step; }

 private:
  void note(char const* action) { getUserdata()->notes.push_back(std::string(action) + " " + word); }
  void obey(char const* action) {
    if (getUserdata()->stubborn == word) throw std::runtime_error("stubborn");
    note(action);
  }
  std::string word;
};

void deleteCounted(Interface* command) {
  ++deletedByRegistry;
  Interface::DeleteClass(command);
}

class CommandEngine : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_TRUE(Engine::Register("Step", {&Step<true>::Create, &deleteCounted}));
    ASSERT_TRUE(Engine::Register("Plain", {&Step<false>::Create, &deleteCounted}));
    ASSERT_TRUE(Engine::Register("Nothing", {[]() -> Interface* { return nullptr; }, &deleteCounted}));
  }
  void TearDown() override {
    engine.reset();  // its queue and its stack may still hold commands
    EXPECT_EQ(livingCommands, 0) << "every command was released";
  }

  bool run(char const* name, std::string const& in) { return engine->execute(name, in, out, {}); }
  void runSteps(std::vector<std::string> const& words) {
    for (std::string const& word : words) ASSERT_TRUE(run("Step", word));
    desk.notes.clear();
  }
  /// Lengths of the undo queue and the redo stack; what they hold is all that lives.
  std::vector<std::size_t> lengths() const {
    EXPECT_EQ(engine->getUndoQueue().size() + engine->getRedoQueue().size(), std::size_t(livingCommands));
    return {engine->getUndoQueue().size(), engine->getRedoQueue().size()};
  }

  Desk desk;
  std::unique_ptr<Engine> engine = std::make_unique<Engine>(&desk);
  std::string out;
};

TEST_F(CommandEngine, WalksBackAndForth) {
  runSteps({"a", "b", "c"});
  engine->undo(2);
  EXPECT_THAT(desk.notes, ElementsAre("undo c", "undo b"));
  engine->redo(1);
  EXPECT_EQ(desk.notes.back(), "redo b");
  EXPECT_THAT(lengths(), ElementsAre(2, 1));
  ASSERT_TRUE(run("Plain", "p"));
  EXPECT_THAT(lengths(), ElementsAre(2, 1)) << "what cannot be undone leaves the redo stack alone";
  ASSERT_FALSE(run("Step", "refuse"));
  EXPECT_THAT(lengths(), ElementsAre(2, 1));
  ASSERT_TRUE(run("Step", "d"));
  EXPECT_THAT(lengths(), ElementsAre(3, 0)) << "new work makes the undone work void";
  engine->undo(9);
  EXPECT_THAT(lengths(), ElementsAre(0, 3));
  engine->redo(9);
  EXPECT_THAT(lengths(), ElementsAre(3, 0));
  desk.notes.clear();
  engine->undo(3);
  EXPECT_THAT(desk.notes, ElementsAre("undo d", "undo b", "undo a"));
  engine->redo(1);
  EXPECT_THAT(lengths(), ElementsAre(1, 2));
}

TEST_F(CommandEngine, FailsOnNothingToUndoOrRedo) {
  for (std::size_t const count : {0U, 1U}) {
    EXPECT_THROW(engine->undo(count), cmd::CmdException);
    EXPECT_EQ(engine->getErrorMessage(), "noUndo");
    EXPECT_EQ(engine->getErrorCode(), 4U);
    EXPECT_THROW(engine->redo(count), cmd::CmdException);
    EXPECT_EQ(engine->getErrorMessage(), "noRedo");
    EXPECT_EQ(engine->getErrorCode(), 3U);
  }
  runSteps({"a"});
  engine->undo(0);
  EXPECT_THAT(lengths(), ElementsAre(1, 0));
  EXPECT_THAT(desk.notes, IsEmpty());

  engine->undo(1);
  Engine* told = nullptr;
  engine->setErrorCallFunc([&told](Engine* teller) {
    told = teller;
    teller->redo(1);  // a hook may call back
  });
  engine->undo(1);
  EXPECT_EQ(told, engine.get());
  EXPECT_EQ(engine->getErrorCode(), 4U);
  EXPECT_THAT(lengths(), ElementsAre(1, 0));
}

TEST_F(CommandEngine, LetsTheOldestGoOneAtATime) {
  EXPECT_EQ(engine->getMaxQueueLen(), 1000U);
  engine->setMaxQueueLen(2);
  runSteps({"a", "b", "c"});
  EXPECT_THAT(lengths(), ElementsAre(2, 0));
  engine->setMaxQueueLen(1);
  EXPECT_THAT(lengths(), ElementsAre(2, 0)) << "the length holds from the next command on";
  runSteps({"d"});
  EXPECT_THAT(lengths(), ElementsAre(2, 0)) << "one in, one out";
  engine->undo(2);
  EXPECT_THAT(desk.notes, ElementsAre("undo d", "undo c"));
  engine->redo(2);
  EXPECT_THAT(lengths(), ElementsAre(2, 0)) << "redo does not shorten the queue";
}

TEST_F(CommandEngine, KeepsAStubbornCommandWhereItIs) {
  runSteps({"a", "b", "c"});
  desk.stubborn = "b";
  EXPECT_THROW(engine->undo(3), std::runtime_error);
  EXPECT_THAT(lengths(), ElementsAre(2, 1)) << "c stays moved, b did not move";
  EXPECT_EQ(engine->getErrorMessage(), "stubborn");
  desk.stubborn.clear();
  engine->undo(2);
  desk.stubborn = "b";
  EXPECT_THROW(engine->redo(3), std::runtime_error);
  EXPECT_THAT(lengths(), ElementsAre(1, 2));
  desk.stubborn.clear();
  desk.notes.clear();
  engine->redo(2);
  EXPECT_THAT(desk.notes, ElementsAre("redo b", "redo c"));
}

TEST_F(CommandEngine, NotesAFailureAndPassesItOnWhenNoHookTakesIt) {
  struct Case {
    char const* name;
    char const* in;
    unsigned int code;
    char const* message;
    std::vector<std::string> notes;
  };
  Case const cases[] = {
      {"Unknown", "a", 2, "noCommand", {}},
      {nullptr, "a", 2, "noCommand", {}},
      {"Nothing", "a", 2, "noCommand", {}},
      {"Plain", "throw", 0, "broken", {"do throw"}},
      {"Plain", "number", 0, "before", {"do number"}},  // nothing to tell: the earlier text stays
      {"Plain", "noRedo", 3, "noRedo", {"do noRedo"}},
      {"Plain", "noResult", 0, "no result", {"do noResult"}},
      {"Step", "throw", 0, "broken", {"do throw", "undo throw"}},
      {"Step", "number", 0, "before", {"do number", "undo number"}},
      {"Step", "noResult", 0, "no result", {"do noResult", "undo noResult"}},
  };
  for (bool const hook : {false, true}) {
    for (Case const& c : cases) {
      SCOPED_TRACE(std::string(c.name == nullptr ? "null" : c.name) + " " + c.in + (hook ? " with hook" : ""));
      engine = std::make_unique<Engine>(&desk);
      engine->setExecuteBeforeCall([](std::string const& in) {
        if (in == "before") throw std::runtime_error("before");
      });
      EXPECT_THROW(run("Plain", "before"), std::runtime_error);
      desk.notes.clear();
      int told = 0;
      if (hook) engine->setErrorCallFunc([&told](Engine*) { ++told; });
      if (hook) {
        EXPECT_FALSE(run(c.name, c.in));
      } else {
        EXPECT_ANY_THROW(run(c.name, c.in));
      }
      EXPECT_EQ(told, hook ? 1 : 0);
      EXPECT_EQ(engine->getErrorCode(), c.code);
      EXPECT_EQ(engine->getErrorMessage(), c.message);
      EXPECT_EQ(desk.notes, c.notes);
      EXPECT_THAT(lengths(), ElementsAre(0, 0));
      ASSERT_TRUE(run("Plain", "fine"));
      ASSERT_FALSE(run("Plain", "refuse"));
      EXPECT_EQ(engine->getErrorMessage(), c.message) << "only a failure changes the error state";
      EXPECT_EQ(engine->getErrorCode(), c.code);
    }
  }
}

TEST_F(CommandEngine, CallsItsHooksAroundACommand) {
  std::vector<std::string> calls;
  engine->setExecuteBeforeCall([&calls](std::string const& in) { calls.push_back("before " + in); });
  engine->setExecuteAfterCall([&calls](std::string const& result) { calls.push_back("after " + result); });
  EXPECT_TRUE(run("Plain", "a"));
  EXPECT_THAT(calls, ElementsAre("before a", "after result of a"));
  calls.clear();
  EXPECT_FALSE(run("Plain", "refuse"));
  EXPECT_EQ(out, "result of refuse") << "a refusal hands its result over too";
  EXPECT_THROW(run("Unknown", "b"), cmd::CmdException);
  EXPECT_THROW(run("Plain", "throw"), std::runtime_error);
  EXPECT_THAT(calls, ElementsAre("before refuse", "before b", "before throw"));

  engine->setExecuteAfterCall([](std::string const&) { throw std::runtime_error("after"); });
  EXPECT_THROW(run("Step", "kept"), std::runtime_error);
  EXPECT_EQ(engine->getErrorMessage(), "after");
  EXPECT_THAT(lengths(), ElementsAre(1, 0)) << "the command itself had succeeded";
}

TEST_F(CommandEngine, LendsTheCancelFunctionForOneCall) {
  ASSERT_TRUE(engine->execute("Step", "a", out, [] { return true; }));
  EXPECT_TRUE(desk.cancelSeen);
  EXPECT_FALSE(engine->getUndoQueue().front()->getIsCancelFunction()) << "what it holds may be gone after the call";
  EXPECT_FALSE(engine->getUndoQueue().front()->isCancel());
  ASSERT_TRUE(engine->execute("Step", "b", out, [] { return false; }));
  EXPECT_FALSE(desk.cancelSeen);
}

TEST_F(CommandEngine, RegistersOnlyWhatIsComplete) {
  EXPECT_FALSE(Engine::Register(nullptr, {&Step<true>::Create, &deleteCounted}));
  EXPECT_FALSE(Engine::Register("Step", {nullptr, &deleteCounted}));
  EXPECT_FALSE(Engine::Register("Step", {&Step<false>::Create, nullptr}));
  deletedByRegistry = 0;
  EXPECT_TRUE(run("Plain", "p"));
  EXPECT_EQ(deletedByRegistry, 1);
  EXPECT_TRUE(run("Step", "a"));
  EXPECT_THAT(lengths(), ElementsAre(1, 0)) << "the earlier entry stands";

  ASSERT_TRUE(Engine::Register("Replaced", {&Step<true>::Create, &deleteCounted}));
  ASSERT_TRUE(Engine::Register("Replaced", {&Step<false>::Create, &deleteCounted}));
  EXPECT_TRUE(run("Replaced", "b"));
  EXPECT_THAT(lengths(), ElementsAre(1, 0)) << "the later entry is the one that counts";
}

TEST_F(CommandEngine, HoldsOffOtherThreadsWhileLocked) {
  auto hold = engine->lock();
  auto other = std::async(std::launch::async, [this] { return run("Plain", "a"); });
  EXPECT_EQ(other.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  EXPECT_THAT(desk.notes, IsEmpty());
  hold.unlock();
  EXPECT_TRUE(other.get());
}

}  // namespace
