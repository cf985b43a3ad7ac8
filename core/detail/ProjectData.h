// What a project holds; for the sources of Project alone.
#pragma once

#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TriangleHeightAdjust.h"
#include "commands/CommandManager.h"
#include "core/OutputReport.h"
#include "core/Project.h"
#include "formats/ITraverseDataCollcetion.h"
#include "legend/XmlMannager.h"
#include "map/MapScene.h"

#include <utils/detail/PrivateData.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace kvn {

struct KELVANE_PRIVATE Project::Data {
  KELVANE_LATER_MEMBER
  std::unique_ptr<CommandManager> commandManager;
  std::unique_ptr<MapScene> mapScene;
  std::uint64_t saveTime = 0;
  std::uint64_t modifyTime = 0;
  QString projectFile;
  QString name;
  QString networkFile;
  QString viewFile;
  QString coordFile;
  QString lqfFile;
  QString version = QStringLiteral("1.0.1");
  FileType fileType = VrdFile;
  Configure configure;
  QString networkMapid;
  std::unique_ptr<ITraverseDataCollcetion> lqfCollection;
  std::unique_ptr<std::vector<TraverseDataInfo>> traverseDataList = std::make_unique<std::vector<TraverseDataInfo>>();
  std::unique_ptr<Network> network = std::make_unique<Network>();
  std::unique_ptr<std::vector<CoordinatePointInfo>> coordinatePointList =
      std::make_unique<std::vector<CoordinatePointInfo>>();
  std::unique_ptr<AlgorithmData> algorithData;
  std::unique_ptr<AlgorithmAdjust> algorithmAdjust;
  std::unique_ptr<OutputReport> outputReport;
  std::unique_ptr<TriangleHeightAdjust> triangleHeightAdjust = std::make_unique<TriangleHeightAdjust>();
  std::unique_ptr<XmlMannager> legendCodeXmlMannager;
  VRD_DAM_PARA_T datumParam{};
  VerticalAngleType verticalAngleType = FullCircleZenith;
  OperationType operationType = ObservationView;
  StationMap stationMap;
  std::vector<KnownPoint> knownPointList;
  /// The source files are not what rows and network came from: the import of a traverse file ended half-way.
  bool sourcesAreOfOtherData = false;
  /// Places in `knownPointList` by name; made anew when its size is not that of the list.
  std::unordered_multimap<std::string, std::size_t> knownPointPlaces;
};

}  // namespace kvn
