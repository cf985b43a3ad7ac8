// Rows as text, for the tests of the row formats.
#pragma once

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "support/Support.h"

namespace test {

using Rows = std::vector<kvn::TraverseDataInfo>;

/// What a collection reads from a text.
template <typename Collection>
Rows rowsOf(std::string const& text) {
  std::istringstream stream(text);
  Collection collection;
  collection.read(stream);
  return collection.getTraverseDataList();
}

/// What a collection writes of rows.
template <typename Collection>
std::string textOf(Rows const& rows) {
  std::ostringstream stream;
  Collection collection;
  collection.setTraverseDataList(rows);
  collection.write(stream);
  return stream.str();
}

/// A line a row: place of the first row of its group, "sta", "back" or "fore", [name], height; on sights the angles in
/// seconds ("-" for no reading), the slant and the horizontal distance ("-" for none); N, E, Z; "known", "coordinate",
/// and the code.
inline std::string described(Rows const& rows) {
  QString text;
  for (kvn::TraverseDataInfo const& row : rows) {
    std::size_t group = 0;
    while (rows[group].groupId != row.groupId) ++group;
    bool const isStation = row.pointType == kvn::TraversePointType::StationPoint;
    char const* const kind = isStation ? "sta" : row.sightType == kvn::BackSight ? "back" : "fore";
    text += QStringLiteral("%1 %2 [%3] %4").arg(group).arg(kind, row.name.c_str()).arg(row.instrument);
    double const second = std::acos(-1.0) / 648000.0;
    if (!isStation && row.angleMark == 0.0) text += " -";
    if (!isStation && row.angleMark == 1.0) {
      text += " " + QString::number(row.horizontal_angle / second, 'f', 2) + " " +
              QString::number(row.vertical_angle / second, 'f', 2);
    }
    if (!isStation && !row.isSlantDistanceHave) text += " -";
    if (!isStation && row.isSlantDistanceHave) {
      text += QStringLiteral(" %1 %2").arg(row.slant_distance, 0, 'g', 7).arg(row.horizontal_distance, 0, 'g', 7);
    }
    text += QStringLiteral(" (%1,%2,%3)").arg(row.N, 0, 'g', 9).arg(row.E, 0, 'g', 9).arg(row.Z, 0, 'g', 9);
    if (row.isKnown) text += " known";
    if (row.hasCoordinate) text += " coordinate";
    if (!row.code.empty()) text += " code " + QString::fromStdString(row.code);
    text += '\n';
  }
  return text.toStdString();
}

}  // namespace test
