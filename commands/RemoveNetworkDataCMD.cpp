#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"
#include "core/System.h"

namespace kvn {
namespace {

QString removalOf(NetworkDataInfo const& line) {
  // Both at once: a name may hold "%2".
  return System::tr("Network Data [%1] - [%2] remove successfully")
      .arg(QString::fromStdString(line.start_name), QString::fromStdString(line.end_name));
}

/// Removes lines of the network: {"data": {"ids"}}. Observation rows, which no longer lead to that network, are emptied
/// if there was such a line. The map is drawn again in either case.
class RemoveNetworkDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    auto const ids = detail::idsOf(in["data"]["ids"]);
    Project* const project = getProject();
    System const* const system = getSystem();
    auto const removed = detail::takeOut(project->getNetwork().lines,
                                         [&ids](NetworkDataInfo const& line) { return ids.count(line.id) > 0; });
    for (NetworkDataInfo const& line : removed) system->sendMessage(removalOf(line), Info);
    if (!removed.empty()) {
      project->setTraverseDataList({});
      project->setModify(true);
    }
    detail::redrawMap(*project);
    return true;
  }

  char const* className() const override { return "RemoveNetworkDataCMD"; }
};

CommandRegistration<RemoveNetworkDataCMD> const registerRemoveNetworkData("RemoveNetworkDataCMD");

}  // namespace
}  // namespace kvn
