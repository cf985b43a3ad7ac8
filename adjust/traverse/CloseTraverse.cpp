#include "adjust/CloseTraverse.h"

#include "adjust/linalg/Index.h"
#include "adjust/traverse/SingleTraverseData.h"
#include "adjust/traverse/TraverseStations.h"

#include <utility>

namespace kvn {
namespace {

constexpr detail::StationRule kRule{AlgorithmException::StationNotEnough, true, false};

}  // namespace

CloseTraverse::CloseTraverse() = default;
CloseTraverse::CloseTraverse(CloseTraverse const&) = default;
CloseTraverse& CloseTraverse::operator=(CloseTraverse const&) = default;
CloseTraverse::~CloseTraverse() = default;

void CloseTraverse::readAlgorithmData(AlgorithmData const& data) {
  beginInput(data);
  own->stationsCount = data.stationsCount;
  std::vector<TraverseInfo> list = detail::readStations(data, kRule, own->pointNames);
  for (TraverseInfo& station : list) takeKnown(station.stationPoint);
  std::size_t const start = findStart(list);
  own->stations = {list[start]};
  getStations(list);
  std::vector<TraverseInfo> chain = std::exchange(own->stations, {});
  requireClosed(chain);
  takeChain(std::move(chain), data);
}

/// Begun at another known station than the one that is oriented, the chain would close on a leg that was measured and
/// leave the known one to the observations.
std::size_t CloseTraverse::findStart(std::vector<TraverseInfo> const& list) const {
  std::size_t known = list.size();
  std::size_t oriented = list.size();
  int orientedCount = 0;
  for (std::size_t i = list.size(); i-- > 0;) {
    if (!judgeStartStation(list[i])) continue;
    known = i;
    if (!isOrientedStart(list[i])) continue;
    oriented = i;
    ++orientedCount;
  }
  if (known == list.size()) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No start data");
  return orientedCount == 1 ? oriented : known;
}

bool CloseTraverse::getStations(std::vector<TraverseInfo> const& list) {
  detail::followForePoints(own->stations, list);
  return own->stations.size() == detail::index(own->stationsCount);
}

void CloseTraverse::requireClosed(std::vector<TraverseInfo> const& chain) const {
  // First what the polygon ends on: of a target misspelt half-way the station before it is no fault.
  PointInfo const& fore = chain.back().forePoints.front();
  bool const isClosed = fore.number == chain.front().stationPoint.number;
  if (!isClosed) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, fore.name);
  PointInfo const& last = chain.back().stationPoint;
  if (!isKnown(last)) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, last.name);
}

bool CloseTraverse::judgeStartStation(TraverseInfo const& station) const { return isKnown(station.stationPoint); }

bool CloseTraverse::judgeKnPoint(std::string const& name) const {
  int const number = own->pointNames.find(name);
  return number >= 0 && detail::index(number) < own->knPoints.size();
}

void CloseTraverse::setFoldToNearest(bool fold) { own->foldsToNearest = fold; }

// By default no further than into ±2π: the sum of the inner angles is known as it stands, and what a polygon walked
// clockwise is off by, a full circle and more, stays to be seen.
void CloseTraverse::calculateAngleCloseError() {
  own->angleCloseError = sumOfAngles() - (static_cast<double>(own->stations.size()) - 2.0) * own->m_PI;
  double const bound = own->foldsToNearest ? own->m_PI : 2.0 * own->m_PI;
  while (own->angleCloseError > bound) own->angleCloseError -= 2.0 * own->m_PI;
  while (own->angleCloseError < -bound) own->angleCloseError += 2.0 * own->m_PI;
}

void CloseTraverse::calculateEachAzimuth() {
  for (TraverseInfo const& station : own->stations) {
    if (!judgeKnPoint(station.backPoint.name) || !judgeKnPoint(station.stationPoint.name)) continue;
    own->azimuths.push_back(calculateAzimuth(own->knPoints[detail::index(station.backPoint.number)],
                                             own->knPoints[detail::index(station.stationPoint.number)]));
  }
  if (own->azimuths.size() != 1) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, std::string());
  carryAzimuths();
}

void CloseTraverse::calculateDeltaXY() {
  addLegs();
  closeOnLastStation();
}

void CloseTraverse::calculateCloseDeltaXY() {
  calculateRelativeError();
  for (std::size_t i = 0; i + 1 < own->stations.size(); ++i) {
    own->stations[i].adjustedDeltaX = own->stations[i].deltaX + correctionOfX(i);
    own->stations[i].adjustedDeltaY = own->stations[i].deltaY + correctionOfY(i);
  }
}

void CloseTraverse::calculateXY() {
  for (std::size_t i = 0; i + 1 < own->stations.size(); ++i) {
    checkCancelAndThrow();
    placeForePoint(i, own->stations[i].adjustedDeltaX, own->stations[i].adjustedDeltaY);
    moveForward(i + 1);
  }
  PointInfo& closing = own->stations.back().forePoints.front();
  PointInfo const& known = own->knPoints[detail::index(closing.number)];
  closing.x = known.x;
  closing.y = known.y;
  own->stations.front().backPoint = own->stations.back().stationPoint;
}

bool CloseTraverse::getPoints(std::vector<PointInfo>& list) const {
  for (TraverseInfo const& station : own->stations) list.push_back(station.stationPoint);
  return !own->stations.empty();
}

}  // namespace kvn
