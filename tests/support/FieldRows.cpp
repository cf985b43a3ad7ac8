#include "support/FieldRows.h"

#include <QString>

namespace test {

kvn::TraverseDataInfo station(std::string const& name) {
  kvn::TraverseDataInfo row;
  row.pointType = kvn::TraversePointType::StationPoint;
  row.name = name;
  return row;
}

kvn::TraverseDataInfo known(std::string const& name, double north, double east) {
  kvn::TraverseDataInfo row = station(name);
  row.isKnown = true;
  row.N = north;
  row.E = east;
  return row;
}

kvn::TraverseDataInfo sight(std::string const& name, double horizontal, double vertical, double distance) {
  kvn::TraverseDataInfo row;
  row.name = name;
  row.horizontal_angle = horizontal * kDegree;
  row.vertical_angle = vertical * kDegree;
  row.slant_distance = distance;
  row.isSlantDistanceHave = distance != 0.0;
  row.horizontal_distance = row.getHorizontalDisance();
  return row;
}

Rows grouped(Rows rows) {
  std::string group;
  for (kvn::TraverseDataInfo& row : rows) {
    if (row.pointType == kvn::TraversePointType::StationPoint) group = row.groupId;
    if (!group.empty()) row.groupId = group;
  }
  return rows;
}

Rows twoFaces(std::vector<kvn::TraverseDataInfo> const& firstFace) {
  Rows rows = firstFace;
  for (auto first = firstFace.rbegin(); first != firstFace.rend(); ++first) {
    double const reading = first->horizontal_angle / kDegree;
    rows.push_back(sight(first->name, reading < 180 ? reading + 180 : reading - 180,
                         360 - first->vertical_angle / kDegree, first->slant_distance));
  }
  return rows;
}

std::string shortText(std::vector<kvn::NetworkDataInfo> const& lines, int decimals) {
  QString text;
  for (kvn::NetworkDataInfo const& line : lines) {
    double const degrees = line.horizontal_angle / kDegree + 0.0;
    text += QString("%1>%2 %3 %4\n")
                .arg(QString::fromStdString(line.start_name), QString::fromStdString(line.end_name),
                     QString::number(degrees, 'f', decimals), QString::number(line.horizontal_distance, 'f', decimals));
  }
  return text.replace("-0." + QString(decimals, '0') + ' ', "0." + QString(decimals, '0') + ' ').toStdString();
}

}  // namespace test
