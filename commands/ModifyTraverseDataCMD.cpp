#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"
#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

#include <algorithm>

namespace kvn {
namespace {

TraverseDataInfo& rowOf(std::vector<TraverseDataInfo>& rows, std::string const& id) {
  auto const row = std::find(rows.begin(), rows.end(), id);
  if (row == rows.end()) throw QLogicError(Messages::tr("Can not find The Traverse Point"));
  return *row;
}

/// Whether a distance was measured stays as it was read: a corrected value does not tell.
void applyTo(TraverseDataInfo& row, Json::Value const& data) {
  detail::apply(data["Name"], row.name);
  detail::apply(data["Height"], row.instrument);
  detail::apply(data["IsKnowPoint"], row.isKnown);
  detail::apply(data["N"], row.N);
  detail::apply(data["E"], row.E);
  detail::apply(data["Z"], row.Z);
  detail::apply(data["HorizontalAngle"], row.horizontal_angle);
  detail::apply(data["VerticalAngle"], row.vertical_angle);
  detail::apply(data["SlantDistance"], row.slant_distance);
  detail::apply(data["HorizontalDistance"], row.horizontal_distance);
}

/// Changes fields of one observation row: {"data": {"id", "Name", "Height", "IsKnowPoint", "N", "E", "Z",
/// "HorizontalAngle", "VerticalAngle", "SlantDistance", "HorizontalDistance"}}, radians and metres. Network and map
/// follow, and all rows are checked again; a network that cannot be generated stays as it was.
class ModifyTraverseDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    Json::Value const& data = in["data"];
    std::string const id = data["id"].asString();
    Project* const project = getProject();
    applyTo(rowOf(project->getTraverseDataList(), id), data);
    project->setModify(true);
    if (auto const reason = detail::failureOf([project] { project->generateNetworkData(); })) {
      Messages::send(*reason, Error);
    }
    detail::redrawMap(*project);
    project->resetVRDDataState();
    project->checkVRDData();  // the flags of the rows are what counts
    return true;
  }

  char const* className() const override { return "ModifyTraverseDataCMD"; }
};

CommandRegistration<ModifyTraverseDataCMD> const registerModifyTraverseData("ModifyTraverseDataCMD");

}  // namespace
}  // namespace kvn
