#include "adjust/AlgorithmData.h"

#include "adjust/NameIndex.h"
#include "adjust/detail/FirstRepeat.h"
#include "adjust/detail/Missing.h"
#include "core/AlgorithmException.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace kvn {
namespace {

// A distance at or below this in size is none; metres.
constexpr double kNoDistance = 1e-6;
// The bounds of an angle, which are the number 360 although the values are radians: they let every circle reading pass.
constexpr double kAngleBound = 360.0;
constexpr double kAngleSlack = 0.001;

/// Neither a marker of a missing value nor anything like it.
bool usable(double value) { return std::abs(value) < detail::kMissingFrom; }

bool isAngleInRange(double angle) {
  return std::abs(angle) < kAngleSlack || std::abs(angle - kAngleBound) < kAngleSlack ||
         (angle >= 0.0 && angle <= kAngleBound);
}

LineInfo observation(NetworkDataInfo const& line, double value) { return {line.start_name, line.end_name, value, 1}; }

std::string const& nameOfPoint(PointInfo const& point) { return point.name; }
std::string const& nameOfStation(StationInfo const& station) { return station.name; }
std::string const& nameOfTarget(LineInfo const& direction) { return direction.end_name; }

}  // namespace

AlgorithmData::AlgorithmData() : m_PI(std::acos(-1.0)) {}
AlgorithmData::AlgorithmData(AlgorithmData const&) = default;
AlgorithmData::AlgorithmData(AlgorithmData&&) noexcept = default;
AlgorithmData& AlgorithmData::operator=(AlgorithmData const&) = default;
AlgorithmData& AlgorithmData::operator=(AlgorithmData&&) noexcept = default;
AlgorithmData::~AlgorithmData() = default;

void AlgorithmData::readNetworkData(Network const& network, MissingDirection missing) {
  readKnownPoints(network.knownPoints);
  readLines(network.lines, missing);
  if (missing == MissingDirection::IsLeftOut) joinStationsWithoutDirections();

  judgetKnpointCount();
  judgeStationCount();
  judgeKnPointNameRepeat();
  judgeStationPointNameRepeat();

  getKnPointsCount();
  stationsCount = static_cast<int>(stations.size());
  getPointsCount();
  getDirectionsCount();
  getLinesCount();
  getAzimuthCount();
}

void AlgorithmData::readKnownPoints(std::vector<KnownPoint> const& points) {
  for (KnownPoint const& known : points) {
    if (!usable(known.x) || !usable(known.y)) throw AlgorithmException(AlgorithmException::DataError, known.name);
    PointInfo point;
    point.name = known.name;
    point.x = known.x;
    point.y = known.y;
    knPoints.push_back(std::move(point));
  }
}

void AlgorithmData::readLines(std::vector<NetworkDataInfo> const& lines, MissingDirection missing) {
  StationInfo station;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    NetworkDataInfo const& line = lines[i];
    if (i > 0 && station.name != line.start_name) {
      stations.push_back(station);
      station = StationInfo();
    }
    station.name = line.start_name;

    double const distance = line.horizontal_distance;
    if (distance < -kNoDistance || !usable(distance) || !isAngleInRange(line.horizontal_angle)) {
      throw AlgorithmException(static_cast<int>(i), AlgorithmException::DataError);
    }
    if (distance > kNoDistance) station.lines.push_back(observation(line, distance));
    if (missing == MissingDirection::IsLeftOut && !line.horizontalAngleFlag) continue;
    station.directions.push_back(observation(line, std::clamp(line.horizontal_angle, 0.0, kAngleBound)));
  }
  stations.push_back(std::move(station));
}

/// The calculators want a direction at each station. A distance names both its ends, so that it counts the same at any
/// station: those of a station without directions go to the one before it, or after it at the start.
void AlgorithmData::joinStationsWithoutDirections() {
  std::vector<StationInfo> kept;
  std::vector<LineInfo> waiting;
  for (StationInfo& station : stations) {
    if (!station.directions.empty()) {
      kept.push_back(std::move(station));
      continue;
    }
    std::vector<LineInfo>& lines = kept.empty() ? waiting : kept.back().lines;
    lines.insert(lines.end(), station.lines.begin(), station.lines.end());
  }
  if (!kept.empty()) kept.front().lines.insert(kept.front().lines.begin(), waiting.begin(), waiting.end());
  stations = std::move(kept);
}

void AlgorithmData::judgeStationPointNameRepeat() const {
  std::string const* const name = detail::firstRepeat(stations, nameOfStation);
  if (name != nullptr) throw AlgorithmException(AlgorithmException::StationNameRepeat, *name);
}

void AlgorithmData::judgeStationCount() const {
  if (stations.empty()) throw AlgorithmException(AlgorithmException::StationNotEnough, std::string());
}

void AlgorithmData::judgetKnpointCount() const {
  if (knPoints.size() < 2) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, std::string());
}

void AlgorithmData::judgeKnPointNameRepeat() const {
  std::string const* const name = detail::firstRepeat(knPoints, nameOfPoint);
  if (name != nullptr) throw AlgorithmException(AlgorithmException::KnownPointNameRepeat, *name);
}

void AlgorithmData::judgeSightPointNameRepeat() const {
  for (StationInfo const& station : stations) {
    std::string const* const name = detail::firstRepeat(station.directions, nameOfTarget);
    if (name != nullptr) throw AlgorithmException(AlgorithmException::SightNameRepeat, *name);
  }
}

NameIndex observedNames(AlgorithmData const& data) {
  NameIndex names;
  for (StationInfo const& station : data.stations) {
    names.numberOf(station.name);
    for (LineInfo const& direction : station.directions) names.numberOf(direction.end_name);
    for (LineInfo const& line : station.lines) {
      names.numberOf(line.start_name);
      names.numberOf(line.end_name);
    }
  }
  return names;
}

void AlgorithmData::getPointsCount() { pointsCount = observedNames(*this).size(); }

void AlgorithmData::getDirectionsCount() {
  directionsCount = 0;
  for (StationInfo const& station : stations) directionsCount += static_cast<int>(station.directions.size());
}

void AlgorithmData::getLinesCount() {
  NameIndex known;
  for (PointInfo const& point : knPoints) known.numberOf(point.name);
  linesCount = 0;
  for (StationInfo const& station : stations) {
    for (LineInfo const& line : station.lines) {
      if (!known.contains(line.start_name) || !known.contains(line.end_name)) ++linesCount;
    }
  }
}

void AlgorithmData::getKnPointsCount() { knPointsCount = static_cast<int>(knPoints.size()); }

void AlgorithmData::getAzimuthCount() {
  for (StationInfo const& station : stations) azimuthCount += static_cast<int>(station.azimuths.size());
}

}  // namespace kvn
