// The steps from observations to results, and the checks of the rows.
#include "adjust/TriangleHeightDataConvert.h"
#include "adjust/TriangleHeightDataRead.h"
#include "core/detail/ProjectData.h"
#include "formats/INetworkDataCollection.h"
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

void Project::buildStationMap() { own->stationMap = DataManager().buildStationMap(*own->traverseDataList); }

bool Project::generateNetworkData() {
  if (own->fileType == LqfFile) {
    // The map leads into the rows and holds their reduced angles: after any change of a row it could be stale.
    if (!own->stationMap.empty()) buildStationMap();
    own->network->lines = INetworkDataCollection::TraverseMapToNetWork(own->stationMap);
    own->network->knownPoints = own->knownPointList;
  } else if (own->fileType == VrdFile && !own->traverseDataList->empty()) {
    *own->network = INetworkDataCollection::TraverseDataListToNetwork(*own->traverseDataList);
  }
  return true;
}

void Project::calculateTriangleHeight() {
  TriangleHeightDataConvert const convert =
      heightDifferences(*own->traverseDataList, own->verticalAngleType, double(own->configure.AtmosphericIndex));
  if (own->triangleHeightAdjust == nullptr) own->triangleHeightAdjust = std::make_unique<TriangleHeightAdjust>();
  own->triangleHeightAdjust->clearCalData();
  own->triangleHeightAdjust->setTriangleHeightDataConvert(convert);
  own->triangleHeightAdjust->heightLSAdjust();
}

void Project::algorithmPointConvertCoord() {
  if (own->algorithmAdjust == nullptr) throw QLogicError(Messages::tr("There is no adjustment result"));
  *own->coordinatePointList = own->algorithmAdjust->getCoordinatePointXYList();
  if (own->configure.TraversePointAdjust == 0 && own->triangleHeightAdjust != nullptr)
    own->triangleHeightAdjust->convertCoordZ(*own->coordinatePointList);
}

bool Project::checkVRDData() { return TraverseDataManage::checkData(*own->traverseDataList); }

void Project::resetVRDDataState() { TraverseDataManage::resetVRDDataState(*own->traverseDataList); }

void Project::printErrorInfo(std::vector<ErrorInfo> const& errors, bool announce) const {
  if (announce && !errors.empty()) {
    Messages::send(Messages::tr("The data is error or inconsistent, please check the data"), Error);
  }
  for (QString const& line : Translation(errors)) Messages::send(line, Warning);
}

}  // namespace kvn
