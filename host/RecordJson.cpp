#include "RecordJson.h"

#include "Output.h"

#include <limits>

namespace kvn::host {
namespace {

void addReadings(Json::Value& json, TraverseDataInfo const& row) {
  json["slant_distance"] = number(row.slant_distance);
  json["isSlantDistanceHave"] = row.isSlantDistanceHave;
  json["isSlantDistanceValid"] = row.isSlantDistanceValid;
  json["horizontal_distance"] = number(row.horizontal_distance);
  json["horizontalDistanceFlag"] = row.horizontalDistanceFlag;
  json["horizontal_angle"] = number(row.horizontal_angle);
  json["reduced_horizontal_angle"] = number(row.reduced_horizontal_angle);
  json["isHorizontalAngleValid"] = row.isHorizontalAngleValid;
  json["vertical_angle"] = number(row.vertical_angle);
  json["reduced_vertical_angle"] = number(row.reduced_vertical_angle);
  json["isVerticalAngleValid"] = row.isVerticalAngleValid;
  json["angleMark"] = number(row.angleMark);
  json["verticalAngleType"] = static_cast<int>(row.verticalAngleType);
  json["sightType"] = static_cast<int>(row.sightType);
}

}  // namespace

Json::Value toJson(KnownPoint const& point) {
  Json::Value json;
  json["id"] = jsonText(point.id);
  json["name"] = jsonText(point.name);
  json["x"] = number(point.x);
  json["y"] = number(point.y);
  json["z"] = number(point.z);
  json["number"] = point.number;
  return json;
}

Json::Value toJson(NetworkDataInfo const& line) {
  Json::Value json;
  json["start_name"] = jsonText(line.start_name);
  json["end_name"] = jsonText(line.end_name);
  json["id"] = jsonText(line.id);
  json["startFlag"] = line.startFlag;
  json["horizontal_angle"] = number(line.horizontal_angle);
  json["horizontalAngleFlag"] = line.horizontalAngleFlag;
  json["endFlag"] = line.endFlag;
  json["horizontal_distance"] = number(line.horizontal_distance);
  json["horizontalDistanceFlag"] = line.horizontalDistanceFlag;
  return json;
}

Json::Value toJson(TraverseDataInfo const& row) {
  Json::Value json;
  json["id"] = jsonText(row.id);
  json["groupId"] = jsonText(row.groupId);
  json["name"] = jsonText(row.name);
  json["isNameValid"] = row.isNameValid;
  json["pointType"] = row.pointType.toString();
  json["isKnown"] = row.isKnown;
  json["instrument"] = number(row.instrument);
  json["instrumentFlag"] = row.instrumentFlag;
  addReadings(json, row);
  json["azimuth"] = number(row.azimuth);
  json["N"] = number(row.N);
  json["E"] = number(row.E);
  json["Z"] = number(row.Z);
  json["hasCoordinate"] = row.hasCoordinate;
  json["code"] = jsonText(row.code);
  return json;
}

Json::Value toJson(CoordinatePointInfo const& point) {
  Json::Value json;
  json["id"] = jsonText(point.id);
  json["name"] = jsonText(point.name);
  json["signal"] = jsonText(point.signal);
  json["N"] = number(point.N);
  json["E"] = number(point.E);
  json["Z"] = number(point.Z);
  return json;
}

char const* severityName(FieldFinding::Severity severity) {
  constexpr char const* kNames[] = {"Note", "Warning", "Error"};
  return kNames[severity];
}

QString severityText(FieldFinding::Severity severity) {
  switch (severity) {
    case FieldFinding::Note:
      return System::tr("Note: %1");
    case FieldFinding::Warning:
      return System::tr("Warning: %1");
    case FieldFinding::Error:
      break;
  }
  return System::tr("Error: %1");
}

Json::Value toJson(FieldFinding const& finding) {
  Json::Value json;
  json["severity"] = severityName(finding.severity);
  json["station"] = jsonText(finding.station);
  json["targets"] = Json::Value(Json::arrayValue);
  for (std::string const& target : finding.targets) json["targets"].append(jsonText(target));
  json["text"] = finding.text.toStdString();
  json["line"] = finding.line > 0 ? Json::Value(finding.line) : Json::Value();
  json["cost"] = finding.cost > 0.0 ? number(finding.cost) : Json::Value();
  return json;
}

void write(FieldFinding const& finding, JsonStream& json) {
  json.beginObject();
  json.member("cost").number(finding.cost > 0.0 ? finding.cost : std::numeric_limits<double>::quiet_NaN());
  json.member("line").place(finding.line);
  json.member("severity").text(severityName(finding.severity));
  json.member("station").text(finding.station);
  json.member("targets").texts(finding.targets);
  json.member("text").text(finding.text.toStdString());
  json.endObject();
}

}  // namespace kvn::host
