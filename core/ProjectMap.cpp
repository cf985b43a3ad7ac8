// The map of a project: its scene, what is drawn there, and what is taken off.
#include "core/System.h"
#include "core/detail/ProjectData.h"
#include "map/CoordinateDataTool.h"
#include "map/LineDataTool.h"
#include "map/MapShowData.h"
#include "map/PointDataTool.h"
#include "records/detail/Messages.h"

#include <mvz/ViewerManager.h>

#include <new>
#include <utility>

namespace kvn {
namespace {

mvz::ViewerManager* viewers() {
  System const* const system = System::Instance();
  return system == nullptr ? nullptr : system->getMvzViewerManager();
}

/// Framing needs a scene, since it is the scene that has layers. A scene that was made before the system had viewers
/// is framed by those of the system.
void frame(MapScene* scene, FeatureDataType type) {
  if (scene == nullptr) return;
  mvz::ViewerManager* const own = scene->getMvzViewerManager();
  mvz::ViewerManager* const manager = own == nullptr ? viewers() : own;
  if (manager != nullptr) manager->fullMapAllView({scene->getLayer(type)});
}

/// An end that found no point has no name either.
bool isPlaced(DrawLine const& line, NetworkDataInfo const& observed) {
  return line.start.name == observed.start_name && line.end.name == observed.end_name;
}

QString nameOf(NetworkDataInfo const& observed) {
  return QString::fromStdString(observed.start_name) + "-" + QString::fromStdString(observed.end_name);
}

void tellUnplaced(NetworkDataInfo const& observed) {
  Messages::send(Messages::tr("The line %1 is not drawn: an end has no coordinates").arg(nameOf(observed)), Warning);
}

}  // namespace

MapScene* Project::getOrCreateMapScene() {
  if (own->mapScene == nullptr) own->mapScene = std::make_unique<MapScene>(this, viewers(), nullptr);
  return own->mapScene.get();
}

void Project::clearMapData() {
  if (own->mapScene == nullptr) return;
  own->mapScene->clearAllFeature();
  mvz::ProjectMapScene::reDraw();
}

void Project::clearMapData(FeatureDataType type, bool redraw) {
  if (own->mapScene == nullptr) return;
  own->mapScene->removeFeature(type);
  if (redraw) mvz::ProjectMapScene::reDraw();
}

void Project::build() {
  buildMapInputData();
  buildCoordData();
}

void Project::buildMapInputData() {
  if (own->network->isEmpty() && own->traverseDataList->empty()) return;
  bool const ofRows = own->operationType == ObservationView && !own->traverseDataList->empty();
  std::vector<NetworkDataInfo> const observed = own->network->lines;  // a message may lead to a change of the network
  MapShowData input;
  try {
    if (ofRows) {
      input.setTraverseDataList(*own->traverseDataList);
      input.convertTraverseData();
    } else if (!own->network->isEmpty()) {
      input.setNetwrok(*own->network);
      input.calculateApproximate();
      input.handle();
    }
  } catch (std::bad_alloc const&) {
    throw;  // says nothing about the points
  } catch (std::exception const& failure) {
    Messages::send(QString::fromUtf8(failure.what()) + "," + Messages::tr("generate map data failed"), Error);
    return;
  }
  LineDataTool lineTool(getOrCreateMapScene());
  for (std::size_t i = 0; i < input.getLine().size(); ++i) {  // a network gives one for each of its lines
    DrawLine const& line = input.getLine()[i];
    if (ofRows || isPlaced(line, observed[i])) {
      lineTool.build(line);
    } else {
      tellUnplaced(observed[i]);
    }
  }
  PointDataTool pointTool(getOrCreateMapScene());
  for (DrawPoint const& point : input.getPoint()) pointTool.build(point);
  frame(own->mapScene.get(), FeatureDataType::NetworkData);
}

void Project::buildCoordData() {
  if (own->coordinatePointList->empty()) return;
  MapScene* const scene = getOrCreateMapScene();
  auto const hold = mvz::ViewerManager::LockOf(scene->getMvzViewerManager());
  CoordinateDataTool tool(scene);
  std::vector<CoordinatePointInfo> const points = *own->coordinatePointList;  // the cancel query may change the list
  for (CoordinatePointInfo const& point : points) {
    checkCancelAndThrow();
    tool.build(point);
  }
  mvz::ProjectMapScene::reDraw();
}

void Project::fullShowMap() {
  if (!own->coordinatePointList->empty()) frame(own->mapScene.get(), FeatureDataType::CoordData);
  if (own->network->isEmpty() && own->algorithmAdjust == nullptr) return;
  frame(own->mapScene.get(), FeatureDataType::NetworkData);
}

}  // namespace kvn
