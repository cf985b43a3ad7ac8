#include "adjust/ConnectTraverse.h"

#include "adjust/traverse/SingleTraverseData.h"
#include "adjust/traverse/TraverseStations.h"

#include <utility>

namespace kvn {
namespace {

constexpr detail::StationRule kConnectRule{AlgorithmException::StationNameRepeat, false, true};

}  // namespace

TraverseEndException::TraverseEndException(std::string station, std::string fore)
    : AlgorithmException(KnownPointNotEnough, std::string()),
      lastStation(std::move(station)),
      forePoint(std::move(fore)) {}

TraverseEndException::~TraverseEndException() = default;

ConnectTraverse::ConnectTraverse() = default;
ConnectTraverse::ConnectTraverse(ConnectTraverse const&) = default;
ConnectTraverse& ConnectTraverse::operator=(ConnectTraverse const&) = default;
ConnectTraverse::~ConnectTraverse() = default;

void ConnectTraverse::readAlgorithmData(AlgorithmData const& data) {
  beginInput(data);
  std::vector<TraverseInfo> list = detail::readStations(data, kConnectRule, own->pointNames);
  std::size_t const start = takeOrientedStarts(list);
  if (start == list.size()) throw AlgorithmException(AlgorithmException::StationNotEnough, std::string());
  std::vector<TraverseInfo> chain{list[start]};
  if (!detail::followForePoints(chain, list)) throw AlgorithmException(AlgorithmException::DataError, "Data error");
  takeEnd(chain.back());
  takeChain(std::move(chain), data);
}

void ConnectTraverse::takeEnd(TraverseInfo& last) const {
  PointInfo& fore = last.forePoints.front();
  if (!isKnown(last.stationPoint) || !isKnown(fore)) throw TraverseEndException(last.stationPoint.name, fore.name);
  takeKnown(last.stationPoint);
  takeKnown(fore);
}

bool ConnectTraverse::judgeStartStation(TraverseInfo const& station) const { return isOrientedStart(station); }

double ConnectTraverse::startAzimuth() const {
  return calculateAzimuth(own->stations.front().backPoint, own->stations.front().stationPoint);
}

double ConnectTraverse::endAzimuth() const {
  return calculateAzimuth(own->stations.back().stationPoint, own->stations.back().forePoints.front());
}

// The sum differs from the misclosure by full circles, as many as the shape of the traverse makes. A misclosure is
// small, so that it is what is left nearest to zero: folded only into ±2π, one of -10" could stay as 360° - 10" and be
// spread over the angles as such.
void ConnectTraverse::calculateAngleCloseError() {
  own->angleCloseError =
      sumOfAngles() + (startAzimuth() - endAzimuth() - static_cast<double>(own->stations.size()) * own->m_PI);
  while (own->angleCloseError > own->m_PI) own->angleCloseError -= 2.0 * own->m_PI;
  while (own->angleCloseError < -own->m_PI) own->angleCloseError += 2.0 * own->m_PI;
}

void ConnectTraverse::calculateEachAzimuth() {
  own->azimuths.push_back(startAzimuth());
  carryAzimuths();
  own->azimuths.push_back(endAzimuth());
}

void ConnectTraverse::calculateDeltaXY() { addLegs(); }

void ConnectTraverse::calculateCloseDeltaXY() {
  closeOnLastStation();
  calculateRelativeError();
}

// The last station keeps its known coordinates; the fore point before it comes out at them to within rounding.
void ConnectTraverse::calculateXY() {
  for (std::size_t i = 0; i + 1 < own->stations.size(); ++i) {
    checkCancelAndThrow();
    TraverseInfo& station = own->stations[i];
    if (i > 0) station.stationPoint = own->stations[i - 1].forePoints.front();
    station.adjustedDeltaX = station.deltaX + correctionOfX(i);
    station.adjustedDeltaY = station.deltaY + correctionOfY(i);
    placeForePoint(i, station.adjustedDeltaX, station.adjustedDeltaY);
    own->stations[i + 1].backPoint = station.stationPoint;
  }
}

bool ConnectTraverse::getPoints(std::vector<PointInfo>& list) const { return appendAllPoints(list); }

}  // namespace kvn
