// Trigonometric heights in which every sight counts for itself: against an independent solution, closed forms, and what
// is true.
#include "adjust/HeightAdjustment.h"
#include "adjust/Networks.h"
#include "core/AlgorithmException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <Eigen/Dense>
#include <cmath>
#include <random>
#include <string>

namespace {

using test::kSecondsPerRadian;
using Suspect = kvn::HeightSuspect;
constexpr double kEarthRadius = 6371393.0;
constexpr double kRightAngle = 1.57079632679489662;

/// Points on a hillside; the first ones known. Every point is a station and sights its neighbours.
struct Hillside {
  kvn::HeightNetwork network;
  std::vector<double> truth;
};

void addSight(Hillside& site, int setUp, int target, double distance, double targetHeight) {
  kvn::HeightNetwork::SetUp const& from = site.network.setUps[std::size_t(setUp)];
  double const rise = site.truth[std::size_t(target)] - site.truth[std::size_t(from.station)] + targetHeight -
                      from.instrumentHeight - 0.84 * distance * distance / (2.0 * kEarthRadius);
  kvn::HeightNetwork::Sight sight;
  sight.setUp = setUp;
  sight.target = target;
  sight.zenith = kRightAngle - std::atan2(rise, distance);
  sight.slope = std::hypot(rise, distance);
  sight.targetHeight = targetHeight;
  site.network.sights.push_back(sight);
}

Hillside makeHillside(int points, int known, int reach, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  Hillside site;
  for (int p = 0; p < points; ++p) {
    site.truth.push_back(200.0 + 40.0 * uniform(random));
    kvn::HeightNetwork::Point point{"P" + std::to_string(p)};
    point.isKnown = p < known;
    if (point.isKnown) point.height = site.truth.back();
    site.network.points.push_back(point);
    site.network.setUps.push_back({p, 1.4 + 0.2 * uniform(random)});
  }
  for (int p = 0; p < points; ++p) {
    for (int step = 1; step <= reach; ++step) {
      int const target = (p + step) % points;
      double const distance = 50.0 + 450.0 * uniform(random);
      addSight(site, p, target, distance, 1.5);
      addSight(site, target, p, distance, 1.6);
    }
  }
  kvn::reduceSights(site.network, kvn::HeightErrors());
  return site;
}

kvn::HeightNetwork disturbed(kvn::HeightNetwork network, std::mt19937& random) {
  std::normal_distribution<double> normal;
  for (auto& sight : network.sights) sight.difference += sight.error * normal(random);
  return network;
}

/// What is measured is disturbed, each by its own error, and the heights are reduced from that.
kvn::HeightNetwork measured(kvn::HeightNetwork network, std::mt19937& random) {
  std::normal_distribution<double> normal;
  kvn::HeightErrors const errors;
  for (auto& sight : network.sights) {
    double const distance = errors.distanceFixed + errors.distanceProportional * sight.slope;
    sight.zenith += errors.zenithSeconds / kSecondsPerRadian * normal(random);
    sight.slope += distance * normal(random);
    sight.targetHeight += std::sqrt(2.0) * errors.height * normal(random);  // that of the instrument as well
  }
  kvn::reduceSights(network, errors);
  for (auto& sight : network.sights) {
    sight.difference +=
        errors.refractionError * normal(random) * sight.distance * sight.distance / (2.0 * kEarthRadius);
  }
  return network;
}

kvn::HeightSettings aPriori() {
  kvn::HeightSettings settings;
  settings.unitWeight = kvn::PlaneSettings::UnitWeight::APriori;
  return settings;
}

/// The same least squares with the known points left out of the unknowns, and one further unknown that shifts each
/// sight by its element of `shift`.
struct Dense {
  Eigen::VectorXd x;
  Eigen::MatrixXd q;
  double squares;

  Dense(kvn::HeightNetwork const& network, std::vector<bool> const& isKnown, Eigen::VectorXd const& shift) {
    std::vector<int> unknown(network.points.size(), -1);
    int count = 0;
    for (std::size_t p = 0; p < unknown.size(); ++p) {
      if (!isKnown[p]) unknown[p] = count++;
    }
    bool const hasShift = shift.size() > 0;
    auto const sights = static_cast<Eigen::Index>(network.sights.size());
    Eigen::MatrixXd a = Eigen::MatrixXd::Zero(sights, count + (hasShift ? 1 : 0));
    Eigen::VectorXd l(sights);
    Eigen::VectorXd p(sights);
    for (Eigen::Index s = 0; s < sights; ++s) {
      auto const& sight = network.sights[std::size_t(s)];
      int const ends[2] = {network.setUps[std::size_t(sight.setUp)].station, sight.target};
      l(s) = sight.difference;
      p(s) = 1.0 / (sight.error * sight.error);
      for (int e = 0; e < 2; ++e) {
        double const sign = e == 0 ? -1.0 : 1.0;
        auto const point = std::size_t(ends[e]);
        if (unknown[point] >= 0) {
          a(s, unknown[point]) = sign;
        } else {
          l(s) -= sign * network.points[point].height;
        }
      }
      if (hasShift) a(s, count) = shift(s);
    }
    q = (a.transpose() * p.asDiagonal() * a).inverse();
    x = q * (a.transpose() * (p.asDiagonal() * l));
    Eigen::VectorXd const v = a * x - l;
    squares = v.dot(p.asDiagonal() * v);
  }
};

// 1e-8: what holding by weight leaves, of residuals of millimetres and of their errors; in the squares of a test that
// has come from a difference of sums, 1e-6.
TEST(HeightAdjustments, EqualAnIndependentSolution) {
  for (int const sparseFrom : {1, 1000}) {
    Hillside const site = makeHillside(9, 2, 2, 11);
    std::mt19937 random(12);
    kvn::HeightNetwork network = disturbed(site.network, random);
    network.points[1].height += 0.004;
    kvn::HeightSettings settings = aPriori();
    settings.sparseFrom = sparseFrom;
    kvn::HeightAdjustment adjustment(network, settings);
    kvn::HeightResult const& result = adjustment.adjust();
    std::vector<bool> isKnown(9, false);
    isKnown[0] = isKnown[1] = true;
    Dense const plain(network, isKnown, {});
    EXPECT_EQ(result.redundancy, 36 - 7);
    EXPECT_NEAR(std::pow(result.unitError, 2) * result.redundancy, plain.squares, 1e-6 * plain.squares);
    for (Eigen::Index p = 2; p < 9; ++p) {
      EXPECT_NEAR(result.points[std::size_t(p)].height, plain.x(p - 2), 1e-9);
      EXPECT_NEAR(result.points[std::size_t(p)].error, std::sqrt(plain.q(p - 2, p - 2)), 1e-9);
    }
    // An error of a sight, of an instrument, of a target: the size that one more unknown gives them, and its error.
    auto const expectTest = [&](kvn::HeightTest const& test, Eigen::VectorXd const& shift) {
      Dense const shifted(network, isKnown, shift);
      auto const last = shifted.x.size() - 1;
      double const error = std::sqrt(shifted.q(last, last));
      EXPECT_NEAR(test.standardised, -shifted.x(last) / error, 1e-6 + 1e-6 * std::abs(test.standardised));
      EXPECT_NEAR(test.detectable, 4.13 * error, 1e-6 * error);
      EXPECT_NEAR(std::pow(test.standardised, 2), plain.squares - shifted.squares, 1e-5 * plain.squares);
    };
    for (Eigen::Index s = 0; s < 36; ++s) expectTest(result.sights[std::size_t(s)], Eigen::VectorXd::Unit(36, s));
    ASSERT_EQ(result.shared.size(), 27U);  // nine instruments; targets at two heights on nine points
    for (kvn::SharedHeight const& shared : result.shared) {
      Eigen::VectorXd shift = Eigen::VectorXd::Zero(36);
      for (Eigen::Index s = 0; s < 36; ++s) {
        auto const& sight = network.sights[std::size_t(s)];
        if (shared.isInstrument && sight.setUp == static_cast<int>(shared.setUp)) shift(s) = 1.0;
        if (!shared.isInstrument && sight.target == static_cast<int>(shared.target) &&
            sight.targetHeight == shared.height) {
          shift(s) = -1.0;
        }
      }
      expectTest(shared, shift);
    }
    // A known point that were free.
    for (std::size_t k = 0; k < 2; ++k) {
      std::vector<bool> fewer = isKnown;
      fewer[k] = false;
      Dense const freed(network, fewer, {});
      double const moved = freed.x(0) - network.points[k].height;
      double const error = std::sqrt(freed.q(0, 0));
      EXPECT_NEAR(result.known[k].standardised, moved / error, 1e-6 * std::abs(moved / error));
      EXPECT_NEAR(result.known[k].detectable, 4.13 * error, 1e-6 * error);
    }
  }
}

TEST(HeightAdjustments, MeetClosedForms) {
  constexpr double kSigma = 0.002;
  auto const networkOf = [](std::vector<double> known, int points, std::vector<std::tuple<int, int, double>> lines) {
    kvn::HeightNetwork network;
    for (int p = 0; p < points; ++p) {
      kvn::HeightNetwork::Point point{"P" + std::to_string(p)};
      point.isKnown = std::size_t(p) < known.size();
      if (point.isKnown) point.height = known[std::size_t(p)];
      network.points.push_back(point);
      network.setUps.push_back({p});
    }
    for (auto const& [from, to, difference] : lines) {
      kvn::HeightNetwork::Sight sight;
      sight.setUp = from;
      sight.target = to;
      sight.difference = difference;
      sight.error = kSigma;
      network.sights.push_back(sight);
    }
    return network;
  };
  {
    // A side shot: its own error, nothing checks it.
    kvn::HeightAdjustment shot(networkOf({100.0}, 2, {{0, 1, 3.0}}), aPriori());
    kvn::HeightResult const& result = shot.adjust();
    EXPECT_NEAR(result.points[1].height, 103.0, 1e-9);
    EXPECT_NEAR(result.points[1].error, kSigma, 1e-9);
    EXPECT_FALSE(result.points[1].isChecked);
    EXPECT_FALSE(result.hasRedundancy);
    EXPECT_TRUE(std::isnan(result.sights[0].detectable));
  }
  {
    // A reciprocal pair: the mean, each checks half of the other's error, and 9 mm are in one of both.
    kvn::HeightAdjustment pair(networkOf({100.0}, 2, {{0, 1, 3.0}, {1, 0, -3.03}}), aPriori());
    kvn::HeightResult const& result = pair.adjust();
    EXPECT_NEAR(result.points[1].height, 103.015, 1e-9);
    EXPECT_NEAR(result.points[1].error, kSigma / std::sqrt(2.0), 1e-9);
    EXPECT_NEAR(result.sights[0].redundancy, 0.5, 1e-7);
    EXPECT_NEAR(result.sights[1].residual, 0.015, 1e-9);
    EXPECT_NEAR(std::abs(result.sights[0].standardised), 0.03 / (kSigma * std::sqrt(2.0)), 1e-5);
    ASSERT_EQ(result.suspects.size(), 1U);
    EXPECT_EQ(result.suspects[0].alternatives.size(), 1U);
    EXPECT_NEAR(std::abs(result.suspects[0].gross), 0.03, 1e-7);
    EXPECT_TRUE(result.points[1].isChecked);
  }
  {
    // A loop of four from one known point: 12 mm are shared out, a quarter each; errors √(k (4 - k) / 4).
    kvn::HeightAdjustment loop(networkOf({50.0}, 4, {{0, 1, 1.0}, {1, 2, 1.0}, {2, 3, 1.0}, {3, 0, -2.988}}),
                               aPriori());
    kvn::HeightResult const& result = loop.adjust();
    for (int k = 1; k < 4; ++k) {
      EXPECT_NEAR(result.points[std::size_t(k)].height, 50.0 + k - 0.003 * k, 1e-9);
      EXPECT_NEAR(result.points[std::size_t(k)].error, kSigma * std::sqrt(k * (4.0 - k) / 4.0), 1e-9);
    }
    EXPECT_NEAR(result.unitError, 3.0, 1e-6);
    ASSERT_EQ(result.loops.size(), 1U);
    EXPECT_THAT(result.loops[0].points, testing::ElementsAre(0, 1, 2, 3, 0));
    EXPECT_NEAR(std::abs(result.loops[0].misclosure), 0.012, 1e-9);
    EXPECT_NEAR(result.loops[0].allowed, 2.576 * 2.0 * kSigma, 1e-9);
  }
  {
    // Between two known points, 20 mm apart from what is given: told with both, from the one to the other.
    kvn::HeightAdjustment line(networkOf({50.0, 52.02}, 3, {{0, 2, 1.0}, {2, 1, 1.0}}));
    kvn::HeightResult const& result = line.adjust();
    EXPECT_NEAR(result.points[2].height, 51.01, 1e-9);
    ASSERT_EQ(result.loops.size(), 1U);
    EXPECT_THAT(result.loops[0].points, testing::ElementsAre(0, 2, 1));
    EXPECT_THROW(kvn::HeightAdjustment(networkOf({50.0}, 3, {{0, 1, 1.0}})).adjust(), kvn::AlgorithmException);
  }
}

// Level sights around a square of 1 km: each seems to rise by c = (1 - K) D² / 2R, as one does that is taken one way.
// The loop does not close by 4 c, of which each sight gets a quarter, so that all points are at one height.
TEST(HeightAdjustments, CloseALoopOfFourWithItsRefraction) {
  constexpr double kDistance = 1000.0;
  auto const adjusted = [](double refraction, bool isBothWays) {
    kvn::HeightNetwork network;
    for (int p = 0; p < 4; ++p) {
      network.points.push_back({"P" + std::to_string(p)});
      network.setUps.push_back({p});
      for (int const step : {1, 3}) {
        if (step == 3 && !isBothWays) continue;
        kvn::HeightNetwork::Sight sight;
        sight.setUp = p;
        sight.target = (p + step) % 4;
        sight.zenith = kRightAngle;
        sight.slope = kDistance;
        network.sights.push_back(sight);
      }
    }
    network.points[0].isKnown = true;
    network.points[0].height = 50.0;
    kvn::HeightErrors errors;
    errors.refraction = refraction;
    kvn::reduceSights(network, errors);
    kvn::HeightAdjustment adjustment(network, aPriori());
    return adjustment.adjust();
  };
  double const square = kDistance * kDistance / (2.0 * kEarthRadius);
  double const ofZenith = kDistance * 2.0 / kSecondsPerRadian;
  double const sigma = std::sqrt(ofZenith * ofZenith + 2.0 * 1e-6 + std::pow(0.05 * square, 2));
  for (double const refraction : {0.16, 0.13, 1.0}) {
    double const c = (1.0 - refraction) * square;
    kvn::HeightResult const oneWay = adjusted(refraction, false);
    EXPECT_NEAR(oneWay.unitError, std::sqrt(4.0) * c / sigma, 1e-6);
    for (std::size_t k = 1; k < 4; ++k) {
      EXPECT_NEAR(oneWay.points[k].height, 50.0, 1e-7);
      EXPECT_NEAR(oneWay.points[k].error, sigma * std::sqrt(double(k) * (4.0 - double(k)) / 4.0), 1e-8);
    }
    ASSERT_EQ(oneWay.loops.size(), refraction == 1.0 ? 0U : 1U);
    if (!oneWay.loops.empty()) {
      EXPECT_NEAR(std::abs(oneWay.loops[0].misclosure), 4.0 * c, 1e-9);
    }
    // Both ways: what is left of each pair is 2 c, against √2 of the error of a mean twice.
    kvn::HeightResult const bothWays = adjusted(refraction, true);
    EXPECT_NEAR(bothWays.points[2].height, 50.0, 1e-7);
    EXPECT_NEAR(bothWays.points[2].error, sigma / std::sqrt(2.0), 1e-8);
    EXPECT_NEAR(bothWays.unitError, std::sqrt(8.0 / 5.0) * c / sigma, 1e-6);
  }
}

TEST(Sights, HaveTheErrorOfWhatMakesThem) {
  kvn::HeightNetwork network;
  network.points = {{"A"}, {"B"}};
  network.setUps = {{0, 1.6}};
  kvn::HeightNetwork::Sight sight;
  sight.target = 1;
  sight.zenith = 80.0 / 90.0 * kRightAngle;
  sight.slope = 800.0;
  sight.targetHeight = 1.3;
  sight.readings = 1;
  sight.rounds = 2;
  network.sights = {sight};
  kvn::HeightErrors errors;
  errors.zenithSeconds = 3.0;
  kvn::reduceSights(network, errors);
  double const d = 800.0 * std::sin(sight.zenith);
  EXPECT_NEAR(network.sights[0].distance, d, 1e-9);
  EXPECT_NEAR(network.sights[0].difference,
              800.0 * std::cos(sight.zenith) + 1.6 - 1.3 + (1.0 - 0.16) * d * d / (2.0 * kEarthRadius), 1e-9);
  double const parts[] = {d * 3.0 * std::sqrt(2.0) / kSecondsPerRadian,
                          (0.003 + 0.0024) * std::cos(sight.zenith) / std::sqrt(2.0), 0.001 * std::sqrt(2.0),
                          d * d * 0.05 / (2.0 * kEarthRadius)};
  double variance = 0.0;
  for (double const part : parts) variance += part * part;
  EXPECT_NEAR(network.sights[0].error, std::sqrt(variance), 1e-12);
}

// The heights of a run move together: the root mean square of 6 of them in 4,000 runs has a chance error of 1 %, the
// share of runs that fail the test of the whole one of 0.35 %.
TEST(PromisedHeightErrors, AreTheTrueOnes) {
  Hillside const site = makeHillside(8, 2, 2, 31);
  std::mt19937 random(32);
  double promised = 0.0;
  double real = 0.0;
  int beyond = 0;
  int marked = 0;
  int suspected = 0;
  constexpr int kRuns = 4000;
  for (int run = 0; run < kRuns; ++run) {
    kvn::HeightAdjustment adjustment(measured(site.network, random));
    kvn::HeightResult const& result = adjustment.adjust();
    if (!result.isPassed) ++beyond;
    suspected += result.suspects.empty() ? 0 : 1;
    for (std::size_t p = 2; p < 8; ++p) {
      promised += std::pow(result.points[p].error, 2);
      real += std::pow(result.points[p].height - site.truth[p], 2);
    }
    for (auto const& sight : result.sights) marked += sight.test > 1.0 ? 1 : 0;
    for (auto const& shared : result.shared) marked += shared.test > 1.0 ? 1 : 0;
  }
  EXPECT_NEAR(std::sqrt(promised / real), 1.0, 0.03);
  EXPECT_NEAR(beyond, 0.05 * kRuns, 0.014 * kRuns);
  EXPECT_NEAR(marked / (56.0 * kRuns), 0.001, 0.0005);
  EXPECT_LE(suspected, 1);
}

TEST(Heights, OfInstrumentsAndTargetsAreNamedWhereTheyAreWrong) {
  Hillside const site = makeHillside(8, 3, 2, 41);
  std::mt19937 random(42);
  constexpr int kRuns = 1000;
  int instruments = 0;
  int targets = 0;
  int known = 0;
  for (int run = 0; run < kRuns; ++run) {
    kvn::HeightNetwork const good = disturbed(site.network, random);
    auto const wrong = static_cast<std::size_t>(run % 8);
    auto const suspectsWith = [](kvn::HeightNetwork network) {
      kvn::HeightAdjustment adjustment(std::move(network));
      return adjustment.adjust().suspects;
    };
    kvn::HeightNetwork bad = good;
    for (auto& sight : bad.sights) sight.difference += sight.setUp == static_cast<int>(wrong) ? 0.1 : 0.0;
    auto suspects = suspectsWith(bad);
    // Instruments are first among the shared heights, one of each point.
    if (suspects.size() == 1 && suspects[0].kind == Suspect::Instrument && suspects[0].number == wrong) {
      ++instruments;
      EXPECT_NEAR(suspects[0].gross, 0.1, 0.02);
    }
    bad = good;
    for (auto& sight : bad.sights) {
      bool const isWrong = sight.target == static_cast<int>(wrong) && sight.targetHeight == 1.5;
      sight.difference -= isWrong ? 0.1 : 0.0;
    }
    suspects = suspectsWith(bad);
    if (suspects.size() == 1 && suspects[0].kind == Suspect::Target) {
      ++targets;
      EXPECT_NEAR(suspects[0].gross, 0.1, 0.02);
    }
    bad = good;
    bad.points[1].height += 0.2;
    suspects = suspectsWith(bad);
    if (suspects.size() == 1 && suspects[0].kind == Suspect::Known && suspects[0].number == 1U) {
      ++known;
      EXPECT_NEAR(suspects[0].gross, 0.2, 0.02);
    }
  }
  EXPECT_GE(instruments, 0.95 * kRuns);
  EXPECT_GE(targets, 0.95 * kRuns);
  EXPECT_GE(known, 0.95 * kRuns);
}

TEST(Heights, OfAnInstrumentThatNothingChecksAreTold) {
  // S has a set-up of its own on a place that nobody else sights: what is wrong with its instrument is in its height.
  Hillside site = makeHillside(5, 2, 2, 51);
  site.truth.push_back(222.0);
  site.network.points.push_back({"S"});
  site.network.setUps.push_back({5, 1.55});
  for (int const target : {0, 1, 2}) addSight(site, 5, target, 150.0, 1.7);
  kvn::reduceSights(site.network, kvn::HeightErrors());
  kvn::HeightAdjustment adjustment(site.network);
  kvn::HeightResult const& result = adjustment.adjust();
  EXPECT_TRUE(result.shared[5].isInstrument);
  EXPECT_NEAR(result.shared[5].redundancy, 0.0, 1e-6);
  EXPECT_TRUE(std::isnan(result.shared[5].detectable));
  EXPECT_GT(result.shared[3].redundancy, 0.1);
  EXPECT_FALSE(result.points[5].isChecked);
  EXPECT_TRUE(result.points[3].isChecked);
  // 10 cm of it leave no trace among errors of observing either.
  std::mt19937 random(52);
  for (int run = 0; run < 200; ++run) {
    kvn::HeightNetwork bad = disturbed(site.network, random);
    for (auto& sight : bad.sights) sight.difference += sight.setUp == 5 ? 0.1 : 0.0;
    kvn::HeightAdjustment wrong(std::move(bad));
    kvn::HeightResult const& found = wrong.adjust();
    EXPECT_TRUE(found.suspects.empty());
    EXPECT_FALSE(found.points[5].isChecked);
    EXPECT_NEAR(found.points[5].height, 222.0 - 0.1, 0.02);
  }
}

}  // namespace
