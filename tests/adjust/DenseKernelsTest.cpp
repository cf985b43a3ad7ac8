// The matrix product of the eliminations against the triple loop, with vector instructions and without.
#include "adjust/linalg/DenseKernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using kvn::detail::addProduct;
using kvn::detail::ConstView;
using kvn::detail::Region;

constexpr double kOutside = 12345.0;  // stands where no product may write

/// A matrix in one of four layouts, with room between its lines.
struct Stored {
  std::vector<double> data;
  ConstView view{};

  template <class Value>
  Stored(std::size_t rows, std::size_t columns, int layout, Value value) {
    std::size_t const gap = layout % 2 == 0 ? 0 : 3;
    bool const byColumns = layout < 2;
    std::size_t const line = (byColumns ? rows : columns) + gap;
    // What lies between the lines would spoil every sum it came into.
    data.assign(line * (byColumns ? columns : rows) + 1, std::numeric_limits<double>::quiet_NaN());
    auto const stride = static_cast<std::ptrdiff_t>(line);
    view = byColumns ? ConstView{data.data(), 1, stride} : ConstView{data.data(), stride, 1};
    for (std::size_t i = 0; i < rows; ++i) {
      for (std::size_t j = 0; j < columns; ++j) data[byColumns ? i + j * line : i * line + j] = value();
    }
  }
  Stored(Stored const&) = delete;
  Stored& operator=(Stored const&) = delete;

  double operator()(std::size_t i, std::size_t j) const {
    return view
        .data[static_cast<std::ptrdiff_t>(i) * view.rowStride + static_cast<std::ptrdiff_t>(j) * view.columnStride];
  }
};

/// Every test runs all ways, with vectors of 0, 256 and 512 bits; where the processor has no such instructions it is
/// the next one that it has.
class DenseProduct : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    before = kvn::detail::useVectorInstructions(GetParam() > 0);
    longBefore = kvn::detail::useLongVectorInstructions(GetParam() > 256);
  }
  void TearDown() override {
    kvn::detail::useVectorInstructions(before);
    kvn::detail::useLongVectorInstructions(longBefore);
  }

 private:
  bool before = true;
  bool longBefore = true;
};

INSTANTIATE_TEST_SUITE_P(PlainAndVector, DenseProduct, testing::Values(0, 256, 512));

struct Shape {
  std::size_t m, n, k;
};

void expectTripleLoop(Shape const& s, int layoutOfA, int layoutOfB, double alpha, Region region, std::mt19937& random) {
  SCOPED_TRACE(testing::Message() << "m " << s.m << " n " << s.n << " k " << s.k << " layouts " << layoutOfA
                                  << layoutOfB << " alpha " << alpha << (region == Region::Lower ? " lower" : ""));
  std::uniform_int_distribution<int> digit(-9, 9);
  auto const value = [&] { return double(digit(random)); };
  Stored const a(s.m, s.k, layoutOfA, value);
  Stored const b(s.k, s.n, layoutOfB, value);
  std::size_t const line = s.m + 2;
  std::vector<double> c(line * s.n, kOutside);
  for (std::size_t j = 0; j < s.n; ++j) {
    for (std::size_t i = 0; i < s.m; ++i) c[i + j * line] = value();
  }
  std::vector<double> expected = c;
  for (std::size_t j = 0; j < s.n; ++j) {
    for (std::size_t i = 0; i < s.m; ++i) {
      for (std::size_t p = 0; p < s.k; ++p) expected[i + j * line] += alpha * a(i, p) * b(p, j);
    }
  }
  addProduct(s.m, s.n, s.k, alpha, a.view, b.view, c.data(), line, region);
  std::size_t wrong = 0;
  for (std::size_t j = 0; j < s.n; ++j) {
    for (std::size_t i = 0; i < line; ++i) {
      bool const needed = region == Region::All || i >= j || i >= s.m;
      // Digits and halves of them: every product and sum is exact, in any order.
      wrong += needed && c[i + j * line] != expected[i + j * line] ? 1 : 0;
    }
  }
  EXPECT_EQ(wrong, 0U);
}

TEST_P(DenseProduct, IsTheTripleLoopForEverySizeAndLayout) {
  std::mt19937 random(20260101);
  std::vector<Shape> shapes = {{0, 3, 3}, {3, 0, 3}, {3, 3, 0}, {1, 1, 1}, {8, 6, 256}, {97, 13, 257}, {130, 140, 70}};
  std::uniform_int_distribution<std::size_t> size(1, 40);
  for (int i = 0; i < 40; ++i) shapes.push_back({size(random), size(random), size(random)});
  for (std::size_t i = 1; i <= 17; ++i) shapes.push_back({i, 18 - i, 3});
  for (Region const region : {Region::All, Region::Lower}) {  // beyond the edges of the blocks
    expectTripleLoop({200, 190, 520}, 0, 2, -1.0, region, random);
    expectTripleLoop({1030, 1030, 2}, 2, 0, 1.0, region, random);
  }
  double const alphas[] = {1.0, -1.0, 0.5};
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    for (int layouts = 0; layouts < 16; ++layouts) {
      Region const region = (i + std::size_t(layouts)) % 2 == 0 ? Region::All : Region::Lower;
      expectTripleLoop(shapes[i], layouts / 4, layouts % 4, alphas[(i + std::size_t(layouts) / 2) % 3], region, random);
    }
  }
}

TEST(DenseVectors, GiveTheSameToTheLastBitWhateverTheirLength) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal;
  for (Shape const& s : {Shape{100, 50, 300}, {7, 13, 31}, {17, 6, 5}, {300, 40, 3}}) {
    Stored const a(s.m, s.k, 0, [&] { return normal(random); });
    Stored const b(s.k, s.n, 2, [&] { return normal(random); });
    std::vector<double> results[2];
    for (bool const isLong : {false, true}) {
      bool const before = kvn::detail::useLongVectorInstructions(isLong);
      std::vector<double>& c = results[isLong ? 1 : 0];
      c.assign(s.m * s.n, 0.3);
      addProduct(s.m, s.n, s.k, -1.0, a.view, b.view, c.data(), s.m);
      kvn::detail::useLongVectorInstructions(before);
    }
    EXPECT_EQ(results[0], results[1]);
  }
}

TEST_P(DenseProduct, AddsOneProductAfterTheOtherToWhatWasThere) {
  // 1 is lost beside 2^60: only from left to right, beginning with C, does this sum give 3.
  std::vector<double> const row{std::ldexp(-1.0, 60), 1.0, 1.0, 1.0};
  std::vector<double> const ones(4, 1.0);
  for (double const sign : {1.0, -1.0}) {
    double c = sign * std::ldexp(1.0, 60);
    addProduct(1, 1, 4, sign, {row.data(), 4, 1}, {ones.data(), 1, 4}, &c, 1);
    EXPECT_EQ(c, sign * 3.0);
  }
}

}  // namespace
