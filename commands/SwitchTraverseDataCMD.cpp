#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"

namespace kvn {
namespace {

/// Replaces the observation rows by those of a traverse file: {"data": {"file"}}. Network and map are left to what the
/// host calls next.
class SwitchTraverseDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    detail::switchData(*this, in, &Project::importVRDFile);
    return true;
  }

  char const* className() const override { return "SwitchTraverseDataCMD"; }
};

CommandRegistration<SwitchTraverseDataCMD> const registerSwitchTraverseData("SwitchTraverseDataCMD");

}  // namespace
}  // namespace kvn
