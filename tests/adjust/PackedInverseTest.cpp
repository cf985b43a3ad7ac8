// The inversion in blocks against the elimination of one unknown after the other, and the pivots it refuses.
#include "adjust/linalg/PackedInverse.h"

#include "adjust/Matrix.h"
#include "adjust/linalg/DenseKernels.h"
#include "adjust/linalg/SparseCholesky.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using kvn::detail::invertPacked;
using kvn::detail::PivotRule;
using Packed = std::vector<double>;

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

std::size_t at(std::size_t i, std::size_t j) { return i >= j ? i * (i + 1) / 2 + j : at(j, i); }

/// The cyclic elimination as the textbook writes it, element by element.
bool plainInverse(Packed& a, int n) {
  Packed w(static_cast<std::size_t>(n));
  auto const element = [&a](int i) -> double& { return a[static_cast<std::size_t>(i)]; };
  for (int k = 0; k < n; ++k) {
    double const p = element(0);
    if (p == 0.0) return false;
    for (int i = 1; i < n; ++i) {
      double const q = element(i * (i + 1) / 2);
      w[static_cast<std::size_t>(i)] = i > n - k - 1 ? q / p : -q / p;
      for (int j = 1; j <= i; ++j) {
        element((i - 1) * i / 2 + j - 1) = element(i * (i + 1) / 2 + j) + q * w[static_cast<std::size_t>(j)];
      }
    }
    for (int i = 1; i < n; ++i) element((n - 1) * n / 2 + i - 1) = w[static_cast<std::size_t>(i)];
    element(n * (n + 1) / 2 - 1) = 1.0 / p;
  }
  return true;
}

/// Random symmetric matrix with n on its diagonal, or, when indefinite, n and -n: the rest has a norm of about
/// 1.2 sqrt(n), so that the condition stays below 3 from 10 unknowns on.
Packed randomMatrix(std::size_t n, bool indefinite, std::mt19937& random) {
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  Packed a(n * (n + 1) / 2);
  for (double& element : a) element = value(random);
  for (std::size_t i = 0; i < n; ++i) a[at(i, i)] += indefinite && random() % 2 == 0 ? -double(n) : double(n);
  return a;
}

double largestOf(Packed const& a) {
  return std::abs(*std::max_element(a.begin(), a.end(), [](double x, double y) { return std::abs(x) < std::abs(y); }));
}

TEST(PackedInverse, IsTheCyclicEliminationToTheLastBit) {
  std::mt19937 random(20261124);
  for (int const n : {1, 2, 3, 5, 8, 17, 40, 64}) {  // above 64 it is done in blocks
    for (bool const indefinite : {false, true}) {    // any pivot but an exact zero is taken
      SCOPED_TRACE(testing::Message() << "n " << n << (indefinite ? " indefinite" : ""));
      Packed plain = randomMatrix(static_cast<std::size_t>(n), indefinite, random);
      Packed fast = plain;
      ASSERT_TRUE(plainInverse(plain, n));
      ASSERT_TRUE(kvn::Matrix().inverse(fast, n));
      EXPECT_EQ(fast, plain);
    }
  }
}

TEST(PackedInverse, RefusesAZeroPivotWhereverItArises) {
  struct Case {
    char const* what;
    Packed matrix;
    int n;
    bool good;
  };
  Case const cases[] = {
      {"empty", {}, 0, true},
      {"first pivot", {0.0, 1.0, 0.0}, 2, false},
      {"second pivot", {1.0, 1.0, 1.0}, 2, false},
      {"third pivot", {1.0, 0.0, 1.0, 1.0, 1.0, 2.0}, 3, false},
      {"a tiny pivot is taken", {1e-300}, 1, true},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Packed a = c.matrix;
    EXPECT_EQ(kvn::Matrix().inverse(a, c.n), c.good);
  }
}

class BlockedInverse : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override { before = kvn::detail::useVectorInstructions(GetParam()); }
  void TearDown() override { kvn::detail::useVectorInstructions(before); }

 private:
  bool before = true;
};

INSTANTIATE_TEST_SUITE_P(PlainAndVector, BlockedInverse, testing::Bool());

TEST_P(BlockedInverse, IsThatOfOneUnknownAfterTheOther) {
  std::mt19937 random(20261125);
  for (std::size_t const n : {1U, 31U, 63U, 64U, 65U, 66U, 95U, 96U, 97U, 127U, 128U, 129U, 130U, 300U, 500U}) {
    for (bool const indefinite : {false, true}) {
      SCOPED_TRACE(testing::Message() << "n " << n << (indefinite ? " indefinite" : ""));
      Packed blocked = randomMatrix(n, indefinite, random);
      Packed plain = blocked;
      ASSERT_TRUE(invertPacked(blocked.data(), n, PivotRule::NotZero));
      ASSERT_TRUE(plainInverse(plain, static_cast<int>(n)));
      double largest = 0.0;
      for (std::size_t i = 0; i < plain.size(); ++i) largest = std::max(largest, std::abs(blocked[i] - plain[i]));
      // Each of the two is off by at most n * condition * epsilon of its largest element, which is far above what
      // roundings of both signs add up to: 1.2 epsilon of it is the largest seen.
      EXPECT_LT(largest, 2.0 * double(n) * 3.0 * kEpsilon * largestOf(plain));
    }
  }
}

TEST_P(BlockedInverse, TheRuleOfTheHeightsRefusesWhatDoesNotChangeOne) {
  std::mt19937 random(4);
  for (std::size_t const place : {0U, 31U, 32U, 33U, 63U, 64U, 65U, 99U}) {
    std::size_t const n = place == 0 ? 1 : 100;  // in blocks above 64
    // A tiny pivot, alone in its row, so that nothing is added to it and it spoils nothing.
    for (double const tiny : {0x1p-54, -0x1p-55}) {
      SCOPED_TRACE(testing::Message() << "place " << place << " pivot " << tiny);
      Packed a = randomMatrix(n, true, random);
      for (std::size_t j = 0; j < n; ++j) a[at(place, j)] = 0.0;
      a[at(place, place)] = tiny;
      Packed same = a;
      EXPECT_FALSE(invertPacked(a.data(), n, PivotRule::ChangesOne));
      ASSERT_TRUE(invertPacked(same.data(), n, PivotRule::NotZero));
      EXPECT_EQ(same[at(place, place)], 1.0 / tiny);
    }
  }
}

TEST_P(BlockedInverse, RefusesWhatIsSingularByItsBuild) {
  std::mt19937 random(8);
  // From 500 unknowns on the blocks are twice as wide.
  for (auto const& [n, places] :
       {std::pair<std::size_t, std::vector<std::size_t>>{120, {0, 1, 7, 8, 31, 32, 33, 63, 64, 65, 96, 118, 119}},
        {500, {63, 64, 65, 499}}}) {
    for (std::size_t const place : places) {
      SCOPED_TRACE(testing::Message() << "n " << n << " place " << place);
      Packed zeroRow = randomMatrix(n, true, random);
      for (std::size_t j = 0; j < n; ++j) zeroRow[at(place, j)] = 0.0;
      EXPECT_FALSE(invertPacked(zeroRow.data(), n, PivotRule::NotZero));
      if (place == 0) continue;

      // The unknown before once more. The quotients are no whole numbers, but both rows lose the same in the same
      // order.
      Packed repeated = randomMatrix(n, true, random);
      for (std::size_t j = 0; j < n; ++j) {
        if (j != place) repeated[at(place, j)] = repeated[at(place - 1, j)];
      }
      repeated[at(place, place)] = repeated[at(place, place - 1)] = repeated[at(place - 1, place - 1)];
      for (std::size_t j = place + 1; j < n; ++j) repeated[at(j, place)] = repeated[at(j, place - 1)];
      EXPECT_FALSE(invertPacked(repeated.data(), n, PivotRule::NotZero));
    }
  }
}

// A chain of blocks that meet at random: products of vectors of few elements, against solutions of the whole.
TEST(SparseCholesky, HasProductsOfVectorsOfFewElements) {
  constexpr int kBlocks = 200;
  constexpr std::size_t kUnknowns = 400;
  std::mt19937 random(7);
  std::vector<kvn::sparse::Clique> cliques;
  for (int b = 1; b < kBlocks; ++b) cliques.push_back({b - 1, b, static_cast<int>(random() % kBlocks)});
  kvn::sparse::SparseCholesky sparse(std::vector<int>(kBlocks, 2), cliques);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  for (kvn::sparse::Clique const& clique : cliques) {
    int at[] = {2 * clique[0], 2 * clique[0] + 1, 2 * clique[1], 2 * clique[1] + 1};
    double a[] = {value(random), value(random), value(random), value(random)};
    sparse.addEquation(a, at, 4, 1.0);
  }
  for (int u = 0; u < 2 * kBlocks; ++u) sparse.add(u, u, 1.0);
  ASSERT_TRUE(sparse.factor());
  std::vector<double> work;
  for (int run = 0; run < 20; ++run) {
    std::vector<kvn::sparse::SparseVector> b(3);
    for (auto& vector : b) {
      // An unknown that comes twice counts as the sum.
      int const first = static_cast<int>(random() % kUnknowns);
      vector = {{first, value(random)}, {static_cast<int>(random() % kUnknowns), value(random)}, {first, 0.5}};
    }
    std::vector<double> const products = sparse.products(b, work);
    ASSERT_EQ(products.size(), 9U);
    for (std::size_t i = 0; i < 3; ++i) {
      std::vector<double> x(kUnknowns, 0.0);
      for (auto const& [unknown, element] : b[i]) x[static_cast<std::size_t>(unknown)] += element;
      sparse.solve(x);
      for (std::size_t j = 0; j < 3; ++j) {
        double expected = 0.0;
        for (auto const& [unknown, element] : b[j]) expected += element * x[static_cast<std::size_t>(unknown)];
        EXPECT_NEAR(products[3 * i + j], expected, 1e-12);
      }
    }
  }
}

TEST(SparseCholesky, RefusesPivotsThatAreNotPositiveOrLost) {
  kvn::sparse::SparseCholesky sparse({1, 1}, {{0, 1, -1}});
  auto const isSound = [&sparse](double a, double b, double c, kvn::sparse::SparseCholesky::Bounds const& bounds) {
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
