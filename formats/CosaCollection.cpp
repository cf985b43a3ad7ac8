#include "formats/CosaCollection.h"

#include "formats/detail/CosaReading.h"
#include "formats/detail/FieldText.h"
#include "formats/detail/LineSource.h"
#include "records/detail/Recorded.h"

#include <utils/Degree.h>
#include <utils/Number.h>

#include <ostream>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

using Observation = detail::CosaReading::Observation;

void fillMissing(Observation& first, Observation const& later) {
  if (first.angle < detail::kNotMeasured) first.angle = later.angle;
  if (first.distance < detail::kNotMeasured) first.distance = later.distance;
  first.hasAngle = first.hasAngle || later.hasAngle;
}

}  // namespace

std::vector<CosaStationInfo> const& CosaDataManage::getCosaData() const { return cosaData; }
void CosaDataManage::setCosaData(std::vector<CosaStationInfo> const& stations) { cosaData = stations; }

CosaCollection::CosaCollection() = default;
CosaCollection::~CosaCollection() = default;

Configure const& CosaCollection::getConfigure() const { return configure; }

void CosaCollection::setConfigure(Configure const& value) { configure = value; }

void CosaCollection::read(std::istream& stream) {
  knownPointList.clear();
  networkDataList.clear();
  detail::CosaReading reading;
  try {
    readLines(stream, reading);
  } catch (...) {
    networkDataList = reading.lines();
    throw;
  }
  reading.join([](Observation const&) { return false; }, fillMissing);
  networkDataList = reading.lines();
}

void CosaCollection::readLines(std::istream& stream, detail::CosaReading& reading) {
  std::string line;
  utils::Pieces fields;
  detail::LineSource source(stream);
  while (source.next(line)) {
    fields.cut(line, ',', false);
    if (source.lineNumber() == 1) {
      readHead(fields);
    } else if (fields.size() == 3) {
      readObservation(reading, fields);
    } else if (fields.size() == 1) {
      reading.beginStation(fields[0]);
    }
  }
}

void CosaCollection::readHead(utils::Pieces const& fields) {
  if (fields.size() != 3) throw detail::wrongFormat();
  configure.AngleError = static_cast<float>(utils::leadingNumber(fields[0]));
  configure.LineFixedError = static_cast<float>(utils::leadingNumber(fields[1]));
  configure.LineProportionError = static_cast<float>(utils::leadingNumber(fields[2]));
}

bool CosaCollection::readObservation(detail::CosaReading& reading, utils::Pieces const& fields) {
  std::string_view const kind = fields[1];
  if (!utils::isLikeNumber(fields[2])) return false;
  if (utils::isLikeNumber(kind)) {
    KnownPoint point;
    point.name = fields[0];
    point.x = utils::leadingNumber(kind);
    point.y = utils::leadingNumber(fields[2]);
    knownPointList.push_back(std::move(point));
    return true;
  }
  if (kind == "L") {
    Observation& direction = reading.add(fields[0]);
    utils::Degree const angle(utils::Degree::bytesToDouble(fields[2], utils::DegreeToDDPMMSS, &direction.hasAngle));
    direction.angle = angle.toRadian();
    return true;
  }
  if (kind != "S") return false;
  double const distance = utils::leadingNumber(fields[2]);
  reading.add(fields[0]).distance = distance;
  return true;
}

std::vector<ExportStation> CosaCollection::convertData(std::vector<NetworkDataInfo> const& lines) const {
  std::vector<ExportStation> stations;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    NetworkDataInfo const& line = lines[i];
    if (i == 0 || line.start_name != lines[i - 1].start_name) stations.push_back({line.start_name, {}, {}});
    stations.back().directions.push_back({line.end_name, line.horizontal_angle});
    stations.back().distances.push_back({line.end_name, line.horizontal_distance});
  }
  return stations;
}

void CosaCollection::writeHead(std::ostream& stream) const {
  stream << detail::general6(configure.AngleError) << ',' << detail::general6(configure.LineFixedError) << ','
         << detail::general6(configure.LineProportionError) << '\n';
  for (KnownPoint const& point : knownPointList) {
    stream << point.name << ',' << detail::fixed4(point.x) << ',' << detail::fixed4(point.y) << '\n';
  }
}

void CosaCollection::writeDirection(std::ostream& stream, std::string const& target, double radians) {
  stream << target << ",L," << detail::dms(radians) << '\n';
}

void CosaCollection::writeDistance(std::ostream& stream, std::string const& target, double metres) {
  if (metres > detail::kNotRecorded) stream << target << ",S," << detail::fixed4(metres) << '\n';
}

void CosaCollection::write(std::ostream& stream) {
  writeHead(stream);
  for (ExportStation const& station : convertData(networkDataList)) {
    stream << station.name << '\n';
    for (OutView const& view : station.directions) writeDirection(stream, view.name, view.value);
    for (OutView const& view : station.distances) writeDistance(stream, view.name, view.value);
  }
}

}  // namespace kvn
