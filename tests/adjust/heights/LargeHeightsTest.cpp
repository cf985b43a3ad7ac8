// Heights with a full and with a sparse matrix, and networks that only the sparse one can take.
#include "adjust/heights/HeightRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace kvn;
using namespace test;

constexpr int kFull = std::numeric_limits<int>::max();
constexpr int kSparse = 0;

std::string point(int n) { return "P" + std::to_string(n); }

double trueHeight(int n) { return 100.0 + 10.0 * std::sin(0.37 * n); }

/// Rows of `width` points, each with lines to the next one, to the one below, and some to another one nearby; the first
/// point is known, and every 500th. Lines of 20 to 900 m, with normal errors of `noise` for the root of a metre.
Rows levellingGrid(int points, int width, double noise, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> length(20.0, 900.0);
  std::normal_distribution<double> error;
  Rows rows;
  auto const level = [&](int from, int to) {
    double const s = length(random);
    addLine(rows, point(from), point(to), trueHeight(to) - trueHeight(from) + noise * std::sqrt(s) * error(random), s);
  };
  for (int i = 0; i < points; ++i) {
    if (i % 500 == 0) rows.push_back(knownRow(point(i), 0, trueHeight(i)));
    if (i + 1 < points) level(i, i + 1);
    if (i + width < points) level(i + width, i);
    int const other = i + 2 + static_cast<int>(random() % static_cast<unsigned>(4 * width));
    if (i % 5 == 2 && other < points) level(i, other);
  }
  return rows;
}

void adjust(TriangleHeightAdjust& run, Rows const& rows, int sparseFrom) {
  run.setSparseFrom(sparseFrom);
  run.setTriangleHeightDataConvert(converted(rows));
  run.heightLSAdjust();
}

TEST(LargeHeights, AreTheSameWithAFullAndASparseMatrix) {
  for (int const points : {1, 2, 3, 10, 40, 98, 99, 100, 101, 103, 200, 1000}) {
    SCOPED_TRACE(points);
    Rows rows = levellingGrid(points, 7, 1e-3, static_cast<unsigned>(points));
    addLine(rows, point(points - 1), point(points - 1), 0.01, 100);  // the last line may have one point for both ends
    TriangleHeightAdjust full, sparse;
    adjust(full, rows, kFull);
    adjust(sparse, rows, kSparse);
    auto const expected = full.getTriangleHeightPointInfo();
    auto const found = sparse.getTriangleHeightPointInfo();
    ASSERT_EQ(found.size(), std::size_t(points));
    ASSERT_EQ(expected.size(), found.size());
    EXPECT_EQ(std::isnan(sparse.getUnitError()), std::isnan(full.getUnitError()));
    for (std::size_t i = 0; i < found.size(); ++i) {
      EXPECT_EQ(found[i].name, expected[i].name);
      EXPECT_EQ(std::isnan(found[i].heightError), std::isnan(expected[i].heightError));
      // Far below what anyone measures; the largest seen are 7e-14 m and 2e-14 of the error.
      EXPECT_NEAR(found[i].height, expected[i].height, 1e-9) << found[i].name;
      if (std::isnan(expected[i].heightError)) continue;
      EXPECT_NEAR(found[i].heightError, expected[i].heightError, 1e-6 * expected[i].heightError) << found[i].name;
    }
    ASSERT_EQ(sparse.getResiduals().size(), full.getResiduals().size());
    for (std::size_t l = 0; l < full.getResiduals().size(); ++l) {
      EXPECT_NEAR(sparse.getResiduals()[l], full.getResiduals()[l], 1e-9);
    }
  }
}

// A line from a point to itself adds p + p - p to the diagonal and nothing to the right side. H0 of B is 1, and then
//   dX = 1 / 400 / (1 / 100 + 1 / 400 + 1 / 100) = 1 / 9.
TEST(LargeHeights, TakeALineOfOnePointForAPullToTheApproximateHeight) {
  Rows rows{knownRow("A", 0, 0.0), knownRow("D", 0, 0.0)};
  addLine(rows, "A", "B", 1.0, 100);
  addLine(rows, "D", "B", 2.0, 400);
  addLine(rows, "B", "B", 0.0, 100);
  for (int const sparseFrom : {kFull, kSparse}) {
    TriangleHeightAdjust run;
    adjust(run, rows, sparseFrom);
    EXPECT_NEAR(heightOf(run, "B"), 1.0 + 1.0 / 9.0, 1e-12);  // rounding of the rows: some 1e-16
  }
}

TEST(LargeHeights, FailAlikeWithAFullAndASparseMatrix) {
  struct Case {
    char const *what, *from;
    double length;
    bool isSolved;
  };
  for (Case const& c : {Case{"a part without a known point", "far", 100, false},
                        // 1 + 1e-15 is another double than 1, and 1 + 1e-17 is not.
                        Case{"a line of the least weight that counts", "P1", 1e15, true},
                        Case{"a line that weighs nothing", "P1", 1e17, false}}) {
    for (int const points : {5, 150}) {
      for (int const sparseFrom : {kFull, kSparse}) {
        SCOPED_TRACE(std::string(c.what) + ", " + std::to_string(points) + (sparseFrom == kSparse ? ", sparse" : ""));
        Rows const sound = levellingGrid(points, 7, 1e-3, 1);
        Rows rows = sound;
        addLine(rows, c.from, "away", 1, c.length);
        TriangleHeightAdjust run;
        auto const failure = failureOf<std::exception>([&] { adjust(run, rows, sparseFrom); });
        EXPECT_EQ(failure == "Calculate Height Failed, The Height Of Data Is Error", !c.isSolved) << failure;
        EXPECT_EQ(std::isnan(heightOf(run, "P3")), !c.isSolved);
        adjust(run, sound, sparseFrom);
        EXPECT_NEAR(heightOf(run, "P3"), trueHeight(3), 0.5);  // within the noise of some lines of 900 m
      }
    }
  }
}

// At the minimum of the sum of p v² its derivative by every height that is not held is 0.
TEST(LargeHeights, LeaveResidualsThatCancelAtEveryPoint) {
  Rows const rows = levellingGrid(20000, 140, 1e-3, 1);
  auto const lines = converted(rows).getTraingleViewData();
  TriangleHeightAdjust run;
  adjust(run, rows, kSparse);
  std::map<std::string, double> sums;
  double squares = 0.0;
  for (std::size_t l = 0; l < lines.size(); ++l) {
    double const pull = run.getResiduals()[l] / lines[l].horizontalDistance;
    sums[lines[l].end_name] += pull;
    sums[lines[l].start_name] -= pull;
    squares += run.getResiduals()[l] * pull;
  }
  for (auto const& row : rows) {
    if (row.isKnown) sums.erase(row.name);
  }
  EXPECT_NEAR(run.getUnitError(), std::sqrt(squares / run.getRedundancy()), 1e-12);
  EXPECT_NEAR(run.getUnitError(), 1e-3, 2e-5);  // the noise; three standard errors with 24,000 redundant lines
  EXPECT_GT(sums.size(), std::size_t(19000));
  // A pull is 1e-4 or so. Heights of 100 m, rounded to 1e-14 m, leave 1e-15; the largest seen is 9e-16.
  for (auto const& [name, sum] : sums) EXPECT_NEAR(sum, 0.0, 1e-13) << name;
}

// A line of length S between two heights, with the misclosure w: the height at s takes w s / S, the unit weight error
// is |w| / √S, and by error propagation the cofactor of the height is s (S - s) / S.
TEST(LargeHeights, SpreadTheMisclosureOfALongLineByLength) {
  constexpr int kPoints = 100000;
  constexpr double kMisclosure = 0.5;
  std::mt19937 random(1);
  std::uniform_real_distribution<double> length(20.0, 900.0);
  Rows rows{knownRow(point(0), 0, trueHeight(0)),
            knownRow(point(kPoints - 1), 0, trueHeight(kPoints - 1) + kMisclosure)};
  std::vector<double> way{0.0};
  for (int i = 1; i < kPoints; ++i) {
    double const s = length(random);
    addLine(rows, point(i - 1), point(i), trueHeight(i) - trueHeight(i - 1), s);
    way.push_back(way.back() + s);
  }
  TriangleHeightAdjust run;
  run.setTriangleHeightDataConvert(converted(rows));
  run.heightLSAdjust();
  double const whole = way.back();
  double const unitError = kMisclosure / std::sqrt(whole);
  EXPECT_NEAR(run.getUnitError(), unitError, 1e-9 * unitError);
  double worstHeight = 0.0;
  double worstError = 0.0;
  for (auto const& at : run.getTriangleHeightPointInfo()) {
    int const i = std::stoi(at.name.substr(1));
    double const s = way[std::size_t(i)];
    worstHeight = std::max(worstHeight, std::abs(at.height - trueHeight(i) - kMisclosure * s / whole));
    double const expected = unitError * std::sqrt(s * (whole - s) / whole);
    if (i > 0 && i + 1 < kPoints) worstError = std::max(worstError, std::abs(at.heightError / expected - 1.0));
  }
  // The condition of the system grows with the square of the points: 1e10 times 1e-16. Seen: 6e-10 m and 1e-9.
  EXPECT_LT(worstHeight, 1e-7);
  EXPECT_LT(worstError, 1e-6);
}

}  // namespace
