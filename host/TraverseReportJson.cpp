#include "AdjustReport.h"
#include "Format.h"
#include "Options.h"
#include "Output.h"
#include "TraverseReport.h"

namespace kvn::host {

Json::Value TraverseReport::json() const {
  Json::Value json;
  json["file"] = file.toStdString();
  json["method"] = methodName(result.method);
  configure.write(json["configure"]);
  json["counts"] = countsJson();
  json["stations"] = stationsJson();
  json["azimuths"] = azimuthsJson();
  if (summary.hasMisclosure) json["misclosure"] = misclosureJson();
  json["points"] = pointsJson();
  json["sidePoints"] = sidePointsJson();
  json["checks"] = checksJson();
  json["heights"] = heights.json();
  json["version"] = kJsonVersion;
  return json;
}

/// What the traverse consists of; the input may hold more.
Json::Value TraverseReport::countsJson() const {
  std::unordered_set<std::string> names;
  for (PointInfo const& point : points) names.insert(point.name);
  int known = 0;
  for (std::string const& name : names) known += knownNames.count(name) != 0 ? 1 : 0;
  int distances = 0;
  for (std::size_t i = 0; i < stations.size(); ++i) distances += isLeg(i) && stations[i].distance != 0.0 ? 1 : 0;
  Json::Value json;
  json["points"] = static_cast<int>(names.size());
  json["knownPoints"] = known;
  json["stations"] = static_cast<int>(stations.size());
  json["directions"] = 2 * static_cast<int>(stations.size());
  json["distances"] = distances;
  return json;
}

/// Null where there is none: corrected values of an open traverse, the leg behind the last station of the others.
Json::Value TraverseReport::stationsJson() const {
  Json::Value list(Json::arrayValue);
  for (std::size_t i = 0; i < stations.size(); ++i) {
    TraverseInfo const& station = stations[i];
    bool const hasLeg = isLeg(i);
    Json::Value json;
    json["name"] = jsonText(station.stationPoint.name);
    json["back"] = jsonText(station.backPoint.name);
    json["fore"] = jsonText(station.forePoints.front().name);
    json["angle"] = number(station.angle);
    json["adjustedAngle"] = number(existing(closes(), station.adjustedAngle));
    json["distance"] = number(existing(hasLeg, station.distance));
    json["deltaX"] = number(existing(hasLeg, station.deltaX));
    json["deltaY"] = number(existing(hasLeg, station.deltaY));
    json["adjustedDeltaX"] = number(existing(hasLeg && closes(), station.adjustedDeltaX));
    json["adjustedDeltaY"] = number(existing(hasLeg && closes(), station.adjustedDeltaY));
    list.append(json);
  }
  return list;
}

Json::Value TraverseReport::azimuthsJson() const {
  Json::Value list(Json::arrayValue);
  for (double const azimuth : summary.azimuths) list.append(number(azimuth));
  return list;
}

Json::Value TraverseReport::misclosureJson() const {
  Json::Value json;
  json["angleCorrection"] = number(summary.angleCorrection);
  json["sumDistance"] = number(summary.sumDistance);
  json["fx"] = number(summary.fx);
  json["fy"] = number(summary.fy);
  json["fs"] = number(summary.fs);
  json["relative"] = number(summary.relativeError);
  json["angle"] = number(existing(closes(), angularMisclosure()));
  if (result.judgement) addJudgement(json);
  return json;
}

void TraverseReport::addJudgement(Json::Value& json) const {
  TraverseJudgement const& judged = *result.judgement;
  json["angleAllowed"] = number(judged.angleAllowed);
  json["along"] = number(judged.along);
  json["across"] = number(judged.across);
  json["alongAllowed"] = number(judged.alongAllowed);
  json["acrossAllowed"] = number(judged.acrossAllowed);
  json["fsAllowed"] = number(judged.fsAllowed);
  if (limits.allowedAngle > 0.0) json["angleLimit"] = number(angleLimit());
  if (limits.allowedRelative > 0.0) json["relativeLimit"] = number(1.0 / limits.allowedRelative);
  json["suspects"] = Json::Value(Json::arrayValue);
  for (TraverseSuspect const& suspect : judged.suspects) {
    TraverseInfo const& at = stations[suspect.station];
    bool const isAngle = suspect.kind == TraverseSuspect::Angle;
    Json::Value one;
    one["kind"] = isAngle ? "angle" : "leg";
    one["station"] = jsonText(at.stationPoint.name);
    one["back"] = isAngle ? jsonText(at.backPoint.name) : Json::Value();
    one["fore"] = jsonText(at.forePoints.front().name);
    one["gross"] = number(isAngle ? secondsOfRadians(suspect.gross) : suspect.gross);
    json["suspects"].append(one);
  }
}

Json::Value TraverseReport::pointsJson() const {
  Json::Value list(Json::arrayValue);
  for (PointInfo const& point : points) {
    Json::Value json;
    json["name"] = jsonText(point.name);
    json["x"] = number(point.x);
    json["y"] = number(point.y);
    json["known"] = knownNames.count(point.name) != 0;
    TraversePointError const error = errorOf(point.name);
    json["mx"] = number(error.mx);
    json["my"] = number(error.my);
    json["mp"] = number(error.mp);
    heights.addTo(json, point.name);
    list.append(json);
  }
  return list;
}

Json::Value TraverseReport::sidePointsJson() const {
  Json::Value list(Json::arrayValue);
  for (TraverseSidePoint const& side : result.sidePoints) {
    Json::Value json;
    json["name"] = jsonText(side.point.name);
    json["station"] = jsonText(side.station);
    json["x"] = number(side.point.x);
    json["y"] = number(side.point.y);
    json["known"] = knownNames.count(side.point.name) != 0;
    json["azimuth"] = number(side.azimuth);
    json["distance"] = number(side.distance);
    json["mx"] = number(side.mx);
    json["my"] = number(side.my);
    json["mp"] = number(side.mp);
    json["offNorth"] = number(side.offNorth);
    json["offEast"] = number(side.offEast);
    json["offAllowed"] = number(side.offAllowed);
    heights.addTo(json, side.point.name);
    list.append(json);
  }
  return list;
}

Json::Value TraverseReport::checksJson() const {
  Json::Value list(Json::arrayValue);
  for (TraverseCheck const& check : result.checks) {
    Json::Value json;
    json["kind"] = check.kind == TraverseCheck::Distance ? "distance" : "direction";
    json["station"] = jsonText(check.station);
    json["target"] = jsonText(check.target);
    json["mark"] = check.mark.empty() ? Json::Value() : jsonText(check.mark);
    json["off"] = number(check.off);
    json["allowed"] = number(check.allowed);
    list.append(json);
  }
  return list;
}

}  // namespace kvn::host
