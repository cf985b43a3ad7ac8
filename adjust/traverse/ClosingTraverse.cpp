#include "adjust/ClosingTraverse.h"

#include "adjust/CommonFunction.h"
#include "adjust/traverse/SingleTraverseData.h"
#include "adjust/traverse/TraverseStations.h"
#include "core/AlgorithmException.h"

#include <cmath>

namespace kvn {

ClosingTraverse::ClosingTraverse() = default;
ClosingTraverse::ClosingTraverse(ClosingTraverse const&) = default;
ClosingTraverse& ClosingTraverse::operator=(ClosingTraverse const&) = default;
ClosingTraverse::~ClosingTraverse() = default;

bool ClosingTraverse::calculateAdjust() {
  if (own->stations.empty()) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No start data");
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
  if (own->stations.empty()) return false;
  list = own->stations;
  for (TraverseInfo& station : list) {
    station.angleDms = CommonFunction::radToDms(station.angle);
    station.adjustedAngleDms = CommonFunction::radToDms(station.adjustedAngle);
  }
  return true;
}

TraverseSummary ClosingTraverse::getSummary() const {
  return {own->azimuths, true, own->angleCloseError, own->sumDistance, own->fx, own->fy, own->fs, own->relativeError};
}

bool ClosingTraverse::getErrorInfo(double& closeError, double& unused, double& sum, double& x, double& y, double& s,
                                   double& relative) const {
  if (sum == 0.0) return false;
  closeError = own->angleCloseError;
  unused = 0.0;
  sum = own->sumDistance;
  x = own->fx;
  y = own->fy;
  s = own->fs;
  relative = own->relativeError;
  return true;
}

void ClosingTraverse::beginInput(AlgorithmData const& data) {
  readKnownPoints(data);
  own->angleCloseError = own->sumDistance = own->fx = own->fy = own->fs = own->relativeError = 0.0;
}

double ClosingTraverse::sumOfAngles() const {
  double sum = 0.0;
  for (TraverseInfo const& station : own->stations) sum += station.angle;
  return sum;
}

void ClosingTraverse::calculateEachAngle() {
  own->angleCloseError = -own->angleCloseError / static_cast<double>(own->stations.size());
  for (TraverseInfo& station : own->stations) station.adjustedAngle = station.angle + own->angleCloseError;
}

void ClosingTraverse::carryAzimuths() {
  for (TraverseInfo const& station : own->stations) {
    double const azimuth = foreAzimuth(station.adjustedAngle);
    own->azimuths.push_back(azimuth < 2.0 * own->m_PI ? azimuth : azimuth - 2.0 * own->m_PI);
  }
}

void ClosingTraverse::calculateSumDistance() {
  own->sumDistance = 0.0;
  for (std::size_t i = 0; i + 1 < own->stations.size(); ++i) own->sumDistance += own->stations[i].distance;
  // The coordinate misclosure is shared out by length, of which there would be none.
  if (own->sumDistance == 0.0 && own->stations.size() > 1) detail::refuseWithoutDistance(own->stations.front());
}

void ClosingTraverse::addLegs() {
  for (std::size_t i = 0; i + 1 < own->stations.size(); ++i) {
    calculateDelta(i);
    own->fx += own->stations[i].deltaX;
    own->fy += own->stations[i].deltaY;
  }
}

void ClosingTraverse::closeOnLastStation() {
  PointInfo const& first = own->stations.front().stationPoint;
  PointInfo const& last = own->stations.back().stationPoint;
  own->fx = first.x + own->fx - last.x;
  own->fy = first.y + own->fy - last.y;
}

void ClosingTraverse::calculateRelativeError() {
  own->fs = std::hypot(own->fx, own->fy);
  own->relativeError = own->sumDistance == 0.0 ? 0.0 : own->fs / own->sumDistance;
}

double ClosingTraverse::correctionOfX(std::size_t leg) const {
  return -own->fx / own->sumDistance * own->stations[leg].distance;
}
double ClosingTraverse::correctionOfY(std::size_t leg) const {
  return -own->fy / own->sumDistance * own->stations[leg].distance;
}

}  // namespace kvn
