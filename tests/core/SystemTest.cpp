// The process-wide object: its one instance, the list of projects and the configuration file.
#include <gmock/gmock.h>
#include <utils/QLogicError.h>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "support/Support.h"

namespace {

using namespace kvn;

TEST(System, ExistsOnce) {
  System const system;
  EXPECT_EQ(test::failureOf<QLogicError>([] { System second; }), "kvn::System is only one can be created");
  EXPECT_EQ(System::Instance(), &system) << "the first one stays";
}

TEST(System, KeepsTheOpenProjectsInOrderAndTheCurrentOneWhileAnyIsListed) {
  System system;
  auto const first = system.createProject();
  auto second = system.createProject();
  system.setCurrentProject(second);
  EXPECT_TRUE(system.addProject(first));
  EXPECT_TRUE(system.addProject(second) && !system.addProject(nullptr)) << "true also for one that is listed";
  EXPECT_EQ(system.getProjectList(), (std::list<std::shared_ptr<Project>>{second, first}));
  EXPECT_TRUE(system.removeProject(second.get()) && !system.removeProject(second.get()));
  EXPECT_EQ(system.getCurrentProject(), second.get()) << "removing leaves the current project alone";
  system.removeProject(first.get());
  EXPECT_EQ(system.getCurrentProject(), nullptr) << "alive, but the list is empty";
  system.addProject(first);
  EXPECT_TRUE(system.findProject(first.get()) == first && !system.hasProject(second.get()));
  second.reset();
  EXPECT_EQ(system.getCurrentProject(), nullptr);
}

TEST(System, FindsProjectsByFileAndByName) {
  System system;
  QTemporaryDir const directory;
  for (char const* name : {"Job.txt", "JOB.dat"}) {
    test::writeFile(directory.filePath(name), "");
    system.addProject(system.createProject());
    system.getProjectList().back()->setName(directory.filePath(name));
  }
  EXPECT_EQ(system.findProject(directory.filePath("./Job.txt")), system.getProjectList().front());
  EXPECT_EQ(system.findProjectName("jOB"), system.getProjectList().front()) << "the first of the two";
  EXPECT_EQ(system.findProjectName("job.txt"), nullptr);
}

TEST(SystemConfiguration, StandsInTheDocumentsAndIsWrittenAtTheEnd) {
  QDir const documents(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  auto const globle = R"({"Path": {"OutPath": "/测"}, "Configuration": {"AngleFormat": 0, "AngleDecimals": 1}})";
  System().getConfig()->root()["Globle"] = test::json(globle);
  System system;
  EXPECT_EQ(system.getConfigFile(), documents.filePath("PLQ/Config/KelvaneConfig.json"));
  EXPECT_EQ(system.getOutPath(), "./Out") << "only init reads";
  system.init();
  EXPECT_EQ(system.getOutPath(), QStringLiteral("/测"));
  EXPECT_EQ(system.createFormater().toString(utils::Degree(1.5)), QStringLiteral("1°30′00.0″"));
}

TEST(SystemConfiguration, WarnsAndKeepsAFileThatIsNoJson) {
  QTemporaryDir const directory;
  QString const path = directory.filePath("config.json");
  test::writeFile(path, "{ half");
  std::vector<std::pair<std::string, MessType>> messages;
  auto const isTold = testing::Pair(testing::HasSubstr(path.toStdString()), Warning);
  {
    System system;
    system.setConfigFile(path);
    system.init();
    system.setSendMessageFunc({});
    for (int again = 0; again < 2; ++again) {
      system.setSendMessageFunc([&](auto const& text, auto type) { messages.emplace_back(text.toStdString(), type); });
      EXPECT_THAT(messages, testing::ElementsAre(isTold)) << "once, when somebody listens";
    }
    system.readConfig();
    EXPECT_THAT(messages, testing::ElementsAre(isTold, isTold));
  }
  QStringList const files = QDir(directory.path()).entryList(QDir::Files);
  ASSERT_EQ(files.size(), 2);
  EXPECT_EQ(test::fileBytes(directory.filePath(files[1])), "{ half");
  ASSERT_EQ(messages.size(), 2U) << "the end is silent";
  test::writeFile(path, "{ half");
  test::Host host;
  host.system.setConfigFile(path);
  host.system.writeConfig();
  QStringList const after = QDir(directory.path()).entryList(QDir::Files);
  ASSERT_TRUE(after.size() == 3 && host.messages.size() == 1);
  EXPECT_TRUE(host.messages[0].first.contains(after[1]) || host.messages[0].first.contains(after[2]));
}

TEST(SystemConfiguration, SaysWhyAFileCannotBeRead) {
  test::Host host;
  host.system.setConfigFile("/proc/self/mem");  // opens, and cannot be read at its beginning
  host.system.readConfig();
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].first,
            "The configuration file /proc/self/mem: the file could not be read to its end: Input/output error; the "
            "default settings are used");
  host.system.setConfigFile("");
}

class Holder : public QObject, public IHasProject {
 public:
  using IHasProject::IHasProject;
};

TEST(IHasProject, FindsTheProjectOfTheNearestAncestorThatHasOne) {
  Project project;
  Holder top(&project);
  QObject plain;
  Holder below;
  EXPECT_EQ(below.getProject(), nullptr);
  plain.setParent(&top);
  below.setParent(&plain);
  EXPECT_EQ(below.getProject(), &project);
  Project own;
  below.setProject(&own);
  EXPECT_EQ(below.getProject(), &own);
  below.setParent(nullptr);  // objects on the stack leave their parents before these go
  plain.setParent(nullptr);
}

}  // namespace
