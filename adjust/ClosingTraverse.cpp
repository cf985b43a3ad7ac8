#include "adjust/ClosingTraverse.h"

#include "adjust/CommonFunction.h"
#include "adjust/traverse/TraverseStations.h"
#include "core/AlgorithmException.h"

#include <cmath>

namespace kvn {

ClosingTraverse::ClosingTraverse() = default;
ClosingTraverse::ClosingTraverse(ClosingTraverse const&) = default;
ClosingTraverse& ClosingTraverse::operator=(ClosingTraverse const&) = default;
ClosingTraverse::~ClosingTraverse() = default;

bool ClosingTraverse::calculateAdjust() {
  if (stations.empty()) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No start data");
  calculateAngleCloseError();
  calculateEachAngle();
  calculateEachAzimuth();
  calculateSumDistance();
  calculateDeltaXY();
  calculateCloseDeltaXY();
  calculateXY();
  return true;
}

bool ClosingTraverse::getStationsInfo(std::vector<TraverseInfo>& list) const {
  if (stations.empty()) return false;
  list = stations;
  for (TraverseInfo& station : list) {
    station.angleDms = CommonFunction::radToDms(station.angle);
    station.adjustedAngleDms = CommonFunction::radToDms(station.adjustedAngle);
  }
  return true;
}

TraverseSummary ClosingTraverse::getSummary() const {
  return {azimuths, true, angleCloseError, sumDistance, fx, fy, fs, relativeError};
}

bool ClosingTraverse::getErrorInfo(double& closeError, double& unused, double& sum, double& x, double& y, double& s,
                                   double& relative) const {
  if (sum == 0.0) return false;
  closeError = angleCloseError;
  unused = 0.0;
  sum = sumDistance;
  x = fx;
  y = fy;
  s = fs;
  relative = relativeError;
  return true;
}

void ClosingTraverse::beginInput(AlgorithmData const& data) {
  readKnownPoints(data);
  angleCloseError = sumDistance = fx = fy = fs = relativeError = 0.0;
}

double ClosingTraverse::sumOfAngles() const {
  double sum = 0.0;
  for (TraverseInfo const& station : stations) sum += station.angle;
  return sum;
}

void ClosingTraverse::calculateEachAngle() {
  angleCloseError = -angleCloseError / static_cast<double>(stations.size());
  for (TraverseInfo& station : stations) station.adjustedAngle = station.angle + angleCloseError;
}

void ClosingTraverse::carryAzimuths() {
  for (TraverseInfo const& station : stations) {
    double const azimuth = foreAzimuth(station.adjustedAngle);
    azimuths.push_back(azimuth < 2.0 * m_PI ? azimuth : azimuth - 2.0 * m_PI);
  }
}

void ClosingTraverse::calculateSumDistance() {
  sumDistance = 0.0;
  for (std::size_t i = 0; i + 1 < stations.size(); ++i) sumDistance += stations[i].distance;
  // The coordinate misclosure is shared out by length, of which there would be none.
  if (sumDistance == 0.0 && stations.size() > 1) detail::refuseWithoutDistance(stations.front());
}

void ClosingTraverse::addLegs() {
  for (std::size_t i = 0; i + 1 < stations.size(); ++i) {
    calculateDelta(i);
    fx += stations[i].deltaX;
    fy += stations[i].deltaY;
  }
}

void ClosingTraverse::closeOnLastStation() {
  PointInfo const& first = stations.front().stationPoint;
  PointInfo const& last = stations.back().stationPoint;
  fx = first.x + fx - last.x;
  fy = first.y + fy - last.y;
}

void ClosingTraverse::calculateRelativeError() {
  fs = std::hypot(fx, fy);
  relativeError = sumDistance == 0.0 ? 0.0 : fs / sumDistance;
}

double ClosingTraverse::correctionOfX(std::size_t leg) const { return -fx / sumDistance * stations[leg].distance; }
double ClosingTraverse::correctionOfY(std::size_t leg) const { return -fy / sumDistance * stations[leg].distance; }

}  // namespace kvn
