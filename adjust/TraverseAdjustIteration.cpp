// The iteration: error equations, normal equations, corrections, residuals.
#include "adjust/TraverseAdjust.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/linalg/Index.h"
#include "adjust/linalg/NormalEquations.h"
#include "adjust/linalg/Poll.h"
#include "core/AlgorithmException.h"
#include "core/System.h"

#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <limits>
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

std::function<void()> TraverseAdjust::cancelPoll() const {
  return [this] { checkCancelAndThrow(); };
}

void TraverseAdjust::calculateAdjust() {
  calculateApproximate();
  bool const settled = settles();
  if (!settled) {
    XY = X0Y0;
    findSuspects(XY, true);
    iterate();
  }
  tellProgress(AdjustProgress::Inverse);
  if (!normals->invert(cancelPoll())) failIteration();
  tellProgress(AdjustProgress::Results);
  calculateResults();
  if (settled) judgeObservations();
}

void TraverseAdjust::Adjust(AlgorithmData const& input) {
  readAlgorithmData(input);
  calculateAdjust();
}

void TraverseAdjust::iterate() {
  Outcome const outcome = redundancy() < 0 ? Outcome::Singular : iterateUpTo(iterationLimit);
  if (outcome == Outcome::Singular) failIteration();
  if (outcome == Outcome::Unsettled) throw detail::CalculationFailure(System::tr("total station data is error"));
}

TraverseAdjust::Outcome TraverseAdjust::iterateUpTo(int rounds) {
  iterations = 0;
  largestMove = std::numeric_limits<double>::quiet_NaN();
  for (double limit = 1.0; limit > kSmallestMove;) {
    checkCancelAndThrow();
    tellProgress(AdjustProgress::Equations);
    calculateBTPB();
    holdKnownPoints();
    if (!solve()) return Outcome::Singular;
    limit = largestMove;
    if (++iterations >= rounds) return Outcome::Unsettled;
  }
  return Outcome::Settled;
}

void TraverseAdjust::setSparseFrom(int unknowns) {
  sparseFrom = unknowns;
  normals.reset();
}

void TraverseAdjust::setProgressCall(AdjustProgressCall call) { progressCall = std::move(call); }

void TraverseAdjust::tellProgress(AdjustProgress::Stage stage) const {
  if (progressCall) progressCall({stage, iterations + 1, largestMove});
}

/// Azimuth of the circle's zero: from the station's first direction, 0 to 2π, anew from the current coordinates.
double TraverseAdjust::orientationOf(int station) const {
  int const first = directionStart[index(station)];
  double const orientation =
      calculateAzimuth(stationPoint[index(station)], directionTarget[index(first)]) - directionValue[index(first)];
  return orientation < 0.0 ? orientation + 2.0 * m_PI : orientation;
}

/// Empty ones. Made here and not with the arrays: approximate coordinates alone need no matrix.
void TraverseAdjust::prepareNormals() {
  if (normals && normals.use_count() == 1) {
    normals->clear();
    return;
  }
  detail::NormalEquations::Soundness const soundness{detail::PivotRule::NotZero, kLostPivot};
  if (unknownsCount() < sparseFrom) {
    normals = detail::fullNormals(unknownsCount(), soundness);
    return;
  }
  normals = detail::sparseNormals({blockSizes(), cliques(), eliminationOrder()}, soundness, cancelPoll());
}

/// x and y of each point, then the orientation of each station.
std::vector<int> TraverseAdjust::blockSizes() const {
  std::vector<int> sizes(index(pointsCount), 2);
  sizes.insert(sizes.end(), index(stationsCount), 1);
  return sizes;
}

/// Blocks that meet in an observation.
std::vector<std::array<int, 3>> TraverseAdjust::cliques() const {
  std::vector<std::array<int, 3>> result;
  result.reserve(directionTarget.size() + lineValue.size() + controlDistances.size());
  for (int i = 0; i < stationsCount; ++i) {
    for (int d = directionStart[index(i)]; d < directionStart[index(i) + 1]; ++d) {
      result.push_back({stationPoint[index(i)], directionTarget[index(d)], pointsCount + i});
    }
  }
  for (std::size_t e = 0; e < lineValue.size(); ++e) result.push_back({lineStart[e], lineEnd[e], -1});
  for (ControlDistance const& line : controlDistances) result.push_back({line.start, line.end, -1});
  return result;
}

/// Of the blocks. Found once: it takes as long as a factorisation.
std::vector<int> const& TraverseAdjust::eliminationOrder() {
  if (blockOrder.empty()) blockOrder = sparse::eliminationOrder(blockSizes(), cliques(), cancelPoll());
  return blockOrder;
}

void TraverseAdjust::calculateBTPB() {
  prepareNormals();
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  double a[5];
  int at[5];
  double const directionWeight = 1.0 / (angleError * angleError);
  a[4] = -1.0;
  for (int i = 0; i < stationsCount; ++i) {
    at[4] = 2 * pointsCount + i;
    double const orientation = orientationOf(i);
    for (int d = directionStart[index(i)]; d < directionStart[index(i) + 1]; ++d) {
      effort.step();
      double const azimuth = calculateAB(stationPoint[index(i)], directionTarget[index(d)], a, at);
      double const oriented = azimuth - directionValue[index(d)];
      // The difference of two orientations on the circle: one of them may lie just above 0 and the other just below 2π.
      double const l = std::remainder(oriented - orientation, 2.0 * m_PI) * rho;
      directionV[index(d)] = l;
      calculateBTPBi(a, at, directionWeight, l, 5);
    }
  }
  for (std::size_t e = 0; e < lineValue.size(); ++e) {
    effort.step();
    double const m = lineFixedError + lineProportionError * lineValue[e];
    double const distance = calculateCD(lineStart[e], lineEnd[e], a, at);
    calculateBTPBi(a, at, 1.0 / (m * m + kSmallestVariance), distance - lineValue[e], 4);
  }
}

/// Adds v = a dx + l with the weight p to the normal equations.
void TraverseAdjust::calculateBTPBi(double const* a, int const* at, double p, double l, int n) {
  normals->addEquation(a, at, n, p, l);
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
  for (int k = 0; k < 2 * knPointsCount; ++k) normals->add(k, k, kKnownPointWeight);
}

double TraverseAdjust::calculateDx() {
  if (!solve()) failIteration();
  return largestMove;
}

/// False for a singular system; the coordinates are as they were then.
bool TraverseAdjust::solve() {
  detail::Poll const poll = cancelPoll();
  if (!normals->factor(poll)) return false;
  dX = normals->solution(poll);
  if (!std::all_of(dX.begin(), dX.end(), [](double x) { return std::isfinite(x); })) return false;
  largestMove = 0.0;
  for (std::size_t r = 0; r < XY.size(); ++r) {
    XY[r] += dX[r];
    largestMove = std::max(largestMove, std::abs(dX[r]));
  }
  return true;
}

double TraverseAdjust::inverse(int i, int j) const { return normals->inverse(i, j); }

double TraverseAdjust::calculateV() {
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  pvv = 0.0;
  double a[5];
  int at[5];
  double const directionWeight = 1.0 / (angleError * angleError);
  a[4] = -1.0;
  for (int i = 0; i < stationsCount; ++i) {
    at[4] = 2 * pointsCount + i;
    for (int d = directionStart[index(i)]; d < directionStart[index(i) + 1]; ++d) {
      effort.step();
      calculateAB(stationPoint[index(i)], directionTarget[index(d)], a, at);
      double v = directionV[index(d)];
      for (int r = 0; r < 5; ++r) v += a[r] * dX[index(at[r])];
      directionV[index(d)] = v;
      pvv += v * v * directionWeight;
    }
  }
  for (std::size_t e = 0; e < lineValue.size(); ++e) {
    effort.step();
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
double TraverseAdjust::cofactor(double const* a, int const* at, int count) const {
  return normals->cofactor(a, at, count);
}

double TraverseAdjust::calculateQQ(double const* a, int const* at) const {
  double const q = cofactor(a, at);
  return std::abs(q) < kNoCofactor ? 0.0 : q;
}

}  // namespace kvn
