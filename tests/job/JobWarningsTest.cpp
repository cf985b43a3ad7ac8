// Warnings that are worth reading: what costs most stands first, and good data is left in peace.
#include "Folder.h"

#include <gmock/gmock.h>
#include <algorithm>
#include <cmath>
#include <map>
#include <random>

namespace {

using namespace kvn;
using test::JobInFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct JobWarnings : JobInFolder {
  std::vector<FieldFinding> found(Job::FindingSource source, QString const& says) const {
    std::vector<FieldFinding> list;
    for (FieldFinding const& finding : job.findingsOf(source)) {
      if (finding.text.contains(says)) list.push_back(finding);
    }
    return list;
  }
};

/// Points in a square of 300 m that all see each other, by distances and directions of 3 mm and 2".
class SquareSite {
 public:
  SquareSite(int known, int unknown, unsigned seed) : random(seed) {
    for (int i = 0; i < known + unknown; ++i) {
      std::string const name = (i < known ? "K" : "N") + std::to_string(i);
      names.push_back(name);
      places[name] = {400.0 + uniform() * 300.0, 7000.0 + uniform() * 300.0};
      if (i < known) knownNames.push_back(name);
    }
  }

  /// @param nameAt  what a target is called at a station.
  template <typename NameAt>
  std::string text(bool isExchanged, bool hasDistances, NameAt const& nameAt) {
    std::string lines = "2,3,0\n";
    for (std::string const& name : knownNames) {
      auto const [x, y] = places[name];
      lines += name + ',' + number(isExchanged ? y : x) + ',' + number(isExchanged ? x : y) + '\n';
    }
    for (std::string const& station : names) {
      lines += station + '\n';
      for (std::string const& target : names) {
        if (target == station) continue;
        double const dx = places[target].first - places[station].first;
        double const dy = places[target].second - places[station].second;
        double const azimuth = std::atan2(dy, dx) + 2.0 / 206265.0 * normal(random);
        std::string const name = nameAt(station, target);
        lines += name + ",L," + angle(azimuth) + '\n';
        if (hasDistances) lines += name + ",S," + number(std::hypot(dx, dy) + 0.003 * normal(random)) + '\n';
      }
    }
    return lines;
  }
  std::string text(bool isExchanged, bool hasDistances) {
    return text(isExchanged, hasDistances, [](std::string const&, std::string const& target) { return target; });
  }

 private:
  static constexpr double kPi = 3.14159265358979323846;
  /// DDD.MMSSss
  static std::string angle(double radians) {
    auto const hundredths = std::llround((radians < 0.0 ? radians + 2.0 * kPi : radians) * 180.0 / kPi * 360000.0);
    return QString("%1.%2%3")
        .arg(hundredths / 360000 % 360)
        .arg(hundredths / 6000 % 60, 2, 10, QChar('0'))
        .arg(hundredths % 6000, 4, 10, QChar('0'))
        .toStdString();
  }
  static std::string number(double value) { return QString::number(value, 'f', 4).toStdString(); }
  double uniform() { return std::uniform_real_distribution<double>()(random); }

  std::mt19937 random;
  std::normal_distribution<double> normal;
  std::vector<std::string> names;
  std::vector<std::string> knownNames;
  std::map<std::string, std::pair<double, double>> places;
};

TEST_F(JobWarnings, CompareBothEndsByTheErrorsOfTheJob) {
  // Three standard errors of a difference of two distances of 3 mm are 12.7 mm.
  struct Case {
    double back;  // of A to P, 100 m
    double centring;
    ObservationErrors::Form form;
    char const* head;
    std::size_t count;
  };
  constexpr auto kSum = ObservationErrors::Form::Sum;
  constexpr auto kRoot = ObservationErrors::Form::Root;
  for (Case const& c : {Case{100.0124, 0.0, kSum, "2,3,0", 0},
                        {100.0131, 0.0, kSum, "2,3,0", 1},
                        {100.0131, 0.001, kSum, "2,3,0", 0},
                        {100.0160, 0.0, kSum, "2,3,10", 0},
                        {100.0160, 0.0, kRoot, "2,3,10", 1}}) {
    SCOPED_TRACE(c.back);
    job.open(written("net.in2", std::string(c.head) + "\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,270\nP,S,100\nP\nA,S," +
                                    QString::number(c.back, 'f', 4).toStdString() + "\nB\nA,L,0\nP,L,45\n"));
    PlaneOptions options;
    options.centring = c.centring;
    options.distanceForm = c.form;
    job.setPlaneOptions(options);
    auto const findings = found(Job::NetworkChecks, "both ends");
    ASSERT_EQ(findings.size(), c.count);
    if (c.count == 0) continue;
    EXPECT_EQ(findings[0].line, 9);
    EXPECT_NEAR(findings[0].cost, 0.5 * (c.back - 100.0), 1e-9);
  }
}

TEST_F(JobWarnings, TellWhatTheReaderOfANetworkPassesOverWithItsLine) {
  job.open(written("net.in2", std::string(test::kFirstNetwork) + "D,12OO,1200\nK,1.5,-2x\n"));
  auto const behind = found(Job::FileTold, "something stands behind the number: -2x");
  ASSERT_EQ(behind.size(), 1U);
  EXPECT_EQ(behind[0].line, 13);
  std::vector<FieldFinding> const all = job.findings();
  EXPECT_EQ(std::count_if(all.begin(), all.end(), [](FieldFinding const& f) { return f.line == 12; }), 1);
  EXPECT_EQ(host.messages.size(), 2U);
  job.open(written("good.in2", test::kFirstNetwork));
  EXPECT_THAT(job.findingsOf(Job::FileTold), IsEmpty());
}

TEST_F(JobWarnings, GroupWhatTheReaderOfANetworkFindsByItsKind) {
  std::string text = test::kFirstNetwork;
  for (int i = 0; i < 40; ++i) text += "P,L,10.7500\nWHAT" + std::to_string(i) + ",ever\n";
  job.open(written("net.in2", text));
  ASSERT_EQ(host.messages.size(), 4U);
  EXPECT_EQ(host.messages[0].first,
            "minutes or seconds of 60 and above: 10.7500: line 12; line 14; line 16; and 37 more");
  EXPECT_EQ(host.messages[1].first, "the line is passed over: WHAT0,ever: line 13");
  EXPECT_THAT(host.messages[3].first.toStdString(), testing::EndsWith("line 17; and 37 more of this kind"));
  EXPECT_EQ(job.findingsOf(Job::FileTold).size(), 80U);
  host.messages.clear();
  EXPECT_THROW(job.open(written("negative.in2", text + "P,S,-1\n")), JobException);
  EXPECT_EQ(host.messages.size(), 4U) << "the failure may follow from what stands before it";
}

TEST_F(JobWarnings, NameKnownPointsThatApproximateCoordinatesPutElsewhere) {
  job.open(written("net.in2", test::kFirstNetwork));
  std::vector<CoordinatePointInfo> points(3);
  for (std::size_t i = 0; i < points.size(); ++i) points[i].name = std::string(1, "ABP"[i]);
  points[0].N = 1000.9;
  points[1].N = 1000.0;
  points[2].N = 1100.0;
  points[0].E = points[2].E = 1000.0;
  points[1].E = 1201.1;
  job.setApproximate(points);
  job.adjust();
  auto const told = [](auto const& message) {
    return message.first.startsWith("Known points whose approximate") && message.first.endsWith("which count: B");
  };
  EXPECT_EQ(std::count_if(host.messages.begin(), host.messages.end(), told), 1);
}

TEST_F(JobWarnings, NameWhatMayBeOnePointUnderTwoNames) {
  // N6 is called N06 from two stations; and a known point has another name there.
  for (auto const& [old, other] : {std::pair("N6", "N06"), {"K1", "K01"}}) {
    SquareSite site(4, 3, 5);
    auto const nameAt = [&, was = std::string(old), is = std::string(other)](std::string const& station,
                                                                             std::string const& target) {
      return target == was && (station == "K2" || station == "N4") ? is : target;
    };
    job.open(written("net.in2", site.text(false, true, nameAt)));
    job.adjust();
    auto const findings = found(Job::AdjustmentRun, "two names");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_THAT(findings[0].targets, testing::UnorderedElementsAre(old, other));
    EXPECT_LT(findings[0].cost, 0.01);
    EXPECT_EQ(found(Job::AdjustmentStart, "two names").size(), 1U);
    EXPECT_THAT(host.messages.back().first.toStdString(), HasSubstr("perhaps one point under two names"));
  }
  // Z, which nothing observes, is called P.
  job.open(written("known.in2", "2,3,0\nA,0,0\nB,0,100\nZ,50.004,0\nA\nB,L,0\nP,L,270\nP,S,50\n"));
  job.adjust();
  EXPECT_EQ(found(Job::AdjustmentRun, "4.0 mm from each other").size(), 1U);
  // A bolt 20 mm beside its point, and 5 mm where they are observed from each other: two points.
  char const* const head = "2,3,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,270\nP,S,50\n";
  job.open(written("near.in2", std::string(head) + "Q,L,270\nQ,S,50.02\n"));
  job.adjust();
  EXPECT_THAT(found(Job::AdjustmentRun, "two names"), IsEmpty());
  job.open(written("bolt.in2", std::string(head) + "Q,L,270\nQ,S,50.005\nP\nQ,S,0.005\n"));
  job.adjust();
  EXPECT_THAT(found(Job::AdjustmentRun, "two names"), IsEmpty());
  job.open(written("one.in2", std::string(head) + "Q,L,270\nQ,S,50.005\n"));
  job.adjust();
  EXPECT_EQ(found(Job::AdjustmentRun, "two names").size(), 1U) << "without any redundancy as well";
}

/// The coordinates of K0 are those of K1.
std::string withTwoExchanged(std::string network) {
  std::size_t const first = network.find("K0,");
  std::size_t const second = network.find("K1,");
  network.replace(first, 3, "K1,");
  network.replace(second, 3, "K0,");
  return network;
}

TEST_F(JobWarnings, SayThatTheKnownPointsFitWithNorthAndEastExchanged) {
  // With distances and without; that of 1 is refused as it stands, in the others something is left over.
  for (bool const hasDistances : {true, false}) {
    for (unsigned seed = 1; seed < 5; ++seed) {
      SCOPED_TRACE(seed);
      job.open(written("net.in2", SquareSite(4, 2, seed).text(true, hasDistances)));
      std::string told;
      try {
        job.adjust();
        std::vector<FieldFinding> const findings = job.findingsOf(Job::AdjustmentRun);
        told = findings.front().text.toStdString();  // nothing may cost more
        EXPECT_GT(findings.front().cost, 5000.0);
        EXPECT_EQ(host.messages.back().first.toStdString(), told);
      } catch (JobException const& failure) {
        told = failure.text.toStdString();
      }
      EXPECT_THAT(told, HasSubstr("The known points fit with north and east exchanged: unit weight error "));
      EXPECT_EQ(found(Job::AdjustmentStart, "north and east exchanged").size(), 1U);
    }
  }
  // A free network fits itself; there its known points tell.
  PlaneOptions options;
  options.datum = PlaneSettings::Datum::Free;
  job.setPlaneOptions(options);
  for (bool const isExchanged : {true, false}) {
    job.open(written("net.in2", SquareSite(4, 2, 1).text(isExchanged, true)));
    job.adjust();
    EXPECT_LT(job.planeAdjustment()->result().unitError, 2.0);
    EXPECT_EQ(found(Job::AdjustmentRun, "exchanged: shifts of up to 0.00").size(), isExchanged ? 1U : 0U);
  }
  // Two exchanged known points are no exchanged axes; a free network goes its own way from them.
  for (auto const datum : {PlaneSettings::Datum::Free, PlaneSettings::Datum::Known}) {
    options.datum = datum;
    job.setPlaneOptions(options);
    job.open(written("net.in2", withTwoExchanged(SquareSite(4, 2, 1).text(false, true))));
    job.adjust();
    EXPECT_THAT(found(Job::AdjustmentRun, "exchanged"), IsEmpty());
    bool const isFree = datum == PlaneSettings::Datum::Free;
    EXPECT_EQ(found(Job::AdjustmentRun, "does not fit the free network").size(), isFree ? 4U : 0U);
  }
  job.setPlaneOptions(PlaneOptions());
  // A gross error of a known point is none.
  std::string text = SquareSite(4, 2, 1).text(false, true);
  text.insert(text.find("K0,") + 3, "1");
  job.open(written("net.in2", text));
  job.adjust();
  EXPECT_THAT(job.findingsOf(Job::AdjustmentRun), testing::Not(IsEmpty()));
  EXPECT_THAT(found(Job::AdjustmentRun, "exchanged"), IsEmpty());
}

// In this network nothing settles when suspects are left out, nor with robust weights, but with all of them.
TEST_F(JobWarnings, TellWhereSuspectsCannotBeTreated) {
  PlaneOptions options;
  for (bool const isRobust : {true, false}) {
    options.weighsDownSuspects = isRobust;
    options.leavesOutSuspects = !isRobust;
    job.setPlaneOptions(options);
    job.open(written("net.in2", withTwoExchanged(SquareSite(4, 2, 11).text(false, true))));
    host.messages.clear();
    job.adjust();
    QStringList told;
    for (auto const& message : host.messages) told << message.first;
    char const* const says =
        isRobust ? "does not settle with robust weights" : "does not settle when suspects are left out";
    EXPECT_THAT(told.join('\n').toStdString(), HasSubstr(says));
    EXPECT_EQ(found(Job::AdjustmentRun, says).size(), 1U);
    PlaneResult const& result = job.planeAdjustment()->result();
    EXPECT_TRUE(result.leftOut.empty());
    for (PlaneObservation const& observation : result.distances) EXPECT_EQ(observation.weight, 1.0);
  }
}

// Readings that are all worse than they are said to be: nothing stands out.
TEST_F(JobWarnings, SayThatTheWholeFailsWhereNothingExplainsIt) {
  for (int const known : {4, 2}) {
    std::string text = SquareSite(known, 3, 11).text(false, known == 4);
    job.open(written("net.in2", text));
    job.adjust();
    EXPECT_THAT(found(Job::AdjustmentRun, "as a whole"), IsEmpty());
    text.replace(0, 5, "1,1,0");
    job.open(written("net.in2", text));
    job.adjust();
    auto const findings = found(Job::AdjustmentRun, "as a whole");
    ASSERT_EQ(findings.size(), 1U) << known;
    // Of two known points neither can be freed where only directions are measured, and nothing tests them.
    using Names = std::vector<std::string>;
    EXPECT_EQ(findings[0].targets, known == 2 ? Names({"K0", "K1"}) : Names());
  }
}

TEST_F(JobWarnings, NamePointsFarFromTheirCoordinates) {
  job.open(written("net.in2", SquareSite(4, 2, 3).text(false, true)));
  CoordinatePointInfo near;
  near.name = "N4";
  near.N = 900.0;  // within a kilometre
  near.E = 7100.0;
  CoordinatePointInfo far = near;
  far.name = "N5";
  far.E = 71000.0;
  job.project()->setCoordinatePointList({near, far});
  job.adjust();
  auto const findings = found(Job::AdjustmentRun, "from the coordinates that are given");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_THAT(findings[0].targets, ElementsAre("N5"));
  EXPECT_NEAR(findings[0].cost, 64000.0, 300.0);
}

TEST_F(JobWarnings, StandByWhatTheyMayCost) {
  // P to C is booked 0.3 m too long, the direction from A to P 60" too large; both ends of A and C differ by 14 mm. S
  // hangs on one direction and distance.
  std::string const net =
      "3,3,0\nA,0,0\nB,0,100\nC,100,100\nA\nB,L,0.0\nC,L,315.0\nP,L,270.0100\nP,S,100\nC,S,141.428\nB\nA,L,0\nP,L,45\n"
      "C,L,90\nP,S,141.421\nC\nB,L,0\nA,L,45\nP,L,90\nP,S,100.3\nA,S,141.414\nP\nC,L,0\nB,L,45\nA,L,90\nS,L,200\n"
      "S,S,30\n";
  job.open(written("net.in2", net));
  job.adjust();
  std::vector<FieldFinding> all = job.findingsOf(Job::AdjustmentRun | Job::NetworkChecks);
  sortByCost(all);
  ASSERT_GE(all.size(), 4U);
  EXPECT_THAT(worded(all[0]).toStdString(), HasSubstr("line 20: C to P: suspected gross error of the distance"));
  EXPECT_THAT(worded(all[1]).toStdString(), HasSubstr("line 8: A to P: suspected gross error of the direction"));
  EXPECT_THAT(worded(all.back()).toStdString(), HasSubstr("S: nothing checks the point"));
  // Of an error the share moves its points that does not show in its residual.
  EXPECT_GT(all[0].cost, 0.02);
  EXPECT_LT(all[0].cost, 0.3);
  EXPECT_EQ(all.back().cost, 0.0);
  // A and C are held, so that the distances between them move nothing, unless their coordinates have errors.
  auto const costOfEnds = [this] {
    auto const ofEnds = found(Job::NetworkChecks, "the distances from both ends differ by 14.0");
    return ofEnds.size() == 1 ? ofEnds[0].cost : -1.0;
  };
  EXPECT_EQ(costOfEnds(), 0.0);
  PlaneOptions options;
  options.controlError = 0.005;
  job.setPlaneOptions(options);
  job.adjust();
  EXPECT_NEAR(costOfEnds(), 0.007, 1e-9);
  // A job that is not adjusted has nothing to tell of a run.
  job.open(written("net.in2", net));
  EXPECT_THAT(job.findingsOf(Job::AdjustmentRun), IsEmpty());
}

}  // namespace
