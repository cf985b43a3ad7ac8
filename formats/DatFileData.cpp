#include "formats/DatFileData.h"

#include "core/DataException.h"
#include "formats/detail/FileAccess.h"
#include "formats/detail/PointText.h"

#include <utils/FileText.h>
#include <utils/Number.h>
#include <utils/Pieces.h>

#include <QBuffer>
#include <QByteArray>
#include <QStringList>
#include <cstddef>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

constexpr std::size_t kFields = 5;

CoordinatePointInfo pointOf(QStringList const& fields) {
  CoordinatePointInfo point;
  point.name = fields[0].toStdString();
  point.signal = fields[1].toStdString();
  point.N = double(fields[2].toFloat());
  point.E = double(fields[3].toFloat());
  point.Z = double(fields[4].toFloat());
  return point;
}

/// A number in single precision, by the rule of `QString::toFloat`: 0 for a text that is none.
double floatIn(std::string_view text) {
  auto const plain = utils::plainDecimal(text);
  if (!plain) return double(QString::fromUtf8(text.data(), static_cast<int>(text.size())).toFloat());
  return double(static_cast<float>(*plain));  // of 15 digits at most: neither too large nor, but for 0, too small
}

/// The points of a text that UTF-8 gives back as it is.
void appendPoints(std::string_view text, QVector<CoordinatePointInfo>& points) {
  utils::Pieces fields;
  detail::TextLines lines(text);
  int number = 0;
  for (std::string_view line; lines.next(line);) {
    ++number;
    fields.cut(line, ',', false);
    // The pieces have no empty one at the end of the line, where the last number may be missing.
    bool const endsEmpty = !line.empty() && line.back() == ',';
    if (fields.size() + (endsEmpty ? 1 : 0) != kFields) throw DataException(number, "ERROR");
    CoordinatePointInfo point;
    point.name = fields[0];
    point.signal = fields[1];
    point.N = floatIn(fields[2]);
    point.E = floatIn(fields[3]);
    point.Z = endsEmpty ? 0.0 : floatIn(fields[4]);
    points.push_back(std::move(point));
  }
}

}  // namespace

DatFileData::DatFileData() = default;

bool DatFileData::openDatFileData(QString const& path) {
  auto const bytes = detail::wholeFile(utils::readFile(path));
  if (!bytes) return false;
  if (detail::isSameInUtf8(*bytes)) {
    appendPoints(*bytes, points);
    return true;
  }
  QByteArray copy = detail::qtBytes(*bytes);
  QBuffer file(&copy);
  file.open(QIODevice::ReadOnly | QIODevice::Text);
  for (int line = 1; !file.atEnd(); ++line) {
    QByteArray const lineBytes = file.readLine();
    QString const text = QString::fromUtf8(lineBytes.constData(), lineBytes.size());
    if (text.isEmpty()) throw DataException(line, "SPACE");
    QStringList const fields = text.split(QLatin1Char(','), Qt::KeepEmptyParts);
    if (static_cast<std::size_t>(fields.size()) != kFields) throw DataException(line, "ERROR");
    points.push_back(pointOf(fields));
  }
  return true;
}

QVector<CoordinatePointInfo> DatFileData::getDatFileData() const { return points; }

}  // namespace kvn
