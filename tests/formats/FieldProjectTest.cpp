// The way of field jobs and coordinate files into a project, through it and out of it.
#include "support/FieldRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <utils/QLogicError.h>
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
  kvn::TraverseDataInfo const& p = project->getTraverseDataList()[3];
  EXPECT_NEAR(p.N, 1000 + 100 * std::cos(3 * test::kDegree) * std::cos(150 * test::kDegree), 1e-6);
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
    char const* name;
    char const* text;
    char const* says;
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

TEST_F(FieldProject, BringsResultsIntoTheCoordinateList) {
  project->read(file("job.txt", test::kFieldBook));
  project->generateNetworkData();
  project->getCoordinatePointList().emplace_back();
  EXPECT_EQ(test::failureOf<QLogicError>([this] { project->algorithmPointConvertCoord(); }),
            "There is no adjustment result");
  EXPECT_EQ(project->getCoordinatePointList().size(), 1U);
  auto adjustment = std::make_unique<kvn::AlgorithmAdjust>();
  adjustment->setNetworkData(project->getNetwork());
  adjustment->calculateAdjust();
  project->setAlgorithmAdjust(std::move(adjustment));
  // The one line has two faces, which the elevation of both makes right.
  project->setTraverseDataList(kvn::elevationRows(project->getTraverseDataList()).rows);
  project->setVerticalAngleType(kvn::ElevationAngle);
  project->calculateTriangleHeight();
  auto const heightOfP = [this] {
    project->algorithmPointConvertCoord();
    for (kvn::CoordinatePointInfo const& point : project->getCoordinatePointList()) {
      if (point.name == "P") return point.Z;
    }
    return -1.0;
  };
  double const s = 100 * std::cos(3 * test::kDegree);
  double const expected = 50 + 100 * std::sin(3 * test::kDegree) + 1.5 - 1.6 + 0.84 * s * s / (2 * 6371393.0);
  EXPECT_NEAR(heightOfP(), expected, 1e-7);  // the index 0.16 is a float: 4e-9 of it
  project->getConfigure().TraversePointAdjust = 1;
  EXPECT_EQ(heightOfP(), 0);
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

}  // namespace
