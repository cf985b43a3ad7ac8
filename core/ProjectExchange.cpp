// Import and export: each operation goes through the collection of its format.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TriangleHeightAdjust.h"
#include "commands/CommandManager.h"
#include "core/OutputReport.h"
#include "core/Project.h"
#include "formats/CoordinateDataCollection.h"
#include "formats/CosaCollection.h"
#include "formats/LQFTraverseDataCollection.h"
#include "formats/VRDTraverseDataCollcetion.h"
#include "formats/detail/FileAccess.h"
#include "legend/XmlMannager.h"
#include "map/MapScene.h"
#include "records/detail/Messages.h"

#include <utils/ByteStream.h>
#include <utils/FileText.h>
#include <utils/QLogicError.h>

#include <QFileInfo>
#include <utility>

namespace kvn {

void Project::read(QString const& path) {
  QString const suffix = QFileInfo(path).suffix().toUpper();
  if (suffix == QLatin1String("KVN")) {
    importKVNFile(path);
  } else if (suffix == QLatin1String("IN2")) {
    importCosaFile(path);
    fileType = CosaFile;
  } else if (suffix == QLatin1String("TXT")) {
    importVRDFile(path);
    fileType = VrdFile;
    verticalAngleType = FullCircleZenith;
  } else if (suffix == QLatin1String("DAT")) {
    importCoordFile(path);
    fileType = CoordFile;
  } else if (suffix == QLatin1String("LQF")) {
    importVRDLQFFile(path);
    fileType = LqfFile;
    verticalAngleType = FullCircleZenith;
  }
  setName(path);
}

void Project::readContents(QString const& path, std::string const& bytes) {
  QString const suffix = QFileInfo(path).suffix().toUpper();
  utils::ByteStream stream(bytes);
  if (suffix == QLatin1String("KVN")) {
    takeProject(path, bytes);
    finishProject(path);
  } else if (suffix == QLatin1String("IN2")) {
    takeNetwork(path, stream);
    fileType = CosaFile;
  } else if (suffix == QLatin1String("TXT")) {
    takeTraverse(path, stream);
    fileType = VrdFile;
    verticalAngleType = FullCircleZenith;
  } else if (suffix == QLatin1String("DAT")) {
    takeCoordinates(path, bytes);
    fileType = CoordFile;
  } else if (suffix == QLatin1String("LQF")) {
    takeJob(path, stream);
    fileType = LqfFile;
    verticalAngleType = FullCircleZenith;
  }
  setName(path);
}

void Project::save() const {
  switch (fileType) {
    case LqfFile:
      exportLQFFile();
      break;
    case VrdFile:
      if (traverseDataList->empty() && !viewFile.isEmpty()) throw QLogicError(Messages::tr("View Data is empty"));
      exportVRDTraverseFile();
      break;
    case CosaFile:
      exportCosaTraverseFile();
      break;
    case CoordFile:
      exportCoordFile();
      break;
  }
}

void Project::importVRDFile(QString const& path) {
  detail::readFile(path, [&](std::istream& stream) { takeTraverse(path, stream); });
}

void Project::takeTraverse(QString const& path, std::istream& stream) {
  VRDTraverseDataCollcetion collection;
  collection.read(stream);
  std::vector<TraverseDataInfo>& rows = collection.getTraverseDataList();
  if (rows.empty()) throw QLogicError(Messages::tr("The import file data is empty"));
  fileType = VrdFile;
  network->clear();
  stationMap.clear();  // it leads into the rows that go
  *traverseDataList = std::move(rows);
  sourcesAreOfOtherData = true;
  collection.correctData(*traverseDataList);  // rows without approximate coordinates are good all the same
  networkFile.clear();
  viewFile = path;
  sourcesAreOfOtherData = false;
  algorithmAdjust.reset();
  checkVRDData();  // the flags of the rows are what counts
  readLegendCode();
}

void Project::importVRDLQFFile(QString const& path) {
  detail::readFile(path, [&](std::istream& stream) { takeJob(path, stream); });
}

void Project::takeJob(QString const& path, std::istream& stream) {
  auto collection = std::make_unique<LQFTraverseDataCollection>();
  collection->read(stream);
  if (collection->getTraverseDataList().empty()) throw QLogicError(Messages::tr("There is no observation data"));
  lqfCollection = std::move(collection);
  lqfFile = path;
  network->clear();
  stationMap.clear();  // it leads into the rows that go
  *traverseDataList = lqfCollection->getTraverseDataList();
}

void Project::importCoordFile(QString const& path) {
  auto const bytes = detail::wholeFile(utils::readFile(path));
  if (!bytes) throw QLogicError(Messages::tr("Can not open file"));
  takeCoordinates(path, *bytes);
}

void Project::takeCoordinates(QString const& path, std::string const& bytes) {
  CoordinateDataCollection collection;
  collection.readContents(bytes);
  if (!coordinatePointList->empty()) clearMapData(FeatureDataType::CoordData, false);
  *coordinatePointList = std::move(collection.getCoordinateDataList());
  coordFile = path;
  readLegendCode();
}

void Project::importCosaFile(QString const& path) {
  detail::readFile(path, [&](std::istream& stream) { takeNetwork(path, stream); });
}

void Project::takeNetwork(QString const& path, std::istream& stream) {
  CosaCollection collection;
  collection.read(stream);
  importCosaNetwork(path, collection.takeNetwork());
}

void Project::importCosaNetwork(QString const& path, Network read) {
  if (read.lines.empty() && read.knownPoints.empty()) {
    throw QLogicError(Messages::tr("The import file data is empty"));
  }
  *network = std::move(read);
  networkFile = path;
  viewFile.clear();
  sourcesAreOfOtherData = false;
  stationMap.clear();  // it leads into the rows that go
  traverseDataList->clear();
  algorithmAdjust.reset();
  readLegendCode();
}

bool Project::exportCosaTraverseFile(QString const& path) const {
  if (network->isEmpty() && !isUsingViewData()) throw QLogicError(Messages::tr("Network Data is empty"));
  utils::createFolderOf(path);
  CosaCollection collection;
  collection.setKnownPointList(network->knownPoints);
  collection.setNetworkDataList(network->lines);
  detail::replaceFile(path, [&collection](std::ostream& stream) { collection.write(stream); });
  return true;
}

bool Project::exportVRDTraverseFile(QString const& path) const {
  if (traverseDataList->empty() && isUsingViewData()) throw QLogicError(Messages::tr("View Data is empty"));
  utils::createFolderOf(path);
  VRDTraverseDataCollcetion collection;
  collection.setTraverseDataList(*traverseDataList);
  detail::replaceFile(path, [&collection](std::ostream& stream) { collection.write(stream); });
  return true;
}

bool Project::exportLQFFile(QString const& path) const {
  if (traverseDataList->empty()) throw QLogicError(Messages::tr("View Data is empty"));
  if (lqfCollection == nullptr) throw QLogicError(Messages::tr("No instrument job was read into the project"));
  lqfCollection->setTraverseDataList(*traverseDataList);
  detail::replaceFile(path, [this](std::ostream& stream) { lqfCollection->write(stream); });
  return true;
}

bool Project::exportCoordFile(QString const& path) const {
  CoordinateDataCollection collection;
  collection.setCoordinateDataList(*coordinatePointList);
  detail::replaceFile(path, [&collection](std::ostream& stream) { collection.write(stream); });
  return true;
}

void Project::requireOwnSources() const {
  if (!sourcesAreOfOtherData) return;
  throw QLogicError(
      Messages::tr("The observations come from a file whose import failed: they are not written over the file that was "
                   "open before"));
}

bool Project::exportVRDTraverseFile() const {
  requireOwnSources();
  return !viewFile.isEmpty() && exportVRDTraverseFile(viewFile);
}

bool Project::exportCosaTraverseFile() const {
  requireOwnSources();
  return !networkFile.isEmpty() && exportCosaTraverseFile(networkFile);
}

bool Project::exportLQFFile() const {
  requireOwnSources();
  return !lqfFile.isEmpty() && exportLQFFile(lqfFile);
}

bool Project::exportCoordFile() const { return !coordFile.isEmpty() && exportCoordFile(coordFile); }

bool Project::readLegendCode() {
  try {
    auto codes = std::make_unique<XmlMannager>(nullptr);
    if (!codes->readPrjCode(QString())) return false;
    legendCodeXmlMannager = std::move(codes);
    return true;
  } catch (...) {  // an import is good without codes
    return false;
  }
}

}  // namespace kvn
