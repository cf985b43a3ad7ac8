// AlgorithmData from the rows of a field book.
#include "adjust/AlgorithmData.h"
#include "adjust/input/FaceMeans.h"
#include "adjust/input/Missing.h"
#include "core/AlgorithmException.h"
#include "core/DataException.h"
#include "records/TraverseDataInfo.h"
#include "records/VRDStations.h"
#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

VRDStations stationOf(TraverseDataInfo const& row) {
  VRDStations station;
  station.name = row.name;
  station.isKnown = row.isKnown;
  station.x = row.isKnown ? row.N : detail::kMissing;
  station.y = row.isKnown ? row.E : detail::kMissing;
  return station;
}

VRDSightInfo sightOf(TraverseDataInfo const& row) {
  return {row.name, row.horizontal_angle, row.vertical_angle, row.slant_distance,
          std::abs(row.slant_distance * std::sin(row.vertical_angle))};
}

/// Appends the row to the stations; `number` counts from 1.
void group(TraverseDataInfo const& row, std::size_t number, std::vector<VRDStations>& stations) {
  if (row.pointType == TraversePointType::PrismPoint) {
    if (row.name.empty()) throw QLogicError(Messages::tr("the line %1 row_number is empty").arg(number));
    stations.back().sights.push_back(sightOf(row));
  } else if (row.pointType == TraversePointType::StationPoint) {
    if (row.name.empty()) throw QLogicError(Messages::tr("The line %1 error").arg(number));
    stations.push_back(stationOf(row));
  }
}

std::vector<VRDStations> groupByStation(std::vector<TraverseDataInfo> const& rows) {
  std::vector<VRDStations> stations;
  if (rows.empty()) return stations;
  if (rows.front().pointType != TraversePointType::StationPoint) {
    throw DataException(Messages::tr("The line %1 error").arg(1).toStdString());
  }
  stations.push_back(stationOf(rows.front()));
  for (std::size_t i = 1; i < rows.size(); ++i) group(rows[i], i + 1, stations);
  return stations;
}

}  // namespace

void AlgorithmData::initVRDData(std::vector<TraverseDataInfo> const& rows, ControlPoints control) {
  for (VRDStations const& station : groupByStation(rows)) readFaces(station);
  detail::reduceDistances(stations, knPoints);
  judgeStationPointNameRepeat();
  judgeStationCount();
  getKnPointsCount();
  stationsCount = static_cast<int>(stations.size());
  getPointsCount();
  getDirectionsCount();
  getLinesCount();
  getAzimuthCount();
  if (control == ControlPoints::AtLeastTwo) judgetKnpointCount();
  judgeKnPointNameRepeat();
  judgeSightPointNameRepeat();
}

void AlgorithmData::readFaces(VRDStations const& station) {
  if (station.isKnown) {
    PointInfo point;
    point.name = station.name;
    point.x = station.x;
    point.y = station.y;
    knPoints.push_back(std::move(point));
  }
  if (station.sights.size() % 2 != 0) {
    throw QLogicError(Messages::tr("Station point name %1 error").arg(QString::fromStdString(station.name)));
  }
  if (!station.sights.empty()) stations.push_back(detail::faceMeans(station));
}

bool AlgorithmData::deleteLastStationDistance(LineInfo const& line) const {
  auto const isStart = [&line](PointInfo const& point) { return point.name == line.start_name; };
  auto const isEnd = [&line](PointInfo const& point) { return point.name == line.end_name; };
  auto const start = std::find_if(knPoints.begin(), knPoints.end(), isStart);
  return start != knPoints.end() && std::any_of(start + 1, knPoints.end(), isEnd);
}

void AlgorithmData::calculateStationDistance(StationInfo& first, StationInfo& second) const {
  for (LineInfo& forward : first.lines) {
    for (LineInfo& backward : second.lines) {
      if (forward.start_name != backward.end_name || forward.end_name != backward.start_name) continue;
      forward.value = backward.value = (forward.value + backward.value) / 2;
    }
  }
}

}  // namespace kvn
