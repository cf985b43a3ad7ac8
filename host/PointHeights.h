// Heights of points beside a plane result, by the names of the points.
#pragma once

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <QStringList>
#include <string>
#include <unordered_map>

namespace kvn::host {

/// The heights of a run beside a plane one; holds a reference to it.
class PointHeights {
 public:
  /// @param adjustment  null where there are no heights.
  explicit PointHeights(HeightAdjustment const* adjustment);

  bool exist() const { return run != nullptr; }
  /// Height and standard error for a table: "-" for a point that has none.
  QStringList cells(std::string const& point) const;
  /// The members `height` and `heightError`, null where there are none.
  void addTo(Json::Value& json, std::string const& point) const;
  QString unitErrorText() const;
  /// Redundancy and test of the whole; null where there are no heights.
  Json::Value json() const;

 private:
  HeightPoint const* of(std::string const& point) const;

  HeightAdjustment const* run;
  std::unordered_map<std::string, HeightPoint const*> byName;
};

}  // namespace kvn::host
