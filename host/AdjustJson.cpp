#include "AdjustReport.h"
#include "Output.h"

#include <limits>

namespace kvn::host {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

void writeTarget(JsonStream& json, DirectionResult const& station, std::size_t i, double distanceError) {
  json.beginObject();
  json.member("azimuth").number(station.adjustedAzimuths[i]);
  json.member("azimuthError").number(existing(station.azimuthErrors, i));
  json.member("distance").number(station.distances[i]);
  json.member("distanceError").number(distanceError);
  json.member("name").text(station.targetNames[i]);
  json.member("observed").number(station.observedDirections[i]);
  json.member("residual").number(station.residuals[i]);
  json.endObject();
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

// Members in the order of their names, as every other JSON of the program has them.
void AdjustReport::writeJson(Json::Value const& messages, TextSink const& sink) const {
  AdjustSummary const& summary = result.getSummary();
  JsonStream json(sink);
  json.beginObject();
  writeApproximate(json);
  Json::Value settings;
  configure.write(settings);
  json.member("configure").value(settings);
  json.member("counts").value(countsJson());
  writeDirections(json);
  writeDistances(json);
  writeEllipses(json);
  json.member("file").value(file.toStdString());
  json.member("findings").beginArray();
  json.endArray();
  json.member("iterations").number(summary.iterations);
  json.member("messages").value(messages);
  json.member("method").text("least-squares");
  writePoints(json);
  json.member("redundancy").number(summary.redundancy);
  json.member("unitError").number(summary.unitError);
  json.member("version").number(kJsonVersion);
  json.endObject();
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

void AdjustReport::writeApproximate(JsonStream& json) const {
  json.member("approximate").beginArray();
  for (PointInfo const& point : result.getPointX0Y0List()) {
    json.beginObject();
    json.member("name").text(point.name);
    json.member("x").number(point.x);
    json.member("y").number(point.y);
    json.endObject();
  }
  json.endArray();
}

void AdjustReport::writePoints(JsonStream& json) const {
  json.member("points").beginArray();
  for (PointErrorInfo const& point : result.getPointErrorInfoList()) {
    json.beginObject();
    json.member("known").truth(isKnown(point.name));
    json.member("mp").number(existing(point.mpValid, point.mp));
    json.member("mx").number(existing(point.mxValid, point.mx));
    json.member("my").number(existing(point.myValid, point.my));
    json.member("name").text(point.name);
    json.member("x").number(point.x);
    json.member("y").number(point.y);
    json.endObject();
  }
  json.endArray();
}

void AdjustReport::writeEllipses(JsonStream& json) const {
  json.member("ellipses").beginArray();
  for (ErrorEllipse const& ellipse : result.getErrorEllipseList().ellipseList) {
    json.beginObject();
    json.member("angle").number(existing(ellipse.angleValid, ellipse.angle));
    json.member("name").text(ellipse.name);
    json.member("semiMajor").number(existing(ellipse.semiMajorValid, ellipse.semiMajor));
    json.member("semiMinor").number(existing(ellipse.semiMinorValid, ellipse.semiMinor));
    json.endObject();
  }
  json.endArray();
}

void AdjustReport::writeDirections(JsonStream& json) const {
  json.member("directions").beginArray();
  auto const& stations = result.getDirectionResultList();
  for (std::size_t i = 0; i < stations.size(); ++i) {
    json.beginObject();
    json.member("station").text(stations[i].stationName);
    json.member("targets").beginArray();
    for (std::size_t k = 0; k < stations[i].targetNames.size(); ++k) {
      writeTarget(json, stations[i], k, distanceErrorOf(result.getSummary(), i, k));
    }
    json.endArray();
    json.endObject();
  }
  json.endArray();
}

void AdjustReport::writeDistances(JsonStream& json) const {
  json.member("distances").beginArray();
  auto const& lines = result.getLineErrorInfoList();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    LineErrorInfo const& line = lines[i];
    json.beginObject();
    json.member("adjusted").number(line.adjustedDistance);
    json.member("azimuth").number(line.azimuth);
    json.member("azimuthError").number(existing(line.azimuthErrorValid, line.azimuthError));
    json.member("distanceError").number(distanceErrorOf(result.getSummary(), i));
    json.member("from").text(line.start_name);
    json.member("observed").number(line.observedDistance);
    json.member("residual").number(line.residual);
    json.member("to").text(line.end_name);
    json.endObject();
  }
  json.endArray();
}

}  // namespace kvn::host
