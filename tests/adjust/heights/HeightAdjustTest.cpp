// Adjusted heights against published figures and a hand computation.
#include "adjust/heights/HeightRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <algorithm>

namespace {

using namespace kvn;
using namespace test;

constexpr char const* kFailed = "Calculate Height Failed, The Height Of Data Is Error";
// Rounding of the way from a difference over an angle and back: 1e-15 of lengths of up to 1000 m, some times.
constexpr double kRounding = 1e-11;

TriangleHeightAdjust adjusted(Rows const& rows, double refraction = kNoCurvature) {
  TriangleHeightAdjust run;
  run.setTriangleHeightDataConvert(converted(rows, refraction));
  run.heightLSAdjust();
  return run;
}

std::vector<std::string> namesOf(std::vector<TriangleHeightPointInfo> const& points) {
  std::vector<std::string> names(points.size());
  std::transform(points.begin(), points.end(), names.begin(), [](auto const& point) { return point.name; });
  return names;
}

// Trigonometric height by reciprocal vertical angles, exercise with published solution,
// https://zzdes.com/view-1562127.html; neither curvature nor refraction. Published to 0.01 m.
TEST(HeightAdjust, ReproducesThePublishedReciprocalSighting) {
  double const d = 624.42;
  double const up = degrees(2, 38, 7);
  double const down = -degrees(2, 23, 15);
  Rows const fromA{knownRow("A", 1.62, 258.26), sightRow("B", up, d / std::cos(up), 3.65),
                   sightRow("B", up, d / std::cos(up), 3.65)};
  Rows fromB{stationRow("B", 1.51), sightRow("A", down, d / std::cos(down), 2.26),
             sightRow("A", down, d / std::cos(down), 2.26), knownRow("A", 1.62, 258.26)};
  EXPECT_NEAR(heightOf(adjusted(fromA), "B"), 284.97, 0.005);
  EXPECT_NEAR(heightOf(adjusted(fromB), "B"), 285.04, 0.005);
  fromB.pop_back();
  Rows both = fromA;
  both.insert(both.end(), fromB.begin(), fromB.end());
  EXPECT_NEAR(heightOf(adjusted(both), "B"), 285.00, 0.008);  // printed 285.00, unrounded 285.007
}

TEST(HeightAdjust, WalksAgainstTheOrderAndTheDirectionOfLines) {
  Rows rows;
  addLine(rows, "C", "B", 1.0, 100);  // before B has a height, and from the far end
  addLine(rows, "A", "B", 2.5, 400);
  rows.push_back(knownRow("A", 0, 100));
  TriangleHeightAdjust const run = adjusted(rows);
  auto const approximate = run.getTriangleHeightPointInfoH0();
  EXPECT_EQ(namesOf(approximate), (std::vector<std::string>{"A", "C", "B"}));
  EXPECT_EQ(approximate[0].height, 100);
  EXPECT_NEAR(approximate[1].height, 101.5, kRounding);
  EXPECT_NEAR(approximate[2].height, 102.5, kRounding);
  // Nothing is redundant: heights, but no errors.
  EXPECT_EQ(run.getRedundancy(), 0);
  EXPECT_TRUE(std::isnan(run.getUnitError()));
  for (auto const& point : run.getTriangleHeightPointInfo()) EXPECT_TRUE(std::isnan(point.heightError));
}

TEST(HeightAdjust, WeighsByTheInverseOfTheLength) {
  Rows rows{knownRow("A", 0, 0.0), knownRow("D", 0, 0.0)};
  addLine(rows, "A", "B", 1.0, 100);
  addLine(rows, "D", "B", 2.0, 400);
  // (1 / 100 + 2 / 400) / (1 / 100 + 1 / 400) = 1.2; residuals 0.2 and -0.8, one redundant:
  // m0 = √(0.04 / 100 + 0.64 / 400) = √0.002, m = m0 √80 = 0.4.
  TriangleHeightAdjust const run = adjusted(rows);
  EXPECT_NEAR(heightOf(run, "B"), 1.2, kRounding);
  EXPECT_NEAR(run.getResiduals()[0], 0.2, kRounding);
  EXPECT_NEAR(run.getResiduals()[1], -0.8, kRounding);
  EXPECT_NEAR(run.getUnitError(), std::sqrt(0.002), kRounding);
  EXPECT_NEAR(run.getTriangleHeightPointInfo()[2].heightError, 0.4, kRounding);
}

TEST(HeightAdjust, RefusesWhatGivesNoHeight) {
  struct Case {
    char const* fault;
    double knownHeight;
    bool detached;
  };
  for (Case const& c : {Case{"a point without a line to a height", 10.0, true}, Case{"a marker", -9999.9, false},
                        Case{"the other marker", 1e30, false}, Case{"not a number", std::nan(""), false}}) {
    SCOPED_TRACE(c.fault);
    Rows rows{knownRow("A", 0, c.knownHeight)};
    addLine(rows, "A", "B", 1, 100);
    if (c.detached) {
      // Rounding leaves a pivot of 1e-12 here, so that the solve itself would give heights.
      addLine(rows, "C", "D", 1e-3, 0.0003);
      addLine(rows, "D", "E", 1e-3, 0.0007);
      addLine(rows, "E", "C", -2e-3, 0.0011);
    }
    TriangleHeightAdjust run;
    run.setTriangleHeightDataConvert(converted(rows));
    for (int again = 0; again < 2; ++again) {
      EXPECT_EQ(failureOf<std::exception>([&] { run.heightLSAdjust(); }), kFailed);
      EXPECT_TRUE(std::isnan(heightOf(run, "B")));  // not the approximate height
    }
  }
  TriangleHeightAdjust cleared = adjusted({knownRow("A", 0, 1)});
  cleared.clearCalData();
  EXPECT_EQ(failureOf<std::exception>([&] { cleared.heightLSAdjust(); }), kFailed);
}

TEST(HeightAdjust, NumbersAnewWhenNamesOrKnownPointsChange) {
  struct Case {
    char const* what;
    Rows rows;
    std::vector<std::string> order;
  };
  Rows same{knownRow("K2", 0, 11), knownRow("K1", 0, 10)};
  addLine(same, "B", "K1", -5, 100);
  Rows other{knownRow("B", 0, 15), knownRow("K2", 0, 11)};
  addLine(other, "B", "K1", -5, 100);
  Rows fewer{knownRow("K1", 0, 10)};
  addLine(fewer, "B", "K1", -5, 100);
  for (Case const& c : {Case{"the same points keep their order", same, {"K1", "K2", "B"}},
                        Case{"another point is known", other, {"B", "K2", "K1"}}, Case{"fewer", fewer, {"K1", "B"}}}) {
    SCOPED_TRACE(c.what);
    Rows first{knownRow("K1", 0, 10), knownRow("K2", 0, 11)};
    addLine(first, "K1", "B", 5, 100);
    TriangleHeightAdjust run = adjusted(first);
    run.clearCalData();
    run.setTriangleHeightDataConvert(converted(c.rows));
    run.heightLSAdjust();
    EXPECT_EQ(namesOf(run.getTriangleHeightPointInfoH0()), c.order);
    EXPECT_NEAR(heightOf(run, "B"), 15, kRounding);
    EXPECT_NEAR(heightOf(run, "K1"), 10, kRounding);
    EXPECT_EQ(run.getTriangleHeightPointInfo().size(), 3 + c.order.size());  // behind those of the first run
    EXPECT_TRUE(std::isnan(heightOf(run, "elsewhere")));                     // as it was
  }
}

}  // namespace
