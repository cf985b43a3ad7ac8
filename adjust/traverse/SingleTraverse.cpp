#include "adjust/SingleTraverse.h"

#include "adjust/CommonFunction.h"
#include "adjust/input/Unobserved.h"
#include "adjust/linalg/Index.h"
#include "adjust/traverse/Azimuth.h"
#include "adjust/traverse/SingleTraverseData.h"
#include "core/AlgorithmException.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>
#include <utils/QLogicError.h>

#include <cmath>
#include <utility>

namespace kvn {

SingleTraverse::SingleTraverse() : own(std::make_unique<Data>()) {}
SingleTraverse::SingleTraverse(SingleTraverse const& other)
    : IProcessCancel(other), own(std::make_unique<Data>(*other.own)) {}
SingleTraverse& SingleTraverse::operator=(SingleTraverse const& other) {
  IProcessCancel::operator=(other);
  *own = *other.own;
  return *this;
}
SingleTraverse::~SingleTraverse() = default;

bool SingleTraverse::getAzimuth(std::vector<Degree>& list) const {
  for (double const azimuth : own->azimuths) list.push_back(CommonFunction::radToDms(azimuth));
  return !own->azimuths.empty();
}

bool SingleTraverse::getKnPoints(std::vector<PointInfo>& list) const {
  list = own->knPoints;
  return !own->knPoints.empty();
}

TraverseSummary SingleTraverse::getSummary() const {
  TraverseSummary summary;
  summary.azimuths = own->azimuths;
  return summary;
}

void SingleTraverse::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(Messages::tr("User Cancel"));
}

int SingleTraverse::getPointNumber(std::string const& name) { return own->pointNames.numberOf(name); }

double SingleTraverse::calculateAzimuth(PointInfo const& p, PointInfo const& q) const {
  double const dx = q.x - p.x;
  double const dy = q.y - p.y;
  if (dx == 0.0 && dy == 0.0) throw AlgorithmException(AlgorithmException::DataError, q.name);
  return detail::azimuthOf(dx, dy);
}

void SingleTraverse::readKnownPoints(AlgorithmData const& data) {
  own->knPointsCount = data.knPointsCount;
  own->pointsCount = data.pointsCount;
  own->pointNames = NameIndex();
  own->knPoints = data.knPoints;
  for (PointInfo& point : own->knPoints) point.number = getPointNumber(point.name);
  own->stations.clear();
  own->azimuths.clear();
}

void SingleTraverse::takeChain(std::vector<TraverseInfo> chain, AlgorithmData const& data) {
  own->stations = std::move(chain);
  detail::warnOfUnobserved(data.knPoints, observedNames(data), Messages::tr("Known points without an observation: %1"));
}

bool SingleTraverse::isKnown(PointInfo const& point) const {
  return detail::index(point.number) < own->knPoints.size();
}

void SingleTraverse::takeKnown(PointInfo& point) const {
  if (isKnown(point)) point = own->knPoints[detail::index(point.number)];
}

bool SingleTraverse::isOrientedStart(TraverseInfo const& station) const {
  return isKnown(station.backPoint) && isKnown(station.stationPoint);
}

std::size_t SingleTraverse::takeOrientedStarts(std::vector<TraverseInfo>& list) const {
  std::size_t first = list.size();
  for (std::size_t i = list.size(); i-- > 0;) {
    if (!isOrientedStart(list[i])) continue;
    takeKnown(list[i].backPoint);
    takeKnown(list[i].stationPoint);
    first = i;
  }
  return first;
}

double SingleTraverse::foreAzimuth(double angle) const {
  return detail::ontoCircle(own->azimuths.back() + angle - own->m_PI);
}

void SingleTraverse::calculateDelta(std::size_t station) {
  TraverseInfo& from = own->stations[station];
  from.deltaX = from.distance * std::cos(own->azimuths[station + 1]);
  from.deltaY = from.distance * std::sin(own->azimuths[station + 1]);
}

void SingleTraverse::placeForePoint(std::size_t station, double dx, double dy) {
  TraverseInfo& from = own->stations[station];
  PointInfo& fore = from.forePoints.front();
  fore.x = from.stationPoint.x + dx;
  fore.y = from.stationPoint.y + dy;
}

void SingleTraverse::moveForward(std::size_t station) {
  own->stations[station].stationPoint = own->stations[station - 1].forePoints.front();
  own->stations[station].backPoint = own->stations[station - 1].stationPoint;
}

bool SingleTraverse::appendAllPoints(std::vector<PointInfo>& list) const {
  if (own->stations.empty()) return false;
  list.push_back(own->stations.front().backPoint);
  for (TraverseInfo const& station : own->stations) list.push_back(station.stationPoint);
  list.push_back(own->stations.back().forePoints.front());
  return true;
}

}  // namespace kvn
