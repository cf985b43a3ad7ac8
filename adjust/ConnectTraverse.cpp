#include "adjust/ConnectTraverse.h"

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
  deltaXList.clear();
  deltaYList.clear();
  std::vector<TraverseInfo> list = detail::readStations(data, kConnectRule, pointNames);
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
  return calculateAzimuth(stations.front().backPoint, stations.front().stationPoint);
}

double ConnectTraverse::endAzimuth() const {
  return calculateAzimuth(stations.back().stationPoint, stations.back().forePoints.front());
}

// The sum differs from the misclosure by full circles, as many as the shape of the traverse makes. A misclosure is
// small, so that it is what is left nearest to zero: folded only into ±2π, one of -10" could stay as 360° - 10" and be
// spread over the angles as such.
void ConnectTraverse::calculateAngleCloseError() {
  angleCloseError = sumOfAngles() + (startAzimuth() - endAzimuth() - static_cast<double>(stations.size()) * m_PI);
  while (angleCloseError > m_PI) angleCloseError -= 2.0 * m_PI;
  while (angleCloseError < -m_PI) angleCloseError += 2.0 * m_PI;
}

void ConnectTraverse::calculateEachAzimuth() {
  azimuths.push_back(startAzimuth());
  carryAzimuths();
  azimuths.push_back(endAzimuth());
}

void ConnectTraverse::calculateDeltaXY() {
  addLegs();
  for (std::size_t i = 0; i + 1 < stations.size(); ++i) {
    deltaXList.push_back(stations[i].deltaX);
    deltaYList.push_back(stations[i].deltaY);
  }
}

void ConnectTraverse::calculateCloseDeltaXY() {
  closeOnLastStation();
  calculateRelativeError();
}

// The last station keeps its known coordinates; the fore point before it comes out at them to within rounding.
void ConnectTraverse::calculateXY() {
  for (std::size_t i = 0; i + 1 < stations.size(); ++i) {
    checkCancelAndThrow();
    TraverseInfo& station = stations[i];
    if (i > 0) station.stationPoint = stations[i - 1].forePoints.front();
    station.adjustedDeltaX = station.deltaX + correctionOfX(i);
    station.adjustedDeltaY = station.deltaY + correctionOfY(i);
    placeForePoint(i, station.adjustedDeltaX, station.adjustedDeltaY);
    stations[i + 1].backPoint = station.stationPoint;
  }
}

bool ConnectTraverse::getPoints(std::vector<PointInfo>& list) const { return appendAllPoints(list); }

}  // namespace kvn
