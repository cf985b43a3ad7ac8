// Precision results: unit weight error, point errors, ellipses, errors of directions and distances.
#include "adjust/CommonFunction.h"
#include "adjust/engine/TraverseAdjustData.h"
#include "adjust/linalg/Index.h"
#include "adjust/linalg/Poll.h"
#include "core/AlgorithmException.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvn {
namespace {

// A point whose error is below this has no ellipse, which drops the known points; metres.
constexpr double kNoEllipse = 1e-8;
// A covariance below this counts as zero; square metres.
constexpr double kNoCovariance = 1e-14;

using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;

/// Root of a variance factor, which rounding may have pushed below zero.
double rootOf(double variance) { return std::sqrt(std::max(variance, 0.0)); }

/// Axes and direction of the error ellipse of a two by two covariance matrix (its eigenvalues and first eigenvector).
ErrorEllipse ellipseOf(std::string const& name, double qxx, double qyy, double qxy) {
  double const k = std::hypot(qxx - qyy, 2.0 * qxy);
  ErrorEllipse ellipse;
  ellipse.name = name;
  ellipse.semiMajor = std::sqrt(0.5 * (qxx + qyy + k));
  ellipse.semiMinor = rootOf(0.5 * (qxx + qyy - k));
  double const halfTurn = std::acos(-1.0);
  if (std::abs(qxy) >= kNoCovariance) {
    ellipse.angle = std::atan((ellipse.semiMajor * ellipse.semiMajor - qxx) / qxy);
  } else {
    ellipse.angle = qxx > qyy ? 0.0 : 0.5 * halfTurn;
  }
  if (ellipse.angle < 0.0) ellipse.angle += halfTurn;
  return ellipse;
}

}  // namespace

void TraverseAdjust::calculateResults() {
  calculateUnitError();
  calculateMxMy();
  calculateDirectionResult();
  calculateLineErrorInfo();
  calculateErrorEllipse();
}

void TraverseAdjust::calculateUnitError() {
  Data& state = ready();
  double pvv = calculateV();
  double a[4];
  int at[4];
  for (NumberedNetwork::Line const& line : state.judgedControlLines()) {
    double const v = calculateCD(line.start, line.end, a, at) - line.value;
    pvv += v * v / state.distanceVariance(line.value);
  }
  state.pvv = pvv;
  // A-priori errors of 0 weigh a residual without bound.
  if (!std::isfinite(pvv)) throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
  int const excess = state.redundancy();
  state.hasRedundancy = excess != 0;
  if (state.hasRedundancy) state.unitError = std::sqrt(pvv / excess);
}

void TraverseAdjust::calculateMxMy() {
  Data& state = ready();
  if (!state.hasRedundancy) return;
  state.engine.needInverse();
  detail::Effort effort(state.engine.poll);
  for (int i = 0; i < state.pointsCount(); ++i) {
    effort.step();
    state.mx.push_back(std::sqrt(state.engine.inverse(2 * i, 2 * i)) * state.unitError);
    state.my.push_back(std::sqrt(state.engine.inverse(2 * i + 1, 2 * i + 1)) * state.unitError);
    state.mp.push_back(std::hypot(state.mx.back(), state.my.back()));
  }
}

void TraverseAdjust::calculateErrorEllipse() {
  Data& state = ready();
  PlaneEngine& engine = state.engine;
  state.errorEllipses.isValid = state.hasRedundancy;
  if (!state.hasRedundancy) return;
  engine.needInverse();
  double const m2 = state.unitError * state.unitError;
  detail::Effort effort(engine.poll);
  for (int i = 0; i < state.pointsCount(); ++i) {
    effort.step();
    double const qxx = engine.inverse(2 * i, 2 * i) * m2;
    double const qyy = engine.inverse(2 * i + 1, 2 * i + 1) * m2;
    double const qxy = engine.inverse(2 * i, 2 * i + 1) * m2;
    if (std::sqrt(qxx + qyy) < kNoEllipse) continue;
    state.errorEllipses.ellipseList.push_back(ellipseOf(engine.nameOf(i), qxx, qyy, qxy));
  }
}

void TraverseAdjust::calculateDirectionResult() {
  Data& state = ready();
  PlaneEngine& engine = state.engine;
  engine.needInverse();
  NumberedNetwork const& network = engine.network;
  detail::Effort effort(engine.poll);
  double a[4];
  int at[4];
  for (int s = 0; s < network.stations(); ++s) {
    int const k = network.pointOf(s);
    DirectionResult result;
    std::vector<double> lineErrorsHere;
    result.stationName = engine.nameOf(k);
    result.azimuthErrorValid = state.hasRedundancy;
    result.distanceErrorValid = state.hasRedundancy;
    for (int d = network.firstDirection(s); d < network.endDirection(s); ++d) {
      effort.step();
      int const target = network.direction(d).target;
      result.targetNames.push_back(engine.nameOf(target));
      result.observedDirections.push_back(rad_dms(network.direction(d).value));
      result.residuals.push_back(engine.directionResiduals[index(d)]);
      result.adjustedAzimuths.push_back(rad_dms(calculateAB(k, target, a, at)));
      if (state.hasRedundancy) {
        result.azimuthErrors.push_back(rootOf(Data::thresholded(engine.cofactor(a, at, 4))) * state.unitError);
      }
      result.distances.push_back(calculateCD(k, target, a, at));
      if (!state.hasRedundancy) continue;
      double const q = engine.cofactor(a, at, 4);
      result.distanceErrors.push_back(rootOf(Data::thresholded(q)) * state.unitError);
      lineErrorsHere.push_back(rootOf(q) * state.unitError);
    }
    state.directionResults.push_back(std::move(result));
    state.directionLineErrors.push_back(std::move(lineErrorsHere));
  }
}

void TraverseAdjust::calculateLineErrorInfo() {
  Data& state = ready();
  PlaneEngine& engine = state.engine;
  engine.needInverse();
  detail::Effort effort(engine.poll);
  for (std::size_t e = 0; e < engine.network.lines.size(); ++e) {
    effort.step();
    NumberedNetwork::Line const& line = engine.network.lines[e];
    state.lineErrorInfos.push_back(lineResult(line.start, line.end, line.value, engine.lineResiduals[e]));
  }
  double a[4];
  int at[4];
  for (NumberedNetwork::Line const& line : state.judgedControlLines()) {
    double const residual = calculateCD(line.start, line.end, a, at) - line.value;
    state.lineErrorInfos.push_back(lineResult(line.start, line.end, line.value, residual));
  }
}

LineErrorInfo TraverseAdjust::lineResult(int i, int j, double observed, double residual) {
  PlaneEngine const& engine = own->engine;
  double a[4];
  int at[4];
  LineErrorInfo info;
  info.start_name = engine.nameOf(i);
  info.end_name = engine.nameOf(j);
  info.observedDistance = observed;
  info.residual = residual;
  info.azimuth = calculateAB(i, j, a, at);
  info.azimuthDms = CommonFunction::radToDms(info.azimuth);
  info.azimuthErrorValid = info.distanceErrorValid = own->hasRedundancy;
  if (own->hasRedundancy) info.azimuthError = rootOf(Data::thresholded(engine.cofactor(a, at, 4))) * own->unitError;
  info.adjustedDistance = calculateCD(i, j, a, at);
  if (own->hasRedundancy) {
    double const q = engine.cofactor(a, at, 4);
    info.distanceError = rootOf(Data::thresholded(q)) * own->unitError;
    own->lineErrors.push_back(rootOf(q) * own->unitError);
  }
  return info;
}

// The small additions let a value just under a whole degree or minute count up; what went too far is given back.
double TraverseAdjust::rad_dms(double radians) {
  constexpr double kSecondsPerRadian = 206264.80624709636;
  double const seconds = radians * kSecondsPerRadian;
  double const size = std::abs(seconds);
  double degrees = std::trunc(size / 3600.0 + 1e-7);
  double rest = size - degrees * 3600.0;
  if (rest < 0.0) {
    rest += 3600.0;
    degrees -= 1.0;
  }
  double minutes = std::trunc(rest / 60.0 + 0.0001);
  double s = rest - minutes * 60.0;
  if (s < 0.0) {
    s += 60.0;
    minutes -= 1.0;
  }
  double const result = s + degrees * 10000.0 + minutes * 100.0;
  return seconds < 0.0 ? -result : result;
}

PointInfo TraverseAdjust::Data::pointOf(int number, std::vector<double> const& coordinates) const {
  PointInfo point;
  point.name = engine.nameOf(number);
  point.x = coordinates[2 * index(number)];
  point.y = coordinates[2 * index(number) + 1];
  return point;
}

std::vector<PointInfo> TraverseAdjust::Data::pointsOf(std::vector<double> const& coordinates) const {
  std::vector<PointInfo> points;
  points.reserve(index(pointsCount()));
  for (int i = 0; i < pointsCount(); ++i) points.push_back(pointOf(i, coordinates));
  return points;
}

std::vector<PointInfo> TraverseAdjust::getPointX0Y0() const { return own->pointsOf(own->engine.x0y0); }
std::vector<PointInfo> TraverseAdjust::getPoints() const { return own->pointsOf(own->engine.xy); }

std::vector<PointErrorInfo> TraverseAdjust::getPointErrorInfo() const {
  std::vector<PointErrorInfo> points;
  points.reserve(index(own->pointsCount()));
  for (int i = 0; i < own->pointsCount(); ++i) {
    PointErrorInfo point;
    static_cast<PointInfo&>(point) = own->pointOf(i, own->engine.xy);
    bool const hasErrors = own->hasRedundancy && !own->mx.empty();
    point.mxValid = point.myValid = point.mpValid = hasErrors;
    if (hasErrors) {
      point.mx = own->mx[index(i)];
      point.my = own->my[index(i)];
      point.mp = own->mp[index(i)];
    }
    points.push_back(std::move(point));
  }
  return points;
}

std::vector<LineErrorInfo> TraverseAdjust::getLineErrorInfo() const { return own->lineErrorInfos; }
ErrorEllipseManage TraverseAdjust::getErrorEllipsoid() const { return own->errorEllipses; }
std::vector<DirectionResult> TraverseAdjust::getDirrectionInfo() const { return own->directionResults; }

std::vector<TraverseInfo> TraverseAdjust::getStationInfo() const {
  NumberedNetwork const& network = own->engine.network;
  std::vector<TraverseInfo> stations;
  stations.reserve(index(network.stations()));
  for (int s = 0; s < network.stations(); ++s) {
    TraverseInfo station;
    station.stationPoint = own->pointOf(network.pointOf(s), own->engine.xy);
    int const first = network.firstDirection(s);
    station.backPoint = own->pointOf(network.direction(first).target, own->engine.xy);
    station.forePoints.reserve(index(network.endDirection(s) - first - 1));
    for (int d = first + 1; d < network.endDirection(s); ++d) {
      station.forePoints.push_back(own->pointOf(network.direction(d).target, own->engine.xy));
    }
    stations.push_back(std::move(station));
  }
  return stations;
}

AdjustSummary TraverseAdjust::getSummary() const {
  NumberedNetwork const& network = own->engine.network;
  AdjustSummary summary;
  summary.hasRedundancy = own->hasRedundancy;
  summary.unitError = own->hasRedundancy ? own->unitError : std::numeric_limits<double>::quiet_NaN();
  summary.redundancy = own->redundancy();
  summary.iterations = own->engine.iterations;
  summary.points = network.points;
  summary.knownPoints = network.known;
  summary.stations = network.stations();
  summary.directions = static_cast<int>(network.directions.size());
  summary.distances = static_cast<int>(network.lines.size()) + own->countedControlDistances();
  summary.distanceErrors = own->lineErrors;
  summary.directionDistanceErrors = own->directionLineErrors;
  return summary;
}

}  // namespace kvn
