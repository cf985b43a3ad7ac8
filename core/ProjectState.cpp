// State of a project: construction, accessors, the modified state and the lists.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TriangleHeightAdjust.h"
#include "commands/CommandManager.h"
#include "core/OutputReport.h"
#include "core/Project.h"
#include "core/System.h"
#include "formats/ITraverseDataCollcetion.h"
#include "legend/XmlMannager.h"
#include "map/MapScene.h"

#include <utils/HTextCodec.h>
#include <utils/QLogicError.h>

#include <QDateTime>
#include <QFileInfo>
#include <algorithm>
#include <utility>

namespace kvn {

Project::Project()
    : commandManager(std::make_unique<CommandManager>(this)),
      traverseDataList(std::make_unique<std::vector<TraverseDataInfo>>()),
      network(std::make_unique<Network>()),
      coordinatePointList(std::make_unique<std::vector<CoordinatePointInfo>>()),
      triangleHeightAdjust(std::make_unique<TriangleHeightAdjust>()) {}

Project::~Project() {
  // Commands first: what they hold may lead into the lists.
  commandManager.reset();
  try {
    Project::clearMapData();
  } catch (...) {  // NOLINT(bugprone-empty-catch): a view of the host cannot repaint, and there is nobody left to tell
  }
}

void Project::resetData() {
  traverseDataList->clear();
  network->clear();
  coordinatePointList->clear();
  configure = Configure();
  projectFile.clear();
  version.clear();
}

void Project::takeData(Project&& other) {
  *traverseDataList = std::move(*other.traverseDataList);
  *network = std::move(*other.network);
  *coordinatePointList = std::move(*other.coordinatePointList);
  stationMap = std::move(other.stationMap);  // it leads into the rows, which stand where they stood
  setKnownPointList(std::move(other.knownPointList));
  lqfCollection = std::move(other.lqfCollection);
  sourcesAreOfOtherData = other.sourcesAreOfOtherData;
  projectFile = std::move(other.projectFile);
  name = std::move(other.name);
  networkFile = std::move(other.networkFile);
  viewFile = std::move(other.viewFile);
  coordFile = std::move(other.coordFile);
  lqfFile = std::move(other.lqfFile);
  version = std::move(other.version);
  fileType = other.fileType;
  verticalAngleType = other.verticalAngleType;
  configure = other.configure;
  if (other.legendCodeXmlMannager != nullptr) legendCodeXmlMannager = std::move(other.legendCodeXmlMannager);
  algorithData.reset();
  algorithmAdjust.reset();
  *triangleHeightAdjust = TriangleHeightAdjust();
  setModify(false);
}

void Project::setName(QString const& path) {
  projectFile = path;
  name = QFileInfo(path).completeBaseName();
}

void Project::clearNetwork() { network->clear(); }

bool Project::isEmpty() const {
  return network->isEmpty() && traverseDataList->empty() && coordinatePointList->empty();
}

bool Project::isModified() const { return modifyTime != 0 && modifyTime != saveTime; }

void Project::setModify(bool modified) {
  if (modified) {
    modifyTime = static_cast<std::uint64_t>(QDateTime::currentDateTime().toSecsSinceEpoch());
  } else {
    saveTime = modifyTime;
  }
}

bool Project::isCoordinateData() const { return !coordinatePointList->empty(); }

bool Project::isNetworkViewData() const { return !network->isEmpty() || !traverseDataList->empty(); }

bool Project::isUsingViewData() const {
  bool const fromTraverseFileAlone = !viewFile.isEmpty() && networkFile.isEmpty() && coordFile.isEmpty();
  return fromTraverseFileAlone || !traverseDataList->empty();
}

bool Project::isTraverseNameExist(std::string const& pointName) const {
  return std::any_of(traverseDataList->begin(), traverseDataList->end(),
                     [&pointName](TraverseDataInfo const& row) { return row.name == pointName; });
}

void Project::setKnownPointList(std::vector<KnownPoint> points) {
  knownPointList = std::move(points);
  knownPointPlaces.clear();
}

void Project::addKnownPoint(KnownPoint const& point) {
  if (knownPointPlaces.size() != knownPointList.size()) {
    knownPointPlaces.clear();
    for (std::size_t i = 0; i < knownPointList.size(); ++i) knownPointPlaces.emplace(knownPointList[i].name, i);
  }
  auto const [begin, end] = knownPointPlaces.equal_range(point.name);
  for (auto place = begin; place != end; ++place) knownPointList[place->second] = point;
  if (begin != end) return;
  knownPointPlaces.emplace(point.name, knownPointList.size());
  knownPointList.push_back(point);
}

bool Project::removeKnownPoint(std::string const& pointName) {
  auto const found = std::find_if(knownPointList.begin(), knownPointList.end(),
                                  [&pointName](KnownPoint const& entry) { return entry.name == pointName; });
  if (found == knownPointList.end()) return false;
  knownPointList.erase(found);
  knownPointPlaces.clear();  // those behind it have moved
  return true;
}

void Project::removeCoordinatePoint(QString const& id) {
  auto const found =
      std::find_if(coordinatePointList->begin(), coordinatePointList->end(),
                   [&id](CoordinatePointInfo const& point) { return HTextCodec::FromLocal8Bit(point.id) == id; });
  if (found != coordinatePointList->end()) coordinatePointList->erase(found);
}

void Project::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(System::tr("User Cancel"));
}

void Project::traverseDataToAlgorithData() {}

CommandManager* Project::getCommandManager() const { return commandManager.get(); }
MapScene* Project::getMapScene() const { return mapScene.get(); }
QString Project::getVersion() const { return version; }
void Project::setVersion(QString value) { version = std::move(value); }
Project::FileType Project::getFileType() const { return fileType; }
void Project::setFileType(FileType value) { fileType = value; }
std::vector<TraverseDataInfo>& Project::getTraverseDataList() { return *traverseDataList; }
std::vector<TraverseDataInfo> const& Project::getTraverseDataList() const { return *traverseDataList; }
void Project::setTraverseDataList(std::vector<TraverseDataInfo> rows) { *traverseDataList = std::move(rows); }
Configure& Project::getConfigure() { return configure; }
Configure const& Project::getConfigure() const { return configure; }
void Project::setConfigure(Configure const& value) { configure = value; }
QString Project::getProjectFile() const { return projectFile; }
void Project::setProjectFile(QString path) { projectFile = std::move(path); }
QString Project::getName() const { return name; }
QString Project::getNetworkFile() const { return networkFile; }
QString Project::getViewFile() const { return viewFile; }
QString Project::getCoordFile() const { return coordFile; }
QString Project::getLQFFile() const { return lqfFile; }
std::vector<CoordinatePointInfo>& Project::getCoordinatePointList() { return *coordinatePointList; }
std::vector<CoordinatePointInfo> const& Project::getCoordinatePointList() const { return *coordinatePointList; }
void Project::setCoordinatePointList(std::vector<CoordinatePointInfo> points) {
  *coordinatePointList = std::move(points);
}
Network& Project::getNetwork() { return *network; }
Network const& Project::getNetwork() const { return *network; }
void Project::setNetwork(Network value) { *network = std::move(value); }
AlgorithmAdjust* Project::getAlgorithmAdjust() const { return algorithmAdjust.get(); }
void Project::setAlgorithmAdjust(std::unique_ptr<AlgorithmAdjust> value) { algorithmAdjust = std::move(value); }
TriangleHeightAdjust* Project::getTriangleHeightAdjust() const { return triangleHeightAdjust.get(); }
void Project::setTriangleHeightAdjust(std::unique_ptr<TriangleHeightAdjust> value) {
  triangleHeightAdjust = std::move(value);
}
OutputReport* Project::getOutputReport() const { return outputReport.get(); }
void Project::setOutputReport(std::unique_ptr<OutputReport> value) { outputReport = std::move(value); }
AlgorithmData* Project::getAlgorithData() const { return algorithData.get(); }
void Project::setAlgorithData(std::unique_ptr<AlgorithmData> value) { algorithData = std::move(value); }
QString Project::getNetworkMapid() const { return networkMapid; }
void Project::setNetworkMapid(QString value) { networkMapid = std::move(value); }
XmlMannager* Project::getLegendCodeXmlMannager() const { return legendCodeXmlMannager.get(); }
VRD_DAM_PARA_T const& Project::getDatumParam() const { return datumParam; }
void Project::setDatumParam(VRD_DAM_PARA_T const& value) { datumParam = value; }
VerticalAngleType Project::getVerticalAngleType() const { return verticalAngleType; }
void Project::setVerticalAngleType(VerticalAngleType value) { verticalAngleType = value; }
void Project::setOperationType(OperationType value) { operationType = value; }

}  // namespace kvn
