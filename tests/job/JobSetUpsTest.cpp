// Several set-ups of a station: what keeps one circle a station, and what an edit leaves of the others.
#include "Folder.h"

#include <gmock/gmock.h>
#include <algorithm>
#include <cmath>

namespace {

using namespace kvn;
using testing::HasSubstr;

class JobSetUps : public test::JobInFolder {
 protected:
  void open(std::string const& text) { job.open(written("net.in2", text)); }

  PlaneNetwork const& adjusted() {
    job.adjust();
    return job.planeAdjustment()->network();
  }

  PlanePoint adjustedPoint(std::string const& name) const {
    PlaneAdjustment const& run = *job.planeAdjustment();
    for (std::size_t p = 0; p < run.network().points.size(); ++p) {
      if (run.network().points[p].name == name) return run.result().points[p];
    }
    ADD_FAILURE() << name;
    return {};
  }

  bool isTold(std::string const& text) const {
    return std::any_of(host.messages.begin(), host.messages.end(), [&](auto const& message) {
      return QString(message.first).contains(QString::fromStdString(text));
    });
  }

  std::string failureOf(std::function<void()> const& call) { return test::failureOf<JobException>(call); }
};

// A at 0, 0 sees B in the east, C in the south and P, Q at 100 m in the north-east and south-east. Its second set-up
// has the circle turned by 36°; without the sight to B in it nothing joins the two.
constexpr char const* kFirstCircle = "2,3,2\nA,0,0\nB,0,200\nC,-200,0\nA\nB,L,0.0000\nP,L,315.0000\nP,S,100.000\n";
constexpr char const* kSecondCircle = "A\nC,L,126.0000\nQ,L,81.0000\nQ,S,100.000\n";
constexpr char const* kJoinedCircle = "A\nC,L,126.0000\nB,L,36.0000\nQ,L,81.0000\nQ,S,100.000\n";
constexpr char const* kOthers = "B\nA,L,0.0000\nC\nA,L,0.0000\n";

TEST_F(JobSetUps, AreNoneOfAProjectFileWhereNothingJoinsThem) {
  open(std::string(kFirstCircle) + kSecondCircle + kOthers);
  EXPECT_THAT(
      failureOf([this] { job.save(path("net.kvn")); }),
      HasSubstr(
          "a project file keeps one set-up a station, and those of A cannot be one (line 10: A to C, Q: the set-up "
          "has no target in common with the others of its station); a .in2 file keeps them all"));
  EXPECT_FALSE(QFile::exists(path("net.kvn")));
  for (int const method : {1, 4}) {
    job.project()->getConfigure().AdjustMethod = method;
    EXPECT_THAT(failureOf([this] { job.adjust(); }),
                HasSubstr("A to C, Q: the set-up has no target in common with the others of its station"));
  }
}

TEST_F(JobSetUps, AreTurnedOntoTheFirstForAProjectFileByTheirCommonTargets) {
  // Between the set-ups of A stand those of others: in the project all lines of A follow each other.
  open(std::string(kFirstCircle) + kOthers + kJoinedCircle);
  std::vector<NetworkDataInfo> const before = job.project()->getNetwork().lines;
  job.save(path("net.kvn"));
  EXPECT_TRUE(isTold("A project file keeps one set-up a station: those of A are turned onto the first one"));
  EXPECT_EQ(job.project()->getNetwork().lines[2].end_name, before[2].end_name) << "the job stays as it was";
  EXPECT_EQ(job.project()->getNetwork().lines.back().horizontal_angle, before.back().horizontal_angle);
  job.open(path("net.kvn"));
  EXPECT_EQ(adjusted().setUps.size(), 3U);
  // The observations are without errors; the corner is 100 m / √2.
  double const corner = 100.0 / std::sqrt(2.0);
  EXPECT_NEAR(adjustedPoint("P").x, corner, 1e-6);
  EXPECT_NEAR(adjustedPoint("Q").x, -corner, 1e-6);
  EXPECT_NEAR(adjustedPoint("Q").y, corner, 1e-6);
}

TEST_F(JobSetUps, AreTurnedOntoTheFirstForASingleTraverse) {
  // From B over A to Q: back sight in the first set-up, fore sight in the second. Turned by 36° Q would lie 62 m away.
  std::string const chain = "Q\nA,L,0.0000\nR,L,180.0000\nR,S,100.000\n";
  open("2,3,2\nA,0,0\nB,0,200\nA\nB,L,0.0000\nC,L,90.0000\nA\nC,L,126.0000\nQ,L,81.0000\nQ,S,100.000\n" + chain);
  job.project()->getConfigure().AdjustMethod = 1;
  job.adjust();
  PointInfo const& end = job.traverses().front().stations.back().forePoints.front();
  EXPECT_EQ(end.name, "R");
  EXPECT_NEAR(end.x, -200.0 / std::sqrt(2.0), 1e-6);
  EXPECT_NEAR(end.y, 200.0 / std::sqrt(2.0), 1e-6);
}

TEST_F(JobSetUps, TellWhereTheyDoNotAgree) {
  std::string text = std::string(kFirstCircle) + kJoinedCircle + kOthers;
  // P is 3' off, of which half stays with each of the two common targets.
  std::string const good = "Q,L,81.0000\nQ,S,100.000\n";
  text.replace(text.find(good), good.size(), "P,L,351.0300\n");
  open(text);
  job.save(path("net.kvn"));
  EXPECT_TRUE(isTold("the direction differs by more than 30\" from that of the set-ups before: A to B"));
}

/// What a host does to the lines of the project, and what says the same in the text of the file.
struct Edit {
  char const* name;
  std::function<void(Network&)> edit;
  char const *before, *after;
  bool isTold;  ///< in which of several set-ups it counts
};

NetworkDataInfo& line(Network& network, std::string const& from, std::string const& to) {
  return *std::find_if(network.lines.begin(), network.lines.end(),
                       [&](NetworkDataInfo const& one) { return one.start_name == from && one.end_name == to; });
}

TEST_F(JobSetUps, KeepWhatAnEditLeavesAlone) {
  double const degree = std::acos(-1.0) / 180.0;
  NetworkDataInfo added;
  added.start_name = "A";
  added.end_name = "C";
  added.horizontal_angle = 90.01 * degree;
  Edit const edits[] = {
      {"a known point is moved", [](Network& n) { n.knownPoints[1].y = 200.0001; }, "B,0,200", "B,0,200.0001", false},
      {"a known point is added", [](Network& n) { n.knownPoints.emplace_back("D", 5.0, 5.0, 0.0); }, "C,-200,0\n",
       "C,-200,0\nD,5,5\n", false},
      {"a distance", [](Network& n) { line(n, "A", "Q").horizontal_distance = 100.01; }, "Q,S,100.000", "Q,S,100.010",
       false},
      {"a direction of the second set-up", [&](Network& n) { line(n, "A", "Q").horizontal_angle = 81.01 * degree; },
       "Q,L,81.0000", "Q,L,81.0036", true},
      {"a line of the second set-up goes",
       [](Network& n) { n.lines.erase(n.lines.begin() + (&line(n, "A", "Q") - n.lines.data())); },
       "Q,L,81.0000\nQ,S,100.000\n", "", false},
      {"a line comes", [&](Network& n) { n.lines.push_back(added); }, "P,S,100.000\n", "P,S,100.000\nC,L,90.0036\n",
       true},
      {"a target has another name", [](Network& n) { line(n, "A", "Q").end_name = "R"; }, "Q,L,81.0000\nQ,S",
       "R,L,81.0000\nR,S", true},
  };
  std::string const text = std::string(kFirstCircle) + kJoinedCircle + "P,L,351.0004\n" + kOthers + "P,S,200\n";
  for (Edit const& e : edits) {
    SCOPED_TRACE(e.name);
    std::string expected = text;
    expected.replace(expected.find(e.before), std::string(e.before).size(), e.after);
    open(expected);
    PlaneNetwork const wanted = adjusted();
    double const north = adjustedPoint("P").x;
    open(text);
    Network network = job.project()->getNetwork();
    e.edit(network);
    job.project()->setNetwork(network);
    host.messages.clear();
    PlaneNetwork const& now = adjusted();
    EXPECT_EQ(now.setUps.size(), wanted.setUps.size());
    EXPECT_EQ(now.directions.size(), wanted.directions.size());
    EXPECT_EQ(now.distances.size(), wanted.distances.size());
    EXPECT_NEAR(adjustedPoint("P").x, north, 1e-9);  // the order of the sums differs
    EXPECT_EQ(isTold("the edited direction counts once, in set-up"), e.isTold);
    // Nothing is lost, so that it may take the place of the file.
    job.save(job.file());
    job.open(job.file());
    EXPECT_EQ(adjusted().directions.size(), wanted.directions.size());
    EXPECT_NEAR(adjustedPoint("P").x, north, 1e-6) << "written to a hundredth of a second";
  }
}

// The distance from A to P is given twice; the edit has one value for both.
TEST_F(JobSetUps, TellWhatAnEditedLineStandsFor) {
  open(std::string(kFirstCircle) + "P,S,100.004\n" + kOthers);
  Network network = job.project()->getNetwork();
  line(network, "A", "B").horizontal_angle += 1e-6;
  job.project()->setNetwork(network);
  adjusted();
  EXPECT_FALSE(isTold("in the place of"));
  line(network, "A", "P").horizontal_distance = 100.002;
  job.project()->setNetwork(network);
  EXPECT_EQ(adjusted().distances.size(), 1U);
  EXPECT_TRUE(isTold("the edited line counts once in the place of 2 observations that it had: A to P"));
}

TEST_F(JobSetUps, OfAFieldBookStayBesideAnEditedLine) {
  job.open(written("job.lqf", test::kTwoSetUps));
  ASSERT_EQ(adjusted().directions.size(), 6U);
  Network network = job.project()->getNetwork();
  line(network, "A", "P").horizontal_distance += 0.001;
  job.project()->setNetwork(network);
  EXPECT_EQ(adjusted().directions.size(), 6U);
  // The line from A to Q is on the circle of the first set-up, where it is 30°; its own set-up has it at 40°.
  line(network, "A", "Q").horizontal_angle += 1e-6;
  job.project()->setNetwork(network);
  EXPECT_EQ(adjusted().directions.size(), 6U);
  EXPECT_NEAR(adjustedPoint("Q").x, 1000.0 - 80.0 * 0.5, 1e-3);
}

TEST_F(JobSetUps, OfAnotherFileThatAHostPutsThereAreThoseOfItsLines) {
  open(std::string(kFirstCircle) + kJoinedCircle + kOthers);
  Job other(host.system.createProject());
  other.open(written("other.in2", std::string(kFirstCircle) + kOthers));
  job.project()->setNetwork(other.project()->getNetwork());
  EXPECT_EQ(adjusted().directions.size(), 4U);
  EXPECT_EQ(job.planeAdjustment()->network().setUps.size(), 3U);
}

}  // namespace
