#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"

namespace kvn {
namespace {

/// Replaces the coordinate list by that of a coordinate file: {"data": {"file"}}. The map is left to what the host
/// calls next.
class SwitchCoordinateDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    detail::switchData(*this, in, &Project::importCoordFile);
    return true;
  }

  char const* className() const override { return "SwitchCoordinateDataCMD"; }
};

CommandRegistration<SwitchCoordinateDataCMD> const registerSwitchCoordinateData("SwitchCoordinateDataCMD");

}  // namespace
}  // namespace kvn
