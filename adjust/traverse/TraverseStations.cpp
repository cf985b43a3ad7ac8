#include "adjust/traverse/TraverseStations.h"

#include "core/DataException.h"
#include "records/detail/Messages.h"

#include <cmath>
#include <unordered_map>
#include <utility>

namespace kvn::detail {
namespace {

// Beyond this an angle has no whole second left, and taking off full circles would not end; radians.
constexpr double kLargestAngle = 1e6;

PointInfo numbered(std::string const& name, NameIndex& names) {
  PointInfo point;
  point.name = name;
  point.number = names.numberOf(name);
  return point;
}

void checkDirections(StationInfo const& station, StationRule const& rule) {
  std::vector<LineInfo> const& directions = station.directions;
  bool const wrongCount = rule.passesFurtherDirections ? directions.size() < 2 : directions.size() != 2;
  if (wrongCount) throw AlgorithmException(rule.wrongCount, station.name);
  double const angle = directions[1].value - directions[0].value;
  if (angle == 0.0) throw AlgorithmException(AlgorithmException::StationNotEnough, station.name);
  if (!(std::abs(angle) < kLargestAngle)) throw AlgorithmException(AlgorithmException::DataError, station.name);
}

double distanceOf(StationInfo const& station, StationRule const& rule) {
  std::size_t const count = station.lines.size();
  bool const counts = count == 1 || (count == 2 && rule.takesSecondDistance);
  return counts ? station.lines.back().value : 0.0;
}

TraverseInfo readStation(StationInfo const& station, StationRule const& rule, NameIndex& names) {
  checkDirections(station, rule);
  LineInfo const* back = &station.directions[0];
  LineInfo const* fore = &station.directions[1];
  if (back->value > fore->value) std::swap(back, fore);
  TraverseInfo result;
  result.stationPoint = numbered(station.name, names);
  result.backPoint = numbered(back->end_name, names);
  result.forePoints = {numbered(fore->end_name, names)};
  result.angle = fore->value - back->value;
  result.distance = distanceOf(station, rule);
  return result;
}

}  // namespace

std::vector<TraverseInfo> readStations(AlgorithmData const& data, StationRule const& rule, NameIndex& names) {
  std::vector<TraverseInfo> stations;
  stations.reserve(data.stations.size());
  for (StationInfo const& station : data.stations) stations.push_back(readStation(station, rule, names));
  return stations;
}

bool followForePoints(std::vector<TraverseInfo>& chain, std::vector<TraverseInfo> const& stations) {
  struct Place {
    TraverseInfo const* station;
    bool isInChain;
  };
  std::unordered_map<int, Place> placeOf;
  for (TraverseInfo const& station : stations) placeOf.try_emplace(station.stationPoint.number, Place{&station, false});
  placeOf[chain.front().stationPoint.number].isInChain = true;
  while (true) {
    auto const next = placeOf.find(chain.back().forePoints.front().number);
    if (next == placeOf.end()) return true;
    if (std::exchange(next->second.isInChain, true)) return false;
    chain.push_back(*next->second.station);
  }
}

void refuseWithoutDistance(TraverseInfo const& station) {
  QString const name = QString::fromStdString(station.stationPoint.name);
  throw DataException(Messages::tr("Station name [%1] distance is 0").arg(name).toStdString());
}

}  // namespace kvn::detail
