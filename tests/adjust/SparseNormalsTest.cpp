// The sparse factor and its inverse against full matrices.
#include "adjust/sparse/SparseCholesky.h"

#include <gtest/gtest.h>
#include <Eigen/Dense>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using kvn::sparse::Clique;
using kvn::sparse::SparseCholesky;

/// Blocks of 1 to 3 unknowns along a band, with some that meet far apart.
struct RandomSystem {
  RandomSystem(int blocks, unsigned seed) : random(seed) {
    std::vector<int> first;
    int unknowns = 0;
    for (int b = 0; b < blocks; ++b) {
      sizes.push_back(1 + static_cast<int>(random() % 3));
      first.push_back(unknowns);
      unknowns += sizes.back();
    }
    full = Eigen::MatrixXd::Identity(unknowns, unknowns) * 0.01;
    for (int c = 0; c < 3 * blocks; ++c) {
      auto const a = static_cast<int>(random() % static_cast<unsigned>(blocks));
      int const step = c % 10 == 0 ? static_cast<int>(random() % static_cast<unsigned>(blocks)) : c % 4;
      cliques.push_back({a, (a + step) % blocks, c % 3 == 0 ? -1 : (a + 1) % blocks});
      addObservation(first, cliques.back());
    }
  }

  void addObservation(std::vector<int> const& first, Clique const& clique) {
    std::uniform_real_distribution<double> number(-1.0, 1.0);
    std::vector<std::pair<int, double>> row;  // only where it is not zero: the matrix has 640,000 elements
    for (int const block : clique) {
      for (int i = 0; block >= 0 && i < sizes[static_cast<std::size_t>(block)]; ++i) {
        row.emplace_back(first[static_cast<std::size_t>(block)] + i, number(random));
      }
    }
    for (auto const& [i, a] : row) {
      for (auto const& [j, b] : row) full(i, j) += a * b;
    }
  }

  SparseCholesky sparse() const {
    SparseCholesky system(sizes, cliques);
    for (int i = 0; i < full.rows(); ++i) {
      for (int j = 0; j <= i; ++j) {
        if (full(i, j) != 0.0) system.add(i, j, full(i, j));
      }
    }
    return system;
  }

  std::mt19937 random;
  std::vector<int> sizes;
  std::vector<Clique> cliques;
  Eigen::MatrixXd full;
};

TEST(SparseCholesky, SolvesAndInvertsAsTheFullMatrix) {
  for (int const blocks : {1, 2, 7, 40, 150, 400}) {
    RandomSystem const system(blocks, static_cast<unsigned>(blocks));
    SparseCholesky sparse = system.sparse();
    ASSERT_TRUE(sparse.factor()) << blocks;
    Eigen::MatrixXd const inverse = system.full.inverse();
    // The condition is below 1e4: both roads keep eleven digits of the largest element.
    double const tolerance = 1e-11 * inverse.cwiseAbs().maxCoeff();
    std::vector<double> x(static_cast<std::size_t>(system.full.rows()), 0.0);
    x[x.size() / 2] = 1.0;
    sparse.solve(x);
    sparse.invert();
    for (int i = 0; i < system.full.rows(); ++i) {
      EXPECT_NEAR(x[static_cast<std::size_t>(i)], inverse(i, system.full.rows() / 2), tolerance) << blocks;
      for (int j = 0; j <= i; ++j) {
        if (system.full(i, j) == 0.0) continue;
        EXPECT_NEAR(sparse.inverse(i, j), inverse(i, j), tolerance) << blocks << ": " << i << ", " << j;
      }
    }
  }
}

TEST(SparseCholesky, SolvesWhatIsOrderedByDissection) {
  constexpr int kSide = 60;  // a grid of 3,600 unknowns: a plate, whose diagonal dominates a little
  constexpr int kCount = kSide * kSide;
  std::vector<Clique> cliques;
  for (int i = 0; i < kCount; ++i) {
    if (i % kSide + 1 < kSide) cliques.push_back({i, i + 1, -1});
    if (i + kSide < kCount) cliques.push_back({i, i + kSide, -1});
  }
  SparseCholesky sparse(std::vector<int>(kCount, 1), cliques);
  for (Clique const& clique : cliques) sparse.add(clique[0], clique[1], -1.0);
  for (int i = 0; i < kCount; ++i) sparse.add(i, i, 4.01);
  ASSERT_TRUE(sparse.factor());
  sparse.invert();
  int const middle = kCount / 2 + kSide / 2;
  std::vector<double> x(kCount, 0.0);
  x[static_cast<std::size_t>(middle)] = 1.0;
  sparse.solve(x);
  for (int const other : {middle, middle + 1, middle - kSide}) {
    EXPECT_NEAR(sparse.inverse(middle, other), x[static_cast<std::size_t>(other)], 1e-12);
  }
  // Row `middle` of N x = e.
  double const row = 4.01 * x[middle] - x[middle - 1] - x[middle + 1] - x[middle - kSide] - x[middle + kSide];
  EXPECT_NEAR(row, 1.0, 1e-12);
}

TEST(SparseCholesky, RefusesPivotsThatAreNotPositiveOrLost) {
  SparseCholesky sparse({1, 1}, {{0, 1, -1}});
  auto const isSound = [&sparse](double a, double b, double c, SparseCholesky::Bounds const& bounds) {
    sparse.clear();
    sparse.add(0, 0, a);
    sparse.add(0, 1, b);
    sparse.add(1, 1, c);
    return sparse.factor(bounds);
  };
  EXPECT_TRUE(isSound(1.0, 1.0, 1.5, {}));
  EXPECT_FALSE(isSound(1.0, 1.0, 1.0, {}));
  EXPECT_FALSE(isSound(1.0, 2.0, 1.0, {}));
  EXPECT_FALSE(isSound(1.0, std::numeric_limits<double>::quiet_NaN(), 1.0, {}));
  EXPECT_FALSE(isSound(1.0, 1.0, 1.0 + 1e-13, {0.0, 1e-12}));
  EXPECT_TRUE(isSound(1.0, 1.0, 1.0 + 1e-13, {0.0, 1e-15}));
  EXPECT_FALSE(isSound(1.0, 0.0, 0.1, {0.1, 0.0}));
}

}  // namespace
