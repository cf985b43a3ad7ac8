// Each call of the operating system that the program makes for a file fails once, and each allocation: what is on the
// disk afterwards is the old file or the new one, whole, and the program says so.
#include "support/Support.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Case {
  char const* name;
  std::vector<std::string> arguments;  ///< of the program, in a folder with the files below and `kPoints`
  char const* source;                  ///< the sample that is read, or its text
  char const* in;                      ///< its name there
  char const* out;                     ///< the file that is written; may be `in`; null for none
  char const* input = "";              ///< standard input
  bool failsAllocations = true;
  char const* program = KELVANE_HOST_PROGRAM;
};

constexpr char const* kTraverse = "trav_connecting_fr_5legs.txt";
constexpr char const* kNetwork = "net_niemeier2008.in2";
constexpr char const* kHeights = "trig_height_reciprocal.txt";
constexpr char const* kJob = "fieldbook_full_circle_2rounds.lqf";
constexpr char const* kPoints = "Z108,,40760,27816,0\nZ110,,41373,27904,0\n";  // new ones of the network, about
constexpr char const* kPointsFile = "points.dat";
// Not the default file, which is read where there is none.
constexpr char const* kCodes =
    "<Codes><PGroups><PGroup>Trees</PGroup></PGroups><Points><Point><Name>Oak</Name><Group>Trees</Group></Point>"
    "<Point><Name>Elm</Name><Group>Trees</Group><Code>ELM</Code></Point></Points></Codes>";
constexpr char const* kSettings = "{\n  \"old\" : true\n}";  // as it is written
constexpr char const* kOpen = R"([{"name": "OpenFileCMD", "in": {"file": "a.txt"}}])";
constexpr char const* kSwitch = R"([{"name": "SwitchTraverseDataCMD", "in": {"data": {"file": "a.txt"}}}])";
constexpr char const* kEdit = R"([{"name": "RemoveNetworkDataCMD", "in": {"data": {"ids": []}}}])";

std::vector<Case> cases() {
  return {
      {"network over itself", {"convert", "a.in2", "a.in2"}, kNetwork, "a.in2", "a.in2"},
      {"traverse into a job", {"convert", "a.txt", "b.lqf"}, kTraverse, "a.txt", "b.lqf"},
      {"job over itself", {"convert", "a.lqf", "a.lqf"}, kJob, "a.lqf", "a.lqf"},
      {"job into a traverse file", {"convert", "a.lqf", "b.txt"}, kJob, "a.lqf", "b.txt"},
      {"traverse adjusted into a project", {"adjust", "a.txt", "--save", "b.kvn"}, kTraverse, "a.txt", "b.kvn"},
      {"network adjusted into coordinates", {"adjust", "a.in2", "--save", "b.dat"}, kNetwork, "a.in2", "b.dat"},
      {"coordinates over themselves", {"convert", "a.dat", "a.dat"}, kTraverse, "a.dat", "a.dat"},
      {"project over itself", {"convert", "a.kvn", "a.kvn"}, kTraverse, "a.kvn", "a.kvn"},
      {"heights", {"heights", "a.txt"}, kHeights, "a.txt", nullptr},
      {"commands on a network", {"exec", "--open", "a.in2", "--save", "b.kvn"}, kNetwork, "a.in2", "b.kvn", kEdit},
      {"file of a command", {"exec", "--save", "b.kvn"}, kTraverse, "a.txt", "b.kvn", kSwitch},
      {"JSON", {"adjust", "a.in2", "--json"}, kNetwork, "a.in2", nullptr},
      {"report", {"report", "a.in2", "b.html"}, kNetwork, "a.in2", "b.html"},
      // A driver that renders in software waits for itself where it gets no memory.
      {"map", {"map", "a.in2", "b.png"}, kNetwork, "a.in2", "b.png", "", false},
      {"table", {"adjust", "a.in2", "--save", "b.csv"}, kNetwork, "a.in2", "b.csv"},
      {"table of heights", {"heights", "a.txt", "--save", "b.csv"}, kHeights, "a.txt", "b.csv"},
      {"GeoJSON", {"adjust", "a.in2", "--save", "b.geojson"}, kNetwork, "a.in2", "b.geojson"},
      {"CAD", {"adjust", "a.in2", "--save", "b.dxf"}, kNetwork, "a.in2", "b.dxf"},
      {"drawing", {"adjust", "a.in2", "--save", "b.svg"}, kNetwork, "a.in2", "b.svg"},
      {"plan", {"plan", "a.in2", "--points", kPointsFile}, kNetwork, "a.in2", nullptr},
      {"approximate coordinates", {"adjust", "a.in2", "--approximate", kPointsFile}, kNetwork, "a.in2", nullptr},
      {"legend codes", {"codes", "a.xml", "b.xml"}, kCodes, "a.xml", "b.xml", "", true, KELVANE_HOST_FILES},
      {"settings", {"settings", "a.json"}, kSettings, "a.json", "a.json", "", true, KELVANE_HOST_FILES},
  };
}

struct End {
  bool isDone = false;  ///< exit code 0
  std::string file;     ///< bytes of the file that is written, empty when there is none
  std::string printed;
  std::string told;  ///< on standard error, or by the shell of an end by a signal
};

/// What the interposed library answers for a call that fails, and the program's own words for a folder.
bool tellsWhy(std::string const& text) {
  auto const isSaid = [&text](char const* reason) { return text.find(reason) != std::string::npos; };
  return isSaid("Input/output error") || isSaid("No space left on device") || isSaid("the disk does not confirm it");
}

class Fault : public testing::Test {
 protected:
  static constexpr char const* kOld = "the old file\n";

  QTemporaryDir folder;
  QTemporaryDir home;  ///< where the program looks for its configuration, which it can do without
  std::map<std::string, long> counts;

  std::string path(std::string const& name) const {
    return folder.filePath(QString::fromStdString(name)).toStdString();
  }

  /// The text; the sample, or what the program makes of it where the file has another suffix.
  std::string sourceOf(Case const& c) const {
    QString const sample = test::samplePath(c.source);
    if (!QFile::exists(sample)) return c.source;
    QString const suffix = QFileInfo(c.in).suffix();
    if (QFileInfo(sample).suffix() == suffix) return test::fileBytes(sample);
    QString const made = home.filePath("made." + suffix);
    if (!QFile::exists(made)) {
      test::writeFile(QString::fromStdString(path("input")), "");
      run(KELVANE_HOST_PROGRAM, {"convert", sample.toStdString(), made.toStdString()}, {});
    }
    return test::fileBytes(made);
  }

  /// Starts from the same files each time.
  void prepare(Case const& c) const {
    QDir dir(folder.path());
    for (QString const& name : dir.entryList(QDir::Files | QDir::Hidden)) dir.remove(name);
    test::writeFile(QString::fromStdString(path(c.in)), sourceOf(c));
    test::writeFile(QString::fromStdString(path(kPointsFile)), kPoints);
    if (c.out != nullptr && std::string(c.out) != c.in) test::writeFile(QString::fromStdString(path(c.out)), kOld);
    test::writeFile(QString::fromStdString(path("input")), c.input);
  }

  /// The file that is written, without the identities of its records, which are new each time.
  std::string written(Case const& c) const {
    static std::regex const identity("(id|groupId)=\"[^\"]*\"");
    return std::regex_replace(test::fileBytes(QString::fromStdString(path(c.out))), identity, "");
  }

  /// Runs the program in the folder; its exit status, as `waitpid` has it. Without a shell, which would meet the
  /// faults.
  int run(char const* program, std::vector<std::string> arguments, std::vector<std::string> environment) const {
    auto const pointers = [](std::vector<std::string>& texts) {
      std::vector<char*> list;
      list.reserve(texts.size() + 1);
      for (std::string& text : texts) list.push_back(text.data());
      list.push_back(nullptr);
      return list;
    };
    arguments.insert(arguments.begin(), "kelvane");
    environment.insert(environment.end(),
                       {"HOME=" + home.path().toStdString(), "LC_ALL=C.UTF-8", "PATH=/usr/bin:/bin"});
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder.path().toStdString().c_str());
    posix_spawn_file_actions_addopen(&actions, 0, "input", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "printed", O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, "told", O_WRONLY | O_CREAT, 0600);
    pid_t child = 0;
    int status = -1;
    int const error =
        posix_spawn(&child, program, &actions, nullptr, pointers(arguments).data(), pointers(environment).data());
    if (error == 0) waitpid(child, &status, 0);
    posix_spawn_file_actions_destroy(&actions);
    return status;
  }

  int runWith(Case const& c, std::string const& fault, std::vector<std::string> environment = {}) const {
    prepare(c);
    environment.insert(environment.end(),
                       {"LD_PRELOAD=" KELVANE_FAULT_LIBRARY, "KELVANE_FAULT=" + fault,
                        "KELVANE_FAULT_UNDER=" + folder.path().toStdString(), "KELVANE_FAULT_COUNT=" + path("counts")});
    return run(c.program, c.arguments, environment);
  }

  End end(Case const& c, std::string const& fault) const {
    int const status = runWith(c, fault);
    End end;
    end.isDone = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    // Qt crashes where it cannot make what it begins with.
    bool const hasCrashed = WIFSIGNALED(status) && fault.rfind("malloc", 0) == 0;
    end.told = hasCrashed ? "crashed" : test::fileBytes(QString::fromStdString(path("told")));
    if (c.out != nullptr) end.file = written(c);
    end.printed = test::fileBytes(QString::fromStdString(path("printed")));
    return end;
  }

  /// Names that have no business in the folder, such as those of files that were never finished.
  std::string leftOvers(Case const& c) const {
    std::string names;
    for (QString const& name : QDir(folder.path()).entryList(QDir::Files | QDir::Hidden)) {
      std::string const text = name.toStdString();
      bool const isKnown = text == c.in || (c.out != nullptr && text == c.out) || text == kPointsFile ||
                           text == "input" || text == "printed" || text == "told" || text == "counts";
      if (!isKnown) names += text + " ";
    }
    return names;
  }

  void readCounts() {
    std::istringstream lines(test::fileBytes(QString::fromStdString(path("counts"))));
    std::string kind;
    for (long number = 0; lines >> kind >> number;) counts[kind] = number;
  }
};

/// Distance between the allocations that fail; the other calls are few and all fail.
long stepOfAllocations(long count) {
  char const* const all = std::getenv("KELVANE_ALL_FAULTS");
  return all != nullptr ? 1 : std::max(1L, count / 24);
}

TEST_F(Fault, LeavesTheOldFileOrTheNewOneAndSaysSo) {
  for (Case const& c : cases()) {
    SCOPED_TRACE(c.name);
    End const good = end(c, "none");
    ASSERT_TRUE(good.isDone) << test::fileBytes(QString::fromStdString(path("told")));
    ASSERT_EQ(leftOvers(c), "");
    readCounts();
    ASSERT_GE(counts["open"], c.out != nullptr ? 3 : 1);  // the file that is read, the new one, its folder
    ASSERT_GE(counts["read"], 2);
    ASSERT_GE(counts["write"], c.out != nullptr ? 1 : 0);
    ASSERT_GE(counts["fsync"], c.out != nullptr ? 2 : 0);
    ASSERT_GE(counts["rename"], c.out != nullptr ? 1 : 0);
    ASSERT_GT(counts["malloc"], 200);
    prepare(c);
    std::string const old = c.out != nullptr ? written(c) : "";
    for (auto const& [kind, count] : std::map<std::string, long>(counts)) {
      bool const isAllocation = kind == "malloc";
      if (isAllocation && !c.failsAllocations) continue;
      long const step = isAllocation ? stepOfAllocations(count) : 1;
      for (long k = isAllocation ? 1 + step / 2 : 1; k <= count; k += step) {
        SCOPED_TRACE(kind + ":" + std::to_string(k));
        End const hurt = end(c, kind + ":" + std::to_string(k));
        // Without a file that gets a name by a link it is written under a name of its own; and want of memory may
        // concern something that can be done without. Then everything is as if nothing had happened.
        bool const mayRecover = isAllocation || kind == "link";
        EXPECT_TRUE(!hurt.isDone || mayRecover);
        if (hurt.isDone) {
          EXPECT_EQ(hurt.printed, good.printed);
          EXPECT_EQ(hurt.file, good.file);
        } else {
          EXPECT_TRUE(hurt.file == old || hurt.file == good.file) << hurt.file;
          EXPECT_NE(hurt.told, "") << "it died in silence";
          EXPECT_TRUE(isAllocation || tellsWhy(hurt.told + hurt.printed)) << hurt.told;
        }
        EXPECT_EQ(leftOvers(c), "");
      }
    }
  }
}

TEST_F(Fault, WantOfMemoryIsNotTakenForAFaultOfTheFile) {
  Case const c = {"", {"exec"}, kTraverse, "a.txt", nullptr, kOpen};
  ASSERT_TRUE(end(c, "none").isDone);
  readCounts();
  long const step = stepOfAllocations(counts["malloc"]);
  int told = 0;
  for (long k = 1 + step / 2; k <= counts["malloc"]; k += step) {
    std::string const printed = end(c, "malloc:" + std::to_string(k)).printed;
    if (printed.find("not enough memory") == std::string::npos) continue;
    ++told;
    EXPECT_EQ(printed.find("with care"), std::string::npos) << printed;
  }
  EXPECT_GT(told, 0);
}

TEST_F(Fault, LeavesNothingAboutWhenASignalEndsIt) {
  Case const c = cases().front();
  std::string const old = test::fileBytes(test::samplePath(c.source));
  std::string const fresh = end(c, "none").file;
  // Under a name of its own, up to the folder's place on the disk.
  for (char const* call : {"write:1", "fsync:1", "rename:1", "fsync:2"}) {
    SCOPED_TRACE(call);
    int const status = runWith(c, call, {"KELVANE_FAULT_LINKS=no", "KELVANE_FAULT_SIGNAL=" + std::to_string(SIGTERM)});
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    EXPECT_EQ(leftOvers(c), "");
    EXPECT_TRUE(written(c) == old || written(c) == fresh);
  }
}

// A job is computed without the settings of the host, which the program never writes.
TEST_F(Fault, GoesOnWithoutItsConfigurationAndSaysSo) {
  QString const file = home.filePath("Documents/PLQ/Config/KelvaneConfig.json");
  test::writeFile(file, kSettings);
  Case const c = {"", {"adjust", "a.in2"}, kNetwork, "a.in2", nullptr};
  std::string const result = end(c, "none").printed;
  for (char const* call : {"open:1", "read:1", "read:2"}) {
    SCOPED_TRACE(call);
    int const status = runWith(c, call, {"KELVANE_FAULT_UNDER=" + home.filePath("Documents").toStdString()});
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(test::fileBytes(QString::fromStdString(path("printed"))), result);
    EXPECT_THAT(test::fileBytes(QString::fromStdString(path("told"))), testing::HasSubstr("KelvaneConfig.json"));
    EXPECT_EQ(test::fileBytes(file), kSettings);
  }
}

// What comes in by a pipe is read from a file.
TEST_F(Fault, LeavesNoCopyOfTheInputWhenASignalEndsIt) {
  std::string const bytes = test::fileBytes(test::samplePath(kNetwork));
  Case const c = {"", {"convert", "-", "-", "--kind", "in2", "--to", "kvn"}, kNetwork, "a.in2", nullptr, bytes.c_str()};
  for (char const* call : {"fsync:1", "fsync:2", "fsync:3"}) {
    SCOPED_TRACE(call);
    int const status = runWith(c, call, {"TMPDIR=" + path(""), "KELVANE_FAULT_SIGNAL=" + std::to_string(SIGTERM)});
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
  }
}

}  // namespace
