// The steps from observations to results, and the checks of the rows.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TriangleHeightAdjust.h"
#include "adjust/TriangleHeightDataConvert.h"
#include "adjust/TriangleHeightDataRead.h"
#include "commands/CommandManager.h"
#include "core/OutputReport.h"
#include "core/Project.h"
#include "core/System.h"
#include "formats/INetworkDataCollection.h"
#include "formats/ITraverseDataCollcetion.h"
#include "map/MapScene.h"
#include "reduction/DataManager.h"
#include "reduction/ErrorInfo.h"
#include "reduction/TraverseDataManage.h"

namespace kvn {

void Project::buildStationMap() { stationMap = DataManager().buildStationMap(*traverseDataList); }

bool Project::generateNetworkData() {
  if (fileType == LqfFile) {
    network->lines = INetworkDataCollection::TraverseMapToNetWork(stationMap);
    network->knownPoints = knownPointList;
  } else if (fileType == VrdFile && !traverseDataList->empty()) {
    *network = INetworkDataCollection::TraverseDataListToNetwork(*traverseDataList);
  }
  return true;
}

void Project::calculateTriangleHeight() {
  TriangleHeightDataRead reader(verticalAngleType);
  reader.setTraverseDataList(*traverseDataList, double(configure.AtmosphericIndex));
  TriangleHeightDataConvert convert;
  convert.setTriangleHeightDataRead(reader);
  triangleHeightAdjust->clearCalData();
  triangleHeightAdjust->setTriangleHeightDataConvert(convert);
  triangleHeightAdjust->heightLSAdjust();
}

void Project::algorithmPointConvertCoord() {
  if (algorithmAdjust == nullptr) return;
  *coordinatePointList = algorithmAdjust->getCoordinatePointXYList();
  if (configure.TraversePointAdjust == 0) triangleHeightAdjust->convertCoordZ(*coordinatePointList);
}

bool Project::checkVRDData() { return TraverseDataManage::checkData(*traverseDataList); }

void Project::resetVRDDataState() { TraverseDataManage::resetVRDDataState(*traverseDataList); }

void Project::printErrorInfo(std::vector<ErrorInfo> const& errors, bool announce) const {
  System const* const system = System::Instance();
  if (system == nullptr) return;
  if (announce && !errors.empty()) {
    system->sendMessage(System::tr("The data is error or inconsistent, please check the data"), Error);
  }
  for (QString const& line : Translation(errors)) system->sendMessage(line, Warning);
}

}  // namespace kvn
