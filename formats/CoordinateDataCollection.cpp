#include "formats/CoordinateDataCollection.h"

#include "formats/detail/FieldText.h"
#include "formats/detail/FileAccess.h"
#include "formats/detail/PointText.h"
#include "records/detail/Messages.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>
#include <utils/HTextStream.h>
#include <utils/Pieces.h>
#include <utils/QLogicError.h>

#include <QBuffer>
#include <QByteArray>
#include <QStringList>
#include <ostream>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

constexpr int kFields = 5;

CoordinatePointInfo pointOf(QStringList const& fields) {
  if (fields.size() != kFields) throw detail::wrongFormat();
  CoordinatePointInfo point;
  point.name = HTextCodec::ToLocal8Bit(fields[0]);
  point.signal = HTextCodec::ToLocal8Bit(fields[1]);
  point.E = detail::requiredNumber(fields[2].toStdString());
  point.N = detail::requiredNumber(fields[3].toStdString());
  point.Z = detail::requiredNumber(fields[4].toStdString());
  return point;
}

/// The same for a line that is the same in every encoding.
CoordinatePointInfo pointOf(utils::Pieces const& fields) {
  if (fields.size() != kFields) throw detail::wrongFormat();
  CoordinatePointInfo point;
  point.name = fields[0];
  point.signal = fields[1];
  point.E = detail::requiredNumber(fields[2]);
  point.N = detail::requiredNumber(fields[3]);
  point.Z = detail::requiredNumber(fields[4]);
  return point;
}

void appendPoints(std::string_view text, std::vector<CoordinatePointInfo>& points) {
  utils::Pieces fields;
  detail::TextLines lines(text);
  for (std::string_view line; lines.next(line);) {
    if (!line.empty() && line.back() == ',') throw detail::wrongFormat();  // the pieces have no empty one at the end
    fields.cut(line, ',', false);
    points.push_back(pointOf(fields));
  }
}

}  // namespace

CoordinateDataCollection::CoordinateDataCollection() = default;

void CoordinateDataCollection::read(QString const& path) {
  if (auto const bytes = detail::wholeFile(utils::readFile(path))) readContents(*bytes);
}

void CoordinateDataCollection::readContents(std::string const& bytes) {
  if (detail::isSameInLocal8Bit(bytes)) return appendPoints(bytes, coordinateDataList);
  QByteArray copy = detail::qtBytes(bytes);
  QBuffer buffer(&copy);
  buffer.open(QIODevice::ReadOnly);
  HTextStream stream(&buffer);
  while (!stream.atEnd()) {
    coordinateDataList.push_back(pointOf(stream.readLine().split(QLatin1Char(','), Qt::KeepEmptyParts)));
  }
}

bool CoordinateDataCollection::write(std::string const& path) {
  detail::replaceFile(path, [this](std::ostream& stream) { write(stream); });
  return true;
}

void CoordinateDataCollection::write(std::ostream& stream) {
  char const* lineEnd = "";
  for (CoordinatePointInfo const& point : coordinateDataList) {
    stream << lineEnd << point.name << ',' << point.signal << ',' << detail::fixed4(point.E) << ','
           << detail::fixed4(point.N) << ',' << detail::fixed4(point.Z);
    lineEnd = "\n";
  }
}

std::vector<CoordinatePointInfo>& CoordinateDataCollection::getCoordinateDataList() { return coordinateDataList; }
std::vector<CoordinatePointInfo> const& CoordinateDataCollection::getCoordinateDataList() const {
  return coordinateDataList;
}
void CoordinateDataCollection::setCoordinateDataList(std::vector<CoordinatePointInfo> points) {
  coordinateDataList = std::move(points);
}

void CoordinateDataCollection::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(Messages::tr("User Cancel"));
}

}  // namespace kvn
