#include "adjust/SingleTraverse.h"

#include "adjust/CommonFunction.h"
#include "adjust/input/Unobserved.h"
#include "adjust/linalg/Index.h"
#include "adjust/traverse/Azimuth.h"
#include "core/AlgorithmException.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>
#include <utils/QLogicError.h>

#include <cmath>
#include <utility>

namespace kvn {

SingleTraverse::SingleTraverse() : m_PI(utils::kPi) {}
SingleTraverse::SingleTraverse(SingleTraverse const&) = default;
SingleTraverse& SingleTraverse::operator=(SingleTraverse const&) = default;
SingleTraverse::~SingleTraverse() = default;

bool SingleTraverse::getAzimuth(std::vector<Degree>& list) const {
  for (double const azimuth : azimuths) list.push_back(CommonFunction::radToDms(azimuth));
  return !azimuths.empty();
}

bool SingleTraverse::getKnPoints(std::vector<PointInfo>& list) const {
  list = knPoints;
  return !knPoints.empty();
}

TraverseSummary SingleTraverse::getSummary() const {
  TraverseSummary summary;
  summary.azimuths = azimuths;
  return summary;
}

void SingleTraverse::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(Messages::tr("User Cancel"));
}

int SingleTraverse::getPointNumber(std::string const& name) { return pointNames.numberOf(name); }

double SingleTraverse::calculateAzimuth(PointInfo const& p, PointInfo const& q) const {
  double const dx = q.x - p.x;
  double const dy = q.y - p.y;
  if (dx == 0.0 && dy == 0.0) throw AlgorithmException(AlgorithmException::DataError, q.name);
  return detail::azimuthOf(dx, dy);
}

void SingleTraverse::readKnownPoints(AlgorithmData const& data) {
  knPointsCount = data.knPointsCount;
  pointsCount = data.pointsCount;
  pointNames = NameIndex();
  knPoints = data.knPoints;
  for (PointInfo& point : knPoints) point.number = getPointNumber(point.name);
  stations.clear();
  azimuths.clear();
}

void SingleTraverse::takeChain(std::vector<TraverseInfo> chain, AlgorithmData const& data) {
  stations = std::move(chain);
  detail::warnOfUnobserved(data.knPoints, observedNames(data), Messages::tr("Known points without an observation: %1"));
}

bool SingleTraverse::isKnown(PointInfo const& point) const { return detail::index(point.number) < knPoints.size(); }

void SingleTraverse::takeKnown(PointInfo& point) const {
  if (isKnown(point)) point = knPoints[detail::index(point.number)];
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

double SingleTraverse::foreAzimuth(double angle) const { return detail::ontoCircle(azimuths.back() + angle - m_PI); }

void SingleTraverse::calculateDelta(std::size_t station) {
  TraverseInfo& from = stations[station];
  from.deltaX = from.distance * std::cos(azimuths[station + 1]);
  from.deltaY = from.distance * std::sin(azimuths[station + 1]);
}

void SingleTraverse::placeForePoint(std::size_t station, double dx, double dy) {
  TraverseInfo& from = stations[station];
  PointInfo& fore = from.forePoints.front();
  fore.x = from.stationPoint.x + dx;
  fore.y = from.stationPoint.y + dy;
}

void SingleTraverse::moveForward(std::size_t station) {
  stations[station].stationPoint = stations[station - 1].forePoints.front();
  stations[station].backPoint = stations[station - 1].stationPoint;
}

bool SingleTraverse::appendAllPoints(std::vector<PointInfo>& list) const {
  if (stations.empty()) return false;
  list.push_back(stations.front().backPoint);
  for (TraverseInfo const& station : stations) list.push_back(station.stationPoint);
  list.push_back(stations.back().forePoints.front());
  return true;
}

}  // namespace kvn
