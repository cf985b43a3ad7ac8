#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"
#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

#include <algorithm>

namespace kvn {
namespace {

NetworkDataInfo& lineOf(std::vector<NetworkDataInfo>& lines, std::string const& id) {
  auto const line = std::find(lines.begin(), lines.end(), id);
  if (line == lines.end()) throw QLogicError(Messages::tr("Can not find The Network Point"));
  return *line;
}

void applyTo(NetworkDataInfo& line, Json::Value const& data) {
  detail::apply(data["StartName"], line.start_name);
  detail::apply(data["EndName"], line.end_name);
  detail::apply(data["HorizontalAngle"], line.horizontal_angle);
  detail::apply(data["HorizontalDistance"], line.horizontal_distance);
}

/// Moves the known points of that name when at least one coordinate is a number; the other one is then 0 if it is not
/// there. No point is added.
void movePoint(Network& network, Json::Value const& name, Json::Value const& north, Json::Value const& east) {
  if (!detail::isNumber(north) && !detail::isNumber(east)) return;
  std::string const pointName = detail::requiredText(name);
  KnownPoint const moved(pointName, north.asDouble(), east.asDouble(), 0);
  for (KnownPoint& point : network.knownPoints) {
    if (point.name == moved.name) point = moved;
  }
}

/// Changes fields of one line and the coordinates of the known points at its ends: {"data": {"id", "StartName",
/// "EndName", "HorizontalAngle", "HorizontalDistance", "StartN", "StartE", "EndN", "EndE"}}, radians and metres.
/// Observation rows, which no longer lead to that network, are emptied, and the map is drawn again. What was applied
/// stays when an end has coordinates and no name.
class ModifyNetworkDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    Json::Value const& data = in["data"];
    std::string const id = data["id"].asString();
    Project* const project = getProject();
    Network& network = project->getNetwork();
    applyTo(lineOf(network.lines, id), data);
    movePoint(network, data["StartName"], data["StartN"], data["StartE"]);
    movePoint(network, data["EndName"], data["EndN"], data["EndE"]);
    project->setTraverseDataList({});
    project->setModify(true);
    detail::redrawMap(*project);
    return true;
  }

  char const* className() const override { return "ModifyNetworkDataCMD"; }
};

CommandRegistration<ModifyNetworkDataCMD> const registerModifyNetworkData("ModifyNetworkDataCMD");

}  // namespace
}  // namespace kvn
