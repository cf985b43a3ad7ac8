#include "PointHeights.h"

#include "Format.h"
#include "Output.h"

#include <limits>

namespace kvn::host {

PointHeights::PointHeights(HeightAdjustment const* adjustment)
    : run(adjustment),
      known(System::tr("known").toStdString()),
      unchecked(' ' + System::tr("(unchecked)").toStdString()) {
  if (run == nullptr) return;
  for (std::size_t p = 0; p < run->network().points.size(); ++p) {
    byName.emplace(run->network().points[p].name, &run->result().points[p]);
  }
}

HeightPoint const* PointHeights::of(std::string const& point) const {
  auto const found = byName.find(point);
  return found == byName.end() ? nullptr : found->second;
}

std::vector<std::string> PointHeights::utf8Cells(std::string const& point) const {
  HeightPoint const* const height = of(point);
  if (height == nullptr) return {"-", ""};
  std::string const error = height->error == 0.0 ? known : millimetresText(height->error);
  return {metresText(height->height), height->isChecked ? error : error + unchecked};
}

QStringList PointHeights::cells(std::string const& point) const {
  QStringList list;
  for (std::string const& cell : utf8Cells(point)) list << QString::fromStdString(cell);
  return list;
}

void PointHeights::addTo(Json::Value& json, std::string const& point) const {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  HeightPoint const* const height = of(point);
  json["height"] = number(height == nullptr ? kNone : height->height);
  json["heightError"] = number(height == nullptr ? kNone : height->error);
}

QString PointHeights::unitErrorText() const {
  HeightResult const& result = run->result();
  if (!result.hasRedundancy) return System::tr("- (nothing is redundant)");
  auto const decimals = [](double value) { return QString::fromStdString(ratioText(value)); };
  QString const text = System::tr("%1, expected between %2 and %3")
                           .arg(decimals(result.unitError), decimals(result.lowerBound), decimals(result.upperBound));
  return result.isPassed ? text : System::tr("%1: fails").arg(text);
}

Json::Value PointHeights::json() const {
  Json::Value json;
  if (run == nullptr) return json;
  HeightResult const& result = run->result();
  json["redundancy"] = result.redundancy;
  json["unitError"] = number(result.unitError);
  json["globalTest"]["lower"] = number(result.lowerBound);
  json["globalTest"]["upper"] = number(result.upperBound);
  json["globalTest"]["value"] = number(result.unitError);
  json["globalTest"]["passed"] = result.hasRedundancy ? Json::Value(result.isPassed) : Json::Value();
  return json;
}

}  // namespace kvn::host
