// Import and export: each operation goes through the collection of its format.
#include "core/detail/ProjectData.h"
#include "formats/CoordinateDataCollection.h"
#include "formats/CosaCollection.h"
#include "formats/LQFTraverseDataCollection.h"
#include "formats/VRDTraverseDataCollcetion.h"
#include "formats/detail/FileAccess.h"
#include "records/detail/Messages.h"

#include <utils/ByteStream.h>
#include <utils/FileText.h>
#include <utils/QLogicError.h>

#include <QFileInfo>
#include <new>
#include <utility>

namespace kvn {
namespace {

QString emptyImport() { return Messages::tr("The import file data is empty"); }

}  // namespace

void Project::read(QString const& path) {
  QString const suffix = QFileInfo(path).suffix().toUpper();
  if (suffix == QLatin1String("KVN")) {
    importKVNFile(path);
  } else if (suffix == QLatin1String("IN2")) {
    importCosaFile(path);
    own->fileType = CosaFile;
  } else if (suffix == QLatin1String("TXT")) {
    importVRDFile(path);
    own->fileType = VrdFile;
    own->verticalAngleType = FullCircleZenith;
  } else if (suffix == QLatin1String("DAT")) {
    importCoordFile(path);
    own->fileType = CoordFile;
  } else if (suffix == QLatin1String("LQF")) {
    importVRDLQFFile(path);
    own->fileType = LqfFile;
    own->verticalAngleType = FullCircleZenith;
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
    own->fileType = CosaFile;
  } else if (suffix == QLatin1String("TXT")) {
    takeTraverse(path, stream);
    own->fileType = VrdFile;
    own->verticalAngleType = FullCircleZenith;
  } else if (suffix == QLatin1String("DAT")) {
    takeCoordinates(path, bytes);
    own->fileType = CoordFile;
  } else if (suffix == QLatin1String("LQF")) {
    takeJob(path, stream);
    own->fileType = LqfFile;
    own->verticalAngleType = FullCircleZenith;
  }
  setName(path);
}

void Project::save() const {
  switch (own->fileType) {
    case LqfFile:
      exportLQFFile();
      break;
    case VrdFile:
      if (own->traverseDataList->empty() && !own->viewFile.isEmpty())
        throw QLogicError(Messages::tr("View Data is empty"));
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
  if (rows.empty()) throw QLogicError(emptyImport());
  own->fileType = VrdFile;
  own->network->clear();
  own->stationMap.clear();  // it leads into the rows that go
  *own->traverseDataList = std::move(rows);
  own->sourcesAreOfOtherData = true;
  collection.correctData(*own->traverseDataList);  // rows without approximate coordinates are good all the same
  own->networkFile.clear();
  own->viewFile = path;
  own->sourcesAreOfOtherData = false;
  own->algorithmAdjust.reset();
  checkVRDData();  // the flags of the rows are what counts
  readLegendCode();
}

void Project::importTraverseRows(QString const& path, std::vector<TraverseDataInfo> read) {
  if (read.empty()) throw QLogicError(emptyImport());
  own->fileType = VrdFile;
  own->verticalAngleType = FullCircleZenith;
  own->network->clear();
  own->stationMap.clear();  // it leads into the rows that go
  *own->traverseDataList = std::move(read);
  own->networkFile.clear();
  own->viewFile = path;
  own->sourcesAreOfOtherData = false;
  own->algorithmAdjust.reset();
  readLegendCode();
  setName(path);
}

void Project::importVRDLQFFile(QString const& path) {
  detail::readFile(path, [&](std::istream& stream) { takeJob(path, stream); });
}

void Project::takeJob(QString const& path, std::istream& stream) {
  auto collection = std::make_unique<LQFTraverseDataCollection>();
  collection->read(stream);
  if (collection->getTraverseDataList().empty()) throw QLogicError(Messages::tr("There is no observation data"));
  own->lqfCollection = std::move(collection);
  own->lqfFile = path;
  own->network->clear();
  own->stationMap.clear();  // it leads into the rows that go
  // An export gives them back.
  *own->traverseDataList = std::move(own->lqfCollection->getTraverseDataList());
  own->sourcesAreOfOtherData = false;
}

void Project::importCoordFile(QString const& path) {
  auto const bytes = detail::wholeFile(utils::readFile(path));
  if (!bytes) throw QLogicError(Messages::tr("Can not open file"));
  takeCoordinates(path, *bytes);
}

void Project::takeCoordinates(QString const& path, std::string const& bytes) {
  CoordinateDataCollection collection;
  collection.readContents(bytes);
  if (!own->coordinatePointList->empty()) clearMapData(FeatureDataType::CoordData, false);
  *own->coordinatePointList = std::move(collection.getCoordinateDataList());
  own->coordFile = path;
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
    throw QLogicError(emptyImport());
  }
  *own->network = std::move(read);
  own->networkFile = path;
  own->viewFile.clear();
  own->sourcesAreOfOtherData = false;
  own->stationMap.clear();  // it leads into the rows that go
  own->traverseDataList->clear();
  own->algorithmAdjust.reset();
  readLegendCode();
}

bool Project::exportCosaTraverseFile(QString const& path) const {
  if (own->network->isEmpty() && !isUsingViewData()) throw QLogicError(Messages::tr("Network Data is empty"));
  utils::createFolderOf(path);
  CosaCollection collection;
  collection.setKnownPointList(own->network->knownPoints);
  collection.setNetworkDataList(own->network->lines);
  detail::replaceFile(path, [&collection](std::ostream& stream) { collection.write(stream); });
  return true;
}

bool Project::exportVRDTraverseFile(QString const& path) const {
  if (own->traverseDataList->empty() && isUsingViewData()) throw QLogicError(Messages::tr("View Data is empty"));
  utils::createFolderOf(path);
  VRDTraverseDataCollcetion collection;
  collection.setTraverseDataList(*own->traverseDataList);
  detail::replaceFile(path, [&collection](std::ostream& stream) { collection.write(stream); });
  return true;
}

bool Project::exportLQFFile(QString const& path) const {
  if (own->traverseDataList->empty()) throw QLogicError(Messages::tr("View Data is empty"));
  if (own->lqfCollection == nullptr) throw QLogicError(Messages::tr("No instrument job was read into the project"));
  own->lqfCollection->setTraverseDataList(*own->traverseDataList);
  detail::replaceFile(path, [this](std::ostream& stream) { own->lqfCollection->write(stream); });
  return true;
}

bool Project::exportCoordFile(QString const& path) const {
  CoordinateDataCollection collection;
  collection.setCoordinateDataList(*own->coordinatePointList);
  detail::replaceFile(path, [&collection](std::ostream& stream) { collection.write(stream); });
  return true;
}

void Project::requireOwnSources() const {
  if (!own->sourcesAreOfOtherData) return;
  throw QLogicError(
      Messages::tr("The observations come from a file whose import failed: they are not written over the file that was "
                   "open before"));
}

bool Project::exportVRDTraverseFile() const {
  requireOwnSources();
  return !own->viewFile.isEmpty() && exportVRDTraverseFile(own->viewFile);
}

bool Project::exportCosaTraverseFile() const {
  requireOwnSources();
  return !own->networkFile.isEmpty() && exportCosaTraverseFile(own->networkFile);
}

bool Project::exportLQFFile() const {
  requireOwnSources();
  return !own->lqfFile.isEmpty() && exportLQFFile(own->lqfFile);
}

bool Project::exportCoordFile() const { return !own->coordFile.isEmpty() && exportCoordFile(own->coordFile); }

bool Project::readLegendCode() {
  try {
    auto codes = std::make_unique<XmlMannager>(nullptr);
    if (!codes->readPrjCode(QString())) return false;
    own->legendCodeXmlMannager = std::move(codes);
    return true;
  } catch (std::bad_alloc const&) {
    throw;
  } catch (...) {  // an import is good without codes; why they were not read has been told
    return false;
  }
}

}  // namespace kvn
