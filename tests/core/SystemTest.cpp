// The process-wide object: its one instance, the list of projects, the configuration file and the translators.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mvz/ViewerManager.h>
#include <utils/QLogicError.h>
#include <utils/UserBehavior.h>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <osg/ref_ptr>

#include "support/Support.h"

namespace {

using namespace kvn;
using testing::HasSubstr;

TEST(System, ExistsOnce) {
  EXPECT_EQ(System::Instance(), nullptr);
  {
    System system;
    EXPECT_EQ(test::failureOf<QLogicError>([] { System second; }), "kvn::System is only one can be created");
    EXPECT_EQ(System::Instance(), &system) << "the first one stays";
    system.sendMessage("nobody listens", Error);
    ASSERT_NE(system.getUserBehavior(), nullptr);
    EXPECT_EQ(system.getUserBehavior()->parent(), QCoreApplication::instance());
    delete system.getUserBehavior();
    EXPECT_EQ(system.getUserBehavior(), nullptr) << "guarded against an owner that goes first";
  }
  EXPECT_EQ(System::Instance(), nullptr);
}

TEST(System, KeepsTheOpenProjectsInOrder) {
  System system;
  auto const first = system.createProject();
  auto const second = system.createProject();
  EXPECT_FALSE(system.isProjectOpen()) << "creating does not list";
  EXPECT_TRUE(system.addProject(second));
  EXPECT_TRUE(system.addProject(first));
  EXPECT_TRUE(system.addProject(second)) << "true also for one that is listed";
  EXPECT_FALSE(system.addProject(nullptr));
  EXPECT_EQ(system.getProjectList(), (std::list<std::shared_ptr<Project>>{second, first}));
  EXPECT_TRUE(system.isProjectOpen() && system.isEmptyProject());
  EXPECT_TRUE(system.removeProject(second.get()));
  EXPECT_FALSE(system.removeProject(second.get()));
  EXPECT_EQ(system.findProject(second.get()), nullptr);
  EXPECT_EQ(system.findProject(first.get()), first);
  EXPECT_TRUE(system.hasProject(first.get()) && !system.hasProject(nullptr));
}

TEST(System, HasACurrentProjectOnlyWhileOneIsListed) {
  System system;
  auto project = system.createProject();
  system.setCurrentProject(project);
  EXPECT_TRUE(system.hasProject(project.get())) << "setting lists it";
  EXPECT_EQ(system.getCurrentProject(), project.get());
  system.removeProject(project.get());
  EXPECT_EQ(system.getCurrentProject(), nullptr) << "alive, but the list is empty";

  auto const other = system.createProject();
  system.addProject(other);
  EXPECT_EQ(system.getCurrentProject(), project.get()) << "removing leaves the current project alone";
  project.reset();
  EXPECT_EQ(system.getCurrentProject(), nullptr);
  system.setCurrentProject(other);
  system.setCurrentProject(nullptr);
  EXPECT_EQ(system.getCurrentProject(), nullptr);
  EXPECT_TRUE(system.hasProject(other.get()));
}

TEST(System, FindsProjectsByFileAndByName) {
  System system;
  QTemporaryDir const directory;
  QDir(directory.path()).mkdir("sub");
  for (char const* name : {"Job.txt", "sub/JOB.dat", "job.kvn"}) test::writeFile(directory.filePath(name), "");
  auto const first = system.createProject();
  auto const second = system.createProject();
  first->setName(directory.filePath("Job.txt"));
  second->setName(directory.filePath("sub/JOB.dat"));
  system.addProject(first);
  system.addProject(second);
  EXPECT_EQ(system.findProject(directory.filePath("sub/../Job.txt")), first);
  EXPECT_EQ(system.findProject(directory.filePath("job.kvn")), nullptr);
  EXPECT_EQ(system.findProjectName("jOB"), first) << "the first of the two";
  EXPECT_EQ(system.findProjectName("job.txt"), nullptr);
}

TEST(System, CountsTheViewerManagerWhileItIsStored) {
  osg::ref_ptr<mvz::ViewerManager> const first(new mvz::ViewerManager);
  osg::ref_ptr<mvz::ViewerManager> const second(new mvz::ViewerManager);
  {
    System system;
    EXPECT_EQ(system.getMvzViewerManager(), nullptr);
    system.setMvzViewerManager(first.get());
    EXPECT_EQ(first->referenceCount(), 2);
    system.setMvzViewerManager(second.get());
    EXPECT_EQ(first->referenceCount(), 1);
    EXPECT_EQ(system.getMvzViewerManager(), second.get());
  }
  EXPECT_EQ(second->referenceCount(), 1);
}

TEST(SystemConfiguration, StandsInTheDocumentsAndIsWrittenAtTheEnd) {
  QString file;
  {
    System system;
    file = system.getConfigFile();
    EXPECT_EQ(file, QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
                        .filePath("PLQ/Config/KelvaneConfig.json"));
    EXPECT_EQ(system.getOutPath(), "./Out");
    EXPECT_EQ(system.createFormater().toString(utils::Degree(1.5)), "1:30:00.00");
    system.getConfig()->root()["Globle"]["Path"]["OutPath"] = "/测";
    system.getConfig()->root()["Globle"]["Configuration"]["AngleFormat"] = int(utils::DDSMMSSS);
  }
  {
    System system;
    EXPECT_EQ(system.getOutPath(), "./Out") << "only init reads";
    system.init();
    EXPECT_EQ(system.getOutPath(), QStringLiteral("/测"));
    EXPECT_EQ(system.createFormater().toString(utils::Degree(1.5)), "1 30 00.00");
  }
  QFile::remove(file);
}

TEST(SystemConfiguration, WarnsAndKeepsAFileThatIsNoJson) {
  QTemporaryDir const directory;
  QString const path = directory.filePath("config.json");
  test::writeFile(path, "{ half");
  std::vector<std::pair<QString, MessType>> messages;
  {
    System system;
    system.setSendMessageFunc([&](QString const& text, MessType type) { messages.emplace_back(text, type); });
    system.setConfigFile(path);
    system.init();
    EXPECT_EQ(system.getOutPath(), "./Out");
    ASSERT_EQ(messages.size(), 1U);
  }
  ASSERT_EQ(messages.size(), 2U);
  for (auto const& message : messages) {
    EXPECT_EQ(message.second, Warning);
    EXPECT_THAT(message.first.toStdString(), HasSubstr(path.toStdString()));
  }
  QStringList const files = QDir(directory.path()).entryList(QDir::Files);
  ASSERT_EQ(files.size(), 2);
  EXPECT_EQ(test::fileBytes(directory.filePath(files[1])), "{ half");
  EXPECT_THAT(messages[1].first.toStdString(), HasSubstr(files[1].toStdString()));
}

class Panel : public QObject, public IHasProject {
 public:
  explicit Panel(QObject* parent) { setParent(parent); }
};

TEST(HasProject, FindsTheProjectOfTheNearestPanel) {
  Project outerProject;
  Project innerProject;
  Panel outer(nullptr);
  QObject between(&outer);
  Panel inner(&between);
  EXPECT_EQ(inner.getProject(), nullptr);
  outer.setProject(&outerProject);
  EXPECT_EQ(inner.getProject(), &outerProject);
  inner.setProject(&innerProject);
  EXPECT_EQ(inner.getProject(), &innerProject);
  EXPECT_EQ(inner.getQtParentProject(), &outerProject);
  EXPECT_EQ(IHasProject().getProject(), nullptr) << "no QObject, no parents";
}

}  // namespace
