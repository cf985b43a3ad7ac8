// Heights of points beside a plane result, by the names of the points.
#pragma once

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <QStringList>
#include <string>
#include <unordered_map>
#include <vector>

namespace kvn::host {

/// The heights of a run beside a plane one; holds a reference to it.
class PointHeights {
 public:
  /// @param adjustment  null where there are no heights.
  explicit PointHeights(HeightAdjustment const* adjustment);

  bool exist() const { return run != nullptr; }
  HeightPoint const* of(std::string const& point) const;  ///< null for a point that has none
  /// Height and standard error for a table, UTF-8: "-" for a point that has none.
  std::vector<std::string> utf8Cells(std::string const& point) const;
  QStringList cells(std::string const& point) const;
  /// The members `height` and `heightError`, null where there are none.
  void addTo(Json::Value& json, std::string const& point) const;
  QString unitErrorText() const;
  /// Redundancy and test of the whole; null where there are no heights.
  Json::Value json() const;

 private:
  HeightAdjustment const* run;
  std::string known;  ///< words of the table, UTF-8
  std::string unchecked;
  std::unordered_map<std::string, HeightPoint const*> byName;
};

}  // namespace kvn::host
