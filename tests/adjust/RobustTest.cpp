// Observations that do not fit weigh less: against planted errors and the truth.
#include "adjust/PlaneAdjustment.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <stdexcept>
#include <utility>

namespace {

constexpr double kSecond = 1.0 / 206264.80624709636;

/// Points on a jittered grid 100 m apart, each a station that sees those around it, with distances; the corners are
/// known. Errors of the observations from a seed.
struct Grid {
  Grid(int side, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> off(-20.0, 20.0);
    std::normal_distribution<double> normal;
    for (int i = 0; i < side * side; ++i) {
      int const row = i / side;
      int const column = i % side;
      bool const isCorner = (row == 0 || row == side - 1) && (column == 0 || column == side - 1);
      network.points.push_back(
          {"P" + std::to_string(i), 100.0 * row + off(random), 100.0 * column + off(random), isCorner});
      network.setUps.push_back({i});
    }
    for (int i = 0; i < side * side; ++i) {
      for (int j = 0; j < side * side; ++j) {
        bool const isNear = std::abs(i / side - j / side) <= 1 && std::abs(i % side - j % side) <= 1;
        if (i == j || !isNear) continue;
        network.directions.push_back({i, j});
        network.distances.push_back({i, j});
      }
    }
    kvn::setPlannedValues(network);
    truth = network.points;
    kvn::setErrors(network, kvn::ObservationErrors());
    for (auto& d : network.directions) d.value += 0.5 * d.setUp + d.error * normal(random);
    for (auto& d : network.distances) d.value += d.error * normal(random);
    for (auto& point : network.points) {
      if (!point.isKnown) point.x = point.y = std::nan("");
    }
  }

  std::size_t direction(int from, int to) const {
    return std::size_t(std::find_if(network.directions.begin(), network.directions.end(),
                                    [&](auto const& d) { return d.setUp == from && d.target == to; }) -
                       network.directions.begin());
  }
  std::size_t distance(int from, int to) const {
    return std::size_t(std::find_if(network.distances.begin(), network.distances.end(),
                                    [&](auto const& d) { return d.from == from && d.to == to; }) -
                       network.distances.begin());
  }

  /// The largest error of a coordinate over its promised standard error.
  double worst(kvn::PlaneResult const& result) const {
    double largest = 0.0;
    for (std::size_t p = 0; p < truth.size(); ++p) {
      if (truth[p].isKnown) continue;
      largest = std::max({largest, std::abs(result.points[p].x - truth[p].x) / result.points[p].mx,
                          std::abs(result.points[p].y - truth[p].y) / result.points[p].my});
    }
    return largest;
  }

  kvn::PlaneNetwork network;
  std::vector<kvn::PlaneNetwork::Point> truth;
};

kvn::PlaneResult adjusted(kvn::PlaneNetwork const& network, kvn::PlaneSettings settings, bool isRobust) {
  settings.weighsDownSuspects = isRobust;
  kvn::PlaneAdjustment adjustment(network, settings);
  adjustment.setTellFindings(false);
  return adjustment.adjust();
}

struct Planted {
  char const* what;
  std::function<void(Grid&)> plant;
  std::vector<std::pair<int, int>> directions;  // whose weight must go
  std::vector<std::pair<int, int>> distances;
};

// 21 unknown points: of 42 good coordinates next to none is off by more than 4 standard errors.
TEST(RobustAdjustments, FindTheTruthBesidePlantedErrors) {
  constexpr double kGood = 4.0;
  auto const turn = [](Grid& grid, int from, int to, double seconds) {
    grid.network.directions[grid.direction(from, to)].value += seconds * kSecond;
  };
  auto const lengthen = [](Grid& grid, int from, int to, double metres) {
    grid.network.distances[grid.distance(from, to)].value += metres;
  };
  std::vector<Planted> const cases = {
      {"one direction", [&](Grid& g) { turn(g, 12, 13, 400.0); }, {{12, 13}}, {}},
      {"a distance", [&](Grid& g) { lengthen(g, 7, 12, -0.3); }, {}, {{7, 12}}},
      // Of which Huber's weights keep a hundredth and less, with a pull of 2.5 standard errors.
      {"far errors",
       [&](Grid& g) {
         lengthen(g, 7, 12, 8.0);
         turn(g, 12, 13, 20000.0);
       },
       {{12, 13}},
       {{7, 12}}},
      {"a leg at both ends",
       [&](Grid& g) {
         lengthen(g, 6, 7, 0.2);
         lengthen(g, 7, 6, 0.2);
       },
       {},
       {{6, 7}, {7, 6}}},
      {"several",
       [&](Grid& g) {
         for (int i : {6, 11, 16}) lengthen(g, i, i + 1, 0.5), turn(g, i, i + 1, -900.0);
         turn(g, 6, 2, 500.0);
       },
       {{6, 7}, {11, 12}, {16, 17}, {6, 2}},
       {{6, 7}, {11, 12}, {16, 17}}},
      {"exchanged targets",
       [&](Grid& g) {
         std::swap(g.network.directions[g.direction(12, 6)].value, g.network.directions[g.direction(12, 13)].value);
       },
       {{12, 6}, {12, 13}},
       {}},
  };
  kvn::PlaneSettings fixed;
  kvn::PlaneSettings aPriori;
  aPriori.unitWeight = kvn::PlaneSettings::UnitWeight::APriori;
  kvn::PlaneSettings free;
  free.datum = kvn::PlaneSettings::Datum::Free;
  for (Planted const& c : cases) {
    for (auto const& [settings, controlError] : {std::pair(fixed, 0.0), {aPriori, 0.0}, {free, 0.0}, {fixed, 0.005}}) {
      SCOPED_TRACE(c.what);
      Grid grid(5, 3);
      for (auto& point : grid.network.points) point.error = point.isKnown ? controlError : 0.0;
      c.plant(grid);
      kvn::PlaneResult const robust = adjusted(grid.network, settings, true);
      EXPECT_LT(grid.worst(robust), kGood);
      // The errors are those of good observations: not larger than what the unit weight error of the plain run makes.
      EXPECT_NEAR(robust.unitError, 1.0, 0.15);
      for (auto const& [from, to] : c.directions) {
        EXPECT_EQ(robust.directions[grid.direction(from, to)].weight, 0.0) << from << ' ' << to;
      }
      for (auto const& [from, to] : c.distances) {
        EXPECT_EQ(robust.distances[grid.distance(from, to)].weight, 0.0) << from << ' ' << to;
      }
      auto const goneOf = [](std::vector<kvn::PlaneObservation> const& list) {
        return std::count_if(list.begin(), list.end(), [](auto const& o) { return o.weight == 0.0; });
      };
      EXPECT_EQ(goneOf(robust.directions) + goneOf(robust.distances),
                std::ptrdiff_t(c.directions.size() + c.distances.size()));
      double redundancy = 0.0;
      for (auto const* list : {&robust.directions, &robust.distances}) {
        for (kvn::PlaneObservation const& o : *list) redundancy += o.weight > 0.0 ? o.redundancy : 0.0;
      }
      // Known coordinates with an error are observations too, and make the promised errors larger.
      if (controlError > 0.0) continue;
      EXPECT_NEAR(redundancy, robust.redundancy, 1e-6) << "the weights are those of the solution";
      kvn::PlaneSettings honest = settings;
      honest.unitWeight = kvn::PlaneSettings::UnitWeight::APriori;  // a large unit weight error would excuse the rest
      EXPECT_GT(grid.worst(adjusted(grid.network, honest, false)), kGood);
    }
  }
}

// 1,088 observations. Of 100 good ones one loses a part of its weight.
TEST(RobustAdjustments, HardlyTouchACleanNetwork) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    Grid const grid(9, seed);
    kvn::PlaneResult const plain = adjusted(grid.network, {}, false);
    kvn::PlaneResult const robust = adjusted(grid.network, {}, true);
    double largest = 0.0;
    for (std::size_t p = 0; p < plain.points.size(); ++p) {
      if (grid.truth[p].isKnown) continue;
      largest = std::max({largest, std::abs(robust.points[p].x - plain.points[p].x) / plain.points[p].mx,
                          std::abs(robust.points[p].y - plain.points[p].y) / plain.points[p].my});
    }
    EXPECT_LT(largest, 0.5);
    EXPECT_NEAR(robust.unitError, plain.unitError, 0.05);
    EXPECT_EQ(robust.redundancy, plain.redundancy);
    double lost = 0.0;
    for (auto const* list : {&robust.directions, &robust.distances}) {
      for (kvn::PlaneObservation const& o : *list) lost += 1.0 - o.weight;
    }
    EXPECT_GT(lost, 0.0);
    EXPECT_LT(lost, 0.01 * double(plain.directions.size() + plain.distances.size()));
  }
}

TEST(RobustAdjustments, KeepWhatNothingChecks) {
  Grid grid(4, 1);
  auto const last = int(grid.network.points.size());
  grid.network.points.push_back({"S"});
  grid.network.directions.push_back({5, last, 1.0});
  grid.network.distances.push_back({5, last, 70.0});
  kvn::setErrors(grid.network, kvn::ObservationErrors());
  grid.network.distances[grid.distance(5, 6)].value += 1.0;
  kvn::PlaneResult const robust = adjusted(grid.network, {}, true);
  EXPECT_EQ(robust.directions.back().weight, 1.0);
  EXPECT_EQ(robust.distances.back().weight, 1.0);
  EXPECT_FALSE(robust.points.back().isChecked);
  EXPECT_EQ(robust.distances[grid.distance(5, 6)].weight, 0.0);
}

TEST(RobustAdjustments, DoNotGoWithLeavingOut) {
  kvn::PlaneSettings settings;
  settings.leavesOutSuspects = true;
  EXPECT_THROW(adjusted(Grid(3, 1).network, settings, true), std::invalid_argument);
}

}  // namespace
