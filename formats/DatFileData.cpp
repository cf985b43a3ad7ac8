#include "formats/DatFileData.h"

#include "core/DataException.h"
#include "formats/detail/FileAccess.h"

#include <QStringList>

namespace kvn {
namespace {

constexpr int kFields = 5;

CoordinatePointInfo pointOf(QStringList const& fields) {
  CoordinatePointInfo point;
  point.name = fields[0].toStdString();
  point.signal = fields[1].toStdString();
  point.N = double(fields[2].toFloat());
  point.E = double(fields[3].toFloat());
  point.Z = double(fields[4].toFloat());
  return point;
}

}  // namespace

DatFileData::DatFileData() = default;

bool DatFileData::openDatFileData(QString const& path) {
  QFile file;
  if (!detail::openForReading(file, path, QIODevice::ReadOnly | QIODevice::Text)) return false;
  for (int line = 1; !file.atEnd(); ++line) {
    QByteArray const bytes = file.readLine();
    QString const text = QString::fromUtf8(bytes.constData(), bytes.size());
    if (text.isEmpty()) throw DataException(line, "SPACE");
    QStringList const fields = text.split(QLatin1Char(','), Qt::KeepEmptyParts);
    if (fields.size() != kFields) throw DataException(line, "ERROR");
    points.push_back(pointOf(fields));
  }
  return true;
}

QVector<CoordinatePointInfo> DatFileData::getDatFileData() const { return points; }

}  // namespace kvn
