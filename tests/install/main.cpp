// What a host does with the installed library: a project, an adjustment, a command of the library and one of its own.
#include <Kelvane.h>
#include <kelvane/adjust/TraverseAdjust.h>

namespace {

class CountPointsCMD : public kvn::Command {
 public:
  bool execute(Json::Value const&) override {
    result["points"] = static_cast<int>(getProject()->getCoordinatePointList().size());
    return true;
  }
  char const* className() const override { return "CountPointsCMD"; }
};
kvn::CommandRegistration<CountPointsCMD> const registration("CountPointsCMD");

bool adjusts(kvn::Project& project, char const* file) {
  project.read(QString::fromUtf8(file));
  kvn::AlgorithmAdjust adjustment;
  adjustment.setConfigure(project.getConfigure());
  adjustment.setNetworkData(project.getNetwork());
  adjustment.calculateAdjust();
  return adjustment.getPointErrorInfoList().size() == 12;
}

bool runsCommands(kvn::Project& project) {
  Json::Value in;
  Json::Value out;
  in["data"]["Name"] = "P";
  in["data"]["Mark"] = "";
  return project.getCommandManager()->execute("AddCoordinateDataCMD", in, out, {}) &&
         project.getCommandManager()->execute("CountPointsCMD", in, out, {}) && out["points"].asInt() == 1;
}

}  // namespace

int main(int, char** argv) {
  kvn::System system;
  system.setConfigFile(QString());
  auto const project = system.createProject();
  return adjusts(*project, argv[1]) && runsCommands(*project) ? 0 : 1;
}
