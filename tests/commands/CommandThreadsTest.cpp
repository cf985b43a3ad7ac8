// What the command engine promises to several threads; run with the thread sanitizer by `make tsan`.
#include "support/Support.h"

#include <gtest/gtest.h>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace {

using namespace kvn;

constexpr int kOfEach = 300;

/// Starts all of them at one moment, and waits for their ends.
void together(std::vector<std::function<void()>> const& tasks) {
  std::atomic<bool> go{false};
  std::vector<std::thread> threads;
  threads.reserve(tasks.size());
  for (auto const& task : tasks) {
    threads.emplace_back([&go, &task] {
      while (!go) std::this_thread::yield();
      task();
    });
  }
  go = true;
  for (std::thread& thread : threads) thread.join();
}

using Counting = cmd::ICommand<int, std::vector<int>>;

/// A command in two steps: between them another thread could come, were it not for the lock.
struct CountCMD : Counting {
  bool execute(int const& in) override {
    std::size_t const before = getUserdata()->size();
    getUserdata()->push_back(in);
    isAlone = getUserdata()->size() == before + 1;
    return isAlone;
  }
  void undo() override { getUserdata()->pop_back(); }
  void redo() override { getUserdata()->push_back(0); }
  bool isUndoable() override { return true; }
  char const* className() const override { return "CountCMD"; }
  void getResult(int& out) override { out = isAlone ? 1 : 0; }
  static Counting* Create() { return new CountCMD; }

  bool isAlone = false;
};
using Engine = cmd::CommandMgr<Counting>;

TEST(CommandThreads, RunOneOperationAfterTheOther) {
  ASSERT_TRUE(Engine::Register("CountCMD", {&CountCMD::Create, &Counting::DeleteClass}));
  std::vector<int> done;
  Engine engine(&done);
  std::atomic<int> good{0};
  auto const run = [&] {
    for (int i = 0; i < kOfEach; ++i) {
      int out = 0;
      if (engine.execute("CountCMD", i, out, [] { return false; }) && out == 1) ++good;
    }
  };
  auto const undo = [&] {
    for (int i = 0; i < kOfEach; ++i) {
      auto const hold = engine.lock();  // across several operations
      if (engine.getUndoQueue().empty()) continue;
      engine.undo(1);
      engine.redo(1);
    }
  };
  auto const set = [&] {
    for (std::size_t i = 0; i < kOfEach; ++i) {
      engine.setMaxQueueLen(100 + i);
      engine.setExecuteAfterCall([](int const&) {});
    }
  };
  engine.setErrorCallFunc([](Engine*) {});
  auto const fail = [&] {
    for (int i = 0; i < kOfEach; ++i) {
      int out = 0;
      EXPECT_FALSE(engine.execute("NoSuchCMD", 0, out, {}));
      EXPECT_EQ(engine.getErrorMessage(), "noCommand");
    }
  };
  together({run, run, undo, set, fail});
  EXPECT_EQ(good, 2 * kOfEach);
  EXPECT_EQ(done.size(), std::size_t(2 * kOfEach));
}

TEST(CommandThreads, ChangeAProjectOneAfterTheOther) {
  test::Host host;
  auto const project = host.system.createProject();
  Json::Value const row = test::json(R"({"data": {"index": 0, "Name": "A"}})");
  Json::Value const point = test::json(R"({"data": {"Index": 0, "Name": "P", "Mark": ""}})");
  auto const adding = [&](char const* name, Json::Value const& in) {
    return [&project, name, in] {
      Json::Value out;
      for (int i = 0; i < kOfEach; ++i) EXPECT_TRUE(project->getCommandManager()->execute(name, in, out, {}));
    };
  };
  together(
      {adding("AddTraverseDataCMD", row), adding("AddTraverseDataCMD", row), adding("AddCoordinateDataCMD", point)});
  EXPECT_EQ(project->getTraverseDataList().size(), std::size_t(2 * kOfEach));
  EXPECT_EQ(project->getCoordinatePointList().size(), std::size_t(kOfEach));
  EXPECT_EQ(host.messages.size(), std::size_t(3 * kOfEach)) << "the message function is called under the lock too";
}

}  // namespace
