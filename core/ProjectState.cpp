// State of a project: construction, accessors, the modified state and the lists.
#include "core/detail/ProjectData.h"
#include "formats/ITraverseDataCollcetion.h"
#include "records/detail/Messages.h"

#include <utils/HTextCodec.h>
#include <utils/QLogicError.h>

#include <QDateTime>
#include <QFileInfo>
#include <algorithm>
#include <utility>

namespace kvn {

Project::Project() : own(std::make_unique<Data>()) { own->commandManager = std::make_unique<CommandManager>(this); }

Project::~Project() {
  // Commands first: what they hold may lead into the lists.
  own->commandManager.reset();
  try {
    Project::clearMapData();
  } catch (...) {  // NOLINT(bugprone-empty-catch): a view of the host cannot repaint, and there is nobody left to tell
  }
}

void Project::resetData() {
  own->traverseDataList->clear();
  own->network->clear();
  own->coordinatePointList->clear();
  own->configure = Configure();
  own->projectFile.clear();
  own->version.clear();
}

void Project::takeData(Project&& other) {
  Data& from = *other.own;
  *own->traverseDataList = std::move(*from.traverseDataList);
  *own->network = std::move(*from.network);
  *own->coordinatePointList = std::move(*from.coordinatePointList);
  own->stationMap = std::move(from.stationMap);  // it leads into the rows, which stand where they stood
  setKnownPointList(std::move(from.knownPointList));
  own->lqfCollection = std::move(from.lqfCollection);
  own->sourcesAreOfOtherData = from.sourcesAreOfOtherData;
  own->projectFile = std::move(from.projectFile);
  own->name = std::move(from.name);
  own->networkFile = std::move(from.networkFile);
  own->viewFile = std::move(from.viewFile);
  own->coordFile = std::move(from.coordFile);
  own->lqfFile = std::move(from.lqfFile);
  own->version = std::move(from.version);
  own->fileType = from.fileType;
  own->verticalAngleType = from.verticalAngleType;
  own->configure = from.configure;
  if (from.legendCodeXmlMannager != nullptr) own->legendCodeXmlMannager = std::move(from.legendCodeXmlMannager);
  own->algorithData.reset();
  own->algorithmAdjust.reset();
  *own->triangleHeightAdjust = TriangleHeightAdjust();
  setModify(false);
}

void Project::setName(QString const& path) {
  own->projectFile = path;
  own->name = QFileInfo(path).completeBaseName();
}

void Project::clearNetwork() { own->network->clear(); }

bool Project::isEmpty() const {
  return own->network->isEmpty() && own->traverseDataList->empty() && own->coordinatePointList->empty();
}

bool Project::isModified() const { return own->modifyTime != 0 && own->modifyTime != own->saveTime; }

void Project::setModify(bool modified) {
  if (modified) {
    own->modifyTime = static_cast<std::uint64_t>(QDateTime::currentDateTime().toSecsSinceEpoch());
  } else {
    own->saveTime = own->modifyTime;
  }
}

bool Project::isCoordinateData() const { return !own->coordinatePointList->empty(); }

bool Project::isNetworkViewData() const { return !own->network->isEmpty() || !own->traverseDataList->empty(); }

bool Project::isUsingViewData() const {
  bool const fromTraverseFileAlone = !own->viewFile.isEmpty() && own->networkFile.isEmpty() && own->coordFile.isEmpty();
  return fromTraverseFileAlone || !own->traverseDataList->empty();
}

bool Project::isTraverseNameExist(std::string const& pointName) const {
  return std::any_of(own->traverseDataList->begin(), own->traverseDataList->end(),
                     [&pointName](TraverseDataInfo const& row) { return row.name == pointName; });
}

void Project::setKnownPointList(std::vector<KnownPoint> points) {
  own->knownPointList = std::move(points);
  own->knownPointPlaces.clear();
}

void Project::addKnownPoint(KnownPoint const& point) {
  if (own->knownPointPlaces.size() != own->knownPointList.size()) {
    own->knownPointPlaces.clear();
    for (std::size_t i = 0; i < own->knownPointList.size(); ++i)
      own->knownPointPlaces.emplace(own->knownPointList[i].name, i);
  }
  auto const [begin, end] = own->knownPointPlaces.equal_range(point.name);
  for (auto place = begin; place != end; ++place) own->knownPointList[place->second] = point;
  if (begin != end) return;
  own->knownPointPlaces.emplace(point.name, own->knownPointList.size());
  own->knownPointList.push_back(point);
}

bool Project::removeKnownPoint(std::string const& pointName) {
  auto const found = std::find_if(own->knownPointList.begin(), own->knownPointList.end(),
                                  [&pointName](KnownPoint const& entry) { return entry.name == pointName; });
  if (found == own->knownPointList.end()) return false;
  own->knownPointList.erase(found);
  own->knownPointPlaces.clear();  // those behind it have moved
  return true;
}

void Project::removeCoordinatePoint(QString const& id) {
  auto const found =
      std::find_if(own->coordinatePointList->begin(), own->coordinatePointList->end(),
                   [&id](CoordinatePointInfo const& point) { return HTextCodec::FromLocal8Bit(point.id) == id; });
  if (found != own->coordinatePointList->end()) own->coordinatePointList->erase(found);
}

void Project::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(Messages::tr("User Cancel"));
}

void Project::traverseDataToAlgorithData() {}

CommandManager* Project::getCommandManager() const { return own->commandManager.get(); }
MapScene* Project::getMapScene() const { return own->mapScene.get(); }
QString Project::getVersion() const { return own->version; }
void Project::setVersion(QString value) { own->version = std::move(value); }
Project::FileType Project::getFileType() const { return own->fileType; }
void Project::setFileType(FileType value) { own->fileType = value; }
std::vector<TraverseDataInfo>& Project::getTraverseDataList() { return *own->traverseDataList; }
std::vector<TraverseDataInfo> const& Project::getTraverseDataList() const { return *own->traverseDataList; }
void Project::setTraverseDataList(std::vector<TraverseDataInfo> rows) { *own->traverseDataList = std::move(rows); }
Configure& Project::getConfigure() { return own->configure; }
Configure const& Project::getConfigure() const { return own->configure; }
void Project::setConfigure(Configure const& value) { own->configure = value; }
QString Project::getProjectFile() const { return own->projectFile; }
void Project::setProjectFile(QString path) { own->projectFile = std::move(path); }
QString Project::getName() const { return own->name; }
QString Project::getNetworkFile() const { return own->networkFile; }
QString Project::getViewFile() const { return own->viewFile; }
QString Project::getCoordFile() const { return own->coordFile; }
QString Project::getLQFFile() const { return own->lqfFile; }

std::string Project::getInstrumentName() const {
  return own->lqfCollection == nullptr ? std::string() : own->lqfCollection->getInstrumentName();
}
std::vector<CoordinatePointInfo>& Project::getCoordinatePointList() { return *own->coordinatePointList; }
std::vector<CoordinatePointInfo> const& Project::getCoordinatePointList() const { return *own->coordinatePointList; }
void Project::setCoordinatePointList(std::vector<CoordinatePointInfo> points) {
  *own->coordinatePointList = std::move(points);
}
Network& Project::getNetwork() { return *own->network; }
Network const& Project::getNetwork() const { return *own->network; }
void Project::setNetwork(Network value) { *own->network = std::move(value); }
AlgorithmAdjust* Project::getAlgorithmAdjust() const { return own->algorithmAdjust.get(); }
void Project::setAlgorithmAdjust(std::unique_ptr<AlgorithmAdjust> value) { own->algorithmAdjust = std::move(value); }
TriangleHeightAdjust* Project::getTriangleHeightAdjust() const { return own->triangleHeightAdjust.get(); }
void Project::setTriangleHeightAdjust(std::unique_ptr<TriangleHeightAdjust> value) {
  own->triangleHeightAdjust = std::move(value);
}
OutputReport* Project::getOutputReport() const { return own->outputReport.get(); }
void Project::setOutputReport(std::unique_ptr<OutputReport> value) { own->outputReport = std::move(value); }
AlgorithmData* Project::getAlgorithData() const { return own->algorithData.get(); }
void Project::setAlgorithData(std::unique_ptr<AlgorithmData> value) { own->algorithData = std::move(value); }
QString Project::getNetworkMapid() const { return own->networkMapid; }
void Project::setNetworkMapid(QString value) { own->networkMapid = std::move(value); }
XmlMannager* Project::getLegendCodeXmlMannager() const { return own->legendCodeXmlMannager.get(); }
VRD_DAM_PARA_T const& Project::getDatumParam() const { return own->datumParam; }
void Project::setDatumParam(VRD_DAM_PARA_T const& value) { own->datumParam = value; }
VerticalAngleType Project::getVerticalAngleType() const { return own->verticalAngleType; }
void Project::setVerticalAngleType(VerticalAngleType value) { own->verticalAngleType = value; }
void Project::setOperationType(OperationType value) { own->operationType = value; }

}  // namespace kvn
