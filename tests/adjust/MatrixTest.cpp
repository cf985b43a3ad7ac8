// The small matrix toolkit.
#include <Kelvane.h>
#include <gtest/gtest.h>
#include <functional>
#include <vector>

namespace {

using kvn::Matrix;
using Packed = std::vector<double>;

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
