#include "adjust/AlgorithmData.h"

#include "adjust/NameIndex.h"
#include "adjust/input/FirstRepeat.h"
#include "adjust/input/KnownEnds.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Poll.h"
#include "core/AlgorithmException.h"
#include "records/detail/Recorded.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

namespace kvn {
namespace {

// The bounds of an angle, which are the number 360 although the values are radians: they let every circle reading pass.
constexpr double kAngleBound = 360.0;
constexpr double kAngleSlack = 0.001;

/// False for NaN, infinity and the missing-value marker.
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

AlgorithmData::AlgorithmData() : m_PI(utils::kPi) {}
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
  if (lines.empty()) stations.emplace_back();
  for (std::size_t begin = 0; begin < lines.size();) {
    std::size_t end = begin + 1;
    while (end < lines.size() && lines[end].start_name == lines[begin].start_name) ++end;
    readStation(lines, begin, end, missing);
    begin = end;
  }
}

void AlgorithmData::readStation(std::vector<NetworkDataInfo> const& lines, std::size_t begin, std::size_t end,
                                MissingDirection missing) {
  StationInfo station;
  station.name = lines[begin].start_name;
  auto const isDistance = [](NetworkDataInfo const& line) { return line.horizontal_distance > detail::kNotMeasured; };
  auto const isDirection = [missing](NetworkDataInfo const& line) {
    return missing != MissingDirection::IsLeftOut || line.horizontalAngleFlag;
  };
  auto const count = [&](auto const& isOne) {
    return static_cast<std::size_t>(std::count_if(&lines[begin], &lines[begin] + (end - begin), isOne));
  };
  station.lines.reserve(count(isDistance));
  station.directions.reserve(count(isDirection));
  for (std::size_t i = begin; i < end; ++i) {
    NetworkDataInfo const& line = lines[i];
    double const distance = line.horizontal_distance;
    if (distance < -detail::kNotMeasured || !usable(distance) || !isAngleInRange(line.horizontal_angle)) {
      throw AlgorithmException(static_cast<int>(i), AlgorithmException::DataError);
    }
    if (isDistance(line)) station.lines.push_back(observation(line, distance));
    if (!isDirection(line)) continue;
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
    std::move(station.lines.begin(), station.lines.end(), std::back_inserter(lines));
  }
  if (!kept.empty()) {
    std::vector<LineInfo>& lines = kept.front().lines;
    lines.insert(lines.begin(), std::make_move_iterator(waiting.begin()), std::make_move_iterator(waiting.end()));
  }
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

// A name that the station has or that its direction of the same place has is known already: most distances are those of
// the directions beside them, so that a glance spares the look-up.
NameIndex observedNames(AlgorithmData const& data, std::function<void()> const& poll) {
  detail::Effort effort(poll);
  NameIndex names;
  for (StationInfo const& station : data.stations) {
    names.numberOf(station.name);
    for (LineInfo const& direction : station.directions) names.numberOf(direction.end_name);
    for (std::size_t i = 0; i < station.lines.size(); ++i) {
      effort.step();
      LineInfo const& line = station.lines[i];
      if (line.start_name != station.name) names.numberOf(line.start_name);
      bool const isSighted = i < station.directions.size() && station.directions[i].end_name == line.end_name;
      if (!isSighted) names.numberOf(line.end_name);
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
  detail::KnownEnds known(knPoints);
  linesCount = 0;
  for (StationInfo const& station : stations) {
    for (LineInfo const& line : station.lines) linesCount += known.areBoth(line) ? 0 : 1;
  }
}

void AlgorithmData::getKnPointsCount() { knPointsCount = static_cast<int>(knPoints.size()); }

void AlgorithmData::getAzimuthCount() {
  for (StationInfo const& station : stations) azimuthCount += static_cast<int>(station.azimuths.size());
}

}  // namespace kvn
