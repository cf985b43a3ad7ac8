#include "formats/FileData.h"

#include "adjust/CommonFunction.h"
#include "adjust/NameIndex.h"
#include "adjust/input/FaceMeans.h"
#include "adjust/input/FirstRepeat.h"
#include "adjust/input/Missing.h"
#include "core/AlgorithmException.h"
#include "core/DataException.h"
#include "formats/detail/FileAccess.h"
#include "formats/detail/LineSource.h"
#include "records/VRDStations.h"

#include <utils/ByteStream.h>
#include <utils/Circle.h>
#include <utils/FileText.h>
#include <utils/Number.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

using Fields = utils::Pieces;

// The words of the failures; the host knows them, so they are not translated.
constexpr char const* kSpace = "SPACE";
constexpr char const* kError = "ERROR";
constexpr char const* kNoKnownPoint = "NO_KN_POINT";
constexpr char const* kNoStation = "NO_STATION";

constexpr double kMillimetresPerMetre = 1000.0;
constexpr double kPartsPerMillion = 1000000.0;
// The first sight of a station is the zero of its circle: at most 25" above, or from 359.5 degrees on; in units of π.
constexpr double kAboveZero = 3.8580246913580246e-5;
constexpr double kBelowFullCircle = 1.9972222222222222;
// What `dmsToRad` lifts an angle by, with room for rounding: 25" still passes; radians.
constexpr double kDmsLift = 5e-12;

/// A field of digits and points, or of anything that a number with a minus begins.
double numberOf(int line, std::string_view text) {
  double number = HUGE_VAL;
  try {
    if (utils::isLikeNumber(text)) number = utils::leadingNumber(text);
  } catch (std::logic_error const&) {  // refused below
  }
  if (!std::isfinite(number)) throw DataException(line, kError);
  return number;
}

void require(bool good, int line) {
  if (!good) throw DataException(line, kError);
}

float floatOf(int line, std::string_view text) {
  double const number = numberOf(line, text);
  require(std::abs(number) <= double(std::numeric_limits<float>::max()), line);
  return static_cast<float>(number);
}

/// The next line, in which a record is due.
bool nextRecord(detail::LineSource& source, std::string& line) {
  if (!source.nextBytes(line)) return false;
  if (line.find_first_not_of(' ') == std::string::npos) throw DataException(source.lineNumber(), kSpace);
  return true;
}

/// Blanks go, in names too.
void removeBlanks(std::string& line) { line.erase(std::remove(line.begin(), line.end(), ' '), line.end()); }

std::string suffixOf(std::string const& path) {
  auto const point = path.rfind('.');
  return point == std::string::npos ? std::string() : path.substr(point + 1);
}

bool isKnown(VRDStations const& station) { return station.x < detail::kMissingFrom; }

PointInfo pointOf(std::string_view name, double x, double y) {
  PointInfo point;
  point.name = name;
  point.x = x;
  point.y = y;
  return point;
}

}  // namespace

/// The lines of a traverse file, grouped by station.
struct FileData::TraverseReader {
  FileData& data;
  std::vector<VRDStations> list{};

  void readLine(int line, Fields const& fields) {
    if (fields.size() == 7 && fields[0] == "STA") {
      readStation(line, fields);
    } else {
      require(fields.size() == 10 && fields[0] == "SC" && !list.empty(), line);
      readSight(line, fields);
    }
  }

  void readStation(int line, Fields const& fields) {
    require(!fields[1].empty(), line);
    VRDStations station;
    station.name = fields[1];
    station.x = numberOf(line, fields[4]);
    station.y = numberOf(line, fields[5]);
    double const height = numberOf(line, fields[6]);
    if (station.x == 0.0 && station.y == 0.0 && height == 0.0) station.x = station.y = detail::kMissing;
    station.isKnown = kvn::isKnown(station);
    list.push_back(std::move(station));
  }

  void readSight(int line, Fields const& fields) {
    if (fields[1].empty()) throw DataException(line, kSpace);
    VRDSightInfo sight;
    sight.name = fields[1];
    sight.horizontalAngle = data.dmsToRad(numberOf(line, fields[4]), line);
    sight.verticalAngle = data.dmsToRad(numberOf(line, fields[5]), line);
    sight.slantDistance = fields[6].empty() ? 0.0 : numberOf(line, fields[6]);
    sight.horizontalDistance = std::abs(sight.slantDistance * std::sin(sight.verticalAngle));
    list.back().sights.push_back(std::move(sight));
  }

  void takeMeans() {
    for (VRDStations const& station : list) {
      if (isKnown(station)) data.knowPoints.push_back(pointOf(station.name, station.x, station.y));
      if (station.sights.size() % 2 != 0) throw DataException(station.name, kError);
      if (station.sights.empty()) continue;
      double const first = station.sights[0].horizontalAngle;
      if (first > kAboveZero * data.m_PI + kDmsLift && first < kBelowFullCircle * data.m_PI) {
        throw DataException(station.name, kError);
      }
      data.stations.push_back(detail::faceMeans(station));
    }
    detail::reduceDistances(data.stations, data.knowPoints);
  }
};

/// The lines of a COSA file behind its head.
struct FileData::CosaReader {
  FileData& data;
  bool inStation = false;
  StationInfo station{};

  void readLine(int line, Fields const& fields) {
    require(fields.size() == 3 || (fields.size() == 1 && line > 2), line);
    if (fields.size() == 1) {
      beginStation(fields[0]);
    } else if (inStation) {
      readObservation(line, fields);
    } else {
      data.knowPoints.push_back(pointOf(fields[0], numberOf(line, fields[1]), numberOf(line, fields[2])));
    }
  }

  void beginStation(std::string_view name) {
    if (inStation) data.stations.push_back(std::move(station));
    inStation = true;
    station = StationInfo();
    station.name = name;
  }

  void readObservation(int line, Fields const& fields) {
    std::string_view const type = fields[1];
    double const value = numberOf(line, fields[2]);
    if (type == "L" || type == "l") {
      station.directions.push_back({{}, std::string(fields[0]), data.dmsToRad(value, line), 1});
    } else if (type == "S" || type == "s") {
      station.lines.push_back({station.name, std::string(fields[0]), value, 1});
    } else {
      require(type == "T" || type == "t", line);
      station.azimuths.push_back({station.name, std::string(fields[0]), data.dmsToRad(value, line), 1});
    }
  }

  void finish() {
    if (!station.directions.empty()) data.stations.push_back(std::move(station));
  }
};

FileData::FileData(std::string const& path) : m_PI(utils::kPi) {
  clear();
  if (!path.empty()) readFileData(path);
}

void FileData::clear() {
  Configure const defaults;
  angleError = defaults.AngleError;
  lineFixedError = static_cast<float>(double(defaults.LineFixedError) / kMillimetresPerMetre);
  lineProportionError = static_cast<float>(double(defaults.LineProportionError) / kPartsPerMillion);
  knowPoints.clear();
  stations.clear();
  count();
}

bool FileData::readFileData(std::string const& path) {
  std::string const suffix = suffixOf(path);
  if (suffix == "txt") return readVRDFileData(path);
  if (suffix == "IN2") return readCosaFileData(path);
  return true;
}

bool FileData::readVRDFileData(std::string const& path) {
  auto const bytes = detail::wholeFile(utils::readLocalFile(path));
  if (!bytes) return false;
  utils::ByteStream stream(*bytes);
  clear();
  TraverseReader reader{*this};
  std::string line;
  detail::LineSource source(stream);
  Fields fields;
  while (nextRecord(source, line)) {
    removeBlanks(line);
    fields.cut(line, ',', false);
    reader.readLine(source.lineNumber(), fields);
  }
  reader.takeMeans();
  checkAndCount();
  return true;
}

bool FileData::readCosaFileData(std::string const& path) {
  auto const bytes = detail::wholeFile(utils::readLocalFile(path));
  if (bytes) readCosaContents(*bytes);
  return bytes.has_value();
}

void FileData::readCosaContents(std::string const& bytes) {
  utils::ByteStream stream(bytes);
  clear();
  CosaReader reader{*this};
  std::string line;
  detail::LineSource source(stream);
  Fields fields;
  while (nextRecord(source, line)) {
    removeBlanks(line);
    fields.cut(line, ',', true);
    if (source.lineNumber() == 1) {
      readHead(1, fields);
    } else {
      reader.readLine(source.lineNumber(), fields);
    }
  }
  reader.finish();
  checkAndCount();
}

bool FileData::readCosaFileFirstLine(std::string const& path) {
  if (suffixOf(path) != "IN2") return false;
  auto const bytes = detail::wholeFile(utils::readLocalFile(path));
  if (!bytes) return false;
  readCosaContents(*bytes);
  utils::ByteStream stream(*bytes);
  std::string line;
  detail::LineSource source(stream);
  if (!nextRecord(source, line)) return false;
  removeBlanks(line);
  Fields fields;
  fields.cut(line, ',', true);
  readHead(1, fields);
  return true;
}

void FileData::readHead(int line, Fields const& fields) {
  require(fields.size() == 3, line);
  angleError = floatOf(line, fields[0]);
  lineFixedError = static_cast<float>(double(floatOf(line, fields[1])) / kMillimetresPerMetre);
  lineProportionError = static_cast<float>(double(floatOf(line, fields[2])) / kPartsPerMillion);
  if (angleError == 0.0F || lineFixedError == 0.0F || lineProportionError == 0.0F) throw DataException(kError);
}

void FileData::checkAndCount() {
  judgetKnpointCountZero();
  judgeStationCountZero();
  judgeKnPointNameRepeat();
  judgeStationPointNameRepeat();
  judgeSightPointNameRepeat();
  count();
}

void FileData::judgetKnpointCountZero() const {
  if (knowPoints.empty()) throw DataException(kNoKnownPoint);
}

void FileData::judgeStationCountZero() const {
  if (stations.empty()) throw DataException(kNoStation);
}

namespace {

std::string const& nameOfPoint(PointInfo const& point) { return point.name; }
std::string const& nameOfStation(StationInfo const& station) { return station.name; }
std::string const& nameOfTarget(LineInfo const& direction) { return direction.end_name; }

template <typename List, typename NameOf>
void refuseRepeat(List const& list, NameOf nameOf) {
  std::string const* const name = detail::firstRepeat(list, nameOf);
  if (name != nullptr) throw DataException(*name, kError);
}

int size(std::size_t count) { return static_cast<int>(count); }

}  // namespace

void FileData::judgeKnPointNameRepeat() const { refuseRepeat(knowPoints, nameOfPoint); }
void FileData::judgeStationPointNameRepeat() const { refuseRepeat(stations, nameOfStation); }
void FileData::judgeSightPointNameRepeat() const {
  for (StationInfo const& station : stations) refuseRepeat(station.directions, nameOfTarget);
}

void FileData::count() {
  NameIndex known;
  for (PointInfo const& point : knowPoints) known.numberOf(point.name);
  knowPointsNumber = size(knowPoints.size());
  stationsNumber = size(stations.size());
  pointsNumber = knowPointsNumber + stationsNumber;
  directionsNumber = linesNumber = azimuthNumber = 0;
  for (StationInfo const& station : stations) {
    if (known.contains(station.name)) --pointsNumber;
    directionsNumber += size(station.directions.size());
    linesNumber += size(station.lines.size());
    azimuthNumber += size(station.azimuths.size());
  }
}

std::vector<StationInfo> FileData::getStation() const { return stations; }
std::vector<PointInfo> FileData::getKnowPoint() const { return knowPoints; }

Configure FileData::getCosaConfig() const {
  Configure configure;
  configure.AngleError = angleError;
  configure.LineFixedError = lineFixedError;
  configure.LineProportionError = lineProportionError;
  return configure;
}

std::vector<std::string> FileData::split(std::string const& text, char delimiter) const {
  std::string rest = text;
  deleteStr(rest, " ");
  return CommonFunction::split(rest, delimiter, false);
}

std::vector<std::string> FileData::split(std::string const& text, std::string const& removed, char delimiter) const {
  std::string rest = text;
  deleteStr(rest, removed);
  return CommonFunction::split(rest, delimiter, true);
}

// Each occurrence goes as soon as its last byte is there, which is what removing the first one again and again does.
void FileData::deleteStr(std::string& text, std::string const& removed) const {
  if (removed.empty()) return;
  std::size_t kept = 0;
  for (char const byte : text) {
    text[kept++] = byte;
    bool const isThere = kept >= removed.size() && text.compare(kept - removed.size(), removed.size(), removed) == 0;
    if (isThere) kept -= removed.size();
  }
  text.resize(kept);
}

bool FileData::judgeStringToDouble(std::string const& text) const { return CommonFunction::judgeStringToDouble(text); }
double FileData::dmsToRad(double dms) const { return CommonFunction::dmsToRad(dms) * (m_PI / CommonFunction::m_PI); }
Degree FileData::radToDms(double radians) const { return CommonFunction::radToDms(radians); }

double FileData::dmsToRad(double dms, int line) const {
  try {
    return CommonFunction::dmsToRad(dms, line) * (m_PI / CommonFunction::m_PI);
  } catch (AlgorithmException const&) {
    throw DataException(line, kError);
  }
}

}  // namespace kvn
