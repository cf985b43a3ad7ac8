#include "formats/FieldTextCheck.h"

#include "core/DataException.h"
#include "formats/LQFTraverseDataCollection.h"
#include "formats/detail/CarefulText.h"
#include "formats/detail/FileAccess.h"
#include "formats/detail/LineSource.h"
#include "formats/detail/TraverseReading.h"
#include "records/detail/Messages.h"

#include <utils/Degree.h>
#include <utils/Number.h>
#include <utils/Pieces.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <istream>
#include <streambuf>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

using detail::quoted;
using Fields = utils::Pieces;
using Names = std::vector<std::string>;

constexpr std::size_t kSightFields = 10;

/// Collects findings on the record at hand.
class Findings {
 public:
  explicit Findings(std::vector<FieldFinding>& findings) : list(findings) {}

  int line = 0;
  std::size_t row = FieldFinding::kNoRow;
  std::string station;
  std::string target;

  void tell(FieldFinding::Severity severity, QString const& text) {
    Names targets;
    if (!target.empty()) targets.push_back(target);
    list.push_back({severity, station, std::move(targets), text, row, line});
  }

  void tellNotTaken(QString const& text) {
    tell(FieldFinding::Warning, text);
    list.back().isNotTaken = true;
  }

  /// A number whose whole text should be one, after a reader has taken it.
  void lookAtNumber(std::string_view text) {
    if (text.empty() || utils::plainDecimal(text)) return;
    if (!std::isfinite(numberIn(text))) {
      tell(FieldFinding::Error, Messages::tr("the number is not finite: %1").arg(quoted(text)));
    } else if (!utils::fullNumber(text)) {
      tellNotTaken(Messages::tr("something stands behind the number: %1").arg(quoted(text)));
    }
  }

  void lookAtAngle(std::string_view text) {
    bool isAngle = false;
    double const degrees = utils::Degree::bytesToDouble(text, utils::DegreeToDDPMMSS, &isAngle);
    if (!isAngle || !std::isfinite(degrees)) {
      tell(FieldFinding::Error, Messages::tr("the angle is no number: %1").arg(quoted(text)));
    } else if (detail::hasFullField(text)) {
      tell(FieldFinding::Warning, Messages::tr("minutes or seconds of 60 and above: %1").arg(quoted(text)));
    }
  }

 private:
  static double numberIn(std::string_view text) {
    try {
      return utils::leadingNumber(text);
    } catch (std::logic_error const&) {
      return 0.0;  // the reader does not look at this one
    }
  }

  std::vector<FieldFinding>& list;
};

/// Each line of a traverse file is a row.
class TraverseTextLook {
 public:
  explicit TraverseTextLook(FieldTextCheck& result) : check(result), findings(result.findings) {}

  void lookAt(int number, std::string const& line, Fields const& fields) {
    findings.line = number;
    findings.row = check.rowLines.size();
    check.rowLines.push_back(number);
    if (detail::hasLostBytes(line)) findings.tell(FieldFinding::Error, Messages::tr("the line is no UTF-8"));
    if (fields.size() < 3) return;
    bool const isSight = fields[0] == "SC" && fields.size() == kSightFields;
    if (!isSight) findings.station = fields[1];
    findings.target = isSight ? fields[1] : std::string_view();
    findings.lookAtNumber(fields[2]);
    if (isSight) findings.lookAtAngle(fields[4]);
    // A book for the plane alone may have no vertical readings; what a distance loses by that is told with the row.
    if (isSight && !fields[5].empty()) findings.lookAtAngle(fields[5]);
    for (std::size_t i = isSight ? 6 : 4; i < fields.size(); ++i) findings.lookAtNumber(fields[i]);
  }

 private:
  FieldTextCheck& check;
  Findings findings;
};

/// The records of a job file that can become a row.
struct PointRecord {
  LQFTraverseDataCollection::LQFLabType type = LQFTraverseDataCollection::NoLabel;
  std::string name;
  int line = 0;
  bool hasReadings = false;
};

class JobLook {
 public:
  explicit JobLook(std::vector<FieldFinding>& list) : findings(list) {}

  std::vector<PointRecord> points;

  void lookAt(int line, std::string const& text) {
    findings.line = line;
    parts.cut(text, ' ', true);
    if (parts.empty()) return;
    auto const type = labels.getLQFLabType(parts[0]);
    bool const isName = type == LQFTraverseDataCollection::JOB || type == LQFTraverseDataCollection::INST;
    if (isName && parts.size() < 2) return;  // a job without a name
    if (parts.size() < 2 || type == LQFTraverseDataCollection::NoLabel) {
      findings.tellNotTaken(Messages::tr("the line is passed over: %1").arg(quoted(text)));
      return;
    }
    if (parts.size() > 2) {
      findings.tellNotTaken(Messages::tr("what stands behind a blank is passed over: %1").arg(quoted(text)));
    }
    values.cut(parts[1], ',', false);
    lookAtRecord(type);
  }

 private:
  void lookAtRecord(LQFTraverseDataCollection::LQFLabType type) {
    switch (type) {
      case LQFTraverseDataCollection::JOB:
      case LQFTraverseDataCollection::INST:
        return;
      case LQFTraverseDataCollection::STA:
      case LQFTraverseDataCollection::BS:
      case LQFTraverseDataCollection::SC:
        return lookAtPoint(type);
      case LQFTraverseDataCollection::HVD:
        for (std::string_view const value : values) findings.lookAtNumber(value);
        if (!points.empty()) points.back().hasReadings = true;
        return tellMoreThanThree();
      default:
        lookAtCoordinates(type);
    }
  }

  void lookAtPoint(LQFTraverseDataCollection::LQFLabType type) {
    std::string const name(values.size() > 1 ? values[0] : std::string_view());
    bool const isStation = type == LQFTraverseDataCollection::STA;
    if (isStation) findings.station = name;
    findings.target = isStation ? std::string() : name;
    points.push_back({type, name, findings.line, false});
    if (values.size() < 2) {
      findings.tell(FieldFinding::Warning, Messages::tr("the record has no height and is read without its name"));
    } else {
      findings.lookAtNumber(values[1]);
    }
  }

  void lookAtCoordinates(LQFTraverseDataCollection::LQFLabType type) {
    if (type > LQFTraverseDataCollection::XYZ && type <= LQFTraverseDataCollection::ZYX) {
      findings.tell(FieldFinding::Warning,
                    Messages::tr("the coordinates are read in the order X, Y, Z, whatever the label says"));
    }
    if (values.size() < 3) return;
    for (std::size_t i = 0; i < 3; ++i) findings.lookAtNumber(values[i]);
    tellMoreThanThree();
  }

  /// A decimal comma makes two values of one, and the ones behind it are taken for others.
  void tellMoreThanThree() {
    if (values.size() > 3) findings.tell(FieldFinding::Error, Messages::tr("more than three values: a decimal comma?"));
  }

  LQFTraverseDataCollection labels;
  Findings findings;
  Fields parts;   // of the line at hand
  Fields values;  // of its record
};

bool isRecordOf(TraverseDataInfo const& row, PointRecord const& record) {
  if (row.name != record.name) return false;
  if (row.pointType == TraversePointType::StationPoint) return record.type == LQFTraverseDataCollection::STA;
  return record.type == (row.sightType == BackSight ? LQFTraverseDataCollection::BS : LQFTraverseDataCollection::SC);
}

void tellRecord(PointRecord const& record, FieldFinding::Severity severity, QString const& text,
                std::vector<FieldFinding>& findings) {
  bool const isStation = record.type == LQFTraverseDataCollection::STA;
  Names targets;
  if (!isStation) targets.push_back(record.name);
  findings.push_back(
      {severity, isStation ? record.name : std::string(), std::move(targets), text, FieldFinding::kNoRow, record.line});
}

/// A record that left no row. A station that leaves none is lost: its sights would count for the station before. That
/// happens when a station stands between a back sight that is still open and another sight of the same point.
void tellPassedOver(PointRecord const& record, std::vector<FieldFinding>& findings) {
  if (record.type == LQFTraverseDataCollection::STA) {
    tellRecord(record, FieldFinding::Error,
               Messages::tr("the station is lost: its first sight is taken for the back sight before it"), findings);
  } else if (record.hasReadings) {
    tellRecord(record, FieldFinding::Warning,
               Messages::tr("the sight is dropped: the next one of the point takes its place"), findings);
    findings.back().isNotTaken = true;
  }
}

/// Rows come from records in order, and all but one ahead of the first record have one.
std::vector<int> linesOf(std::vector<TraverseDataInfo> const& rows, std::vector<PointRecord> const& records,
                         std::vector<FieldFinding>& findings) {
  constexpr int kMostMisses = 8;
  std::vector<int> lines;
  int misses = 0;
  auto next = records.begin();
  for (TraverseDataInfo const& row : rows) {
    auto const found =
        misses > kMostMisses
            ? records.end()
            : std::find_if(next, records.end(), [&row](PointRecord const& record) { return isRecordOf(row, record); });
    lines.push_back(found == records.end() ? 0 : found->line);
    if (found == records.end()) {
      ++misses;
      continue;
    }
    for (; next != found; ++next) tellPassedOver(*next, findings);
    bool const isSight = found->type != LQFTraverseDataCollection::STA;
    if (isSight && !found->hasReadings) {
      tellRecord(*found, FieldFinding::Error, Messages::tr("the sight has no readings"), findings);
    }
    ++next;
  }
  for (; next != records.end(); ++next) tellPassedOver(*next, findings);
  return lines;
}

/// Hands out a file line by line and so knows in which one its reader is.
class LineCountingBuffer : public std::streambuf {
 public:
  explicit LineCountingBuffer(std::istream& stream) : in(stream) {}

  int line = 0;

 protected:
  int_type underflow() override {
    if (!std::getline(in, text)) {
      detail::requireNoReadError(in);
      return traits_type::eof();
    }
    ++line;
    if (!in.eof()) text += '\n';
    setg(text.data(), text.data(), text.data() + text.size());
    return text.empty() ? traits_type::eof() : traits_type::to_int_type(text.front());
  }

 private:
  std::istream& in;
  std::string text;
};

}  // namespace

FieldTextCheck inspectTraverseText(std::istream& stream) {
  FieldTextCheck check;
  TraverseTextLook look(check);
  std::string line;
  Fields fields;
  for (detail::LineSource source(stream); source.next(line);) {
    fields.cut(line, ',', false);
    look.lookAt(source.lineNumber(), line, fields);
  }
  return check;
}

void detail::InspectedTraverse::read(std::istream& stream) {
  TraverseTextLook look(text);
  readTraverse(stream, traverseDataList, [&look](int number, std::string const& line, Fields const& fields) {
    look.lookAt(number, line, fields);
  });
}

FieldTextCheck inspectJobText(std::istream& stream, std::vector<TraverseDataInfo> const& rows) {
  FieldTextCheck check;
  JobLook look(check.findings);
  std::string line;
  for (detail::LineSource source(stream); source.nextBytes(line);) look.lookAt(source.lineNumber(), line);
  check.rowLines = linesOf(rows, look.points, check.findings);
  return check;
}

void readNamingTheLine(ITraverseDataCollcetion& collection, std::string const& path) {
  detail::readFile(path, [&collection](std::istream& file) { readNamingTheLine(collection, file); });
}

void readNamingTheLine(ITraverseDataCollcetion& collection, std::istream& file) {
  LineCountingBuffer buffer(file);
  std::istream stream(&buffer);
  try {
    collection.read(stream);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const& failure) {
    std::string const text = failure.what();
    bool const hasLine = text == Messages::tr("The line %1 is wrong").arg(buffer.line).toStdString();
    if (hasLine || buffer.line == 0) throw DataException(text);
    throw DataException(buffer.line, text);
  }
}

}  // namespace kvn
