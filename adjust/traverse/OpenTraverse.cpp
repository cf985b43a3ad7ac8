#include "adjust/OpenTraverse.h"

#include "adjust/CommonFunction.h"
#include "adjust/traverse/SingleTraverseData.h"
#include "adjust/traverse/TraverseStations.h"

#include <utility>

namespace kvn {
namespace {

constexpr detail::StationRule kOpenRule{AlgorithmException::StationNotEnough, false, false};

}  // namespace

OpenTraverse::OpenTraverse() = default;
OpenTraverse::OpenTraverse(OpenTraverse const&) = default;
OpenTraverse& OpenTraverse::operator=(OpenTraverse const&) = default;
OpenTraverse::~OpenTraverse() = default;

void OpenTraverse::readAlgorithmData(AlgorithmData const& data) {
  readKnownPoints(data);
  std::vector<TraverseInfo> list = detail::readStations(data, kOpenRule, own->pointNames);
  std::size_t const start = takeOrientedStarts(list);
  if (start == list.size()) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No start data");
  std::vector<TraverseInfo> chain{list[start]};
  bool const ends = detail::followForePoints(chain, list);
  if (!ends || chain.size() != list.size()) throw AlgorithmException(AlgorithmException::DataError, "Data error");
  takeChain(std::move(chain), data);
}

bool OpenTraverse::judgeStartStation(TraverseInfo const& station) const { return isOrientedStart(station); }

bool OpenTraverse::calculateAdjust() {
  if (own->stations.empty()) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No start data");
  calculateEachAzimuth();
  calculateDeltaXY();
  calculateXY();
  return true;
}

void OpenTraverse::calculateEachAzimuth() {
  own->azimuths.push_back(calculateAzimuth(own->stations.front().backPoint, own->stations.front().stationPoint));
  for (TraverseInfo const& station : own->stations) own->azimuths.push_back(foreAzimuth(station.angle));
}

void OpenTraverse::calculateDeltaXY() {
  for (std::size_t i = 0; i < own->stations.size(); ++i) {
    checkCancelAndThrow();
    if (own->stations[i].distance == 0.0) detail::refuseWithoutDistance(own->stations[i]);
    calculateDelta(i);
  }
}

void OpenTraverse::calculateXY() {
  for (std::size_t i = 0; i < own->stations.size(); ++i) {
    checkCancelAndThrow();
    if (i > 0) moveForward(i);
    placeForePoint(i, own->stations[i].deltaX, own->stations[i].deltaY);
  }
}

bool OpenTraverse::getStationInfo(std::vector<TraverseInfo>& list) const {
  list = own->stations;
  for (TraverseInfo& station : list) station.angleDms = CommonFunction::radToDms(station.angle);
  return true;
}

bool OpenTraverse::getPoints(std::vector<PointInfo>& list) const { return appendAllPoints(list); }

}  // namespace kvn
