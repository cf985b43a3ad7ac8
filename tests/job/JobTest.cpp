// A job from its file to coordinates and back: what `kelvane` gives, every host gets.
#include "Folder.h"

#include "host/Program.h"

#include <gmock/gmock.h>
#include <cmath>

namespace {

using namespace kvn;
using test::JobInFolder;
using testing::HasSubstr;

std::string failureOf(std::function<void()> const& call) { return test::failureOf<JobException>(call); }

CoordinatePointInfo coordinate(Job const& job, std::string const& name) {
  for (CoordinatePointInfo const& point : job.project()->getCoordinatePointList()) {
    if (point.name == name) return point;
  }
  ADD_FAILURE() << name;
  return {};
}

TEST_F(JobInFolder, WeighsByTheErrorsInTheHeadOfANetworkFile) {
  job.open(written("first.in2", test::kFirstNetwork));
  job.adjust();
  job.takeResults();
  EXPECT_EQ(job.project()->getAlgorithmAdjust(), nullptr);
  // Directions of 20" hardly count against the two distances, which are 1.4 and 8.6 mm too short or long for P at
  // 1100, 1100: their mean lifts it by 5 mm. With the defaults it would be 1100.0020.
  EXPECT_NEAR(coordinate(job, "P").N, 1100.0050, 5e-5);
}

// A run shares the observations of the file, whose errors are those of its settings.
TEST_F(JobInFolder, RunsAgainWithOtherErrorsAsAJobOfItsOwn) {
  QString const file = written("first.in2", test::kFirstNetwork);
  job.open(file);
  for (float const millimetres : {1.0F, 30.0F, 5.0F}) {
    Configure configure = job.project()->getConfigure();
    configure.LineFixedError = millimetres;
    job.project()->setConfigure(configure);
    job.adjust();
    Job fresh;
    fresh.open(file);
    fresh.project()->setConfigure(configure);
    fresh.adjust();
    for (std::size_t p = 0; p < fresh.planeAdjustment()->result().points.size(); ++p) {
      EXPECT_EQ(job.planeAdjustment()->result().points[p].x, fresh.planeAdjustment()->result().points[p].x);
      EXPECT_EQ(job.planeAdjustment()->result().points[p].mp, fresh.planeAdjustment()->result().points[p].mp);
    }
    // With 2 ppm of 141.42 m.
    EXPECT_NEAR(job.planeAdjustment()->network().distances[0].error, 1e-3 * double(millimetres) + 0.00028284, 1e-9);
  }
}

// What a run was told stays with it while the next one is weighed, and fails.
TEST_F(JobInFolder, KeepsTheErrorsOfAResultThatTheNextRunDoesNotReplace) {
  job.open(written("first.in2", test::kFirstNetwork));
  job.adjust();
  double const error = job.planeAdjustment()->network().distances[0].error;
  Configure configure = job.project()->getConfigure();
  configure.LineFixedError = 30.0F;
  job.project()->setConfigure(configure);
  job.setCancelCall([] { return true; });
  EXPECT_ANY_THROW(job.adjust());
  ASSERT_NE(job.planeAdjustment(), nullptr);
  EXPECT_EQ(job.planeAdjustment()->network().distances[0].error, error);
}

/// Points and unit weight error, each to the last bit.
void expectSameAsTheProgram(PlaneAdjustment const& run, Json::Value const& json) {
  ASSERT_EQ(json["points"].size(), run.network().points.size());
  for (Json::ArrayIndex i = 0; i < json["points"].size(); ++i) {
    EXPECT_EQ(json["points"][i]["name"].asString(), run.network().points[i].name);
    EXPECT_EQ(json["points"][i]["x"].asDouble(), run.result().points[i].x);
    EXPECT_EQ(json["points"][i]["mp"].asDouble(), run.result().points[i].mp);
  }
  EXPECT_EQ(json["unitError"].asDouble(), run.result().unitError);
}

void expectSameAsTheProgram(AlgorithmAdjust const& result, Json::Value const& json) {
  auto const& points = result.getPointErrorInfoList();
  ASSERT_EQ(json["points"].size(), points.size());
  for (Json::ArrayIndex i = 0; i < points.size(); ++i) {
    EXPECT_EQ(json["points"][i]["name"].asString(), points[i].name);
    EXPECT_EQ(json["points"][i]["x"].asDouble(), points[i].x);
    EXPECT_EQ(json["points"][i]["y"].asDouble(), points[i].y);
    EXPECT_EQ(json["points"][i]["mp"].asDouble(), points[i].mp);
  }
  EXPECT_EQ(json["unitError"].asDouble(), result.getSummary().unitError);
  EXPECT_EQ(json["counts"]["directions"].asInt(), result.getSummary().directions);
}

TEST_F(JobInFolder, GivesWhatTheProgramGivesOfTwoSetUps) {
  test::Program const program;
  program.write("job.lqf", test::kTwoSetUps);
  QString const file = written("job.lqf", test::kTwoSetUps);
  job.open(file);
  job.adjust();
  expectSameAsTheProgram(*job.planeAdjustment(), program.run({"adjust", "job.lqf", "--json"}).json());
  // A to Q is 80 m at 30° behind B, which lies to the east. The station map halves that direction.
  job.takeResults();
  EXPECT_NEAR(coordinate(job, "Q").N, 1000.0 - 80.0 * std::sin(30.0 * std::acos(-1.0) / 180.0), 1e-4);
  job.open(file, Job::Reading::AsRead);
  EXPECT_EQ(job.reading(), Job::Reading::AsRead);
  job.adjust();
  ASSERT_EQ(job.planeAdjustment(), nullptr);
  expectSameAsTheProgram(*job.project()->getAlgorithmAdjust(),
                         program.run({"adjust", "job.lqf", "--as-read", "--json"}).json());
  job.takeResults();
  EXPECT_GT(std::abs(coordinate(job, "Q").N - 960.0), 1.0);
}

TEST_F(JobInFolder, AdjustsASingleTraverseByTheSettings) {
  job.open(test::samplePath("trav_connecting_fr_5legs.txt"));
  job.project()->getConfigure().AdjustMethod = 2;
  job.adjust();
  TraverseSummary const& summary = job.project()->getAlgorithmAdjust()->getTraverseSummary();
  EXPECT_TRUE(summary.hasMisclosure);
  EXPECT_LT(job.adjustedNetwork().lines.size(), 1U + job.project()->getNetwork().lines.size());
  job.project()->getConfigure().AdjustMethod = 3;
  EXPECT_THAT(failureOf([this] { job.adjust(); }),
              HasSubstr("trav_connecting_fr_5legs.txt: Known points are not enough: "));
  job.project()->getConfigure().AdjustMethod = 5;
  EXPECT_THAT(failureOf([this] { job.adjust(); }), HasSubstr("there is no method of adjustment of the number 5"));
  EXPECT_TRUE(job.project()->getAlgorithmAdjust()->getTraverseSummary().hasMisclosure) << "the earlier result stays";
}

TEST_F(JobInFolder, WarnsOfADoubtfulResultAtTheEnd) {
  std::string network = test::kFirstNetwork;
  network.replace(network.find("141.43"), 6, "151.43");
  QString const file = written("doubtful.in2", network);
  for (Job::Reading const reading : {Job::Reading::Careful, Job::Reading::AsRead}) {
    job.open(file, reading);
    host.messages.clear();
    job.adjust();
    ASSERT_FALSE(host.messages.empty());
    EXPECT_EQ(host.messages.back().first,
              "The unit weight error is far above 1: a gross error, or known points that do not fit");
  }
}

TEST_F(JobInFolder, TellsProgressAndEndsWhenTheHostSaysSo) {
  job.open(test::samplePath("net_charamza1990_p238.in2"));
  int calls = 0;
  job.setProgressCall([&calls](AdjustProgress const&) { ++calls; });
  job.adjust();
  EXPECT_GT(calls, 2);
  PlaneAdjustment const* const before = job.planeAdjustment();
  job.setCancelCall([] { return true; });
  EXPECT_THAT(failureOf([this] { job.adjust(); }), testing::EndsWith("net_charamza1990_p238.in2: User Cancel"));
  EXPECT_EQ(job.planeAdjustment(), before);
}

TEST_F(JobInFolder, KeepsAnEarlierResultWholeWhereTheHeightsBesideThePlaneAreCancelled) {
  job.open(written("book.txt", test::kFieldBook));
  int calls = 0;
  int allowed = 1000000;
  job.setCancelCall([&] { return ++calls > allowed; });
  for (int const method : {4, 0}) {
    job.project()->getConfigure().AdjustMethod = method;
    calls = 0;
    allowed = 1000000;
    job.adjust();
    PlaneAdjustment const* const plane = job.planeAdjustment();
    std::size_t const traverses = job.traverses().size();
    HeightAdjustment const* const heights = job.heightAdjustment();
    ASSERT_NE(heights, nullptr);
    EXPECT_EQ(traverses, method == 0 ? 0U : 1U);
    // The last question is one of the heights, when the plane is finished.
    allowed = calls - 1;
    calls = 0;
    host.messages.clear();
    job.project()->getConfigure().AdjustMethod = method;
    EXPECT_THAT(failureOf([this] { job.adjust(); }), testing::EndsWith("book.txt: User Cancel"));
    EXPECT_EQ(job.planeAdjustment(), plane);
    EXPECT_EQ(job.traverses().size(), traverses);
    ASSERT_EQ(job.heightAdjustment(), heights);
    EXPECT_NEAR(job.heightAdjustment()->result().points[1].height, 55.1343, 5e-5);
  }
}

TEST_F(JobInFolder, GivesObservationsBackWhereHeightsAloneAreWanted) {
  for (Job::Reading const reading : {Job::Reading::Careful, Job::Reading::AsRead}) {
    bool const isCareful = reading == Job::Reading::Careful;
    double heights[2] = {};
    for (bool const keeps : {true, false}) {
      job.open(test::samplePath("trig_height_reciprocal.txt"), reading);
      HeightOptions options;
      options.keepsObservations = keeps;
      job.setHeightOptions(options);
      job.adjustHeights();
      EXPECT_EQ(job.project()->getTraverseDataList().empty(), !keeps);
      EXPECT_EQ(job.project()->getNetwork().lines.empty(), !keeps);
      heights[keeps ? 0 : 1] = isCareful
                                   ? job.heightAdjustment()->result().points[1].height
                                   : job.project()->getTriangleHeightAdjust()->getTriangleHeightPointInfo()[1].height;
    }
    EXPECT_GT(heights[0], 0.0);
    EXPECT_EQ(heights[0], heights[1]);
  }
  EXPECT_THAT(failureOf([this] { job.adjustHeights(); }), HasSubstr("the file has no rows of a field book"));
}

TEST_F(JobInFolder, TellsFindingsFromASeverityOn) {
  // D is sighted on one face of two, and P's faces are 4" apart: a warning and a note.
  job.open(
      written("book.txt",
              "STA,A,1.5,,1000,1000,50\nSC,P,1.5,,0.0000,90.0000,100,0,0,0\nSC,D,1.5,,40.0000,90.0000,100,0,0,0\n"
              "SC,P,1.5,,180.0004,270.0000,100,0,0,0\nSTA,B,1.5,,1100,1000,50\nSC,Q,1.5,,400.0000,90.0000,50,0,0,0\n"));
  constexpr unsigned kSources = Job::FieldReduced | Job::RowChecks;
  std::vector<QString> wanted;
  for (FieldFinding const& finding : job.findingsOf(kSources)) {
    if (finding.severity != FieldFinding::Note) wanted.push_back(worded(finding));
  }
  std::vector<QString> told;
  for (FieldFinding const& finding : job.findingsOf(kSources, FieldFinding::Warning)) told.push_back(worded(finding));
  EXPECT_EQ(told, wanted);
  EXPECT_GT(told.size(), 1U);
  EXPECT_GT(job.findingsOf(kSources).size(), told.size());
}

TEST_F(JobInFolder, HasNoCalculatorOfALoopButItsTraverse) {
  job.open(test::samplePath("trav_closed_5sides.in2"));
  job.project()->getConfigure().AdjustMethod = 3;
  job.adjust();
  EXPECT_EQ(job.project()->getAlgorithmAdjust(), nullptr);
  ASSERT_EQ(job.traverses().size(), 1U);
  job.takeResults();
  EXPECT_EQ(job.project()->getCoordinatePointList().size(), job.traverses()[0].points.size());
}

TEST_F(JobInFolder, NestsTheCauseOfAFailure) {
  job.open(written("loose.in2", "2,3,2\nA,0,0\nA\nP,L,0\nP,S,10\n"));
  try {
    job.adjust();
    ADD_FAILURE() << "adjusted";
  } catch (JobException const& failure) {
    EXPECT_EQ(failure.file, job.file());
    EXPECT_THROW(std::rethrow_if_nested(failure), AlgorithmException);
  }
}

TEST_F(JobInFolder, TakesCoordinatesAndHeightsIntoTheProjectAndReadsThemBack) {
  job.open(written("book.txt", test::kFieldBook));
  EXPECT_THAT(failureOf([this] { job.takeResults(); }), HasSubstr("There is no adjustment result"));
  job.adjust();
  job.takeResults();
  // 100 m at 3° from 50 m, 0.1 m between the heights of instrument and target, and 0.84 S²/2R = 0.7 mm of curvature and
  // refraction; without refraction it is 0.1 mm more.
  EXPECT_NEAR(coordinate(job, "P").Z, 55.1343, 5e-5);
  EXPECT_NEAR(coordinate(job, "P").N, 913.5161, 5e-5);
  EXPECT_EQ(job.heightAdjustment()->result().sights.size(), 1U);
  HeightOptions options;
  options.refraction = 0.0;
  job.setHeightOptions(options);
  job.takeResults();
  EXPECT_NEAR(coordinate(job, "P").Z, 55.1344, 5e-5);
  EXPECT_TRUE(job.project()->getTriangleHeightAdjust()->getTriangleHeightPointInfo().empty());

  job.save(path("new/job.kvn"));
  Job again(host.system.createProject());
  again.open(path("new/job.kvn"));
  EXPECT_EQ(coordinate(again, "P").N, coordinate(job, "P").N);
  EXPECT_EQ(again.project()->getTraverseDataList().size(), 6U);
  again.adjust();
  again.setHeightOptions(options);
  again.takeResults();
  EXPECT_EQ(coordinate(again, "P").Z, coordinate(job, "P").Z);
}

TEST_F(JobInFolder, LeavesOfTheCoordinateListWhatTheRunDoesNotKnow) {
  struct Case {
    int method;
    Job::Reading reading;
  };
  for (Case const& c :
       {Case{0, Job::Reading::Careful}, Case{1, Job::Reading::Careful}, Case{0, Job::Reading::AsRead}}) {
    SCOPED_TRACE(c.method);
    job.open(written("first.in2", test::kFirstNetwork), c.reading);
    std::vector<CoordinatePointInfo> list(2);
    list[0].name = "Z9";
    list[0].signal = "kerb";
    list[0].N = 5.0;
    list[0].Z = 7.0;
    list[1].name = "P";
    list[1].signal = "mast";
    list[1].Z = 55.134;
    job.project()->setCoordinatePointList(list);
    job.project()->getConfigure().AdjustMethod = c.method;
    job.adjust();
    job.takeResults();
    EXPECT_TRUE(coordinate(job, "Z9") == list[0]);
    EXPECT_EQ(coordinate(job, "P").signal, "mast");
    EXPECT_EQ(coordinate(job, "P").Z, 55.134);
    EXPECT_NEAR(coordinate(job, "P").N, 1100.0, 0.02);
    EXPECT_EQ(job.project()->getCoordinatePointList().size(), 4U);
    EXPECT_EQ(coordinate(job, "B").E, 1200.0);
  }
}

TEST_F(JobInFolder, GivesThePlaneWhereHeightsCannotBeUsed) {
  std::string const book = test::kFieldBook;
  std::string const height = "STA,A,";
  std::size_t const at = book.find(height) + height.size();
  std::string const broken = book.substr(0, at) + "1e30" + book.substr(book.find(',', at));
  job.open(written("broken.txt", broken));
  job.adjust();
  EXPECT_NE(job.planeAdjustment(), nullptr);
  EXPECT_EQ(job.heightAdjustment(), nullptr);
}

TEST_F(JobInFolder, SavesEveryKindThatCanHoldItAndNothingElse) {
  job.open(written("book.txt", test::kFieldBook));
  for (QString const& kind : Job::writableKinds()) {
    SCOPED_TRACE(kind.toStdString());
    job.save(path("out." + kind));
    Job again(host.system.createProject());
    again.open(path("out." + kind));
    if (kind == "dat") {
      EXPECT_EQ(again.project()->getCoordinatePointList().size(), 2U);
      continue;
    }
    again.adjust();
    EXPECT_NEAR(again.planeAdjustment()->result().points[2].x, 913.5161, 1e-4);
  }
  EXPECT_THAT(failureOf([this] { job.save(path("out.doc")); }), HasSubstr("out.doc: unknown kind of file"));
  QString const kept = written("kept.txt", "old");
  job.project()->getTraverseDataList()[1].name = "a,b";
  EXPECT_THAT(failureOf([&] { job.save(kept); }),
              HasSubstr("kept.txt: the name \"a,b\" cannot stand in a file of this kind"));
  EXPECT_EQ(test::fileBytes(kept), "old");
}

TEST_F(JobInFolder, NamesTheOptionsThatAProjectFileDoesNotKeep) {
  job.open(written("first.in2", test::kFirstNetwork));
  job.save(path("plain.kvn"));
  EXPECT_TRUE(host.messages.empty());
  PlaneOptions plane;
  plane.distanceForm = ObservationErrors::Form::Root;
  plane.centring = 0.02;
  job.setPlaneOptions(plane);
  HeightOptions heights;
  heights.refraction = 0.2;
  job.setHeightOptions(heights);
  job.save(path("net.in2"));
  EXPECT_TRUE(host.messages.empty());
  job.save(path("net.kvn"));
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].first,
            "A project file does not keep these options, without which the numbers are others: errors of distances as "
            "the root of both parts; centring 20 mm; refraction 0.2");
}

TEST_F(JobInFolder, KeepsItsRowsWhereAFileCannotHoldAllOfThem) {
  job.open(written("job.lqf", test::kTwoSetUps));
  job.project()->getTraverseDataList()[1].angleMark = 0.0;
  job.save(path("out.lqf"));
  EXPECT_EQ(host.messages.back().first, "The sight to B has no angles and is left out");
  EXPECT_EQ(job.project()->getTraverseDataList().size(), 9U);
}

// P lies 60 m north or south of the line from A to B.
constexpr char const* kTwoDistances = "2,3,3\nA,0,0\nB,0,100\nA\nP,S,72.1110\nB\nP,S,84.8528\n";

TEST_F(JobInFolder, StartsFromTheCoordinatesThatItIsTold) {
  job.open(written("distances.in2", kTwoDistances));
  EXPECT_THAT(failureOf([&] { job.adjust(); }), HasSubstr("P"));
  for (double const side : {1.0, -1.0}) {
    job.openApproximate(written("about.dat", side > 0.0 ? "P,,30,50,0\nZ,,1,1,1\nA,,5,5,5" : "P,,30,-50,0\n"));
    job.adjust();
    EXPECT_NEAR(job.planeAdjustment()->result().points[2].x, 60.0 * side, 1e-3);
    EXPECT_EQ(job.planeAdjustment()->result().points[0].x, 0.0);  // known points keep their coordinates
  }
  EXPECT_THAT(host.messages, testing::Contains(testing::Pair(
                                 "Coordinates of points that the network does not have are ignored: 1 of 3", Info)));
  EXPECT_THAT(failureOf([&] { job.openApproximate(written("twice.dat", "P,,1,2,0\nP,,1,3,0\n")); }),
              HasSubstr("P is given twice"));
  EXPECT_THAT(failureOf([&] { job.openApproximate(written("wrong.dat", "P,,1,2,0\nQ,,1,x,0\n")); }),
              HasSubstr("line 2"));
  EXPECT_THAT(failureOf([&] { job.openApproximate(written("job.lqf", test::kTwoSetUps)); }), HasSubstr(".dat"));
  job.adjust();  // a refused list leaves the one before
  EXPECT_GT(job.plan().result().points[2].mp, 0.0);
  job.open(written("names.in2", "2,3,3\nA,0,0\nB,0,100\nA\nP,S\nB\nP,S\n"), Job::Reading::Plan);
  EXPECT_THAT(failureOf([&] { job.plan(); }), HasSubstr("Points without coordinates: P"));
  job.openApproximate(path("about.dat"));
  EXPECT_NEAR(job.plan().result().distances[0].adjusted, std::hypot(30.0, 50.0), 1e-9);
  EXPECT_THAT(failureOf([&] { job.adjust(); }), HasSubstr("line 5: the observation from A to P has no value"));
  job.open(path("distances.in2"));
  EXPECT_THROW(job.adjust(), JobException);
}

}  // namespace
