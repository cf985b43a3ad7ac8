#include "formats/CoordinateDataCollection.h"

#include "core/System.h"
#include "formats/detail/FieldText.h"
#include "formats/detail/FileAccess.h"

#include <utils/HTextCodec.h>
#include <utils/HTextStream.h>
#include <utils/QLogicError.h>

#include <QStringList>
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

}  // namespace

CoordinateDataCollection::CoordinateDataCollection() = default;

void CoordinateDataCollection::read(QString const& path) {
  QFile file;
  if (!detail::openForReading(file, path, QIODevice::ReadOnly)) return;
  HTextStream stream(&file);
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
  if (isCancel()) throw QLogicError(System::tr("User Cancel"));
}

}  // namespace kvn
