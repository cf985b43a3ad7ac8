// The steps of the literal adjustment, driven by a derived class as a host may, against the run that is made of them.
#include "Networks.h"

#include <Kelvane.h>
#include <gtest/gtest.h>
#include <cmath>

namespace {

using kvn::TraverseAdjust;

class Steps : public TraverseAdjust {
 public:
  using TraverseAdjust::calculateAB;
  using TraverseAdjust::calculateBTPB;
  using TraverseAdjust::calculateBTPBi;
  using TraverseAdjust::calculateCD;
  using TraverseAdjust::calculateDirectionResult;
  using TraverseAdjust::calculateDx;
  using TraverseAdjust::calculateErrorEllipse;
  using TraverseAdjust::calculateLineErrorInfo;
  using TraverseAdjust::calculateMxMy;
  using TraverseAdjust::calculateQQ;
  using TraverseAdjust::calculateUnitError;
  using TraverseAdjust::getPointNumber;

  /// The weight of 1e20 on both coordinates of the first points.
  void holdKnownPoints(int known) {
    double const one = 1.0;
    for (int k = 0; k < 2 * known; ++k) calculateBTPBi(&one, &k, 1e20, 0.0, 1);
  }

  void run(kvn::AlgorithmData const& input, int known) {
    readAlgorithmData(input);
    calculateApproximate();
    for (double limit = 1.0; limit > 0.01;) {
      calculateBTPB();
      holdKnownPoints(known);
      limit = calculateDx();
    }
    calculateUnitError();
    calculateMxMy();
    calculateDirectionResult();
    calculateLineErrorInfo();
    calculateErrorEllipse();
  }
};

kvn::AlgorithmData grid(int side) {
  test::NetworkPlan plan;
  plan.directionNoise = 2.0;
  plan.distanceFixed = 0.003;
  std::mt19937 random(3);
  return test::loaded(test::makeGrid(side, plan, random).network);
}

// 5 x 5 points are 75 unknowns in a full matrix, 12 x 12 are 432 in a sparse one.
TEST(AdjustmentSteps, MakeTheRunInASparseSystemToo) {
  for (int const side : {5, 12}) {
    SCOPED_TRACE(side);
    kvn::AlgorithmData const data = grid(side);
    Steps steps;
    steps.run(data, 4);
    TraverseAdjust whole;
    whole.readAlgorithmData(data);
    whole.calculateAdjust();
    ASSERT_EQ(steps.getPointErrorInfo().size(), whole.getPointErrorInfo().size());
    for (std::size_t p = 0; p < steps.getPointErrorInfo().size(); ++p) {
      EXPECT_EQ(steps.getPointErrorInfo()[p].x, whole.getPointErrorInfo()[p].x);
      EXPECT_EQ(steps.getPointErrorInfo()[p].mx, whole.getPointErrorInfo()[p].mx);
    }
    EXPECT_EQ(steps.getSummary().unitError, whole.getSummary().unitError);
    EXPECT_EQ(steps.getLineErrorInfo().size(), whole.getLineErrorInfo().size());
    EXPECT_EQ(steps.getErrorEllipsoid().ellipseList.size(), whole.getErrorEllipsoid().ellipseList.size());
  }
}

// Known points hold the first four numbers, the corners; the next two names, of neighbours, and the last one, far away.
TEST(AdjustmentSteps, TellTheCofactorOfPointsThatNoObservationJoins) {
  kvn::AlgorithmData const data = grid(12);
  double q[2][2];
  for (bool const isSparse : {false, true}) {
    Steps steps;
    steps.setSparseFrom(isSparse ? 1 : 100000);
    steps.run(data, 4);
    double a[4];
    int at[4];
    steps.calculateAB(4, 143, a, at);
    q[isSparse][0] = steps.calculateQQ(a, at);
    steps.calculateCD(4, 143, a, at);
    q[isSparse][1] = steps.calculateQQ(a, at);
  }
  for (int k = 0; k < 2; ++k) {
    EXPECT_GT(q[0][k], 1e-8);
    EXPECT_NEAR(q[1][k] / q[0][k], 1.0, 1e-9);  // a condition of 1e6 takes six of sixteen digits
  }
}

// A host's own distance between two points far apart, 5 cm longer than the others have it. No observation
// of the input joins the two, so that the sparse pattern has no place for it.
TEST(AdjustmentSteps, TakeAnObservationOfPointsThatNoOtherJoins) {
  kvn::AlgorithmData const data = grid(12);
  std::vector<kvn::PointErrorInfo> points[2];
  double cofactor[2];
  for (bool const isSparse : {false, true}) {
    Steps steps;
    steps.setSparseFrom(isSparse ? 1 : 100000);
    steps.readAlgorithmData(data);
    steps.calculateApproximate();
    double a[4];
    int at[4];
    double const observed = steps.calculateCD(4, 143, a, at) + 0.05;
    for (double limit = 1.0; limit > 0.01;) {
      steps.calculateBTPB();
      steps.holdKnownPoints(4);
      double const distance = steps.calculateCD(4, 143, a, at);
      steps.calculateBTPBi(a, at, 1e6, distance - observed, 4);
      limit = steps.calculateDx();
    }
    steps.calculateUnitError();
    steps.calculateMxMy();
    points[isSparse] = steps.getPointErrorInfo();
    cofactor[isSparse] = steps.calculateQQ(a, at);
    // It counts: with a weight of 1e6 the distance is known to better than 1 mm.
    EXPECT_GT(cofactor[isSparse], 1e-8);
    EXPECT_LT(cofactor[isSparse], 1e-6);
  }
  // A condition of 1e6 takes six of sixteen digits.
  EXPECT_NEAR(cofactor[1] / cofactor[0], 1.0, 1e-9);
  for (std::size_t p = 4; p < points[0].size(); ++p) {
    EXPECT_NEAR(points[1][p].x, points[0][p].x, 1e-9);
    EXPECT_NEAR(points[1][p].y, points[0][p].y, 1e-9);
    EXPECT_NEAR(points[1][p].mx / points[0][p].mx, 1.0, 1e-9);
  }
}

// Of points that observations join, and of points that none does.
TEST(AdjustmentSteps, BeginWithNormalEquationsOfZeros) {
  kvn::AlgorithmData const data = grid(12);
  double const a[4] = {1.0, 1.0, 1.0, 1.0};
  for (int const other : {10, 286}) {
    for (bool const isSparse : {false, true}) {
      int const at[4] = {8, 9, other, other + 1};
      Steps steps;
      steps.setSparseFrom(isSparse ? 1 : 100000);
      steps.readAlgorithmData(data);
      EXPECT_EQ(steps.calculateQQ(a, at), 0.0);
      EXPECT_THROW(steps.calculateDx(), kvn::AlgorithmException);  // zeros have no inverse
      // An observation alone: element (8, 9) is p a a.
      Steps alone;
      alone.setSparseFrom(isSparse ? 1 : 100000);
      alone.readAlgorithmData(data);
      alone.calculateBTPBi(a, at, 4.0, 0.0, 4);
      EXPECT_EQ(alone.calculateQQ(a, at), 64.0);
    }
  }
}

TEST(AdjustmentSteps, RefuseUnknownsThatAreNotThere) {
  double const a[4] = {1.0, 1.0, 1.0, 1.0};
  int const first[4] = {0, 1, 2, 3};
  Steps steps;
  EXPECT_THROW(steps.calculateQQ(a, first), kvn::AlgorithmException);
  EXPECT_THROW(steps.calculateBTPBi(a, first, 1.0, 0.0, 4), kvn::AlgorithmException);
  steps.readAlgorithmData(grid(5));
  for (int const wrong : {-1, 75}) {
    int const at[4] = {0, 1, wrong, 3};
    EXPECT_THROW(steps.calculateQQ(a, at), kvn::AlgorithmException);
  }
}

TEST(AdjustmentSteps, RunOutOfNumbersWithTheTable) {
  Steps steps;
  EXPECT_EQ(steps.getPointNumber("A"), -1);
  steps.readAlgorithmData(grid(5));
  std::string const first = steps.getPoints().front().name;
  EXPECT_EQ(steps.getPointNumber(first), 0);
  EXPECT_EQ(steps.getPointNumber("a name that no point has"), -1);
}

TEST(AdjustmentSteps, AreThoseOfACopyAfterCopying) {
  kvn::AlgorithmData const data = grid(12);
  Steps original;
  original.run(data, 4);
  Steps const copy = original;
  double const before = copy.getPointErrorInfo()[20].mx;
  double a[4];
  int at[4];
  original.calculateCD(4, 143, a, at);
  double const cofactor = copy.calculateQQ(a, at);
  original.calculateBTPB();  // clears the original's normal equations
  EXPECT_EQ(copy.calculateQQ(a, at), cofactor);
  EXPECT_EQ(copy.getPointErrorInfo()[20].mx, before);
  std::vector<double> packed = {4.0, 2.0, 3.0};
  EXPECT_TRUE(original.inverse(packed, 2));  // of the base
  EXPECT_EQ(packed, (std::vector<double>{0.375, -0.25, 0.5}));
}

}  // namespace
