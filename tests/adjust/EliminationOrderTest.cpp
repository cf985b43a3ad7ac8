// Cuts of a network by the places of its points, and the orders of elimination that they give.
#include "adjust/linalg/MaximumFlow.h"
#include "adjust/linalg/SparseCholesky.h"
#include "adjust/linalg/StraightCut.h"
#include "adjust/start/RoughPlaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace {

using kvn::detail::hasPlace;
using kvn::detail::NumberedNetwork;
using kvn::detail::Place;
using kvn::sparse::BlockGraph;
using kvn::sparse::Clique;

std::size_t at(int i) { return static_cast<std::size_t>(i); }

/// Points 100 m apart in rows, each moved by up to 20 m; every one meets the eight around it.
struct Rows {
  Rows(int pointsOfRow, int rows, double azimuth) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> moved(-20.0, 20.0);
    for (int i = 0; i < rows; ++i) {
      for (int j = 0; j < pointsOfRow; ++j) {
        places.push_back(std::polar(1.0, azimuth) * Place(100.0 * i + moved(random), 100.0 * j + moved(random)));
        for (int k = std::max(0, i - 1); k <= i; ++k) {
          for (int l = std::max(0, j - 1); l <= std::min(pointsOfRow - 1, j + 1); ++l) {
            int const a = i * pointsOfRow + j;
            int const b = k * pointsOfRow + l;
            if (b < a) pairs.push_back({a, b, -1});
          }
        }
      }
    }
  }

  std::vector<int> sizes() const { return std::vector<int>(places.size(), 2); }
  BlockGraph graph() const { return kvn::sparse::graphOf(sizes(), pairs); }

  std::vector<Place> places;
  std::vector<Clique> pairs;
};

std::vector<Place> shuffled(std::vector<Place> places) {
  std::shuffle(places.begin(), places.end(), std::mt19937(1));
  return places;
}

std::size_t factorSize(Rows const& rows, std::vector<Place> const& places) {
  std::vector<int> const order = kvn::sparse::eliminationOrder(rows.sizes(), rows.pairs, places);
  return kvn::sparse::SparseCholesky(rows.sizes(), rows.pairs, order).factorSize();
}

TEST(MaximumFlow, IsAsLargeAsTheSmallestOfAllCuts) {
  constexpr int kNodes = 8;
  std::mt19937 random(3);
  for (int trial = 0; trial < 200; ++trial) {
    kvn::sparse::MaximumFlow flow(kNodes);
    std::vector<std::array<int, 3>> arcs;
    for (int from = 0; from < kNodes; ++from) {
      for (int to = 0; to < kNodes; ++to) {
        if (from == to || random() % 5 < 2) continue;
        arcs.push_back({from, to, static_cast<int>(random() % 6)});
        flow.addArc(from, to, arcs.back()[2]);
      }
    }
    auto const capacityOf = [&arcs](auto const& isBefore) {
      int capacity = 0;
      for (auto const& [from, to, size] : arcs) capacity += isBefore(from) && !isBefore(to) ? size : 0;
      return capacity;
    };
    int smallest = kvn::sparse::MaximumFlow::kUnlimited;
    for (unsigned others = 0; others < (1U << (kNodes - 2)); ++others) {  // node 0 before the cut, the last one behind
      auto const isBefore = [others](int node) {
        return node == 0 || (node < kNodes - 1 && ((others >> static_cast<unsigned>(node - 1)) & 1U) != 0);
      };
      smallest = std::min(smallest, capacityOf(isBefore));
    }
    EXPECT_EQ(flow.send(0, kNodes - 1), smallest);
    EXPECT_EQ(capacityOf([&flow](int node) { return flow.isBeforeCut(node); }), smallest);
  }
}

TEST(StraightCut, SeparatesARegularNetworkByOneRowHoweverItLies) {
  for (double const azimuth : {0.0, 0.3, 0.785, 1.2}) {
    Rows const rows(40, 50, azimuth);
    BlockGraph const graph = rows.graph();
    std::vector<int> const sides = kvn::sparse::straightCut(graph, rows.places, {}).sides;
    ASSERT_EQ(sides.size(), rows.places.size());
    for (Clique const& pair : rows.pairs) {
      EXPECT_NE(sides[at(pair[0])] + sides[at(pair[1])], 1) << "sides that meet";
    }
    EXPECT_LE(std::count(sides.begin(), sides.end(), 2), 40) << azimuth;
    for (int side = 0; side < 2; ++side) EXPECT_GE(std::count(sides.begin(), sides.end(), side), 400) << azimuth;
  }
}

/// Two parts that meet along a jagged border, and there in every fourth column only.
TEST(StraightCut, IsMovedToWhereFewestSeparate) {
  Rows rows(20, 41, 0.0);
  auto const isFirst = [](int block) { return block / 20 <= (block % 20 % 8 < 4 ? 20 : 22); };
  auto const isOff = [&isFirst](Clique const& pair) {
    bool const isBridge = pair[0] % 20 == pair[1] % 20 && pair[0] % 4 == 0;
    return isFirst(pair[0]) != isFirst(pair[1]) && !isBridge;
  };
  rows.pairs.erase(std::remove_if(rows.pairs.begin(), rows.pairs.end(), isOff), rows.pairs.end());
  std::vector<int> const sides = kvn::sparse::straightCut(rows.graph(), rows.places, {}).sides;
  EXPECT_EQ(std::count(sides.begin(), sides.end(), 2), 5);
}

TEST(StraightCut, GivesNothingForPlacesThatAreOfNoUse) {
  Rows const rows(40, 40, 0.0);
  EXPECT_TRUE(kvn::sparse::straightCut(rows.graph(), shuffled(rows.places), {}).sides.empty());
  EXPECT_TRUE(kvn::sparse::straightCut(rows.graph(), std::vector<Place>(1600, Place(5.0, 6.0)), {}).sides.empty());
}

TEST(EliminationOrders, FillNoMoreByPlacesAndTakeNoHarmFromWrongOnes) {
  Rows const rows(130, 130, 0.4);
  std::size_t const byGraph = factorSize(rows, {});
  EXPECT_LT(factorSize(rows, rows.places), byGraph);
  EXPECT_EQ(factorSize(rows, shuffled(rows.places)), byGraph);
}

/// Stations on all points but the last two: a tower that the first three aim at without a distance, and a point that
/// nobody sees. Station 7 is not sighted.
NumberedNetwork sightedRows(std::vector<Place> const& places, double reach) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> angle(-3.0, 3.0);
  NumberedNetwork network;
  network.points = static_cast<int>(places.size());
  network.directionStart = {0};
  int const tower = network.points - 2;
  for (int from = 0; from < tower; ++from) {
    double const zero = angle(random);
    network.stationPoint.push_back(from);
    for (int to = 0; to <= tower; ++to) {
      Place const across = places[at(to)] - places[at(from)];
      bool const isSeen = to == tower ? from < 3 : std::abs(across) < reach && to != 7;
      if (from == to || !isSeen) continue;
      network.directions.push_back({from, to, std::arg(across) - zero + 1e-5 * normal(random)});
      if (to != tower) network.lines.push_back({from, to, std::abs(across) + 0.003 * normal(random)});
    }
    network.directionStart.push_back(static_cast<int>(network.directions.size()));
  }
  network.buildLookups();
  return network;
}

TEST(RoughPlaces, AreTrueToASightInWhateverFrame) {
  std::vector<Place> places = Rows(30, 30, 0.0).places;
  places.push_back(Place(2000.0, 9000.0));
  places.push_back(Place());
  std::vector<Place> const rough = kvn::detail::roughPlaces(sightedRows(places, 150.0));
  ASSERT_EQ(rough.size(), 902);
  EXPECT_FALSE(hasPlace(rough[901]));
  EXPECT_EQ(rough[900], rough[0]) << "the tower, at the first station that aims at it";
  EXPECT_LT(std::abs(rough[7] - rough[6]), 300.0) << "the station that nobody sights, at one of its targets";
  // Both frames meet in the first point and in the azimuth of the last one.
  Place const turn = std::polar(1.0, std::arg((places[899] - places[0]) / (rough[899] - rough[0])));
  for (std::size_t n = 0; n < 900; ++n) {
    if (n == 7) continue;
    EXPECT_LT(std::abs(places[n] - places[0] - turn * (rough[n] - rough[0])), 10.0) << n;
  }
}

TEST(RoughPlaces, GoOnWhereEverySightIsOneWay) {
  constexpr int kPoints = 60;
  NumberedNetwork network;
  network.points = kPoints;
  network.directionStart = {0};
  for (int from = 0; from + 2 < kPoints; ++from) {  // each sights the next two of a line along the azimuth 0
    network.stationPoint.push_back(from);
    for (int to = from + 1; to <= from + 2; ++to) {
      network.directions.push_back({from, to, -0.1 * from});
      network.lines.push_back({from, to, 100.0 * (to - from)});
    }
    network.directionStart.push_back(static_cast<int>(network.directions.size()));
  }
  network.buildLookups();
  std::vector<Place> const rough = kvn::detail::roughPlaces(network);
  for (int n = 0; n < kPoints; ++n) EXPECT_LT(std::abs(rough[at(n)] - Place(100.0 * n, 0.0)), 1e-6) << n;
}

TEST(RoughPlaces, AreNoneWithoutDistances) {
  NumberedNetwork network = sightedRows(Rows(4, 4, 0.0).places, 150.0);
  network.lines.clear();
  network.buildLookups();
  for (Place const place : kvn::detail::roughPlaces(network)) EXPECT_FALSE(hasPlace(place));
}

}  // namespace
