// The way of field jobs, networks and coordinate files into a project, through it and out of it.
#include "support/FieldRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <utils/QLogicError.h>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cmath>

namespace {

constexpr char const* kJob =
    "JOB J1\nINST T2\nSTA A,1.5,\nXYZ 1000,1000,50\nSC B,1,\nHVD 36000,324000,100\nSC P,1,\nHVD 72000,324000,50\n"
    "STA B,1,\nXYZ 1100,1000,50\n";

class FieldProject : public testing::Test {
 protected:
  QString file(QString const& name, std::string const& bytes) const {
    test::writeFile(folder.filePath(name), bytes);
    return folder.filePath(name);
  }

  test::Host host;
  QTemporaryDir folder;
  std::shared_ptr<kvn::Project> project = host.system.createProject();
};

TEST_F(FieldProject, TakesATraverseFileWithApproximateCoordinatesAndFlags) {
  project->getNetwork().lines.emplace_back();
  project->setAlgorithmAdjust(std::make_unique<kvn::AlgorithmAdjust>());
  project->setVerticalAngleType(kvn::ElevationAngle);
  std::string doubtful = test::kFieldBook;
  doubtful.replace(doubtful.find("240.0000"), 8, "240.0100");
  doubtful.replace(doubtful.find("1000,1100,50"), 12, "0,0,0");
  project->read(file("a.b.TXT", doubtful));
  // One face of P in error, one known point only: marked, and without coordinates, but there.
  EXPECT_FALSE(project->getTraverseDataList()[2].isHorizontalAngleValid);
  EXPECT_EQ(project->getTraverseDataList()[2].N, 0);
  project->read(file("a.b.TXT", test::kFieldBook));
  for (std::size_t i : {2U, 3U}) {  // both faces of P, in the plane alone
    kvn::TraverseDataInfo const& p = project->getTraverseDataList()[i];
    EXPECT_NEAR(p.N, 1000 + 100 * std::cos(3 * test::kDegree) * std::cos(150 * test::kDegree), 1e-6);
    EXPECT_EQ(p.Z, 0);
  }
  EXPECT_EQ(project->getName(), "a.b");
  EXPECT_EQ(project->getViewFile(), folder.filePath("a.b.TXT"));
  EXPECT_EQ(project->getFileType(), kvn::Project::VrdFile);
  EXPECT_EQ(project->getVerticalAngleType(), kvn::FullCircleZenith);
  EXPECT_TRUE(project->getNetwork().isEmpty());
  EXPECT_EQ(project->getAlgorithmAdjust(), nullptr);
}

TEST_F(FieldProject, StaysAsItWasWhenAFileCannotBeTaken) {
  project->read(file("good.txt", test::kFieldBook));
  project->read(file("good.dat", "P,,1,2,3"));
  struct Case {
    char const *name, *text, *says;
  };
  for (Case const& c : {Case{"empty.txt", "\n\n", "The import file data is empty"},
                        {"bad.txt", "STA,A,1,,0,0,0\nSTA", "The line 2 is wrong"},
                        {"empty.lqf", "", "The file is empty"},
                        {"none.lqf", "JOB x\n", "There is no observation data"},
                        {"bad.dat", "P,,1,2\n", "The Format of Data is wrong"},
                        {"empty.in2", "", "The import file data is empty"},
                        {"head.in2", "2,3,3\n", "The import file data is empty"},
                        {"bad.in2", "K1,0,0,0\n", "The Format of Data is wrong"},
                        {"number.in2", "2,3,3\nK9,,0\n", "invalid stod argument"}}) {
    SCOPED_TRACE(c.name);
    QString const path = file(c.name, c.text);
    EXPECT_EQ(test::failureOf<std::exception>([&] { project->read(path); }).substr(0, std::string(c.says).size()),
              c.says);
    EXPECT_EQ(project->getTraverseDataList().size(), 6U);
    EXPECT_EQ(project->getCoordinatePointList().size(), 1U);
    EXPECT_EQ(project->getProjectFile(), folder.filePath("good.dat"));
    EXPECT_EQ(project->getViewFile(), folder.filePath("good.txt"));
    EXPECT_EQ(project->getFileType(), kvn::Project::CoordFile);
  }
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->read(folder.filePath("missing.in2")); }),
            "The import file data is empty");
  project->read("nothing.xyz");
  EXPECT_EQ(project->getName(), "nothing");
}

TEST_F(FieldProject, NeverSavesTheRowsOfAFailedImportOverTheFileBefore) {
  QString const odd = file("odd.txt", "STA,N,1,,0,0,0\nSC,B,1,,0,90,,0,0,0\n");
  std::string const refused = "The observations come from a file whose import failed: they are not written over the ";
  std::string const network = "2,3,3\nA,1.0000,2.0000\nA\nB,L,0.000000\n";
  for (auto const& [name, text] :
       {std::pair<char const*, std::string>{"good.txt", test::kFieldBook}, {"net.in2", network}}) {
    SCOPED_TRACE(name);
    QString const good = file(name, text);
    project->read(good);
    EXPECT_EQ(test::failureOf<QLogicError>([&] { project->read(odd); }), "Station point name N error");
    EXPECT_EQ(project->getTraverseDataList().front().name, "N");
    EXPECT_TRUE(project->getNetwork().knownPoints.empty());
    EXPECT_NE(project->getViewFile(), odd);
    for (auto const& save : std::initializer_list<std::function<void()>>{
             [this] { project->save(); }, [this] { project->exportVRDTraverseFile(); },
             [this] { project->exportCosaTraverseFile(); }}) {
      EXPECT_EQ(test::failureOf<QLogicError>(save).substr(0, refused.size()), refused);
    }
    EXPECT_EQ(test::fileBytes(good), text);
    project->saveAs(folder.filePath("p.kvn"));
    auto const reopened = host.system.createProject();
    test::failureOf<QLogicError>([&] { reopened->read(folder.filePath("p.kvn")); });
    EXPECT_EQ(reopened->getViewFile(), "");
    project->read(good);
    EXPECT_EQ(test::failureOf<QLogicError>([this] { project->save(); }), "no failure");
    test::failureOf<QLogicError>([&] { project->read(odd); });
    project->read(file("job.lqf", kJob));
    EXPECT_EQ(test::failureOf<QLogicError>([this] { project->save(); }), "no failure");
  }
}

TEST_F(FieldProject, MakesTheNetworkOfItsKindAlone) {
  project->read(file("job.lqf", kJob));
  EXPECT_TRUE(project->generateNetworkData());
  EXPECT_TRUE(project->getNetwork().isEmpty());  // no station map yet
  project->addKnownPoint({"A", 1, 2, 3});
  project->buildStationMap();
  project->generateNetworkData();
  EXPECT_EQ(test::shortText(project->getNetwork().lines), "A>B 0.0000 100.0000\nA>P 10.0000 50.0000\n");
  EXPECT_EQ(project->getNetwork().knownPoints.size(), 1U);
  EXPECT_NEAR(project->getTraverseDataList()[2].reduced_horizontal_angle, 10 * test::kDegree, 1e-14);
  project->setTraverseDataList({});  // a network without rows is that of an empty station map: none
  project->generateNetworkData();
  EXPECT_TRUE(project->getNetwork().isEmpty());
  EXPECT_EQ(project->getNetwork().knownPoints.size(), 1U);

  project->read(file("job.txt", test::kFieldBook));
  project->generateNetworkData();
  EXPECT_EQ(project->getNetwork().lines.size(), 2U);
  EXPECT_EQ(project->getNetwork().knownPoints.size(), 2U);
  project->setTraverseDataList({});
  project->getNetwork().lines.emplace_back();  // by hand
  project->generateNetworkData();
  project->setFileType(kvn::Project::CosaFile);
  project->generateNetworkData();
  EXPECT_EQ(project->getNetwork().lines.size(), 3U);
  project->setFileType(kvn::Project::LqfFile);  // the job's rows are gone, and its station map with them
  project->generateNetworkData();
  EXPECT_TRUE(project->getNetwork().isEmpty());
}

TEST_F(FieldProject, WritesEachKindToItsPathAndToItsSource) {
  EXPECT_FALSE(project->exportVRDTraverseFile() || project->exportLQFFile() || project->exportCoordFile());
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->exportLQFFile(folder.filePath("x.lqf")); }),
            "View Data is empty");
  project->read(file("job.txt", test::kFieldBook));
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->exportLQFFile(folder.filePath("x.lqf")); }),
            "No instrument job was read into the project");
  EXPECT_TRUE(project->exportVRDTraverseFile(folder.filePath("new/job.txt")));
  EXPECT_EQ(test::fileBytes(folder.filePath("new/job.txt")).substr(0, 43),
            "STA,A,1.5,,1000.0000,1000.0000,50.0000\nSC,B");
  project->read(file("job.lqf", kJob));
  EXPECT_TRUE(project->exportLQFFile());
  EXPECT_EQ(test::fileBytes(folder.filePath("job.lqf")).substr(0, 24), "JOB     J1\nINST    T2\nST");
  project->read(file("p.dat", "P,K,1,2,3\n"));
  project->getCoordinatePointList()[0].N = 7;
  EXPECT_TRUE(project->exportCoordFile());
  EXPECT_EQ(test::fileBytes(folder.filePath("p.dat")), "P,K,1.0000,7.0000,3.0000");
  project->setTraverseDataList({});
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->exportLQFFile(folder.filePath("x.lqf")); }),
            "View Data is empty");
  EXPECT_FALSE(QFile::exists(folder.filePath("x.lqf")));
}

constexpr char const* kCosa = "2,3,3\nK1,0,0\nK2,0,100\nK1\nK2,L,0.0\nP,L,45.0\nP,S,50\n";

TEST_F(FieldProject, ReplacesTheNetworkAndDropsTheRowsAndTheResults) {
  project->getTraverseDataList().emplace_back();
  project->setAlgorithmAdjust(std::make_unique<kvn::AlgorithmAdjust>());
  kvn::Network const& network = project->getNetwork();  // stays valid
  project->read(file("job.one.In2", kCosa));
  EXPECT_EQ(network.lines.size(), 2U);
  EXPECT_EQ(network.knownPoints.size(), 2U);
  EXPECT_TRUE(project->getTraverseDataList().empty());
  EXPECT_EQ(project->getAlgorithmAdjust(), nullptr);
  EXPECT_EQ(project->getFileType(), kvn::Project::CosaFile);
  EXPECT_EQ(project->getName(), "job.one");
  EXPECT_EQ(project->getNetworkFile(), folder.filePath("job.one.In2"));
  EXPECT_EQ(project->getProjectFile(), project->getNetworkFile());
}

TEST_F(FieldProject, AcceptsKnownPointsWithoutLines) {
  project->read(file("points.in2", "2,3,3\nK1,0,0\n"));
  EXPECT_TRUE(project->getNetwork().isEmpty());
  EXPECT_EQ(project->getNetwork().knownPoints.size(), 1U);
}

TEST_F(FieldProject, TakesThePathOfAnUnknownKindAndNothingElse) {
  project->read(file("good.in2", kCosa));
  project->read("/nowhere/other.name.xyz");
  EXPECT_EQ(project->getNetwork().lines.size(), 2U);
  EXPECT_EQ(project->getName(), "other.name");
  EXPECT_EQ(project->getProjectFile(), "/nowhere/other.name.xyz");
}

TEST_F(FieldProject, ExportsAndSavesWithDefaultAccuraciesAndCreatesTheFolder) {
  project->read(file("in.in2", "9,9,9\nK1,0,0\nK1\nP,S,50\n"));
  QString const target = folder.filePath("new/deep/out.in2");
  EXPECT_TRUE(project->exportCosaTraverseFile(target));
  EXPECT_EQ(test::fileBytes(target), "2,3,3\nK1,0.0000,0.0000\nK1\nP,L,0.000000\nP,S,50.0000\n");
  project->getNetwork().lines[0].horizontal_distance = 60;
  project->save();
  EXPECT_EQ(test::fileBytes(folder.filePath("in.in2")), "2,3,3\nK1,0.0000,0.0000\nK1\nP,L,0.000000\nP,S,60.0000\n");
}

TEST_F(FieldProject, ExportRefusesAnEmptyNetworkUnlessThereAreRows) {
  QString const target = folder.filePath("out.in2");
  EXPECT_FALSE(project->exportCosaTraverseFile());
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->exportCosaTraverseFile(target); }), "Network Data is empty");
  project->getTraverseDataList().emplace_back();
  EXPECT_TRUE(project->exportCosaTraverseFile(target));
  EXPECT_EQ(test::fileBytes(target), "2,3,3\n");
}

TEST_F(FieldProject, SaysSoWhenAFileCannotBeWrittenAndLeavesTheOldOne) {
  project->read(file("in.in2", kCosa));
  // A folder stands where the file should go.
  QDir(folder.path()).mkdir("taken.in2");
  EXPECT_TRUE(project->exportCosaTraverseFile(folder.filePath("taken.in2")));
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].second, kvn::Error);
  EXPECT_TRUE(host.messages[0].first.contains("taken.in2"));
  EXPECT_TRUE(QFileInfo(folder.filePath("taken.in2")).isDir());
}

}  // namespace
