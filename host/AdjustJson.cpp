#include "AdjustReport.h"
#include "Output.h"

#include <limits>

namespace kvn::host {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

Json::Value targetJson(DirectionResult const& station, std::size_t i, double distanceError) {
  Json::Value json;
  json["name"] = jsonText(station.targetNames[i]);
  json["observed"] = number(station.observedDirections[i]);
  json["residual"] = number(station.residuals[i]);
  json["azimuth"] = number(station.adjustedAzimuths[i]);
  json["azimuthError"] = number(existing(station.azimuthErrors, i));
  json["distance"] = number(station.distances[i]);
  json["distanceError"] = number(distanceError);
  return json;
}

}  // namespace

std::unordered_set<std::string> namesOf(std::vector<KnownPoint> const& points) {
  std::unordered_set<std::string> names;
  for (KnownPoint const& point : points) names.insert(point.name);
  return names;
}

double existing(std::vector<double> const& values, std::size_t i) { return i < values.size() ? values[i] : kNone; }

double existing(bool valid, double value) { return valid ? value : kNone; }

double distanceErrorOf(AdjustSummary const& summary, std::size_t i) { return existing(summary.distanceErrors, i); }

double distanceErrorOf(AdjustSummary const& summary, std::size_t station, std::size_t target) {
  auto const& stations = summary.directionDistanceErrors;
  return station < stations.size() ? existing(stations[station], target) : kNone;
}

Json::Value AdjustReport::json() const {
  AdjustSummary const& summary = result.getSummary();
  Json::Value json;
  json["file"] = file.toStdString();
  json["method"] = "least-squares";
  configure.write(json["configure"]);
  json["counts"] = countsJson();
  json["unitError"] = number(summary.unitError);
  json["redundancy"] = summary.redundancy;
  json["iterations"] = summary.iterations;
  json["approximate"] = approximateJson();
  json["points"] = pointsJson();
  json["ellipses"] = ellipsesJson();
  json["directions"] = directionsJson();
  json["distances"] = distancesJson();
  return json;
}

Json::Value AdjustReport::countsJson() const {
  AdjustSummary const& summary = result.getSummary();
  Json::Value json;
  json["points"] = summary.points;
  json["knownPoints"] = summary.knownPoints;
  json["stations"] = summary.stations;
  json["directions"] = summary.directions;
  json["distances"] = summary.distances;
  return json;
}

Json::Value AdjustReport::approximateJson() const {
  Json::Value list(Json::arrayValue);
  for (PointInfo const& point : result.getPointX0Y0List()) {
    Json::Value json;
    json["name"] = jsonText(point.name);
    json["x"] = number(point.x);
    json["y"] = number(point.y);
    list.append(json);
  }
  return list;
}

Json::Value AdjustReport::pointsJson() const {
  Json::Value list(Json::arrayValue);
  for (PointErrorInfo const& point : result.getPointErrorInfoList()) {
    Json::Value json;
    json["name"] = jsonText(point.name);
    json["x"] = number(point.x);
    json["y"] = number(point.y);
    json["known"] = isKnown(point.name);
    json["mx"] = number(existing(point.mxValid, point.mx));
    json["my"] = number(existing(point.myValid, point.my));
    json["mp"] = number(existing(point.mpValid, point.mp));
    list.append(json);
  }
  return list;
}

Json::Value AdjustReport::ellipsesJson() const {
  Json::Value list(Json::arrayValue);
  for (ErrorEllipse const& ellipse : result.getErrorEllipseList().ellipseList) {
    Json::Value json;
    json["name"] = jsonText(ellipse.name);
    json["semiMajor"] = number(existing(ellipse.semiMajorValid, ellipse.semiMajor));
    json["semiMinor"] = number(existing(ellipse.semiMinorValid, ellipse.semiMinor));
    json["angle"] = number(existing(ellipse.angleValid, ellipse.angle));
    list.append(json);
  }
  return list;
}

Json::Value AdjustReport::directionsJson() const {
  Json::Value list(Json::arrayValue);
  auto const& stations = result.getDirectionResultList();
  for (std::size_t i = 0; i < stations.size(); ++i) {
    Json::Value json;
    json["station"] = jsonText(stations[i].stationName);
    Json::Value& targets = json["targets"] = Json::Value(Json::arrayValue);
    for (std::size_t k = 0; k < stations[i].targetNames.size(); ++k) {
      targets.append(targetJson(stations[i], k, distanceErrorOf(result.getSummary(), i, k)));
    }
    list.append(json);
  }
  return list;
}

Json::Value AdjustReport::distancesJson() const {
  Json::Value list(Json::arrayValue);
  for (LineErrorInfo const& line : result.getLineErrorInfoList()) {
    Json::Value json;
    json["from"] = jsonText(line.start_name);
    json["to"] = jsonText(line.end_name);
    json["observed"] = number(line.observedDistance);
    json["residual"] = number(line.residual);
    json["azimuth"] = number(line.azimuth);
    json["azimuthError"] = number(existing(line.azimuthErrorValid, line.azimuthError));
    json["adjusted"] = number(line.adjustedDistance);
    json["distanceError"] = number(distanceErrorOf(result.getSummary(), list.size()));
    list.append(json);
  }
  return list;
}

}  // namespace kvn::host
