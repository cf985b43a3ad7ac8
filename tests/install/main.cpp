// What a host does with the installed library: a project, an adjustment, a command of the library and one of its own.
#include <Kelvane.h>
#include <kelvane/adjust/TraverseAdjust.h>
#include <osgEarth/AnnotationLayer>
#include <osgEarth/PlaceNode>
#include <string>
#include <type_traits>
#include <vector>

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

// What hosts write without naming the class: a setting from its JSON, a refusal from its text.
template <typename Class, typename... Values>
constexpr bool kConverts = (std::is_convertible_v<Values, Class> && ...);
static_assert(kConverts<kvn::Configure, tinyxml2::XMLElement const*, Json::Value> &&
              kConverts<kvn::Matrix, std::vector<std::vector<double>>> && kConverts<kvn::DataException, std::string> &&
              kConverts<QLogicError, char const*, QString> && kConverts<kvn::IHasProject, kvn::Project*> &&
              kConverts<kvn::TraverseDataInfo, kvn::VerticalAngleType> && kConverts<kvn::FileData, std::string> &&
              kConverts<kvn::TriangleHeightDataRead, kvn::VerticalAngleType>);

// Objects that cannot be copied, and tools, where a parameter takes them.
void takesLibrary(kvn::XmlMannager const& /*library*/) {}
void takesTools(kvn::LineDataTool const& /*lines*/, kvn::PointDataTool const& /*points*/,
                kvn::CoordinateDataTool const& /*coordinates*/) {}

bool converts() {
  QObject* const noParent = nullptr;
  kvn::MapScene* const noScene = nullptr;
  takesLibrary(noParent);
  takesTools(noScene, noScene, noScene);
  return true;
}

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

/// A layer class of the host's own is recognised across the border of the library.
class HostLayer : public osgEarth::AnnotationLayer {};

bool annotates() {
  osg::ref_ptr<HostLayer> const layer = new HostLayer;
  layer->addChild(new osgEarth::PlaceNode("P"));
  osgEarth::Layer* const base = layer.get();
  return dynamic_cast<HostLayer*>(base) != nullptr && layer->getGroup()->getNumChildren() == 1;
}

/// In the data folder of the installation, wherever it was put.
bool findsData() {
  return kvn::XmlMannager().readPrjCode(QString()) &&
         !utils::resourceFile(kvn::GetIcon(kvn::FeatureDataType::CoordData, kvn::TraversePointType::PrismPoint))
              .empty();
}

}  // namespace

int main(int, char** argv) {
  kvn::System system;
  system.setConfigFile(QString());
  auto const project = system.createProject();
  return adjusts(*project, argv[1]) && runsCommands(*project) && annotates() && findsData() && converts() ? 0 : 1;
}
