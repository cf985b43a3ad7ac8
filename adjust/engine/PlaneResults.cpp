// Results of a PlaneAdjustment: errors, tests of the observations, test of the whole.
#include "adjust/CommonFunction.h"
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/Quantiles.h"
#include "core/AlgorithmException.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace kvn {
namespace {

using detail::Effort;
using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;
using UnitWeight = PlaneSettings::UnitWeight;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
// A share of a coordinate's standard error below which an observation does not move it.
constexpr double kNoShare = 1e-6;

double rootOf(double variance) { return std::sqrt(std::max(variance, 0.0)); }

/// a Q b of the leading `count` unknowns, with the elements of Q row by row, `width` in a row.
double product(double const* a, double const* q, double const* b, int count, int width) {
  double sum = 0.0;
  for (int r = 0; r < count; ++r) {
    for (int c = 0; c < count; ++c) sum += a[r] * q[r * width + c] * b[c];
  }
  return sum;
}

}  // namespace

void PlaneAdjustment::Data::takeResults() {
  engine.tellProgress(AdjustProgress::Results);
  if (isFree()) {
    datum = detail::FreeDatum(engine, datumPoints(), static_cast<int>(engine.heldUnknowns.size()));
  } else {
    datum = detail::FreeDatum();
  }
  takeUnitError();
  takePoints();
  findUnchecked();
  if (!settings.keepsSystem) engine.normals->forgetFactor();
  takeObservations();
  takeKinds();
  takeOrientations();
}

void PlaneAdjustment::Data::takeUnitError() {
  double pvv = engine.calculateResiduals();
  for (std::size_t k = 0; !isFree() && k < engine.given.size(); ++k) {
    double const weight = engine.holdingWeights[k / 2];
    double const moved = engine.xy[k] - engine.given[k];
    if (weight < PlaneEngine::kFixedWeight) pvv += weight * moved * moved;
  }
  if (!std::isfinite(pvv)) throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
  result.iterations = engine.iterations;
  result.redundancy = engine.redundancy() - leftOutCount();
  result.redundancy -= static_cast<int>(std::count(robustWeights.begin(), robustWeights.end(), 0.0));
  result.isWithoutSuspects = hasLostSuspects;
  bool const isAPriori = settings.unitWeight == UnitWeight::APriori;
  detail::GlobalTest const test = detail::globalTest(pvv, result.redundancy, settings.confidence, isAPriori);
  result.hasRedundancy = test.hasRedundancy;
  result.unitError = test.unitError;
  result.lowerBound = test.lower;
  result.upperBound = test.upper;
  result.isPassed = test.isPassed;
  result.criticalValue = test.criticalValue;
  result.confidenceFactor = kNaN;
  if (isAPriori || test.hasRedundancy) {
    result.confidenceFactor = detail::ellipseFactor(settings.confidence, isAPriori ? 0 : result.redundancy);
  }
}

/// What cofactors are multiplied with, as a standard error; NaN where it is not known.
double PlaneAdjustment::Data::scaleOfErrors() const {
  return settings.unitWeight == UnitWeight::APriori ? 1.0 : result.unitError;
}

void PlaneAdjustment::Data::takePoints() {
  Effort effort(engine.poll);
  double const m = scaleOfErrors();
  result.points.resize(network.points.size());
  result.approximate.resize(network.points.size());
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    effort.step();
    int const n = numberOfPoint[p];
    if (n < 0) {  // a known point without an observation
      result.points[p] = {network.points[p].x, network.points[p].y};
      result.points[p].isChecked = true;
      result.approximate[p] = {network.points[p].x, network.points[p].y};
      continue;
    }
    int const at[2] = {2 * n, 2 * n + 1};
    double q[4];
    engine.normals->block(at, 2, q);
    datum.transform(at, 2, q);
    PlanePoint& point = result.points[p];
    point.x = engine.xy[index(at[0])];
    point.y = engine.xy[index(at[1])];
    point.mx = rootOf(q[0]) * m;
    point.my = rootOf(q[3]) * m;
    point.mp = std::hypot(point.mx, point.my);
    double const spread = std::hypot(q[0] - q[3], 2.0 * q[1]);
    point.semiMajor = rootOf(0.5 * (q[0] + q[3] + spread)) * m;
    point.semiMinor = rootOf(0.5 * (q[0] + q[3] - spread)) * m;
    point.bearing = 0.5 * std::atan2(2.0 * q[1], q[0] - q[3]);
    if (point.bearing < 0.0) point.bearing += CommonFunction::m_PI;
    point.isChecked = true;
    result.approximate[p] = {engine.x0y0[index(at[0])], engine.x0y0[index(at[1])]};
  }
}

/// A-priori standard error of an observation of the engine, radians or metres.
double PlaneAdjustment::Data::errorOf(std::size_t number) const {
  std::size_t const directions = engine.network.directions.size();
  double const error =
      number < directions ? engine.network.directions[number].error : engine.network.lines[number - directions].error;
  if (isLeftOut[number]) return error / kLeftOutFactor;
  return robustWeights.empty() ? error : error * std::sqrt(std::max(robustWeights[number], kLeastWeight));
}

double PlaneAdjustment::Data::weightOf(std::size_t number) const {
  if (isLeftOut[number]) return 0.0;
  return robustWeights.empty() ? 1.0 : robustWeights[number];
}

/// The same in the unit of its error equation.
double PlaneAdjustment::Data::scaledErrorOf(std::size_t number) const {
  return errorOf(number) * (number < engine.network.directions.size() ? kSecondsPerRadian : 1.0);
}

PlaneObservation const& PlaneAdjustment::Data::resultOf(std::size_t number) const {
  std::size_t const directions = engine.network.directions.size();
  return number < directions ? result.directions[directionOf[number]] : result.distances[number - directions];
}

void PlaneAdjustment::Data::takeObservations() {
  Effort effort(engine.poll);
  result.directions.resize(network.directions.size());
  result.distances.resize(network.distances.size());
  double a[5];
  int at[5];
  for (std::size_t d = 0; d < engine.network.directions.size(); ++d) {
    effort.step();
    NumberedNetwork::Direction const& direction = engine.network.directions[d];
    PlaneObservation& observation = result.directions[directionOf[d]];
    int const count = engine.solvedFactors(d, a, at);
    bool const isOriented = !isLeftOut[d] || !isIdle(direction.station);
    observation.residual = isOriented ? engine.directionResiduals[d] / kSecondsPerRadian : kNaN;
    observation.adjusted = direction.value + observation.residual;
    // The equations are in seconds.
    observation.weight = weightOf(d);
    double const error = errorOf(d);
    takeObservation(observation, a, at, count, error * kSecondsPerRadian);
    for (double* value : {&observation.adjustedError, &observation.detectable}) *value /= kSecondsPerRadian;
    test(observation, error);
  }
  for (std::size_t e = 0; e < engine.network.lines.size(); ++e) {
    effort.step();
    NumberedNetwork::Line const& line = engine.network.lines[e];
    PlaneObservation& observation = result.distances[e];
    int const count = engine.solvedFactors(engine.network.directions.size() + e, a, at);
    observation.residual = engine.lineResiduals[e];
    observation.adjusted = line.value + observation.residual;
    observation.weight = weightOf(engine.network.directions.size() + e);
    double const error = errorOf(engine.network.directions.size() + e);
    takeObservation(observation, a, at, count, error);
    test(observation, error);
  }
}

/// Redundancy and detectability of an observation, and the errors of its line.
///
/// @param a, at   its error equation, the unknowns of its points first.
/// @param error   a-priori standard error in the unit of the equation.
void PlaneAdjustment::Data::takeObservation(PlaneObservation& observation, double const* a, int const* at, int count,
                                            double error) {
  constexpr int kPointUnknowns = 4;
  double q[25] = {};
  engine.normals->block(at, count, q);
  double const variance = product(a, q, a, count, count);
  double const m = scaleOfErrors();
  observation.adjustedError = rootOf(variance) * m;
  // One that is left out is judged by the others alone.
  double const share = observation.weight * variance / (error * error);
  observation.redundancy = std::min(1.0, std::max(0.0, 1.0 - share));
  // The line's errors are those of its points, which in a free network depend on what the datum is.
  double lineQ[25];
  std::copy(std::begin(q), std::end(q), std::begin(lineQ));
  datum.transform(at, count, lineQ);
  double line[kPointUnknowns];
  int lineAt[kPointUnknowns];
  int const i = at[0] / 2;
  int const j = at[2] / 2;
  observation.azimuth = engine.azimuthFactors(i, j, line, lineAt);
  observation.azimuthError = rootOf(product(line, lineQ, line, kPointUnknowns, count)) * m / kSecondsPerRadian;
  observation.length = engine.distanceFactors(i, j, line, lineAt);
  observation.lengthError = rootOf(product(line, lineQ, line, kPointUnknowns, count)) * m;
  observation.detectable = observation.effect = kNaN;
  if (observation.redundancy < kUncheckedRedundancy) return;
  observation.detectable = detail::kDetectableShift * error / std::sqrt(observation.redundancy);
  // A gross error g moves the unknowns by Q a' p g.
  double shift[kPointUnknowns] = {};
  for (int r = 0; r < kPointUnknowns; ++r) {
    for (int c = 0; c < count; ++c) shift[r] += q[r * count + c] * a[c];
  }
  datum.transformShifts(a, at, count, at, kPointUnknowns, shift);
  double largest = 0.0;
  for (double const s : shift) largest = std::max(largest, std::abs(s));
  observation.effect = observation.weight * largest * observation.detectable / (error * error);
}

/// @param error  a-priori standard error in the unit of the residual.
void PlaneAdjustment::Data::test(PlaneObservation& observation, double error) const {
  observation.error = error;
  observation.standardised = observation.test = observation.gross = kNaN;
  if (observation.redundancy < kUncheckedRedundancy) return;
  observation.standardised = observation.residual / (scaleOfErrors() * error * std::sqrt(observation.redundancy));
  observation.test = std::abs(observation.standardised) / result.criticalValue;
  // Observations that all agree to the last digit leave the rounding of their digits, of which one is the largest.
  constexpr double kRounding = 1e-3;  // of the a-priori error
  if (std::abs(observation.residual) < kRounding * observation.error)
    observation.test = std::min(observation.test, 1.0);
  if (observation.test > 1.0) observation.gross = -observation.residual / observation.redundancy;
}

void PlaneAdjustment::Data::takeKinds() {
  auto const unitErrorOf = [](std::vector<PlaneObservation> const& observations) {
    double sum = 0.0;
    double redundancy = 0.0;
    for (PlaneObservation const& observation : observations) {
      if (observation.weight == 0.0) continue;
      double const v = observation.residual / observation.error;
      sum += observation.weight * v * v;
      redundancy += observation.redundancy;
    }
    return redundancy < kUncheckedRedundancy ? kNaN : std::sqrt(sum / redundancy);
  };
  result.directionUnitError = unitErrorOf(result.directions);
  result.distanceUnitError = unitErrorOf(result.distances);
}

void PlaneAdjustment::Data::takeOrientations() {
  double const turn = 2.0 * CommonFunction::m_PI;
  result.orientations.assign(network.setUps.size(), kNaN);
  result.orientationErrors.assign(network.setUps.size(), kNaN);
  for (int s = 0; s < engine.network.stations(); ++s) {
    PlaneObservation const& first = result.directions[directionOf[index(engine.network.firstDirection(s))]];
    double const orientation = std::fmod(first.azimuth - first.adjusted, turn);
    std::size_t const setUp = setUpOfStation[index(s)];
    if (isIdle(s)) continue;
    result.orientations[setUp] = orientation < 0.0 ? orientation + turn : orientation;
    int const at[1] = {2 * engine.network.points + s};
    double q[1];
    engine.normals->block(at, 1, q);
    datum.transform(at, 1, q);
    result.orientationErrors[setUp] = rootOf(q[0]) * scaleOfErrors() / kSecondsPerRadian;
  }
}

/// The points that errors of unchecked observations move. All these observations are disturbed at once, at random, so
/// that one solution of the system shows every point that one of them moves.
void PlaneAdjustment::Data::findUnchecked() {
  std::mt19937 random(1);
  std::vector<double> right(index(engine.unknowns()), 0.0);
  bool hasUnchecked = false;
  Effort effort(engine.poll);
  double a[5];
  int at[5];
  std::size_t const directions = engine.network.directions.size();
  for (std::size_t i = 0; i < directions + engine.network.lines.size(); ++i) {
    effort.step();
    int const count = engine.solvedFactors(i, a, at);
    double const error = scaledErrorOf(i);
    double const share = weightOf(i) * engine.cofactor(a, at, count) / (error * error);
    if (1.0 - share >= kUncheckedRedundancy) continue;
    hasUnchecked = true;
    double const size = (1.0 + static_cast<double>(random()) / 4294967296.0) / error;
    for (int r = 0; r < count; ++r) right[index(at[r])] += size * a[r];
  }
  if (!hasUnchecked) return;
  std::vector<double> const moved = engine.normals->solved(right, engine.poll);
  if (isFree()) return findUncheckedOfFree(moved);
  for (int n = 0; n < engine.network.points; ++n) {
    bool const isFixed = n < engine.network.known && !(engine.holdingWeights[index(n)] < PlaneEngine::kFixedWeight);
    if (isFixed) continue;
    auto const isMoved = [&](int unknown) {
      return std::abs(moved[index(unknown)]) > kNoShare * rootOf(engine.inverse(unknown, unknown));
    };
    if (isMoved(2 * n) || isMoved(2 * n + 1)) result.points[pointOfNumber[index(n)]].isChecked = false;
  }
}

/// What moves against the most of the network, whose shift, turn and, without distances, scale are found by the sum of
/// the sizes of what is left: those that do not move decide them alone.
void PlaneAdjustment::Data::findUncheckedOfFree(std::vector<double> const& moved) {
  constexpr int kRounds = 50;
  constexpr double kMoves = 1e-3;  // share of the largest motion
  int const points = engine.network.points;
  std::vector<detail::Place> places;
  std::vector<detail::Place> shifts;
  detail::Place centre;
  for (int n = 0; n < points; ++n) {
    places.emplace_back(engine.xy[2 * index(n)], engine.xy[2 * index(n) + 1]);
    shifts.emplace_back(moved[2 * index(n)], moved[2 * index(n) + 1]);
    centre += places.back() / static_cast<double>(points);
  }
  bool const hasScale = !engine.network.lines.empty();
  detail::Place shift;
  detail::Place turn;  // about the centre, with the change of scale as its real part
  double largest = 0.0;
  std::vector<double> left(index(points), 1.0);
  for (int round = 0; round < kRounds; ++round) {
    double sum = 0.0;
    detail::Place mean;
    detail::Place meanShift;
    for (std::size_t n = 0; n < left.size(); ++n) {
      double const weight = 1.0 / std::max(left[n], 1e-9 * largest + 1e-300);
      sum += weight;
      mean += weight * (places[n] - centre);
      meanShift += weight * shifts[n];
    }
    mean /= sum;
    meanShift /= sum;
    detail::Place product;
    double size = 0.0;
    for (std::size_t n = 0; n < left.size(); ++n) {
      double const weight = 1.0 / std::max(left[n], 1e-9 * largest + 1e-300);
      detail::Place const from = places[n] - centre - mean;
      product += weight * std::conj(from) * (shifts[n] - meanShift);
      size += weight * std::norm(from);
    }
    turn = size > 0.0 ? product / size : detail::Place();
    if (hasScale) turn = detail::Place(0.0, turn.imag());
    shift = meanShift - turn * mean;
    largest = 0.0;
    for (std::size_t n = 0; n < left.size(); ++n) {
      left[n] = std::abs(shifts[n] - shift - turn * (places[n] - centre));
      largest = std::max(largest, left[n]);
    }
  }
  for (std::size_t n = 0; n < left.size(); ++n) {
    if (left[n] > kMoves * largest) result.points[pointOfNumber[n]].isChecked = false;
  }
}

}  // namespace kvn
