#include "commands/detail/DataSteps.h"

#include "core/Project.h"
#include "map/MapScene.h"

namespace kvn::detail {

std::string requiredText(Json::Value const& value) {
  static_cast<void>(value.asCString());  // fails for all but a text, and would end it at a null character
  return value.asString();
}

std::set<std::string> idsOf(Json::Value const& ids) {
  // A loop alone would pass over a number or a text, and take the values of an object for ids.
  static_cast<void>(ids[Json::ArrayIndex{0}]);
  std::set<std::string> result;
  for (Json::Value const& id : ids) result.insert(requiredText(id));
  return result;
}

bool isNumber(Json::Value const& value) {
  switch (value.type()) {
    case Json::intValue:
    case Json::uintValue:
    case Json::realValue:
      return true;
    default:
      return false;
  }
}

void apply(Json::Value const& value, std::string& field) {
  if (value.isString()) field = value.asString();
}

void apply(Json::Value const& value, double& field) {
  if (isNumber(value)) field = value.asDouble();
}

void apply(Json::Value const& value, bool& field) {
  if (value.isBool()) field = value.asBool();
}

void redrawMap(Project& project) {
  project.clearMapData();
  project.build();
}

void redrawCoordinates(Project& project) {
  project.clearMapData(FeatureDataType::CoordData, true);
  project.buildCoordData();
  project.fullShowMap();
}

void switchData(Command const& command, Json::Value const& in, void (Project::*import)(QString const&)) {
  Project* const project = command.getProject();
  command.getMapScene()->clearSelect();
  std::string const file = in["data"]["file"].asString();
  (project->*import)(QString::fromStdString(file));
  project->setModify(true);
}

}  // namespace kvn::detail
