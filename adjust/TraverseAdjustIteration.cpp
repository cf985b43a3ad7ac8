// The iteration: error equations, normal equations, corrections, residuals.
#include "adjust/TraverseAdjust.h"
#include "adjust/detail/CalculationFailure.h"
#include "adjust/detail/Missing.h"
#include "core/AlgorithmException.h"
#include "core/System.h"

#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

// 1e20 is a standard error of 1e-10 m: far below a millimetre, and still far from overflow in the products.
constexpr double kKnownPointWeight = 1e20;
// No coordinate moves by more than this when the iteration ends; metres, and exactly this ends it.
constexpr double kSmallestMove = 0.01;
// Keeps the weight of a distance finite when both parts of its error are 0; square metres.
constexpr double kSmallestVariance = 1e-15;
// A diagonal element times that of the inverse says how much of its pivot the elimination took away. From here on what
// is left is rounding, since doubles carry 16 digits; a traverse of 300 legs of 1 km with 0.001 mm and 10" stays below.
constexpr double kLostPivot = 1e13;
// Below this in size a cofactor counts as zero.
constexpr double kNoCofactor = 1e-8;

using detail::index;

}  // namespace

std::size_t TraverseAdjust::ij(int i, int j) { return Matrix::ij(i, j); }

void TraverseAdjust::setIterationLimit(int rounds) { iterationLimit = rounds; }

void TraverseAdjust::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(System::tr("User Cancel"));
}

void TraverseAdjust::calculateAdjust() {
  calculateApproximate();
  findSuspects(true);
  iterate();
  calculateResults();
}

void TraverseAdjust::Adjust(AlgorithmData const& input) {
  readAlgorithmData(input);
  calculateAdjust();
}

void TraverseAdjust::iterate() {
  if (redundancy() < 0) failIteration();
  iterations = 0;
  for (double limit = 1.0; limit > kSmallestMove;) {
    checkCancelAndThrow();
    calculateBTPB();
    holdKnownPoints();
    limit = calculateDx();
    if (++iterations >= iterationLimit) throw detail::CalculationFailure(System::tr("total station data is error"));
  }
}

/// Azimuth of the circle's zero: from the station's first direction, 0 to 2π, anew from the current coordinates.
double TraverseAdjust::orientationOf(int station) const {
  int const first = directionStart[index(station)];
  double const orientation =
      calculateAzimuth(stationPoint[index(station)], directionTarget[index(first)]) - directionValue[index(first)];
  return orientation < 0.0 ? orientation + 2.0 * m_PI : orientation;
}

void TraverseAdjust::calculateBTPB() {
  // Sized here and not with the other arrays: approximate coordinates alone need no matrix, and it grows with the
  // square.
  auto const unknowns = index(unknownsCount());
  normalMatrix.assign(unknowns * (unknowns + 1) / 2, 0.0);
  std::fill(normalVector.begin(), normalVector.end(), 0.0);
  double a[5];
  int at[5];
  double const directionWeight = 1.0 / (angleError * angleError);
  a[4] = -1.0;
  for (int i = 0; i < stationsCount; ++i) {
    at[4] = 2 * pointsCount + i;
    double const orientation = orientationOf(i);
    for (int d = directionStart[index(i)]; d < directionStart[index(i) + 1]; ++d) {
      double const azimuth = calculateAB(stationPoint[index(i)], directionTarget[index(d)], a, at);
      double const oriented = azimuth - directionValue[index(d)];
      // The difference of two orientations on the circle: one of them may lie just above 0 and the other just below 2π.
      double const l = std::remainder(oriented - orientation, 2.0 * m_PI) * rho;
      directionV[index(d)] = l;
      calculateBTPBi(a, at, directionWeight, l, 5);
    }
  }
  for (std::size_t e = 0; e < lineValue.size(); ++e) {
    double const m = lineFixedError + lineProportionError * lineValue[e];
    double const distance = calculateCD(lineStart[e], lineEnd[e], a, at);
    calculateBTPBi(a, at, 1.0 / (m * m + kSmallestVariance), distance - lineValue[e], 4);
  }
}

/// Adds v = a dx + l with the weight p to the normal equations.
void TraverseAdjust::calculateBTPBi(double const* a, int const* at, double p, double l, int n) {
  for (int r = 0; r < n; ++r) {
    int const i = at[r];
    normalVector[index(i)] -= p * a[r] * l;
    for (int c = 0; c < n; ++c) {
      if (i <= at[c]) normalMatrix[ij(i, at[c])] += p * a[r] * a[c];
    }
  }
}

double TraverseAdjust::calculateAB(int i, int j, double* a, int* at) const {
  double const dx = x(j) - x(i);
  double const dy = y(j) - y(i);
  double const s2 = dx * dx + dy * dy;
  a[0] = dy / s2 * rho;
  a[1] = -dx / s2 * rho;
  a[2] = -dy / s2 * rho;
  a[3] = dx / s2 * rho;
  at[0] = 2 * i;
  at[1] = 2 * i + 1;
  at[2] = 2 * j;
  at[3] = 2 * j + 1;
  double const azimuth = std::atan2(dy, dx);
  return azimuth < 0.0 ? azimuth + 2.0 * m_PI : azimuth;
}

double TraverseAdjust::calculateCD(int i, int j, double* a, int* at) const {
  double const dx = x(j) - x(i);
  double const dy = y(j) - y(i);
  double const s = std::sqrt(dx * dx + dy * dy);
  a[0] = -dx / s;
  a[1] = -dy / s;
  a[2] = dx / s;
  a[3] = dy / s;
  at[0] = 2 * i;
  at[1] = 2 * i + 1;
  at[2] = 2 * j;
  at[3] = 2 * j + 1;
  return s;
}

void TraverseAdjust::holdKnownPoints() {
  for (int k = 0; k < 2 * knPointsCount; ++k) normalMatrix[ij(k, k)] += kKnownPointWeight;
}

double TraverseAdjust::calculateDx() {
  int const unknowns = unknownsCount();
  std::vector<double> diagonal(index(unknowns));
  for (int i = 0; i < unknowns; ++i) diagonal[index(i)] = normalMatrix[ij(i, i)];
  if (!inverse(normalMatrix, unknowns)) failIteration();
  checkInverse(diagonal);

  // dX = Q w, each row of the packed triangle read once: it serves as the row and as the column of the square matrix.
  std::fill(dX.begin(), dX.end(), 0.0);
  double const* q = normalMatrix.data();
  for (std::size_t r = 0; r < dX.size(); ++r) {
    double sum = 0.0;
    for (std::size_t c = 0; c < r; ++c) {
      sum += q[c] * normalVector[c];
      dX[c] += q[c] * normalVector[r];
    }
    dX[r] += sum + q[r] * normalVector[r];
    q += r + 1;
  }
  double largest = 0.0;
  for (std::size_t r = 0; r < dX.size(); ++r) {
    if (!std::isfinite(dX[r])) failIteration();
    if (r >= XY.size()) continue;
    XY[r] += dX[r];
    largest = std::max(largest, std::abs(dX[r]));
  }
  return largest;
}

/// The diagonal of the inverse of a sound normal matrix is positive and has not lost all its digits.
void TraverseAdjust::checkInverse(std::vector<double> const& diagonal) {
  for (int i = 0; i < unknownsCount(); ++i) {
    double const q = normalMatrix[ij(i, i)];
    if (!(q > 0.0) || !(q * diagonal[index(i)] < kLostPivot)) failIteration();
  }
}

double TraverseAdjust::calculateV() {
  pvv = 0.0;
  double a[5];
  int at[5];
  double const directionWeight = 1.0 / (angleError * angleError);
  a[4] = -1.0;
  for (int i = 0; i < stationsCount; ++i) {
    at[4] = 2 * pointsCount + i;
    for (int d = directionStart[index(i)]; d < directionStart[index(i) + 1]; ++d) {
      calculateAB(stationPoint[index(i)], directionTarget[index(d)], a, at);
      double v = directionV[index(d)];
      for (int r = 0; r < 5; ++r) v += a[r] * dX[index(at[r])];
      directionV[index(d)] = v;
      pvv += v * v * directionWeight;
    }
  }
  for (std::size_t e = 0; e < lineValue.size(); ++e) {
    double const s = lineValue[e];
    double const v = calculateCD(lineStart[e], lineEnd[e], a, at) - s;
    lineV[e] = v;
    pvv += v * v / distanceVariance(s);
  }
  return pvv;
}

/// A-priori variance by which the residual of a distance is weighed, square metres.
double TraverseAdjust::distanceVariance(double s) const {
  double const m = lineCalculateExpression ? lineFixedError + lineProportionError * s
                                           : std::hypot(lineFixedError, lineProportionError * s);
  return m * m;
}

/// Variance factor of a function of the coordinates of two points: error propagation q = a Q a'.
double TraverseAdjust::cofactor(double const* a, int const* at) const {
  double q = 0.0;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) q += normalMatrix[ij(at[r], at[c])] * a[r] * a[c];
  }
  return q;
}

double TraverseAdjust::calculateQQ(double const* a, int const* at) const {
  double const q = cofactor(a, at);
  return std::abs(q) < kNoCofactor ? 0.0 : q;
}

}  // namespace kvn
