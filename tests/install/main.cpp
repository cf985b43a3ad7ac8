// What a host does with the installed library: a project, an adjustment, a command of the library and one of its own.
#include <Kelvane.h>
#include <kelvane/adjust/TraverseAdjust.h>
#include <array>
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

/// A class of the host's own. Its member stands where the library's part ended when this program was built: a library
/// whose objects have grown since would write there.
template <typename Base>
class Derived : public Base {
 public:
  using Base::Base;
  bool isWhole() const { return behind == untouched(); }

 private:
  static std::array<int, 64> untouched() {
    std::array<int, 64> all{};
    all.fill(4711);
    return all;
  }

  std::array<int, 64> behind = untouched();
};

bool computesInDerivedClasses() {
  Derived<kvn::TriangleHeightDataRead> rows;
  rows.setTraverseDataList({}, 0.16);
  Derived<kvn::TriangleHeightDataConvert> convert;
  convert.setTriangleHeightDataRead(rows);
  Derived<kvn::TriangleHeightAdjust> heights;
  heights.setSparseFrom(10);
  heights.setTriangleHeightDataConvert(convert);
  Derived<kvn::CloseTraverse> polygon;
  polygon.setFoldToNearest(true);
  Derived<kvn::NameIndex> names;
  return names.numberOf("A") == 0 && names.isWhole() && rows.isWhole() && convert.isWhole() && heights.isWhole() &&
         polygon.isWhole() && Derived<kvn::OpenTraverse>(Derived<kvn::OpenTraverse>()).isWhole() &&
         Derived<kvn::ConnectTraverse>().isWhole();
}

bool opensInDerivedClasses(char const* file) {
  Derived<kvn::CarefulCosaCollection> reader;
  reader.setKeepObservations(true);
  reader.read(std::string(file));
  Derived<kvn::CarefulCosaCollection> const copied(reader);
  Derived<kvn::Job> job;
  job.open(QString::fromUtf8(file));
  job.adjust();
  return reader.isWhole() && copied.isWhole() && job.isWhole() && job.planeAdjustment() != nullptr &&
         job.planeAdjustment()->network().directions.size() == copied.getObservations().directions.size();
}

bool showsInDerivedClasses(char const* file) {
  Derived<kvn::Project> project;
  project.read(QString::fromUtf8(file));
  project.setOperationType(kvn::Project::NetworkView);
  osg::ref_ptr<Derived<mvz::ViewerManager>> const manager = new Derived<mvz::ViewerManager>;
  osg::ref_ptr<Derived<mvz::View>> const view = new Derived<mvz::View>(300, 200);
  manager->addView(view);
  Derived<kvn::MapScene> scene(&project, manager.get(), nullptr);
  scene.clearSelect();
  view->drawn();
  Derived<kvn::XmlMannager> codes;
  codes.readPrjCode(QString());
  return project.isWhole() && manager->isWhole() && view->isWhole() && scene.isWhole() && codes.isWhole();
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
  return adjusts(*project, argv[1]) && runsCommands(*project) && annotates() && findsData() && converts() &&
                 computesInDerivedClasses() && opensInDerivedClasses(argv[1]) && showsInDerivedClasses(argv[1])
             ? 0
             : 1;
}
