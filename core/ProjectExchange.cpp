// Import and export: each operation goes through the collection of its format.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "commands/CommandManager.h"
#include "core/OutputReport.h"
#include "core/Project.h"
#include "core/System.h"
#include "formats/CosaCollection.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>
#include <utils/QLogicError.h>

#include <QFileInfo>

namespace kvn {

void Project::read(QString const& path) {
  QString const suffix = QFileInfo(path).suffix().toUpper();
  if (suffix == QLatin1String("IN2")) {
    importCosaFile(path);
    fileType = CosaFile;
  } else if (suffix == QLatin1String("KVN") || suffix == QLatin1String("TXT") || suffix == QLatin1String("DAT") ||
             suffix == QLatin1String("LQF")) {
    throw QLogicError(System::tr("Files of the kind %1 cannot be read by this version").arg(suffix));
  }
  setName(path);
}

void Project::importCosaFile(QString const& path) {
  CosaCollection collection;
  collection.INetworkDataCollection::read(HTextCodec::ToLocal8Bit(path));
  if (collection.getNetworkDataList().empty() && collection.getKnownPointList().empty()) {
    throw QLogicError(System::tr("The import file data is empty"));
  }
  network->knownPoints = collection.getKnownPointList();
  network->lines = collection.getNetworkDataList();
  networkFile = path;
  viewFile.clear();
  traverseDataList->clear();
  algorithmAdjust.reset();
}

bool Project::exportCosaTraverseFile(QString const& path) const {
  if (network->isEmpty() && !isUsingViewData()) throw QLogicError(System::tr("Network Data is empty"));
  utils::createFolderOf(path);
  CosaCollection collection;
  collection.setKnownPointList(network->knownPoints);
  collection.setNetworkDataList(network->lines);
  return collection.INetworkDataCollection::write(HTextCodec::ToLocal8Bit(path));
}

bool Project::exportCosaTraverseFile() const { return !networkFile.isEmpty() && exportCosaTraverseFile(networkFile); }

}  // namespace kvn
