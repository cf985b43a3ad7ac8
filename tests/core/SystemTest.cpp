// The process-wide object: its one instance, the list of projects and the configuration file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utils/QLogicError.h>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "support/Support.h"

namespace {

using namespace kvn;

TEST(System, ExistsOnce) {
  {
    System system;
    EXPECT_EQ(test::failureOf<QLogicError>([] { System second; }), "kvn::System is only one can be created");
    EXPECT_EQ(System::Instance(), &system) << "the first one stays";
  }
  EXPECT_EQ(System::Instance(), nullptr);
}

TEST(System, KeepsTheOpenProjectsInOrderAndTheCurrentOneWhileAnyIsListed) {
  System system;
  auto const first = system.createProject();
  auto second = system.createProject();
  EXPECT_FALSE(system.isProjectOpen()) << "creating does not list";
  system.setCurrentProject(second);
  EXPECT_TRUE(system.addProject(first));
  EXPECT_TRUE(system.addProject(second)) << "true also for one that is listed";
  EXPECT_FALSE(system.addProject(nullptr));
  EXPECT_EQ(system.getProjectList(), (std::list<std::shared_ptr<Project>>{second, first}));
  EXPECT_TRUE(system.removeProject(second.get()));
  EXPECT_FALSE(system.removeProject(second.get()));
  EXPECT_EQ(system.findProject(first.get()), first);
  EXPECT_EQ(system.getCurrentProject(), second.get()) << "removing leaves the current project alone";
  system.removeProject(first.get());
  EXPECT_EQ(system.getCurrentProject(), nullptr) << "alive, but the list is empty";
  system.addProject(first);
  second.reset();
  EXPECT_EQ(system.getCurrentProject(), nullptr);
}

TEST(System, FindsProjectsByFileAndByName) {
  System system;
  QTemporaryDir const directory;
  QDir(directory.path()).mkdir("sub");
  for (char const* name : {"Job.txt", "sub/JOB.dat"}) {
    test::writeFile(directory.filePath(name), "");
    system.addProject(system.createProject());
    system.getProjectList().back()->setName(directory.filePath(name));
  }
  auto const first = system.getProjectList().front();
  EXPECT_EQ(system.findProject(directory.filePath("sub/../Job.txt")), first);
  EXPECT_EQ(system.findProject(directory.filePath("job.kvn")), nullptr);
  EXPECT_EQ(system.findProjectName("jOB"), first) << "the first of the two";
  EXPECT_EQ(system.findProjectName("job.txt"), nullptr);
}

TEST(SystemConfiguration, StandsInTheDocumentsAndIsWrittenAtTheEnd) {
  {
    System system;
    EXPECT_EQ(system.getConfigFile(), QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
                                          .filePath("PLQ/Config/KelvaneConfig.json"));
    system.getConfig()->root()["Globle"]["Path"]["OutPath"] = "/测";
    system.getConfig()->root()["Globle"]["Configuration"]["AngleFormat"] = int(utils::DDSMMSSS);
  }
  System system;
  EXPECT_EQ(system.getOutPath(), "./Out") << "only init reads";
  system.init();
  EXPECT_EQ(system.getOutPath(), QStringLiteral("/测"));
  EXPECT_EQ(system.createFormater().toString(utils::Degree(1.5)), "1 30 00.00");
}

TEST(SystemConfiguration, WarnsAndKeepsAFileThatIsNoJson) {
  QTemporaryDir const directory;
  QString const path = directory.filePath("config.json");
  test::writeFile(path, "{ half");
  std::vector<std::string> warnings;
  {
    System system;
    system.setSendMessageFunc([&](QString const& text, MessType type) {
      if (type == Warning) warnings.push_back(text.toStdString());
    });
    system.setConfigFile(path);
    system.init();
    EXPECT_EQ(warnings.size(), 1U);
  }
  ASSERT_EQ(warnings.size(), 2U);
  EXPECT_THAT(warnings, testing::Each(testing::HasSubstr(path.toStdString())));
  QStringList const files = QDir(directory.path()).entryList(QDir::Files);
  ASSERT_EQ(files.size(), 2);
  EXPECT_EQ(test::fileBytes(directory.filePath(files[1])), "{ half");
  EXPECT_THAT(warnings[1], testing::HasSubstr(files[1].toStdString()));
}

struct Panel : QObject, IHasProject {
  explicit Panel(QObject* parent) : QObject(parent) {}
};

TEST(HasProject, FindsTheProjectOfTheNearestPanel) {
  Project project;
  Panel outer(nullptr);
  QObject between(&outer);
  Panel const inner(&between);
  EXPECT_EQ(inner.getProject(), nullptr);
  outer.setProject(&project);
  EXPECT_EQ(inner.getProject(), &project);
}

}  // namespace
