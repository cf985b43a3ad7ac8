// Inversion in packed storage, and the small matrix toolkit.
#include "adjust/detail/PackedInverse.h"

#include <Kelvane.h>
#include <gtest/gtest.h>
#include <cmath>
#include <random>
#include <vector>

namespace {

using kvn::Matrix;
using Packed = std::vector<double>;

std::size_t at(std::size_t i, std::size_t j) { return i >= j ? i * (i + 1) / 2 + j : at(j, i); }

/// The cyclic elimination as the textbook writes it, element by element.
bool literalInverse(Packed& a, int n) {
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

/// Largest element of A Q - I.
double identityError(Packed const& a, Packed const& q, std::size_t n) {
  double largest = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      double sum = i == j ? -1.0 : 0.0;
      for (std::size_t k = 0; k < n; ++k) sum += a[at(i, k)] * q[at(k, j)];
      largest = std::max(largest, std::abs(sum));
    }
  }
  return largest;
}

/// Random symmetric matrix with `shift` on its diagonal: n and more make it positive definite and well conditioned.
Packed randomMatrix(std::size_t n, double shift, std::mt19937& random) {
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  Packed a(n * (n + 1) / 2);
  for (double& element : a) element = value(random);
  for (std::size_t i = 0; i < n; ++i) a[at(i, i)] += shift;
  return a;
}

TEST(PackedInverse, IsTheLiteralCyclicEliminationToTheLastBit) {
  std::mt19937 random(20261124);
  for (int const n : {1, 2, 3, 5, 8, 17, 40, 64}) {  // above 64 it is done in blocks
    // A shift of 0 gives indefinite matrices; any pivot but an exact zero is taken.
    for (double const shift : {double(n), 0.0, 1e-9}) {
      SCOPED_TRACE(testing::Message() << "n " << n << " shift " << shift);
      Packed literal = randomMatrix(static_cast<std::size_t>(n), shift, random);
      Packed fast = literal;
      ASSERT_TRUE(literalInverse(literal, n));
      ASSERT_TRUE(Matrix().inverse(fast, n));
      EXPECT_EQ(fast, literal);
    }
  }
}

TEST(PackedInverse, TimesTheMatrixIsTheIdentity) {
  std::mt19937 random(7);
  for (std::size_t const n : {1U, 2U, 7U, 60U, 300U}) {
    SCOPED_TRACE(n);
    Packed const a = randomMatrix(n, double(n), random);
    Packed q = a;
    ASSERT_TRUE(Matrix().inverse(q, static_cast<int>(n)));
    // n * condition (below 5) * epsilon; the largest error seen is 3e-14.
    EXPECT_LT(identityError(a, q, n), double(n) * 5.0 * 2.3e-16 + 1e-15);
  }
}

TEST(PackedInverse, HoldsForIndefiniteAndNearlySingularMatrices) {
  Packed indefinite{1.0, 2.0, 1.0};  // eigenvalues 3 and -1
  Packed const before = indefinite;
  ASSERT_TRUE(Matrix().inverse(indefinite, 2));
  EXPECT_LT(identityError(before, indefinite, 2), 1e-15);

  Packed nearlySingular{1.0, 1.0, 1.0 + 1e-10};  // condition 4e10: 6 digits are left of 16
  Packed const near = nearlySingular;
  ASSERT_TRUE(Matrix().inverse(nearlySingular, 2));
  EXPECT_LT(identityError(near, nearlySingular, 2), 1e-5);
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
    EXPECT_EQ(Matrix().inverse(a, c.n), c.good);
  }
}

TEST(PackedInverse, ThePivotRuleOfTheHeightsRefusesWhatDoesNotChangeOne) {
  for (double const pivot : {1e-17, 1e-300}) {
    Packed a{pivot};
    EXPECT_FALSE(kvn::detail::invertPacked(a.data(), 1, kvn::detail::PivotRule::ChangesOne));
    EXPECT_TRUE(kvn::detail::invertPacked(a.data(), 1, kvn::detail::PivotRule::NotZero));
  }
}

TEST(PackedInverse, OfASmallMatrix) {
  Packed a{4.0, 2.0, 3.0};
  ASSERT_TRUE(Matrix().inverse(a, 2));
  EXPECT_EQ(a, (Packed{0.375, -0.25, 0.5}));
}

int failureOf(std::function<void()> const& call) {
  try {
    call();
  } catch (int code) {
    return code;
  }
  return 0;
}

TEST(MatrixToolkit, ComputesAndRefusesShapes) {
  Matrix const a({{1.0, 2.0}, {3.0, 4.0}});
  Matrix const wide(2, 3);
  Matrix const tall({{1.0, 0.0}, {2.0, 1.0}, {0.0, 3.0}});
  Matrix const product = Matrix({{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}}) * tall;
  EXPECT_EQ(product.getRow(), 2);
  EXPECT_EQ(product.getColumn(), 2);
  EXPECT_EQ(product(0, 0), 5.0);
  EXPECT_EQ(product(1, 1), 23.0);
  EXPECT_EQ((a - a)(1, 0), 0.0);
  EXPECT_EQ((a + a)(1, 0), 6.0);
  EXPECT_EQ(Matrix().Determinant(a), -2.0);
  EXPECT_EQ(Matrix().Determinant(Matrix({{2.0, 0.0, 1.0}, {1.0, 3.0, 2.0}, {0.0, 1.0, 4.0}})), 21.0);
  EXPECT_EQ(failureOf([&] { a + wide; }), -1);
  EXPECT_EQ(failureOf([&] { a - wide; }), -2);
  EXPECT_EQ(failureOf([&] { wide* wide; }), -3);
  EXPECT_EQ(failureOf([&] { Matrix().Determinant(wide); }), -4);
}

TEST(MatrixToolkit, AdjugateTimesTheMatrixIsTheDeterminant) {
  Matrix const a({{2.0, 0.0, 1.0}, {1.0, 3.0, 2.0}, {0.0, 1.0, 4.0}});
  Matrix const product = a * Matrix().getCofactor(a);
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) EXPECT_EQ(product(i, j), i == j ? 21.0 : 0.0);
  }
  EXPECT_EQ(Matrix().getCofactor(Matrix(1, 1))(0, 0), 0.0);
}

TEST(MatrixToolkit, ExpandsPackedStorage) {
  Matrix const m(Packed{1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, 3);
  EXPECT_EQ(m(0, 2), 4.0);
  EXPECT_EQ(m(2, 0), 4.0);
  EXPECT_EQ(m(1, 1), 3.0);
}

}  // namespace
