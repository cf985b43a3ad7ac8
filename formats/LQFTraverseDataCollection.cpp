#include "formats/LQFTraverseDataCollection.h"

#include "core/DataException.h"
#include "formats/detail/FileAccess.h"
#include "formats/detail/LineSource.h"
#include "records/detail/Messages.h"

#include <utils/Degree.h>
#include <utils/Number.h>
#include <utils/Pieces.h>

#include <algorithm>
#include <array>
#include <iomanip>
#include <istream>
#include <ostream>
#include <regex>
#include <string_view>
#include <utility>
#include <vector>

namespace kvn {
namespace {

constexpr double kSecondsPerDegree = 3600.0;
constexpr int kLabelWidth = 8;
constexpr int kLengthDecimals = 4;
constexpr int kSecondDecimals = 1;
constexpr char const* kPatternCharacters = "^$\\.*+?()[]{}|";
// Longer names are compared as they stand: matching recurses with the length of both.
constexpr std::size_t kLongestPattern = 1000;

/// The values of a record: the places of the first few, which is all that the records have, without a list to allocate.
class Values {
 public:
  explicit Values(std::string_view record) : text(record) {
    for (std::string_view rest = record; !rest.empty(); ++count) {
      std::size_t const end = std::min(rest.find(','), rest.size());
      if (count < first.size()) first[count] = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }

  std::size_t size() const { return count; }
  std::string_view operator[](std::size_t i) const {
    if (i < first.size()) return first[i];
    utils::Pieces all;
    all.cut(text, ',', false);
    return all[i];
  }

 private:
  std::string_view text;
  std::array<std::string_view, 3> first;
  std::size_t count = 0;
};

double radiansOfSeconds(std::string_view text) {
  return utils::Degree(utils::leadingNumber(text) / kSecondsPerDegree, 0).toRadian();
}

bool matches(std::string const& text, std::string const& pattern) {
#if defined(__GLIBCXX__)
  // Following all alternatives at once: "(a+a+)+" would keep the usual matcher busy for hours. Only back references
  // need the usual one.
  try {
    auto const allAtOnce = std::regex::ECMAScript | std::regex_constants::__polynomial;
    return std::regex_match(text, std::regex(pattern, allAtOnce));
  } catch (std::regex_error const& failure) {
    if (failure.code() != std::regex_constants::error_complexity) throw;
  }
#endif
  return std::regex_match(text, std::regex(pattern));
}

/// A reference to a group, or a repetition, of ten digits and more: no expression has as many, and the standard library
/// counts past its largest number there.
bool hasHugeCount(std::string const& pattern) {
  for (std::size_t at = 0; (at = pattern.find_first_of("\\{", at)) != std::string::npos; ++at) {
    std::size_t const end = std::min(pattern.find_first_not_of("0123456789", at + 1), pattern.size());
    if (end > at + 10) return true;
  }
  return false;
}

/// The back sight has the target's name with an underscore and one digit behind it. A name with pattern characters
/// acts as a pattern.
bool isNumberedName(std::string const& backSight, std::string const& name) {
  bool const isPattern = name.find_first_of(kPatternCharacters) != std::string::npos;
  if (isPattern && std::max(name.size(), backSight.size()) <= kLongestPattern) {
    if (hasHugeCount(name)) throw std::regex_error(std::regex_constants::error_complexity);
    return matches(backSight, "^" + name + "_\\d");
  }
  return backSight.size() == name.size() + 2 && backSight.compare(0, name.size(), name) == 0 &&
         backSight[name.size()] == '_' && backSight.back() >= '0' && backSight.back() <= '9';
}

/// Name, height and code of a point record; nothing when there is a name alone.
void readNameHeightCode(std::string_view text, TraverseDataInfo& row) {
  Values const values(text);
  if (values.size() < 2) return;
  row.name = values[0];
  row.instrument = utils::leadingNumber(values[1]);
  if (values.size() > 2) row.code = values[2];
}

bool isForAxes(LQFTraverseDataCollection::LQFLabType type) {
  return type >= LQFTraverseDataCollection::XYZ && type <= LQFTraverseDataCollection::ZYX;
}

}  // namespace

/// The row under construction, and what becomes of it when the next one begins.
class LQFTraverseDataCollection::Rows {
 public:
  explicit Rows(std::vector<TraverseDataInfo>& rows) : list(rows) {}

  /// Takes readings or coordinates, with which it is a row even ahead of any station.
  TraverseDataInfo* underConstruction() {
    hasRow = true;
    return &row;
  }

  void finish() {
    if (hasRow) moveToList();
  }

  // While the back sight may still be sighted again, what becomes of it depends on the next name.
  void finishUnlessBackSight() {
    if (!inBackSight) finish();
  }

  void beginStation(TraverseDataInfo station) {
    row = std::move(station);
    groupId = row.groupId;
    hasRow = true;
  }

  // A back sight at the very start is no row before it has readings.
  void beginBackSight(TraverseDataInfo sight) {
    backSight = sight.name;
    inBackSight = true;
    replaceBy(std::move(sight));
  }

  // A fore sight of the back sight's point takes its place.
  void beginForeSight(TraverseDataInfo sight) {
    if (inBackSight && sight.name != backSight && !isNumberedName(backSight, sight.name)) {
      moveToList();
      inBackSight = false;
    }
    replaceBy(std::move(sight));
    hasRow = true;
  }

 private:
  /// Another record takes its place at once.
  void moveToList() { list.push_back(std::move(row)); }

  void replaceBy(TraverseDataInfo sight) {
    sight.groupId = groupId;
    row = std::move(sight);
  }

  std::vector<TraverseDataInfo>& list;
  TraverseDataInfo row;
  std::string groupId = row.groupId;
  std::string backSight;
  bool hasRow = false;
  bool inBackSight = false;
};

LQFTraverseDataCollection::LQFTraverseDataCollection() = default;

LQFTraverseDataCollection::LQFLabType LQFTraverseDataCollection::getLQFLabType(std::string_view label) const {
  // By frequency: the records of sights come first.
  static constexpr std::array<std::pair<std::string_view, LQFLabType>, 18> kTypes{{
      {"SC", SC},
      {"HVD", HVD},
      {"NEZ", NEZ},
      {"BS", BS},
      {"STA", STA},
      {"XYZ", XYZ},
      {"YXZ", YXZ},
      {"YZX", YZX},
      {"XZY", XZY},
      {"ZXY", ZXY},
      {"ZYX", ZYX},
      {"NZE", NZE},
      {"ENZ", ENZ},
      {"EZN", EZN},
      {"ZNE", ZNE},
      {"ZEN", ZEN},
      {"JOB", JOB},
      {"INST", INST},
  }};
  auto const isLabel = [label](auto const& entry) { return entry.first == label; };
  auto const found = std::find_if(kTypes.begin(), kTypes.end(), isLabel);
  return found == kTypes.end() ? NoLabel : found->second;
}

void LQFTraverseDataCollection::read(std::istream& stream) {
  if (stream.peek() == std::istream::traits_type::eof()) {
    detail::requireNoReadError(stream);
    throw DataException(Messages::tr("The file is empty").toStdString());
  }
  Rows rows(traverseDataList);
  std::string line;
  utils::Pieces parts;
  detail::LineSource source(stream);
  while (source.nextBytes(line)) {
    parts.cut(line, ' ', true);
    if (parts.size() >= 2) readRecord(parts[0], parts[1], rows);
  }
  rows.finish();
}

void LQFTraverseDataCollection::readRecord(std::string_view label, std::string_view text, Rows& rows) {
  LQFLabType const type = getLQFLabType(label);
  switch (type) {
    case NoLabel:
      return;
    case JOB:
      return readJob(text);
    case INST:
      return readInstrument(text);
    case STA:
    case BS:
    case SC:
      return readPoint(text, type, rows);
    case HVD:
      return readHVD(text, rows.underConstruction());
    default:
      return isForAxes(type) ? readXYZ(label, text, rows.underConstruction())
                             : readNEZ(label, text, rows.underConstruction());
  }
}

// The row before is finished first: it stays when this one cannot be read.
void LQFTraverseDataCollection::readPoint(std::string_view text, LQFLabType type, Rows& rows) {
  type == SC ? rows.finishUnlessBackSight() : rows.finish();
  TraverseDataInfo row;
  type == STA ? readSta(text, &row) : readView(text, type, &row);
  if (type == STA) {
    rows.beginStation(std::move(row));
  } else if (type == BS) {
    rows.beginBackSight(std::move(row));
  } else {
    rows.beginForeSight(std::move(row));
  }
}

void LQFTraverseDataCollection::readSta(std::string_view text, TraverseDataInfo* row) {
  row->pointType = TraversePointType::StationPoint;
  readNameHeightCode(text, *row);
}

void LQFTraverseDataCollection::readView(std::string_view text, LQFLabType type, TraverseDataInfo* row) {
  row->sightType = type == BS ? BackSight : ForeSight;
  row->pointType = TraversePointType::PrismPoint;
  readNameHeightCode(text, *row);
}

void LQFTraverseDataCollection::readJob(std::string_view text) { jobName = text; }

void LQFTraverseDataCollection::readInstrument(std::string_view text) {
  Values const values(text);
  if (values.size() == 0) return;
  instrumentName = values[0];
  version = values.size() > 1 ? values[1] : std::string_view("V1.0");
}

void LQFTraverseDataCollection::readHVD(std::string_view text, TraverseDataInfo* row) {
  Values const values(text);
  if (values.size() < 2) {
    row->angleMark = 0.0;
  } else {
    row->horizontal_angle = radiansOfSeconds(values[0]);
    row->reduced_horizontal_angle = row->horizontal_angle;
    row->vertical_angle = radiansOfSeconds(values[1]);
    row->angleMark = 1.0;
  }
  row->isSlantDistanceHave = false;
  if (values.size() < 3) return;
  row->slant_distance = utils::leadingNumber(values[2]);
  row->horizontal_distance = row->getHorizontalDisance();
  row->isSlantDistanceHave = true;
}

void LQFTraverseDataCollection::readNEZ(std::string_view label, std::string_view text, TraverseDataInfo* row) {
  Values const values(text);
  row->hasCoordinate = values.size() >= 3;
  if (!row->hasCoordinate) return;
  for (std::size_t k = 0; k < std::min(label.size(), values.size()); ++k) {
    if (label[k] == 'N') row->N = utils::leadingNumber(values[k]);
    if (label[k] == 'E') row->E = utils::leadingNumber(values[k]);
    if (label[k] == 'Z') row->Z = utils::leadingNumber(values[k]);
  }
}

void LQFTraverseDataCollection::readXYZ(std::string_view label, std::string_view text, TraverseDataInfo* row) {
  Values const values(text);
  row->hasCoordinate = values.size() >= 3;
  if (!row->hasCoordinate) return;
  for (char const letter : label) {
    if (letter == 'X') row->E = utils::leadingNumber(values[0]);
    if (letter == 'Y') row->N = utils::leadingNumber(values[1]);
    if (letter == 'Z') row->Z = utils::leadingNumber(values[2]);
  }
}

void LQFTraverseDataCollection::write(std::ostream& stream) {
  writeJob(stream);
  writeInst(stream);
  for (TraverseDataInfo const& row : traverseDataList) {
    if (row.pointType == TraversePointType::StationPoint) {
      writeSta(stream, row);
      writeNEZXYZ(stream, XYZ, row);
    } else if (row.pointType == TraversePointType::PrismPoint) {
      writeView(stream, row);
      writeHVD(stream, row);
      writeNEZXYZ(stream, NEZ, row);
    }
  }
}

void LQFTraverseDataCollection::writeLabType(std::ostream& stream, std::string const& label) {
  stream << std::left << std::setw(kLabelWidth) << label;
}

void LQFTraverseDataCollection::writeJob(std::ostream& stream) {
  writeLabType(stream, "JOB");
  stream << jobName << '\n';
}

void LQFTraverseDataCollection::writeInst(std::ostream& stream) {
  writeLabType(stream, "INST");
  stream << instrumentName << '\n';
}

void LQFTraverseDataCollection::writeSta(std::ostream& stream, TraverseDataInfo const& row) {
  writeLabType(stream, "STA");
  writeNameHeightCode(stream, row);
}

void LQFTraverseDataCollection::writeView(std::ostream& stream, TraverseDataInfo const& row) {
  if (row.sightType == BackSight) writeLabType(stream, "BS");
  if (row.sightType == ForeSight) writeLabType(stream, "SC");
  writeNameHeightCode(stream, row);
}

void LQFTraverseDataCollection::writeNameHeightCode(std::ostream& stream, TraverseDataInfo const& row) const {
  stream << row.name << ',' << number(row.instrument, kLengthDecimals) << ',' << row.code << '\n';
}

// A comma stands for each value that is missing.
void LQFTraverseDataCollection::writeHVD(std::ostream& stream, TraverseDataInfo const& row) {
  writeLabType(stream, "HVD");
  bool const hasAngles = row.angleMark != 0.0;
  if (hasAngles) stream << seconds(row.horizontal_angle);
  stream << ',';
  if (hasAngles) stream << seconds(row.vertical_angle);
  stream << ',';
  if (row.isSlantDistanceHave) stream << number(row.slant_distance, kLengthDecimals);
  stream << '\n';
}

void LQFTraverseDataCollection::writeNEZXYZ(std::ostream& stream, LQFLabType type, TraverseDataInfo const& row) {
  if (type != XYZ && type != NEZ) return;
  writeLabType(stream, type == XYZ ? "XYZ" : "NEZ");
  stream << number(type == XYZ ? row.E : row.N, kLengthDecimals) << ','
         << number(type == XYZ ? row.N : row.E, kLengthDecimals) << ',' << number(row.Z, kLengthDecimals) << '\n';
}

std::string LQFTraverseDataCollection::number(double value, int decimals) const {
  return utils::withoutSignOfZero(formater.toString(value, decimals).toStdString());
}

std::string LQFTraverseDataCollection::seconds(double radians) const {
  return number(utils::Radian(radians).toDegree(0) * kSecondsPerDegree, kSecondDecimals);
}

}  // namespace kvn
