#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"
#include "records/detail/Messages.h"

#include <unordered_set>

namespace kvn {
namespace {

using Ids = std::set<std::string>;

std::unordered_set<std::string> groupsOf(std::vector<TraverseDataInfo> const& rows, Ids const& ids) {
  std::unordered_set<std::string> groups;
  for (TraverseDataInfo const& row : rows) {
    if (ids.count(row.id) > 0) groups.insert(row.groupId);
  }
  return groups;
}

/// Whether there was anything to remove. A row goes with its whole group: targets mean nothing without their station.
bool removeGroups(std::vector<TraverseDataInfo>& rows, Ids const& ids) {
  auto const groups = groupsOf(rows, ids);
  auto const removed =
      detail::takeOut(rows, [&groups](TraverseDataInfo const& row) { return groups.count(row.groupId) > 0; });
  for (TraverseDataInfo const& row : removed) {
    Messages::send(Messages::tr("Traverse point [%1] remove successfully").arg(QString::fromStdString(row.name)), Info);
  }
  return !removed.empty();
}

/// Removes the groups of observation rows that the ids belong to: {"data": {"ids"}}. Network and map follow, also when
/// there was no such row; without a network that can be generated, the project has none.
class RemoveTraverseDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    Ids const ids = detail::idsOf(in["data"]["ids"]);
    Project* const project = getProject();
    if (removeGroups(project->getTraverseDataList(), ids)) project->setModify(true);
    if (auto const reason = detail::failureOf([project] { project->generateNetworkData(); })) {
      project->clearNetwork();
      Messages::send(*reason, Warning);
    }
    detail::redrawMap(*project);
    return true;
  }

  char const* className() const override { return "RemoveTraverseDataCMD"; }
};

CommandRegistration<RemoveTraverseDataCMD> const registerRemoveTraverseData("RemoveTraverseDataCMD");

}  // namespace
}  // namespace kvn
