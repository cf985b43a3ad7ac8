// The project file: what it holds, in all versions; and that no failure costs what was saved before.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <utils/QLogicError.h>
#include <QDir>
#include <QTemporaryDir>
#include <cmath>
#include <limits>
#include <random>

#include "support/FieldRows.h"
#include "support/Support.h"

namespace {

using namespace kvn;

class ProjectFile : public testing::Test {
 protected:
  QString path(QString const& name) const { return folder.filePath(name); }
  QString file(QString const& name, std::string const& bytes) const {
    test::writeFile(path(name), bytes);
    return path(name);
  }
  /// A project of its own that has read the document; one that held other data before.
  std::shared_ptr<Project> readBack(QString const& name) {
    auto other = host.system.createProject();
    other->setTraverseDataList(std::vector<TraverseDataInfo>(2));
    other->getNetwork().lines.resize(2);
    other->setCoordinatePointList(std::vector<CoordinatePointInfo>(2));
    other->read(path(name));
    return other;
  }

  test::Host host;
  QTemporaryDir folder;
  std::shared_ptr<Project> project = host.system.createProject();
};

TEST_F(ProjectFile, IsWrittenInTheFormThatOtherProgramsRead) {
  project->read(file("job.txt", test::kFieldBook));
  std::vector<TraverseDataInfo>& rows = project->getTraverseDataList();
  rows.resize(1);
  rows[0].id = "1";
  rows[0].groupId = "2";
  rows[0].name = "A<&\"\t";
  rows[0].instrument = 0.1;
  rows[0].azimuth = -1e22;
  project->read(file("points.dat", "P,K,1,2.5,3\n"));
  project->setFileType(Project::VrdFile);
  project->saveAs(path("out.kvn"));
  // By hand from the format; 0.1 is written with 17 digits, so that every double reads back.
  EXPECT_EQ(test::fileBytes(path("out.kvn")), R"(<?xml version="1.0" encoding="UTF-8"?>
<Kelvane Version="1.0.1" FileType="1">
    <Config AngleError="2" LineFixedError="3" LineProportionError="3" LineCalculateExpression="false" AdjustMethod="0" TraversePointAdjust="0" AtmosphericIndex="0.16"/>
    <ViewData Name="job.txt">
        <Point name="A&lt;&amp;&quot;&#9;" pointType="StationPoint" id="1" groupId="2" isKnown="true" instrument="0.10000000000000001" slant_distance="0" isSlantDistanceHave="true" horizontal_distance="0" horizontal_angle="0" vertical_angle="0" azimuth="-1e+22" N="1000" E="1000" Z="50"/>
    </ViewData>
    <CoordinateData Name="points.dat">
        <Point name="P" signal="K" N="2.5" E="1" Z="3"/>
    </CoordinateData>
</Kelvane>
)");
  EXPECT_EQ(project->getProjectFile(), path("out.kvn"));
  EXPECT_EQ(project->getName(), "points");
}

/// Any bytes but NUL: control characters, quotes, bytes that are no UTF-8.
std::string anyText(std::mt19937& random) {
  std::string text(random() % 6, ' ');
  for (char& c : text) c = static_cast<char>(1 + random() % 255);
  return text;
}

double anyNumber(std::mt19937& random) {
  double const special[] = {0.0, -0.0, 1e308, -5e300, std::numeric_limits<double>::min(), 1e30, -9999.9, 4e9, 1e17};
  if (random() % 3 == 0) return special[random() % std::size(special)];
  return std::ldexp(double(random()) - 2147483648.0, int(random() % 80) - 60);
}

bool same(double a, double b) { return a == b && std::signbit(a) == std::signbit(b); }

bool same(TraverseDataInfo const& a, TraverseDataInfo const& b) {
  return a.name == b.name && a.pointType == b.pointType && a.id == b.id && a.groupId == b.groupId &&
         a.isKnown == b.isKnown && same(a.instrument, b.instrument) && same(a.slant_distance, b.slant_distance) &&
         a.isSlantDistanceHave == b.isSlantDistanceHave && same(a.horizontal_distance, b.horizontal_distance) &&
         same(a.horizontal_angle, b.horizontal_angle) && same(a.vertical_angle, b.vertical_angle) &&
         same(a.azimuth, b.azimuth) && same(a.N, b.N) && same(a.E, b.E) && same(a.Z, b.Z);
}

TEST_F(ProjectFile, GivesBackEveryRowAndPointToTheLastBit) {
  std::mt19937 random(20);  // the last bit counts: 17 digits hold it
  for (int i = 0; i < 300; ++i) {
    TraverseDataInfo row;
    row.name = anyText(random);
    row.pointType = static_cast<TraversePointType::Value>(random() % 8);
    row.groupId = anyText(random);
    row.isKnown = random() % 2 == 0;
    row.isSlantDistanceHave = random() % 2 == 0;
    for (double* number : {&row.instrument, &row.slant_distance, &row.horizontal_distance, &row.horizontal_angle,
                           &row.vertical_angle, &row.azimuth, &row.N, &row.E, &row.Z}) {
      *number = anyNumber(random);
    }
    project->getTraverseDataList().push_back(row);
    CoordinatePointInfo point;
    point.name = anyText(random);
    point.signal = anyText(random);
    for (double* number : {&point.N, &point.E, &point.Z}) *number = anyNumber(random);
    project->getCoordinatePointList().push_back(point);
  }
  project->setFileType(Project::CosaFile);  // so that no network is made of these rows
  project->getConfigure().AngleError = 0.7F;
  project->saveAs(path("all.kvn"));

  auto const back = readBack("all.kvn");
  ASSERT_EQ(back->getTraverseDataList().size(), 300U);
  ASSERT_EQ(back->getCoordinatePointList().size(), 300U);
  for (std::size_t i = 0; i < 300; ++i) {
    EXPECT_TRUE(same(back->getTraverseDataList()[i], project->getTraverseDataList()[i])) << i;
    CoordinatePointInfo point = back->getCoordinatePointList()[i];
    EXPECT_NE(point.id, project->getCoordinatePointList()[i].id);
    point.id = project->getCoordinatePointList()[i].id;
    EXPECT_EQ(point, project->getCoordinatePointList()[i]) << i;
  }
  EXPECT_EQ(back->getConfigure().AngleError, 0.7F);
  EXPECT_EQ(back->getFileType(), Project::CosaFile);
  back->saveAs(path("again.kvn"));
  EXPECT_EQ(test::fileBytes(path("again.kvn")), test::fileBytes(path("all.kvn")));
}

TEST_F(ProjectFile, HoldsANetworkWithoutHeightsAndOnlyWhenThereAreNoRows) {
  project->read(test::samplePath("net_charamza1990_p238.in2"));
  project->getNetwork().knownPoints[0].id = "k";
  project->getNetwork().knownPoints[0].z = 5;
  project->saveAs(path("net.kvn"));
  auto const back = readBack("net.kvn");
  Network const& network = back->getNetwork();
  ASSERT_EQ(network.lines.size(), project->getNetwork().lines.size());
  for (std::size_t i = 0; i < network.lines.size(); ++i) {
    NetworkDataInfo const& written = project->getNetwork().lines[i];
    EXPECT_TRUE(network.lines[i] == written && network.lines[i].id == written.id &&
                network.lines[i].horizontal_angle == written.horizontal_angle &&
                network.lines[i].horizontal_distance == written.horizontal_distance);
  }
  EXPECT_EQ(network.knownPoints[0].id, "k");
  EXPECT_EQ(network.knownPoints[0].x, project->getNetwork().knownPoints[0].x);
  EXPECT_EQ(network.knownPoints[0].z, 0);
  EXPECT_EQ(back->getNetworkFile(), "net_charamza1990_p238.in2") << "without its folder";
  EXPECT_TRUE(back->getTraverseDataList().empty());

  project->getTraverseDataList().emplace_back();
  project->saveAs(path("net.kvn"));
  EXPECT_EQ(test::fileBytes(path("net.kvn")).find("NetworkData"), std::string::npos);
}

TEST_F(ProjectFile, BringsItsKnownPointsInPlaceOfThoseBefore) {
  project->addKnownPoint({"A", 1, 2, 3});
  project->read(file("both.kvn", "<K><ViewData><Point name='B' isKnown='1'/></ViewData><NetworkData/></K>"));
  project->addKnownPoint({"A", 4, 5, 6});
  project->setFileType(Project::LqfFile);
  project->generateNetworkData();
  std::vector<KnownPoint> const& known = project->getNetwork().knownPoints;
  ASSERT_EQ(known.size(), 2U);
  EXPECT_TRUE(known[0].name == "B" && known[1].name == "A");
}

TEST_F(ProjectFile, TellsItsKindByItsVersion) {
  std::string const view = "<ViewData/>";
  std::string const network = "<NetworkData/>";
  std::string const coordinates = "<CoordinateData/>";
  struct Case {
    std::string root, data;
    int type;  // a new project is of type 1, this one has type 3
    char const* version;
  };
  for (Case const& c :
       {Case{"Version='1.0.1' FileType='2'", view, 2, "1.0.1"}, Case{"Version='1.0.1'", view, 0, "1.0.1"},
        Case{"Version='1.0.1' FileType='x'", network, 0, "1.0.1"},
        Case{"Version='1.0.1' FileType='7'", network, 7, "1.0.1"},
        Case{"Version=' 1.0.1&#9;' FileType='2'", "", 2, "1.0.1"}, Case{"FileType='0'", "", 3, ""},
        Case{"Version=''", view, 1, ""}, Case{"Version='  '", view + network, 2, ""},
        Case{"", network + coordinates, 3, ""}, Case{"", coordinates + view, 3, ""},
        Case{"Version='1.0.2' FileType='0'", view + network, 3, "1.0.2"}}) {
    SCOPED_TRACE(c.root + c.data);
    Project old;
    old.setFileType(Project::CoordFile);
    old.read(file("v.kvn", "<AnyRoot " + c.root + ">" + c.data + "</AnyRoot>"));
    EXPECT_EQ(int(old.getFileType()), c.type);
    EXPECT_EQ(old.getVersion(), c.version);
    old.saveAs(path("w.kvn"));
    std::string const written = "Version=\"" + std::string(c.version) + "\" FileType=\"" + std::to_string(c.type);
    EXPECT_NE(test::fileBytes(path("w.kvn")).find(written), std::string::npos) << "the version stays";
  }
}

TEST_F(ProjectFile, ReadsWhatIsAbsentOrWrongAsTheDefaultOfItsField) {
  project->read(file("odd.kvn",
                     "<K Version='1.0.1' FileType='2'>"
                     "<ViewData Name='v.txt'><Point/><Line name='no'/>"
                     "<Point name='B' pointType='Prism' instrument=' 1.5m' isKnown='perhaps' isSlantDistanceHave='0'"
                     " N='x' E='' Z='1e999' code='c'/></ViewData>"
                     "<NetworkData Name='n.in2'><NetworkLines><Line/></NetworkLines><KnownPoints><Point x='0x10'/>"
                     "</KnownPoints></NetworkData><CoordinateData><Point N='1'/></CoordinateData></K>"));
  std::vector<TraverseDataInfo> const& rows = project->getTraverseDataList();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_TRUE(rows[0].id.empty() && rows[0].groupId.empty() && rows[0].name.empty());
  TraverseDataInfo const& row = rows[1];
  EXPECT_TRUE(row.pointType == TraversePointType::PrismPoint && !row.isKnown && !row.isSlantDistanceHave);
  EXPECT_TRUE(row.instrument == 1.5 && row.N == 0 && row.E == 0 && row.Z == 0 && row.code.empty());
  Network const& network = project->getNetwork();
  ASSERT_TRUE(network.lines.size() == 1 && network.knownPoints.size() == 1);
  EXPECT_TRUE(network.lines[0].id.empty() && network.knownPoints[0].id.empty() && network.knownPoints[0].x == 16);
  EXPECT_TRUE(project->getCoordinatePointList().size() == 1 && project->getCoordinatePointList()[0].N == 1);
  EXPECT_TRUE(project->getViewFile() == "v.txt" && project->getNetworkFile() == "n.in2");
  EXPECT_TRUE(project->getCoordFile().isEmpty());
}

TEST_F(ProjectFile, IsRefusedWhenItCannotBeReadAndThenTheProjectIsEmpty) {
  for (char const* bad : {"", "no xml", "<K><ViewData></K>", "<K a='1", "<?xml version='1.0'?>", "\xff\xfe<"}) {
    SCOPED_TRACE(bad);
    project->read(file("job.txt", test::kFieldBook));
    QString const path = file("bad.kvn", bad);
    EXPECT_EQ(test::failureOf<QLogicError>([&] { project->read(path); }), "Can not open file");
    EXPECT_TRUE(project->isEmpty() && project->getVersion().isEmpty() && project->getProjectFile().isEmpty());
    EXPECT_EQ(project->getName(), "job");
  }
  // Of as many attributes as the parser takes in reasonable time, and one more. What only looks like them is none.
  std::string const most =
      "<K><!-- <K a='' --><P b=\"'<>'\"/>\n<![CDATA[<K a='']]><Q" + test::xmlAttributes(100) + "/></K>";
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->read(file("most.kvn", most)); }), "no failure");
  for (char const* end : {"/></K>", ">", " ", " a", ""}) {
    QString const path = file("bad.kvn", "<K><!-- > -->\n<?p '?><Q" + test::xmlAttributes(101) + end);
    EXPECT_EQ(test::failureOf<QLogicError>([&] { project->read(path); }),
              "Line 2: an element with more than 100 attributes");
    EXPECT_TRUE(project->isEmpty());
  }
  for (char const* name : {"missing.kvn", "folder.kvn", "pipe.kvn", "folder.dat", "pipe.dat"}) {
    SCOPED_TRACE(name);
    if (QString(name).startsWith("folder")) QDir(folder.path()).mkdir(name);
    if (QString(name).startsWith("pipe")) mkfifo(path(name).toStdString().c_str(), 0600);
    EXPECT_EQ(test::failureOf<QLogicError>([&] { project->read(path(name)); }), "Can not open file");
  }
}

TEST_F(ProjectFile, LeavesTheFilesAloneThatTheProjectWasMadeFromBefore) {
  std::string const points = "P,K,1,2.5,3\n";
  QString const coordinates = file("points.dat", points);
  project->read(coordinates);
  QString const bad = file("bad.kvn", "<");
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->read(bad); }), "Can not open file");
  project->save();
  EXPECT_EQ(test::fileBytes(coordinates), points);
  // Coordinates have joined a traverse, and a network command has emptied its rows.
  project->read(file("job.txt", test::kFieldBook));
  project->read(coordinates);
  project->setTraverseDataList({});
  project->setFileType(Project::VrdFile);
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->save(); }), "View Data is empty");
  EXPECT_EQ(test::fileBytes(path("job.txt")), test::kFieldBook);
}

TEST_F(ProjectFile, GeneratesTheNetworkOfRowsAndLeavesTheLegendCodes) {
  project->read(file("job.txt", test::kFieldBook));
  project->saveAs(path("job.kvn"));
  auto const back = readBack("job.kvn");
  EXPECT_EQ(back->getNetwork().lines.size(), 2U);
  EXPECT_EQ(back->getNetwork().knownPoints.size(), 2U);
  EXPECT_EQ(back->getLegendCodeXmlMannager(), nullptr);
  EXPECT_TRUE(back->getName() == "job" && back->getProjectFile() == path("job.kvn") && !back->isModified());
  back->setVersion(QString());
  back->resetData();
  back->saveAs(path("job.kvn"));
  EXPECT_NE(test::fileBytes(path("job.kvn")).find("Version=\"\""), std::string::npos);
}

/// Lets files grow to `bytes` while it lives: a write beyond fails, as on a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit limited = old;
    limited.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &old); }
  FileSizeLimit(FileSizeLimit const&) = delete;
  FileSizeLimit& operator=(FileSizeLimit const&) = delete;

 private:
  rlimit old{};
};

TEST_F(ProjectFile, StaysWholeWhenTheNewOneCannotBeWritten) {
  project->read(file("job.txt", test::kFieldBook));
  project->saveAs(path("job.kvn"));
  std::string const saved = test::fileBytes(path("job.kvn"));
  project->getTraverseDataList().resize(100);
  {
    FileSizeLimit const full(1000);
    EXPECT_EQ(test::failureOf<QLogicError>([&] { project->saveAs(path("job.kvn")); }),
              "Can not write file: File too large");
  }
  EXPECT_EQ(test::fileBytes(path("job.kvn")), saved);
  EXPECT_EQ(QDir(folder.path()).entryList({"job.kvn*"}), QStringList("job.kvn")) << "nothing half written is left";
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->saveAs(path("missing/job.kvn")); }),
            "Can not write file: No such file or directory");
  QDir(folder.path()).mkdir("taken.kvn");
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project->saveAs(path("taken.kvn")); }),
            "Can not write file: Is a directory");
  EXPECT_EQ(project->getTraverseDataList().size(), 100U);
}

TEST_F(ProjectFile, ReplacesANulWhichXmlCannotHold) {
  project->getCoordinatePointList().emplace_back();
  project->getCoordinatePointList()[0].name = std::string("A\0B", 3);
  project->saveAs(path("nul.kvn"));
  EXPECT_EQ(readBack("nul.kvn")->getCoordinatePointList()[0].name,
            "A\xEF\xBF\xBD"
            "B");
}

}  // namespace
