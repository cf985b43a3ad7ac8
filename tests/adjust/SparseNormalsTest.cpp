// Pivots that the sparse factor refuses; its results are compared with those of full matrices by LargeNetworks and
// LargeHeights.
#include "adjust/sparse/SparseCholesky.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using kvn::sparse::SparseCholesky;

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
