#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"

namespace kvn {
namespace {

/// Replaces the data by that of a traverse file: {"data": {"file"}}, the observations that a network comes from. A COSA
/// network file is no such file. Network and map are left to what the host calls next.
class SwitchNetworkDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    detail::switchData(*this, in, &Project::importVRDFile);
    return true;
  }

  char const* className() const override { return "SwitchNetworkDataCMD"; }
};

CommandRegistration<SwitchNetworkDataCMD> const registerSwitchNetworkData("SwitchNetworkDataCMD");

}  // namespace
}  // namespace kvn
