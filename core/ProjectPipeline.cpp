// The steps from observations to results, and the checks of the rows.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TriangleHeightAdjust.h"
#include "adjust/TriangleHeightDataConvert.h"
#include "adjust/TriangleHeightDataRead.h"
#include "commands/CommandManager.h"
#include "core/OutputReport.h"
#include "core/Project.h"
#include "formats/INetworkDataCollection.h"
#include "formats/ITraverseDataCollcetion.h"
#include "legend/XmlMannager.h"
#include "map/MapScene.h"
#include "records/detail/Messages.h"
#include "reduction/DataManager.h"
#include "reduction/ErrorInfo.h"
#include "reduction/TraverseDataManage.h"

#include <utils/QLogicError.h>

namespace kvn {
namespace {

// The reader keeps a copy of the rows, for which there is no need while the heights are adjusted.
TriangleHeightDataConvert heightDifferences(std::vector<TraverseDataInfo> const& rows, VerticalAngleType type,
                                            double refraction) {
  TriangleHeightDataRead reader(type);
  reader.setTraverseDataList(rows, refraction);
  TriangleHeightDataConvert convert;
  convert.setTriangleHeightDataRead(reader);
  return convert;
}

}  // namespace

void Project::buildStationMap() { stationMap = DataManager().buildStationMap(*traverseDataList); }

bool Project::generateNetworkData() {
  if (fileType == LqfFile) {
    // The map leads into the rows and holds their reduced angles: after any change of a row it could be stale.
    if (!stationMap.empty()) buildStationMap();
    network->lines = INetworkDataCollection::TraverseMapToNetWork(stationMap);
    network->knownPoints = knownPointList;
  } else if (fileType == VrdFile && !traverseDataList->empty()) {
    *network = INetworkDataCollection::TraverseDataListToNetwork(*traverseDataList);
  }
  return true;
}

void Project::calculateTriangleHeight() {
  TriangleHeightDataConvert const convert =
      heightDifferences(*traverseDataList, verticalAngleType, double(configure.AtmosphericIndex));
  if (triangleHeightAdjust == nullptr) triangleHeightAdjust = std::make_unique<TriangleHeightAdjust>();
  triangleHeightAdjust->clearCalData();
  triangleHeightAdjust->setTriangleHeightDataConvert(convert);
  triangleHeightAdjust->heightLSAdjust();
}

void Project::algorithmPointConvertCoord() {
  if (algorithmAdjust == nullptr) throw QLogicError(Messages::tr("There is no adjustment result"));
  *coordinatePointList = algorithmAdjust->getCoordinatePointXYList();
  if (configure.TraversePointAdjust == 0 && triangleHeightAdjust != nullptr)
    triangleHeightAdjust->convertCoordZ(*coordinatePointList);
}

bool Project::checkVRDData() { return TraverseDataManage::checkData(*traverseDataList); }

void Project::resetVRDDataState() { TraverseDataManage::resetVRDDataState(*traverseDataList); }

void Project::printErrorInfo(std::vector<ErrorInfo> const& errors, bool announce) const {
  if (announce && !errors.empty()) {
    Messages::send(Messages::tr("The data is error or inconsistent, please check the data"), Error);
  }
  for (QString const& line : Translation(errors)) Messages::send(line, Warning);
}

}  // namespace kvn
