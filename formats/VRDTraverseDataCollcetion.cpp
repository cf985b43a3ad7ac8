#include "formats/VRDTraverseDataCollcetion.h"

#include "core/DataException.h"
#include "formats/detail/FieldText.h"
#include "formats/detail/LineSource.h"
#include "formats/detail/TraverseReading.h"
#include "records/detail/Messages.h"

#include <utils/Degree.h>
#include <utils/Number.h>
#include <utils/Pieces.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <istream>
#include <ostream>
#include <streambuf>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

constexpr std::size_t kStationFields = 7;
constexpr std::size_t kSightFields = 10;
// Coordinates below this in size are zero, which means that the point is not known; metres, strict.
constexpr double kNoCoordinate = 1e-5;

using Fields = utils::Pieces;

bool isZero(double coordinate) { return std::abs(coordinate) < kNoCoordinate; }

double angle(std::string_view text) {
  return utils::Degree(utils::Degree::bytesToDouble(text, utils::DegreeToDDPMMSS)).toRadian();
}

void readCoordinates(Fields const& fields, std::size_t first, TraverseDataInfo& row) {
  row.N = detail::requiredNumber(fields[first]);
  row.E = detail::requiredNumber(fields[first + 1]);
  row.Z = detail::requiredNumber(fields[first + 2]);
}

void readNameAndHeight(Fields const& fields, TraverseDataInfo& row) {
  row.name = fields[1];
  row.instrument = utils::leadingNumber(fields[2]);
}

void readStation(Fields const& fields, TraverseDataInfo& row) {
  row.pointType = TraversePointType::StationPoint;
  readNameAndHeight(fields, row);
  readCoordinates(fields, 4, row);
  row.isKnown = !(isZero(row.N) && isZero(row.E) && isZero(row.Z));
}

void readSight(Fields const& fields, TraverseDataInfo& row) {
  row.pointType = TraversePointType::PrismPoint;
  readNameAndHeight(fields, row);
  row.horizontal_angle = angle(fields[4]);
  row.vertical_angle = angle(fields[5]);
  row.isSlantDistanceHave = !fields[6].empty();
  if (row.isSlantDistanceHave) {
    row.slant_distance = detail::requiredNumber(fields[6]);
    row.horizontal_distance = std::abs(row.slant_distance * std::sin(row.vertical_angle));
  }
  readCoordinates(fields, 7, row);
}

void writeCoordinates(std::ostream& stream, TraverseDataInfo const& row) {
  stream << ',' << detail::fixed4(row.N) << ',' << detail::fixed4(row.E) << ',' << detail::fixed4(row.Z);
}

/// False for a row that has no line in this format.
bool writeRow(std::ostream& stream, TraverseDataInfo const& row) {
  bool const isStation = row.pointType == TraversePointType::StationPoint;
  if (!isStation && row.pointType != TraversePointType::PrismPoint) return false;
  stream << (isStation ? "STA," : "SC,") << row.name << ',' << detail::general6(row.instrument) << ',';
  if (!isStation) {
    stream << ',' << detail::dms(row.horizontal_angle) << ',' << detail::dms(row.vertical_angle) << ','
           << detail::fixed4(row.slant_distance);
  }
  writeCoordinates(stream, row);
  return true;
}

}  // namespace

VRDTraverseDataCollcetion::VRDTraverseDataCollcetion() = default;

void VRDTraverseDataCollcetion::read(std::istream& stream) {
  detail::reserveRows(stream, traverseDataList);
  detail::readTraverse(stream, traverseDataList, {});
}

void detail::reserveRows(std::istream& stream, std::vector<TraverseDataInfo>& rows) {
  std::streampos const start = stream.tellg();
  if (start == std::streampos(-1)) return;
  std::streambuf& buffer = *stream.rdbuf();
  std::array<char, 1 << 14> piece{};
  std::size_t lines = 1;
  std::size_t size = 0;
  try {
    for (std::streamsize count = 1; count > 0; size += static_cast<std::size_t>(count)) {
      count = buffer.sgetn(piece.data(), static_cast<std::streamsize>(piece.size()));
      lines += static_cast<std::size_t>(std::count(piece.data(), piece.data() + count, '\n'));
    }
  } catch (std::ios_base::failure const&) {
    lines = 0;  // whoever reads the stream comes to the same place, and tells it
  }
  if (buffer.pubseekpos(start, std::ios_base::in) != start) return stream.setstate(std::ios_base::badbit);
  // A text of line ends alone is no reason to ask for the memory of as many rows.
  constexpr std::size_t kShortestRow = 14;  // "STA,,0,,0,0,0" and a line end
  rows.reserve(rows.size() + std::min(lines, size / kShortestRow + 1));
}

void detail::readTraverse(std::istream& stream, std::vector<TraverseDataInfo>& rows, TraverseLook const& look) {
  std::string groupId = TraverseDataInfo().groupId;
  std::string line;
  Fields fields;
  detail::LineSource source(stream);
  while (source.next(line)) {
    fields.cut(line, ',', false);
    TraverseDataInfo row;
    if (fields.size() == kStationFields && fields[0] == "STA") {
      readStation(fields, row);
      groupId = row.groupId;
    } else if (fields.size() == kSightFields && fields[0] == "SC") {
      readSight(fields, row);
      row.groupId = groupId;
    } else {
      throw DataException(Messages::tr("The line %1 is wrong").arg(source.lineNumber()).toStdString());
    }
    rows.push_back(std::move(row));
    if (look) look(source.lineNumber(), line, fields);
  }
}

void VRDTraverseDataCollcetion::write(std::ostream& stream) {
  for (std::size_t i = 0; i < traverseDataList.size(); ++i) {
    bool const isLast = i + 1 == traverseDataList.size();
    if (writeRow(stream, traverseDataList[i]) && !isLast) stream << '\n';
  }
}

}  // namespace kvn
