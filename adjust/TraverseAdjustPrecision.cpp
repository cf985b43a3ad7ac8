// Precision results: unit weight error, point errors, ellipses, errors of directions and distances.
#include "adjust/CommonFunction.h"
#include "adjust/TraverseAdjust.h"
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

/// Observations minus unknowns. The coordinates of known points do not count, although they stand in the matrix.
int TraverseAdjust::redundancy() const {
  int const observations = directionsCount + linesCount + azimuthCount;
  return observations - (stationsCount + 2 * (pointsCount - knPointsCount));
}

void TraverseAdjust::setCountControlDistances(bool count) { countControlDistances = count; }

int TraverseAdjust::countedControlDistances() const {
  return countControlDistances ? static_cast<int>(controlDistances.size()) : 0;
}

void TraverseAdjust::calculateUnitError() {
  pvv = calculateV();
  if (!countControlDistances) controlDistances.clear();
  double a[4];
  int at[4];
  for (ControlDistance const& line : controlDistances) {
    double const v = calculateCD(line.start, line.end, a, at) - line.value;
    pvv += v * v / distanceVariance(line.value);
  }
  // A-priori errors of 0 weigh a residual without bound.
  if (!std::isfinite(pvv)) throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
  int const excess = redundancy() + countedControlDistances();
  hasRedundancy = excess != 0;
  if (hasRedundancy) unitError = std::sqrt(pvv / excess);
}

void TraverseAdjust::calculateMxMy() {
  if (!hasRedundancy) return;
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  for (int i = 0; i < pointsCount; ++i) {
    effort.step();
    mx.push_back(std::sqrt(inverse(2 * i, 2 * i)) * unitError);
    my.push_back(std::sqrt(inverse(2 * i + 1, 2 * i + 1)) * unitError);
    mp.push_back(std::hypot(mx.back(), my.back()));
  }
}

void TraverseAdjust::calculateErrorEllipse() {
  errorEllipses.isValid = hasRedundancy;
  if (!hasRedundancy) return;
  double const m2 = unitError * unitError;
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  for (int i = 0; i < pointsCount; ++i) {
    effort.step();
    double const qxx = inverse(2 * i, 2 * i) * m2;
    double const qyy = inverse(2 * i + 1, 2 * i + 1) * m2;
    double const qxy = inverse(2 * i, 2 * i + 1) * m2;
    if (std::sqrt(qxx + qyy) < kNoEllipse) continue;
    errorEllipses.ellipseList.push_back(ellipseOf(pointNames.names()[index(i)], qxx, qyy, qxy));
  }
}

void TraverseAdjust::calculateDirectionResult() {
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  double a[4];
  int at[4];
  for (int i = 0; i < stationsCount; ++i) {
    int const k = stationPoint[index(i)];
    DirectionResult result;
    std::vector<double> lineErrorsHere;
    result.stationName = pointNames.names()[index(k)];
    result.azimuthErrorValid = hasRedundancy;
    result.distanceErrorValid = hasRedundancy;
    for (int d = directionStart[index(i)]; d < directionStart[index(i) + 1]; ++d) {
      effort.step();
      int const target = directionTarget[index(d)];
      if (target < 0) throw AlgorithmException(AlgorithmException::StationNotEnough, std::string());
      result.targetNames.push_back(pointNames.names()[index(target)]);
      result.observedDirections.push_back(rad_dms(directionValue[index(d)]));
      result.residuals.push_back(directionV[index(d)]);
      result.adjustedAzimuths.push_back(rad_dms(calculateAB(k, target, a, at)));
      if (hasRedundancy) result.azimuthErrors.push_back(rootOf(calculateQQ(a, at)) * unitError);
      result.distances.push_back(calculateCD(k, target, a, at));
      if (!hasRedundancy) continue;
      result.distanceErrors.push_back(rootOf(calculateQQ(a, at)) * unitError);
      lineErrorsHere.push_back(rootOf(cofactor(a, at)) * unitError);
    }
    directionResults.push_back(std::move(result));
    directionLineErrors.push_back(std::move(lineErrorsHere));
  }
}

void TraverseAdjust::calculateLineErrorInfo() {
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  for (std::size_t e = 0; e < lineValue.size(); ++e) {
    effort.step();
    lineErrorInfos.push_back(lineResult(lineStart[e], lineEnd[e], lineValue[e], lineV[e]));
  }
  double a[4];
  int at[4];
  for (ControlDistance const& line : controlDistances) {
    double const residual = calculateCD(line.start, line.end, a, at) - line.value;
    lineErrorInfos.push_back(lineResult(line.start, line.end, line.value, residual));
  }
}

LineErrorInfo TraverseAdjust::lineResult(int i, int j, double observed, double residual) {
  double a[4];
  int at[4];
  LineErrorInfo info;
  info.start_name = pointNames.names()[index(i)];
  info.end_name = pointNames.names()[index(j)];
  info.observedDistance = observed;
  info.residual = residual;
  info.azimuth = calculateAB(i, j, a, at);
  info.azimuthDms = CommonFunction::radToDms(info.azimuth);
  info.azimuthErrorValid = hasRedundancy;
  if (hasRedundancy) info.azimuthError = rootOf(calculateQQ(a, at)) * unitError;
  info.adjustedDistance = calculateCD(i, j, a, at);
  info.distanceErrorValid = hasRedundancy;
  if (hasRedundancy) {
    info.distanceError = rootOf(calculateQQ(a, at)) * unitError;
    lineErrors.push_back(rootOf(cofactor(a, at)) * unitError);
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

PointInfo TraverseAdjust::pointOf(int number, std::vector<double> const& coordinates) const {
  PointInfo point;
  point.name = pointNames.names()[index(number)];
  point.x = coordinates[2 * index(number)];
  point.y = coordinates[2 * index(number) + 1];
  return point;
}

std::vector<PointInfo> TraverseAdjust::pointsOf(std::vector<double> const& coordinates) const {
  std::vector<PointInfo> points;
  points.reserve(index(pointsCount));
  for (int i = 0; i < pointsCount; ++i) points.push_back(pointOf(i, coordinates));
  return points;
}

std::vector<PointInfo> TraverseAdjust::getPointX0Y0() const { return pointsOf(X0Y0); }
std::vector<PointInfo> TraverseAdjust::getPoints() const { return pointsOf(XY); }

std::vector<PointErrorInfo> TraverseAdjust::getPointErrorInfo() const {
  std::vector<PointErrorInfo> points;
  points.reserve(index(pointsCount));
  for (int i = 0; i < pointsCount; ++i) {
    PointErrorInfo point;
    static_cast<PointInfo&>(point) = pointOf(i, XY);
    bool const hasErrors = hasRedundancy && !mx.empty();
    point.mxValid = point.myValid = point.mpValid = hasErrors;
    if (hasErrors) {
      point.mx = mx[index(i)];
      point.my = my[index(i)];
      point.mp = mp[index(i)];
    }
    points.push_back(std::move(point));
  }
  return points;
}

std::vector<LineErrorInfo> TraverseAdjust::getLineErrorInfo() const { return lineErrorInfos; }
ErrorEllipseManage TraverseAdjust::getErrorEllipsoid() const { return errorEllipses; }
std::vector<DirectionResult> TraverseAdjust::getDirrectionInfo() const { return directionResults; }

std::vector<TraverseInfo> TraverseAdjust::getStationInfo() const {
  std::vector<TraverseInfo> stations;
  stations.reserve(index(stationsCount));
  for (int i = 0; i < stationsCount; ++i) {
    TraverseInfo station;
    station.stationPoint = pointOf(stationPoint[index(i)], XY);
    int const first = directionStart[index(i)];
    station.backPoint = pointOf(directionTarget[index(first)], XY);
    station.forePoints.reserve(index(directionStart[index(i) + 1] - first - 1));
    for (int d = first + 1; d < directionStart[index(i) + 1]; ++d) {
      station.forePoints.push_back(pointOf(directionTarget[index(d)], XY));
    }
    stations.push_back(std::move(station));
  }
  return stations;
}

AdjustSummary TraverseAdjust::getSummary() const {
  AdjustSummary summary;
  summary.hasRedundancy = hasRedundancy;
  summary.unitError = hasRedundancy ? unitError : std::numeric_limits<double>::quiet_NaN();
  summary.redundancy = redundancy() + countedControlDistances();
  summary.iterations = iterations;
  summary.points = pointsCount;
  summary.knownPoints = knPointsCount;
  summary.stations = stationsCount;
  summary.directions = directionsCount;
  summary.distances = linesCount + countedControlDistances();
  summary.distanceErrors = lineErrors;
  summary.directionDistanceErrors = directionLineErrors;
  return summary;
}

}  // namespace kvn
