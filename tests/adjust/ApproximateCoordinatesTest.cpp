// Coordinates that somebody tells the adjustment to start from: they decide where the observations do not, and only
// there.
#include "adjust/PlaneAdjustment.h"
#include "core/AlgorithmException.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <complex>
#include <random>

namespace {

using Place = std::complex<double>;

/// Points at random in a square of 400 m, the first `known` of them known, and distances between them without errors:
/// all, or a share of them.
struct Trilateration {
  Trilateration(int points, int known, unsigned seed, double share = 1.0) : random(seed) {
    std::uniform_real_distribution<double> place(0.0, 400.0);
    std::uniform_real_distribution<double> chance(0.0, 1.0);
    for (int p = 0; p < points; ++p) {
      truth.emplace_back(place(random), place(random));
      kvn::PlaneNetwork::Point point{"P" + std::to_string(p)};
      point.isKnown = p < known;
      if (point.isKnown) set(point, truth.back());
      network.points.push_back(point);
      for (int q = 0; q < p; ++q) {
        if (share == 1.0 || chance(random) < share)
          network.distances.push_back({q, p, std::abs(truth[std::size_t(q)] - truth.back())});
      }
    }
    kvn::setErrors(network, kvn::ObservationErrors());
  }

  static void set(kvn::PlaneNetwork::Point& point, Place at) {
    point.x = at.real();
    point.y = at.imag();
  }
  /// Off by up to 20 m each way.
  Place about(Place at) {
    std::uniform_real_distribution<double> off(-20.0, 20.0);
    return at + Place(off(random), off(random));
  }
  /// On the other side of the line through the first two points.
  Place mirrored(Place at) const {
    Place const along = (truth[1] - truth[0]) / std::abs(truth[1] - truth[0]);
    return truth[0] + along * std::conj((at - truth[0]) / along);
  }
  double offLine(std::size_t p) const { return std::abs(truth[p] - mirrored(truth[p])); }
  std::size_t farthest() const {
    std::size_t found = 2;
    for (std::size_t p = 3; p < truth.size(); ++p) found = offLine(p) > offLine(found) ? p : found;
    return found;
  }

  std::mt19937 random;
  std::vector<Place> truth;
  kvn::PlaneNetwork network;
};

/// The largest distance of a point from where it should be; 1e-6 m is what the iteration leaves.
template <typename Expected>
double largestError(kvn::PlaneResult const& result, Expected const& expected) {
  double largest = 0.0;
  for (std::size_t p = 0; p < result.points.size(); ++p) {
    largest = std::max(largest, std::abs(Place(result.points[p].x, result.points[p].y) - expected(p)));
  }
  return largest;
}

TEST(ApproximateCoordinates, OfOnePointDecideBetweenTheMirrorImagesOfAll) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    Trilateration site(10, 2, seed);
    kvn::PlaneAdjustment without(site.network);
    without.setTellFindings(false);
    EXPECT_THROW(without.adjust(), kvn::AlgorithmException);
    EXPECT_EQ(without.unplacedPoints().size(), 8U);
    for (bool const isMirrored : {false, true}) {
      auto const side = [&](Place at) { return isMirrored ? site.mirrored(at) : at; };
      kvn::PlaneNetwork network = site.network;
      std::size_t const told = site.farthest();
      Trilateration::set(network.points[told], site.about(side(site.truth[told])));
      kvn::PlaneAdjustment adjustment(network);
      EXPECT_LT(largestError(adjustment.adjust(), [&](std::size_t p) { return side(site.truth[p]); }), 1e-6);
    }
  }
}

// Where few distances lead from point to point, several are searched for at once, from places at random: that all of
// them come to one image is no proof that it is the only one.
TEST(ApproximateCoordinates, AreNeededHoweverThePointsAreFound) {
  for (unsigned const seed : {5U, 6U}) {
    Trilateration site(14, 2, seed, 0.5);
    kvn::PlaneAdjustment without(site.network);
    without.setTellFindings(false);
    EXPECT_THROW(without.adjust(), kvn::AlgorithmException) << seed;
    std::size_t const told = site.farthest();
    Trilateration::set(site.network.points[told], site.about(site.truth[told]));
    kvn::PlaneAdjustment adjustment(site.network);
    EXPECT_LT(largestError(adjustment.adjust(), [&](std::size_t p) { return site.truth[p]; }), 1e-6) << seed;
  }
}

// Few distances leave more images than are found: with coordinates of all points to a few metres the network starts
// from these.
TEST(ApproximateCoordinates, OfAllPointsAreWhereTheNetworkStarts) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    Trilateration site(12, 2, seed, 0.4);
    std::normal_distribution<double> off(0.0, 3.0);
    for (std::size_t p = 2; p < 12; ++p) {
      Trilateration::set(site.network.points[p], site.truth[p] + Place(off(site.random), off(site.random)));
    }
    kvn::PlaneAdjustment adjustment(site.network);
    adjustment.setTellFindings(false);
    double error = 0.0;
    try {
      error = largestError(adjustment.adjust(), [&](std::size_t p) { return site.truth[p]; });
    } catch (kvn::AlgorithmException const&) {  // not every such network is held by its distances
    }
    EXPECT_LT(error, 1e-5) << seed;
  }
}

TEST(ApproximateCoordinates, DoNotDecideWhatTheObservationsDo) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    Trilateration site(10, 3, seed);
    for (std::size_t p = 3; p < 10; ++p) {
      Trilateration::set(site.network.points[p], site.about(site.mirrored(site.truth[p])));
    }
    kvn::PlaneAdjustment adjustment(site.network);
    EXPECT_LT(largestError(adjustment.adjust(), [&](std::size_t p) { return site.truth[p]; }), 1e-6);
  }
}

TEST(ApproximateCoordinates, AreWhatAFreeNetworkOfDistancesIsLaidOn) {
  Trilateration site(8, 0, 1);
  kvn::PlaneSettings settings;
  settings.datum = kvn::PlaneSettings::Datum::Free;
  kvn::PlaneAdjustment without(site.network, settings);
  without.setTellFindings(false);
  EXPECT_THROW(without.adjust(), kvn::AlgorithmException);
  Place sum;
  for (std::size_t p = 0; p < 8; ++p) {
    Trilateration::set(site.network.points[p], site.about(site.truth[p]));
    sum += Place(site.network.points[p].x, site.network.points[p].y);
  }
  kvn::PlaneAdjustment adjustment(site.network, settings);
  kvn::PlaneResult const& result = adjustment.adjust();
  EXPECT_LT(result.unitError, 1e-3);  // no observation is off, so that the shape is right
  for (kvn::PlanePoint const& point : result.points) sum -= Place(point.x, point.y);
  EXPECT_LT(std::abs(sum), 1e-6);
  // Laid by a turn and a shift of a few metres; a mirror image would be off by hundreds.
  EXPECT_LT(largestError(result, [&](std::size_t p) { return site.truth[p]; }), 20.0);
}

// The ray from A to P cuts the distance of B twice.
TEST(ApproximateCoordinates, DecideWhereARayCutsADistanceTwice) {
  kvn::PlaneNetwork network;
  network.points = {{"A", 0.0, 0.0, true}, {"B", 100.0, 50.0, true}, {"P"}};
  network.setUps = {{0}};
  network.directions = {{0, 1, std::atan2(50.0, 100.0)}, {0, 2, 0.0}};
  network.distances = {{1, 2, 70.0}};
  kvn::setErrors(network, kvn::ObservationErrors());
  double const half = std::sqrt(70.0 * 70.0 - 50.0 * 50.0);
  for (double const side : {-1.0, 1.0}) {
    Trilateration::set(network.points[2], Place(100.0 + side * 30.0, 20.0));
    kvn::PlaneAdjustment adjustment(network);
    EXPECT_NEAR(adjustment.adjust().points[2].x, 100.0 + side * half, 1e-6);
  }
}

}  // namespace
