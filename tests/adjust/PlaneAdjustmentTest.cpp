// The adjustment in which every observation counts, against another program's results and closed forms.
#include "Networks.h"
#include "Sites.h"
#include "adjust/PlaneAdjustment.h"
#include "core/AlgorithmException.h"
#include "formats/CarefulCosaCollection.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/json.h>
#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <random>
#include <tuple>

namespace {

using test::aPriori;
using test::disturbed;
using test::kSecondsPerRadian;
using test::makeSite;
using test::Site;
constexpr double kDegreesPerRadian = 180.0 / 3.14159265358979323846;

kvn::PlaneNetwork networkOf(std::string const& path) {
  kvn::CarefulCosaCollection file;
  file.setKeepObservations(true);
  std::ifstream stream(path);
  file.read(stream);
  kvn::PlaneNetwork network = file.getObservations();
  kvn::ObservationErrors errors;
  errors.directionSeconds = double(file.getConfigure().AngleError);
  errors.distanceFixed = double(file.getConfigure().LineFixedError) / 1000.0;
  errors.distanceProportional = double(file.getConfigure().LineProportionError) / 1e6;
  kvn::setErrors(network, errors);
  return network;
}

struct Peer : testing::TestWithParam<char const*> {
  static std::string path(char const* ending) {
    return std::string(KELVANE_SOURCE_DIR "/tests/adjust/peer/") + GetParam() + ending;
  }
};

// The peer prints coordinates to 1e-14 m, ellipse axes and the unit weight error to eight digits, redundancy numbers in
// full, standardised residuals to three decimals. Both programs stop when the last round moves nothing by more than a
// hundredth of a millimetre; what that leaves is below 1e-9 m in coordinates, since convergence is quadratic.
TEST_P(Peer, GivesTheSameCoordinatesErrorsAndTests) {
  Json::Value expected;
  std::ifstream(path(".json")) >> expected;
  kvn::PlaneAdjustment adjustment(networkOf(path(".in2")));
  kvn::PlaneResult const& result = adjustment.adjust();
  kvn::PlaneNetwork const& network = adjustment.network();
  EXPECT_EQ(result.redundancy, expected["dof"].asInt());
  EXPECT_NEAR(result.unitError, expected["m0"].asDouble(), 1e-6 * expected["m0"].asDouble());
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    SCOPED_TRACE(network.points[p].name);
    Json::Value const& point = expected["points"][network.points[p].name];
    EXPECT_NEAR(result.points[p].x, point["N"].asDouble(), 1e-6);
    EXPECT_NEAR(result.points[p].y, point["E"].asDouble(), 1e-6);
    if (!point["adjusted"].asBool()) continue;
    double const size = point["a"].asDouble();
    EXPECT_NEAR(1000.0 * result.points[p].mx, point["sN"].asDouble(), 1e-4 * size);
    EXPECT_NEAR(1000.0 * result.points[p].my, point["sE"].asDouble(), 1e-4 * size);
    EXPECT_NEAR(1000.0 * result.points[p].semiMajor, size, 1e-4 * size);
    EXPECT_NEAR(1000.0 * result.points[p].semiMinor, point["b"].asDouble(), 1e-4 * size);
    double const turn =
        std::remainder(kDegreesPerRadian * result.points[p].bearing - point["bearing"].asDouble(), 180.0);
    if (size - point["b"].asDouble() > 0.01 * size) {
      EXPECT_NEAR(turn, 0.0, 0.05);
    }
  }
  std::size_t direction = 0;
  std::size_t distance = 0;
  for (Json::Value const& line : expected["observations"]) {
    bool const isDirection = line["kind"].asString() == "L";
    kvn::PlaneObservation const& o = isDirection ? result.directions[direction++] : result.distances[distance++];
    SCOPED_TRACE(line.toStyledString());
    double const unit = isDirection ? kSecondsPerRadian : 1000.0;
    EXPECT_NEAR(unit * o.residual, line["v"].asDouble(), 1e-3);
    EXPECT_NEAR(unit * o.adjustedError, line["s_adj"].asDouble(), 1e-4 * (1.0 + line["s_adj"].asDouble()));
    EXPECT_NEAR(o.redundancy, line["r"].asDouble(), 1e-5);
    if (o.redundancy > 1e-3) {
      EXPECT_NEAR(std::abs(o.standardised), line["std_residual"].asDouble(), 2e-3);
    }
  }
  EXPECT_EQ(direction, result.directions.size());
  EXPECT_EQ(distance, result.distances.size());
  std::size_t setUp = 0;
  for (Json::Value const& orientation : expected["orientations"]) {
    while (std::isnan(result.orientations[setUp])) ++setUp;
    EXPECT_EQ(network.points[static_cast<std::size_t>(network.setUps[setUp].station)].name, orientation[0].asString());
    double const turn = kDegreesPerRadian * result.orientations[setUp++] - orientation[1].asDouble();
    EXPECT_NEAR(std::remainder(turn, 360.0), 0.0, 1e-6);
  }
}

INSTANTIATE_TEST_SUITE_P(OfNineNetworks, Peer,
                         testing::Values("start_gama-local", "start_traverse-01-en-left", "synth_chain50",
                                         "synth_free50", "synth_grid100", "textbook_Benning88_Distance_fix",
                                         "textbook_Grossmann_Direction_fix", "textbook_LotherStrehle_Direction1",
                                         "textbook_StrangBorre_Distance_fix"));

/// Normal equations of the coordinates about the result, orientations eliminated: what no code of the library forms.
Eigen::MatrixXd reducedNormals(kvn::PlaneNetwork const& network, kvn::PlaneResult const& result) {
  auto const points = static_cast<Eigen::Index>(network.points.size());
  auto const setUps = static_cast<Eigen::Index>(network.setUps.size());
  Eigen::MatrixXd n = Eigen::MatrixXd::Zero(2 * points + setUps, 2 * points + setUps);
  auto const add = [&](Eigen::Index i, Eigen::Index j, double cx, double cy, Eigen::Index setUp, double error) {
    Eigen::VectorXd a = Eigen::VectorXd::Zero(n.rows());
    a(2 * j) = cx;
    a(2 * j + 1) = cy;
    a(2 * i) = -cx;
    a(2 * i + 1) = -cy;
    if (setUp >= 0) a(2 * points + setUp) = -1.0;
    n += a * a.transpose() / (error * error);
  };
  auto const difference = [&](int i, int j) {
    return std::pair(result.points[std::size_t(j)].x - result.points[std::size_t(i)].x,
                     result.points[std::size_t(j)].y - result.points[std::size_t(i)].y);
  };
  for (auto const& d : network.directions) {
    int const station = network.setUps[std::size_t(d.setUp)].station;
    auto const [dx, dy] = difference(station, d.target);
    double const s2 = dx * dx + dy * dy;
    add(station, d.target, -dy / s2, dx / s2, d.setUp, d.error);
  }
  for (auto const& d : network.distances) {
    auto const [dx, dy] = difference(d.from, d.to);
    double const s = std::hypot(dx, dy);
    add(d.from, d.to, dx / s, dy / s, -1, d.error);
  }
  Eigen::MatrixXd const b = n.topRightCorner(2 * points, setUps);
  return n.topLeftCorner(2 * points, 2 * points) - b * n.bottomRightCorner(setUps, setUps).inverse() * b.transpose();
}

void expectCovariances(Eigen::MatrixXd const& q, kvn::PlaneResult const& result) {
  for (std::size_t p = 0; p < result.points.size(); ++p) {
    auto const at = static_cast<Eigen::Index>(2 * p);
    // 1e-9 of their size: sixteen digits less those that a condition of 1e6 takes.
    double const size = std::sqrt(q(at, at) + q(at + 1, at + 1));
    EXPECT_NEAR(result.points[p].mx, std::sqrt(q(at, at)), 1e-9 * size);
    EXPECT_NEAR(result.points[p].my, std::sqrt(q(at + 1, at + 1)), 1e-9 * size);
    double const twice = 2.0 * result.points[p].bearing;
    double const spread = std::hypot(q(at, at) - q(at + 1, at + 1), 2.0 * q(at, at + 1));
    EXPECT_NEAR(spread * std::sin(twice), 2.0 * q(at, at + 1), 1e-8 * size * size);
  }
}

TEST(FreeNetwork, OverAllPointsHasThePseudoInverse) {
  for (bool const hasDistances : {true, false}) {
    for (int const sparseFrom : {1, 1000}) {
      std::mt19937 random(3);
      Site const site = makeSite(7, 0, 5, hasDistances);
      kvn::PlaneNetwork network = disturbed(site.network, random);
      for (std::size_t p = 0; p < network.points.size(); ++p) {
        network.points[p].x = site.truth[p].first + 0.01;
        network.points[p].y = site.truth[p].second;
      }
      kvn::PlaneSettings settings = aPriori();
      settings.datum = kvn::PlaneSettings::Datum::Free;
      settings.sparseFrom = sparseFrom;
      kvn::PlaneAdjustment adjustment(network, settings);
      kvn::PlaneResult const& result = adjustment.adjust();
      int const freedoms = hasDistances ? 3 : 4;
      EXPECT_EQ(result.redundancy, (hasDistances ? 84 : 42) - (14 + 7) + freedoms);
      Eigen::MatrixXd const n = reducedNormals(network, result);
      Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> const eigen(n);
      Eigen::MatrixXd q = Eigen::MatrixXd::Zero(n.rows(), n.cols());
      for (Eigen::Index i = freedoms; i < n.rows(); ++i) {
        q += eigen.eigenvectors().col(i) * eigen.eigenvectors().col(i).transpose() / eigen.eigenvalues()(i);
      }
      expectCovariances(q, result);
      // The whole has not moved from its approximate places: shifts sum to null, and so do their moments.
      double north = 0.0;
      double east = 0.0;
      double moment = 0.0;
      for (std::size_t p = 0; p < network.points.size(); ++p) {
        double const dx = result.points[p].x - network.points[p].x;
        double const dy = result.points[p].y - network.points[p].y;
        north += dx;
        east += dy;
        moment += network.points[p].x * dy - network.points[p].y * dx;
      }
      EXPECT_NEAR(north, 0.0, 1e-9);
      EXPECT_NEAR(east, 0.0, 1e-9);
      EXPECT_NEAR(moment, 0.0, 1e-4);  // over 2 km of levers, and beside shifts of 3 mm: 1e-8 of each term
    }
  }
}

TEST(FreeNetwork, OverTheKnownPointsHasTheInverseBorderedWithTheConstraints) {
  std::mt19937 random(4);
  Site const site = makeSite(7, 3, 8);
  kvn::PlaneNetwork const network = disturbed(site.network, random);
  kvn::PlaneSettings settings = aPriori();
  settings.datum = kvn::PlaneSettings::Datum::Free;
  kvn::PlaneAdjustment adjustment(network, settings);
  kvn::PlaneResult const& result = adjustment.adjust();
  Eigen::MatrixXd const n = reducedNormals(network, result);
  Eigen::MatrixXd bordered = Eigen::MatrixXd::Zero(n.rows() + 3, n.cols() + 3);
  bordered.topLeftCorner(n.rows(), n.cols()) = n;
  for (Eigen::Index p = 0; p < 3; ++p) {
    double const x = result.points[std::size_t(p)].x / 100.0;
    double const y = result.points[std::size_t(p)].y / 100.0;
    Eigen::Matrix<double, 3, 2> block;
    block << 1.0, 0.0, 0.0, 1.0, -y, x;
    bordered.block(n.rows(), 2 * p, 3, 2) = block;
    bordered.block(2 * p, n.rows(), 2, 3) = block.transpose();
  }
  expectCovariances(bordered.inverse().topLeftCorner(n.rows(), n.cols()), result);
}

TEST(PlaneTests, SayWhatNothingChecks) {
  // S hangs on one direction and one distance from A; what lies behind it, T, is braced to S alone.
  kvn::PlaneNetwork network = makeSite(5, 3, 41).network;
  network.points.push_back({"S"});
  network.points.push_back({"T"});
  network.setUps.push_back({5});
  network.directions.push_back({0, 5, 1.0});
  network.distances.push_back({0, 5, 80.0});
  network.directions.push_back({5, 0, 0.5});
  network.directions.push_back({5, 6, 2.0});
  network.distances.push_back({5, 6, 60.0});
  network.distances.push_back({6, 5, 60.001});
  kvn::setErrors(network, kvn::ObservationErrors());
  kvn::PlaneAdjustment adjustment(network);
  kvn::PlaneResult const& result = adjustment.adjust();
  std::vector<bool> checked;
  for (auto const& point : result.points) checked.push_back(point.isChecked);
  EXPECT_EQ(checked, (std::vector<bool>{true, true, true, true, true, false, false}));
  EXPECT_TRUE(std::isnan(result.distances[20].detectable));
  EXPECT_GT(result.distances[21].redundancy, 0.49);  // measured twice
  // A distance of S from A is off by 1 m: nothing shows it, and the message of the points is all that one has.
  network.distances[20].value += 1.0;
  kvn::PlaneAdjustment wrong(network);
  EXPECT_NEAR(wrong.adjust().unitError, result.unitError, 1e-6);
}

TEST(PlaneAdjustments, BringAGrossDirectionToAnEnd) {
  // Half a circle off, where plain rounds swing: the first direction of a set-up, from which orientations are often
  // taken, and another one.
  for (std::size_t const wrong : {21U, 25U}) {
    for (double const off : {1.6, 3.1416}) {
      int isNamed = 0;
      for (unsigned seed = 0; seed < 20; ++seed) {
        SCOPED_TRACE(seed);
        Site const site = makeSite(8, 2, 50 + seed);
        kvn::PlaneNetwork network = site.network;
        network.directions[wrong].value += off;
        kvn::PlaneAdjustment adjustment(network);
        adjustment.setTellFindings(false);
        ASSERT_NO_THROW(adjustment.adjust());
        auto const& suspects = adjustment.suspects();
        bool const isRight = suspects.size() == 1 && suspects[0].from == "P3" &&
                             suspects[0].to == network.points[std::size_t(network.directions[wrong].target)].name;
        isNamed += isRight ? 1 : 0;
      }
      EXPECT_EQ(isNamed, 20);
    }
  }
}

TEST(PlaneAdjustments, NameSeveralGrossErrorsWhateverHoldsTheNetwork) {
  for (auto const datum : {kvn::PlaneSettings::Datum::Known, kvn::PlaneSettings::Datum::Free}) {
    for (int const known : {0, 4}) {
      if (known == 0 && datum == kvn::PlaneSettings::Datum::Known) continue;
      SCOPED_TRACE(known);
      Site site = makeSite(8, known, 81);
      kvn::ObservationErrors errors;
      errors.control = 0.02;
      kvn::setErrors(site.network, errors);
      std::mt19937 random(82);
      kvn::PlaneSettings settings;
      settings.datum = datum;
      for (int run = 0; run < 20; ++run) {
        kvn::PlaneNetwork network = disturbed(site.network, random);
        network.distances[30].value += 0.05;
        network.distances[41].value -= 0.3;
        network.directions[52].value += 80.0 / kSecondsPerRadian;
        kvn::PlaneAdjustment adjustment(network, settings);
        adjustment.setTellFindings(false);
        adjustment.adjust();
        auto const& suspects = adjustment.suspects();
        ASSERT_EQ(suspects.size(), 3U) << run;  // directions first
        EXPECT_EQ(suspects[0].from + suspects[1].from + suspects[2].from, "P7P4P5");
        EXPECT_NEAR(suspects[0].difference, 80.0, 20.0);
        EXPECT_NEAR(suspects[1].difference, 0.05, 0.02);
        EXPECT_NEAR(suspects[2].difference, -0.3, 0.02);
      }
    }
  }
}

TEST(PlaneAdjustments, LeaveOutSuspectsOneAfterTheOther) {
  Site const site = makeSite(9, 3, 101);
  std::mt19937 random(102);
  kvn::PlaneNetwork const good = disturbed(site.network, random);
  kvn::PlaneNetwork bad = good;
  bad.distances[30].value += 0.2;
  bad.directions[50].value += 100.0 / kSecondsPerRadian;
  kvn::PlaneSettings settings;
  settings.leavesOutSuspects = true;
  kvn::PlaneAdjustment adjustment(bad, settings);
  adjustment.setTellFindings(false);
  kvn::PlaneResult const& result = adjustment.adjust();
  ASSERT_EQ(result.leftOut.size(), 2U);
  EXPECT_EQ(result.leftOut[0].observation, 30U);  // 60 of its errors, the other 50
  EXPECT_NEAR(result.leftOut[0].gross, 0.2, 0.02);
  EXPECT_GT(result.leftOut[0].largestMove, 0.001);
  EXPECT_EQ(result.leftOut[1].observation, 50U);
  EXPECT_NEAR(result.leftOut[1].gross * kSecondsPerRadian, 100.0, 10.0);
  EXPECT_EQ(result.distances[30].weight, 0.0);
  EXPECT_TRUE(adjustment.suspects().empty());
  // The same as if they had never been observed.
  kvn::PlaneNetwork without = good;
  without.distances.erase(without.distances.begin() + 30);
  without.directions.erase(without.directions.begin() + 50);
  kvn::PlaneAdjustment alone(without);
  kvn::PlaneResult const& expected = alone.adjust();
  EXPECT_EQ(result.redundancy, expected.redundancy);
  EXPECT_NEAR(result.unitError, expected.unitError, 1e-7);
  for (std::size_t p = 0; p < expected.points.size(); ++p) {
    EXPECT_NEAR(result.points[p].x, expected.points[p].x, 1e-8);
    EXPECT_NEAR(result.points[p].mx, expected.points[p].mx, 1e-8);
  }
}

// What comes again from the last run is what a new one gives. The share of centring in an error may differ by 1e-3,
// since it is taken from lengths before the last round; that moves points by some 1e-8 m here.
TEST(PlaneAdjustments, TakeObservationsOutAndPutThemBack) {
  for (auto const datum : {kvn::PlaneSettings::Datum::Known, kvn::PlaneSettings::Datum::Free}) {
    for (int const sparseFrom : {1, 1000}) {
      Site const site = makeSite(9, 3, 101);
      std::mt19937 random(104);
      kvn::PlaneNetwork const network = disturbed(site.network, random);
      kvn::PlaneSettings settings;
      settings.datum = datum;
      settings.centring = 0.002;
      settings.sparseFrom = sparseFrom;
      kvn::PlaneAdjustment again(network, settings);
      kvn::PlaneResult const whole = again.adjust();
      auto const expectEqual = [&](kvn::PlaneResult const& result, kvn::PlaneResult const& expected) {
        EXPECT_EQ(result.redundancy, expected.redundancy);
        EXPECT_NEAR(result.unitError, expected.unitError, 1e-5);
        for (std::size_t p = 0; p < expected.points.size(); ++p) {
          EXPECT_NEAR(result.points[p].x, expected.points[p].x, 1e-7);
          EXPECT_NEAR(result.points[p].my, expected.points[p].my, 1e-7);
        }
      };
      // All directions of the set-up on P4, which then has no orientation, and a distance.
      std::size_t const first = 32;
      for (std::size_t d = first; d < first + 8; ++d) again.setDirectionUsed(d, false);
      again.setDistanceUsed(20, false);
      kvn::PlaneResult const less = again.adjustAgain();
      kvn::PlaneNetwork without = network;
      without.directions.erase(without.directions.begin() + first, without.directions.begin() + first + 8);
      without.distances.erase(without.distances.begin() + 20);
      expectEqual(less, kvn::PlaneAdjustment(without, settings).adjust());
      EXPECT_TRUE(std::isnan(less.orientations[4]) && std::isnan(less.directions[first].residual));
      EXPECT_EQ(less.distances[20].weight, 0.0);
      EXPECT_NEAR(less.distances[20].residual, whole.distances[20].residual / whole.distances[20].redundancy, 0.002);
      for (std::size_t d = first; d < first + 8; ++d) again.setDirectionUsed(d, true);
      again.setDistanceUsed(20, true);
      expectEqual(again.adjustAgain(), whole);
      // Everything that holds P8.
      for (std::size_t d = 0; d < network.directions.size(); ++d) {
        if (d / 8 == 8 || network.directions[d].target == 8) {
          again.setDirectionUsed(d, false);
          again.setDistanceUsed(d, false);
        }
      }
      EXPECT_THROW(again.adjustAgain(), kvn::AlgorithmException);
      ASSERT_EQ(again.looseMotions().size(), 1U);
      EXPECT_EQ(again.looseMotions()[0].names, std::vector<std::string>{"P8"});
    }
  }
}

// The factor is given back before the tests of known points and of alternatives, which make it again.
TEST(PlaneAdjustments, GiveTheSameWhenTheirSystemDoesNotStay) {
  enum Treatment { None, LeaveOut, Robust };
  for (auto const datum : {kvn::PlaneSettings::Datum::Known, kvn::PlaneSettings::Datum::Free}) {
    for (Treatment const treatment : {None, LeaveOut, Robust}) {
      for (bool const isPointWrong : {false, true}) {
        Site const site = makeSite(9, 3, 101);
        std::mt19937 random(104);
        kvn::PlaneNetwork network = disturbed(site.network, random);
        if (isPointWrong) {
          network.points[2].x += 0.05;  // a known one
        } else {
          network.distances[20].value += 0.1;
        }
        kvn::PlaneSettings settings;
        settings.datum = datum;
        settings.sparseFrom = 1;  // a full matrix has nothing to give back
        settings.leavesOutSuspects = treatment == LeaveOut;
        settings.weighsDownSuspects = treatment == Robust;
        kvn::PlaneAdjustment keeping(network, settings);
        kvn::PlaneResult const expected = keeping.adjust();
        if (datum == kvn::PlaneSettings::Datum::Known && treatment == None) {
          EXPECT_FALSE(expected.control.empty());
          EXPECT_EQ(keeping.suspects().empty(), isPointWrong);
        }
        settings.keepsSystem = false;
        kvn::PlaneAdjustment adjustment(network, settings);
        auto const expectSame = [&](kvn::PlaneResult const& result) {
          ASSERT_EQ(result.control.size(), expected.control.size());
          for (std::size_t c = 0; c < expected.control.size(); ++c) {
            EXPECT_EQ(result.control[c].north, expected.control[c].north);
            EXPECT_EQ(result.control[c].reduction, expected.control[c].reduction);
          }
          EXPECT_EQ(result.alternatives.size(), expected.alternatives.size());
          EXPECT_EQ(result.suspectedControl, expected.suspectedControl);
          EXPECT_EQ(result.leftOut.size(), expected.leftOut.size());
          EXPECT_EQ(adjustment.suspects().size(), keeping.suspects().size());
          for (std::size_t p = 0; p < expected.points.size(); ++p) {
            EXPECT_EQ(result.points[p].x, expected.points[p].x);
            EXPECT_EQ(result.points[p].mp, expected.points[p].mp);
            EXPECT_EQ(result.points[p].isChecked, expected.points[p].isChecked);
          }
          for (std::size_t d = 0; d < expected.distances.size(); ++d) {
            EXPECT_EQ(result.distances[d].redundancy, expected.distances[d].redundancy);
          }
        };
        expectSame(adjustment.adjust());
        expectSame(adjustment.adjustAgain());
      }
    }
  }
}

TEST(PlaneAdjustments, MarkNothingWhereOnlyRoundingIsLeft) {
  kvn::PlaneNetwork network = makeSite(9, 3, 101).network;
  network.distances[20].value += 1e-6;  // 3,000 times less than its error, and far beyond all other residuals
  kvn::PlaneResult const result = kvn::PlaneAdjustment(network).adjust();
  EXPECT_LT(result.unitError, 1e-3);
  EXPECT_GT(std::abs(result.distances[20].standardised), result.criticalValue);
  for (auto const* list : {&result.directions, &result.distances}) {
    for (kvn::PlaneObservation const& observation : *list) EXPECT_FALSE(observation.test > 1.0);
  }
}

TEST(PlaneAdjustments, NameWhatNoResidualTellsApart) {
  // A set-up with two directions has one angle: an error of one looks like an error of the other.
  kvn::PlaneNetwork network = makeSite(6, 3, 105).network;
  network.setUps.push_back({4});
  network.directions.push_back({6, 0, 1.0});
  network.directions.push_back({6, 1, 1.0});
  kvn::PlaneNetwork good = network;
  kvn::setErrors(good, kvn::ObservationErrors());
  kvn::PlaneAdjustment first(good);
  first.setTellFindings(false);
  double const right = first.adjust().directions[31].azimuth - first.result().directions[30].azimuth;
  network.directions[31].value = 1.0 + right + 60.0 / kSecondsPerRadian;
  kvn::setErrors(network, kvn::ObservationErrors());
  kvn::PlaneAdjustment adjustment(network);
  adjustment.setTellFindings(false);
  kvn::PlaneResult const& result = adjustment.adjust();
  ASSERT_EQ(adjustment.suspects().size(), 1U);
  ASSERT_EQ(result.alternatives.size(), 1U);
  EXPECT_TRUE(result.alternatives[0].isDirection);
  EXPECT_GE(result.alternatives[0].observation, 30U);
}

TEST(PlaneAdjustments, LayAFreeNetworkWhereItsKnownPointIs) {
  kvn::PlaneNetwork network = makeSite(6, 1, 91).network;
  network.points[0].x = 5000.0;
  network.points[0].y = 3000.0;
  kvn::PlaneSettings settings;
  settings.datum = kvn::PlaneSettings::Datum::Free;
  for (bool const hasDistances : {true, false}) {
    if (!hasDistances) network.distances.clear();
    kvn::PlaneAdjustment adjustment(network, settings);
    kvn::PlaneResult const& result = adjustment.adjust();
    EXPECT_NEAR(result.points[0].x, 5000.0, 1.0);
    EXPECT_NEAR(result.points[0].y, 3000.0, 1.0);
    EXPECT_LT(result.unitError, 1e-3);  // the observations have no errors
  }
}

// Distances alone: a point that two of them hold has two places; three decide, and so do approximate coordinates.
TEST(PlaneAdjustments, PlaceByDistancesAlone) {
  kvn::PlaneNetwork network;
  network.points = {{"A", 0.0, 0.0, true}, {"B", 0.0, 100.0, true}, {"C", 120.0, 10.0, true}, {"P"}};
  network.distances = {{0, 3, std::hypot(60.0, 40.0)}, {1, 3, std::hypot(60.0, 60.0)}};
  kvn::setErrors(network, kvn::ObservationErrors());
  kvn::PlaneAdjustment two(network);
  two.setTellFindings(false);
  EXPECT_THROW(two.adjust(), kvn::AlgorithmException);
  ASSERT_EQ(two.unplacedPoints().size(), 1U);
  EXPECT_EQ(two.unplacedPoints()[0].reason, kvn::UnplacedPoint::TwoPlaces);
  for (double const side : {1.0, -1.0}) {
    network.points[3].x = 50.0 * side;
    network.points[3].y = 30.0;
    kvn::PlaneAdjustment decided(network);
    kvn::PlaneResult const& result = decided.adjust();
    EXPECT_NEAR(result.points[3].x, 60.0 * side, 1e-6);
    EXPECT_FALSE(result.points[3].isChecked);
    EXPECT_TRUE(result.points[2].isChecked);  // known, and nothing observes it
  }
  network.points[3].x = 1.0;  // as near to one as to the other
  kvn::PlaneAdjustment undecided(network);
  undecided.setTellFindings(false);
  EXPECT_THROW(undecided.adjust(), kvn::AlgorithmException);
  network.points[3] = {"P"};
  network.distances.push_back({2, 3, std::hypot(60.0, 30.0)});
  kvn::setErrors(network, kvn::ObservationErrors());
  kvn::PlaneAdjustment three(network);
  EXPECT_NEAR(three.adjust().points[3].x, 60.0, 1e-6);
}

TEST(PlaneAdjustments, AddTheCentringOfInstrumentAndTarget) {
  kvn::PlaneNetwork const network = makeSite(5, 3, 95).network;
  kvn::PlaneSettings settings;
  settings.centring = 0.001;
  kvn::PlaneAdjustment adjustment(network, settings);
  kvn::PlaneResult const& result = adjustment.adjust();
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    double const length = result.directions[d].length;
    double const error = std::sqrt(std::pow(2.0 / kSecondsPerRadian, 2) + 2.0 * std::pow(0.001 / length, 2));
    EXPECT_NEAR(result.directions[d].error, error, 1e-3 * error);  // lengths are taken anew from a change of 1e-3 on
  }
  double const distance = std::sqrt(std::pow(network.distances[7].error, 2) + 2e-6);
  EXPECT_NEAR(result.distances[7].error, distance, 1e-12);
}

TEST(PlaneAdjustments, RefuseWhatCannotBeAnObservation) {
  struct Case {
    char const* what;
    std::function<void(kvn::PlaneNetwork&)> spoil;
    char const* says;
  };
  Case const cases[] = {
      {"negative distance",
       [](auto& n) {
         n.distances[3].value = -1.0;
         n.distances[3].origin.line = 12;
       },
       "Line 12: The observation from P0 to P4 has no usable value or a-priori error"},
      {"direction to itself", [](auto& n) { n.directions[0].target = 0; },
       "The observation from P0 to P0 has no usable value or a-priori error"},
      {"no error", [](auto& n) { n.directions[0].error = 0.0; },
       "The observation from P0 to P1 has no usable value or a-priori error"},
      {"no such point", [](auto& n) { n.distances[0].to = 9; }, "Data error"},
      {"two points of one name", [](auto& n) { n.points[1].name = "P0"; }, "Two points have the name P0"},
      {"nothing at all", [](auto& n) { n = {}; }, "Station"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    kvn::PlaneNetwork network = makeSite(5, 3, 97).network;
    c.spoil(network);
    std::string said;
    try {
      kvn::PlaneAdjustment(network).adjust();
    } catch (std::exception const& failure) {
      said = failure.what();
    }
    EXPECT_THAT(said, testing::HasSubstr(c.says));
  }
  kvn::PlaneSettings settings;
  settings.confidence = 1.0;
  EXPECT_THROW(kvn::PlaneAdjustment(makeSite(5, 3, 97).network, settings).adjust(), std::invalid_argument);
}

// Of two known points that do not fit each other nothing tells which is wrong: the network has its own size, and
// nothing else holds the one that is free.
TEST(ControlPoints, AreNamedTogetherWhereNothingTellsThemApart) {
  for (unsigned seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    Site const site = makeSite(7, 2, 300 + seed);
    std::mt19937 random(seed);
    kvn::PlaneNetwork network = disturbed(site.network, random);
    // Off along the line between both.
    double const dx = network.points[1].x - network.points[0].x;
    double const dy = network.points[1].y - network.points[0].y;
    network.points[0].x += 0.1 * dx / std::hypot(dx, dy);
    network.points[0].y += 0.1 * dy / std::hypot(dx, dy);
    kvn::PlaneAdjustment adjustment(network);
    adjustment.setTellFindings(false);
    kvn::PlaneResult const& result = adjustment.adjust();
    EXPECT_THAT(result.suspectedControl, testing::ElementsAre(0, 1));
    EXPECT_TRUE(result.isControlAlone);
    ASSERT_EQ(result.control.size(), 2U);
    EXPECT_EQ(result.control[0].directions, 1);
    EXPECT_NEAR(std::hypot(result.control[1].north, result.control[1].east), 0.1, 0.01);
  }
  // A free station on two known points has one check, their distance: a known point or an observation.
  Site site = makeSite(3, 2, 5);
  kvn::PlaneNetwork& network = site.network;
  auto const isOfStation = [](int station) { return station == 2; };
  network.directions.erase(std::remove_if(network.directions.begin(), network.directions.end(),
                                          [&](auto const& d) { return !isOfStation(d.setUp); }),
                           network.directions.end());
  network.distances.erase(std::remove_if(network.distances.begin(), network.distances.end(),
                                         [&](auto const& d) { return !isOfStation(d.from); }),
                          network.distances.end());
  network.points[0].x += 0.05;
  network.points[0].y += 0.05;
  kvn::PlaneAdjustment station(network);
  station.setTellFindings(false);
  kvn::PlaneResult const& result = station.adjust();
  EXPECT_EQ(result.redundancy, 1);
  EXPECT_THAT(result.suspectedControl, testing::ElementsAre(0, 1));
  EXPECT_FALSE(result.isControlAlone);
}

TEST(ControlPoints, AreNamedWhereMostSuspectsAreTheirs) {
  Site const site = makeSite(9, 4, 320);
  std::mt19937 random(321);
  kvn::PlaneNetwork network = disturbed(site.network, random);
  network.points[2].x += 1000.0;
  kvn::PlaneAdjustment adjustment(network);
  adjustment.setTellFindings(false);
  EXPECT_THAT(adjustment.adjust().commonControl, testing::ElementsAre(2));
}

// Q hangs on one direction and one distance that is measured three times. The equations of the last round have it so to
// rounding, whatever holds the network; centring errors that the round did not have would make a redundancy of 1e-4.
TEST(PlaneTests, SayWhatNothingChecksUnderEveryDatum) {
  for (auto const datum : {kvn::PlaneSettings::Datum::Known, kvn::PlaneSettings::Datum::Free}) {
    for (double const centring : {0.0, 0.002}) {
      Site const site = makeSite(6, 3, 330);
      std::mt19937 random(331);
      kvn::PlaneNetwork network = disturbed(site.network, random);
      auto const isOfQ = [](int from, int to) { return from == 5 || to == 5; };
      network.directions.erase(std::remove_if(network.directions.begin(), network.directions.end(),
                                              [&](auto const& d) { return isOfQ(d.setUp, d.target) && d.setUp != 0; }),
                               network.directions.end());
      network.distances.erase(std::remove_if(network.distances.begin(), network.distances.end(),
                                             [&](auto const& d) { return isOfQ(d.from, d.to) && d.from != 0; }),
                              network.distances.end());
      auto const once = std::find_if(network.distances.begin(), network.distances.end(),
                                     [&](auto const& d) { return isOfQ(d.from, d.to); });
      kvn::PlaneNetwork::Distance const again = *once;
      network.distances.push_back(again);
      network.distances.push_back(again);
      kvn::PlaneSettings settings;
      settings.datum = datum;
      settings.centring = centring;
      kvn::PlaneAdjustment adjustment(network, settings);
      adjustment.setTellFindings(false);
      kvn::PlaneResult const& result = adjustment.adjust();
      std::vector<bool> checked;
      for (auto const& point : result.points) checked.push_back(point.isChecked);
      EXPECT_EQ(checked, (std::vector<bool>{true, true, true, true, true, false})) << centring;
      // Redundancy numbers sum up to the redundancy.
      double sum = 0.0;
      for (auto const* list : {&result.directions, &result.distances}) {
        for (auto const& o : *list) sum += o.redundancy;
      }
      EXPECT_NEAR(sum, result.redundancy, 1e-8);
    }
  }
}

TEST(ControlPoints, ReduceTheSumOfSquaresByWhatANewAdjustmentSays) {
  for (double const error : {0.0, 0.003}) {
    Site site = makeSite(7, 4, 71);
    kvn::ObservationErrors errors;
    errors.control = error;
    kvn::setErrors(site.network, errors);
    std::mt19937 random(72);
    kvn::PlaneNetwork network = disturbed(site.network, random);
    network.points[2].x += 0.05;
    kvn::PlaneAdjustment held(network);
    kvn::PlaneResult const& result = held.adjust();
    ASSERT_EQ(result.control.size(), 4U);
    for (std::size_t p = 0; p < 4; ++p) {
      kvn::PlaneNetwork freed = network;
      freed.points[p].isKnown = false;
      kvn::PlaneAdjustment free(freed);
      kvn::PlaneResult const& alone = free.adjust();
      double const before = std::pow(result.unitError, 2) * result.redundancy;
      double const after = std::pow(alone.unitError, 2) * alone.redundancy;
      // Linear about the held solution: second-order parts are 0.05 m in 200 m, squared, of the residuals.
      EXPECT_NEAR(result.control[p].reduction, before - after, 2e-3 * before);
      EXPECT_NEAR(result.control[p].north, alone.points[p].x - network.points[p].x, 1e-4);
      EXPECT_NEAR(result.control[p].east, alone.points[p].y - network.points[p].y, 1e-4);
    }
  }
}

}  // namespace
