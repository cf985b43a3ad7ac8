// Known points with errors of their own, and networks that no known point holds.
#include "adjust/PlaneAdjustment.h"
#include "core/AlgorithmException.h"

#include <gmock/gmock.h>
#include <Eigen/Dense>
#include <cmath>
#include <random>

namespace {

using testing::ElementsAre;

/// A braced figure of five points, all observed from all.
kvn::PlaneNetwork figure(int known, unsigned seed) {
  double const places[][2] = {{0, 0}, {10, 140}, {150, 160}, {170, 20}, {80, 90}};
  kvn::PlaneNetwork network;
  std::mt19937 random(seed);
  std::normal_distribution<double> normal;
  for (int i = 0; i < 5; ++i) {
    network.points.push_back({std::string(1, static_cast<char>('A' + i)), places[i][0], places[i][1], i < known});
    network.setUps.push_back({i});
    for (int j = 0; j < 5; ++j) {
      if (i == j) continue;
      double const dx = places[j][0] - places[i][0];
      double const dy = places[j][1] - places[i][1];
      network.directions.push_back({i, j, std::atan2(dy, dx) + 1e-5 * normal(random)});
      network.distances.push_back({i, j, std::hypot(dx, dy) + 0.003 * normal(random)});
    }
  }
  kvn::ObservationErrors errors;
  errors.control = 0.01;
  kvn::setErrors(network, errors);
  return network;
}

TEST(WeightedControl, TestsEachPointByTheCovariancesOfItsResiduals) {
  kvn::PlaneNetwork network = figure(3, 7);
  network.points[1].x += 0.025;  // 2.5 of its standard errors: the whole passes
  kvn::PlaneSettings settings;
  settings.unitWeight = kvn::PlaneSettings::UnitWeight::APriori;
  kvn::PlaneAdjustment adjustment(network, settings);
  kvn::PlaneResult const& result = adjustment.adjust();
  ASSERT_TRUE(result.isPassed);
  EXPECT_THAT(result.suspectedControl, ElementsAre());
  ASSERT_EQ(result.control.size(), 3U);
  for (kvn::PlaneControl const& control : result.control) {
    kvn::PlanePoint const& point = result.points[control.point];
    kvn::PlaneNetwork::Point const& given = network.points[control.point];
    double const covariance =
        0.5 * (std::pow(point.semiMajor, 2) - std::pow(point.semiMinor, 2)) * std::sin(2.0 * point.bearing);
    Eigen::Matrix2d q;
    q << std::pow(point.mx, 2), covariance, covariance, std::pow(point.my, 2);
    Eigen::Vector2d const v(point.x - given.x, point.y - given.y);
    // Residuals of an observation have the covariances of the observation less those of the adjusted value.
    double const expected = v.dot((0.0001 * Eigen::Matrix2d::Identity() - q).inverse() * v);
    EXPECT_NEAR(control.reduction, expected, 1e-6 * expected + 1e-9);
    EXPECT_GT(control.test, 0.0);
  }
  EXPECT_GT(result.control[1].reduction, result.control[0].reduction);
}

// What is asked of a free network is its figure. Wherever its known points lie, the residuals are the same.
TEST(FreeNetwork, HasTheFigureOfItsObservationsWhateverItsKnownPointsSay) {
  kvn::PlaneSettings settings;
  settings.datum = kvn::PlaneSettings::Datum::Free;
  struct Case {
    char const* name;
    bool isKnown;  ///< or approximate, of all points
    double (*north)(double, double);
    double (*east)(double, double);
  };
  auto const x = [](double north, double) { return north; };
  auto const y = [](double, double east) { return east; };
  for (Case const &c :
       {Case{"exchanged", true, y, x}, Case{"approximate and exchanged", false, y, x},
        Case{"too large a scale", true, [](double north, double) { return 1000.0 * north; },
             [](double, double east) { return 1000.0 * east; }},
        Case{"approximate and too large a scale", false, [](double north, double) { return 1000.0 * north; },
             [](double, double east) { return 1000.0 * east; }},
        Case{"all along a line", true, x, x}}) {
    for (bool const hasDistances : {true, false}) {
      SCOPED_TRACE(c.name);
      kvn::PlaneNetwork network = figure(c.isKnown ? 4 : 0, 11);
      if (!hasDistances) network.distances.clear();
      kvn::PlaneAdjustment sound(network, settings);
      sound.adjust();
      for (kvn::PlaneNetwork::Point& point : network.points) {
        double const north = point.x;
        point.x = c.north(north, point.y);
        point.y = c.east(north, point.y);
      }
      kvn::PlaneAdjustment adjustment(network, settings);
      adjustment.setTellFindings(false);
      kvn::PlaneResult const& result = adjustment.adjust();
      EXPECT_TRUE(adjustment.suspects().empty());
      EXPECT_EQ(result.redundancy, sound.result().redundancy);
      // The iteration ends within 0.01 mm.
      EXPECT_NEAR(result.unitError, sound.result().unitError, 1e-3);
      for (std::size_t d = 0; d < result.distances.size(); ++d) {
        EXPECT_NEAR(result.distances[d].residual, sound.result().distances[d].residual, 1e-5);
      }
    }
  }
}

TEST(FreeNetwork, NamesThePointsThatCanMove) {
  kvn::PlaneNetwork network = figure(0, 3);
  // F, farther from A than all others, hangs on one distance, from C, which lies in its west.
  network.points.push_back({"F", 150.0, 200.0});
  network.distances.push_back({2, 5, 40.0, 0.003});
  kvn::PlaneSettings settings;
  settings.datum = kvn::PlaneSettings::Datum::Free;
  kvn::PlaneAdjustment adjustment(network, settings);
  EXPECT_THROW(adjustment.adjust(), kvn::AlgorithmException);
  ASSERT_EQ(adjustment.looseMotions().size(), 1U);
  kvn::LooseMotion const& motion = adjustment.looseMotions()[0];
  EXPECT_THAT(motion.names, ElementsAre("F"));
  EXPECT_EQ(motion.kind, kvn::LooseMotion::Along);
  EXPECT_NEAR(std::remainder(motion.azimuth, std::acos(-1.0)), 0.0, 1e-4);
}

}  // namespace
