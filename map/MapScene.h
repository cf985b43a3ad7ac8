// MapScene: a project's view of the map, one layer for each kind of record.
#pragma once

#include "records/FeatureDataType.h"
#include "records/Network.h"

#include <mvz/ProjectMapScene.h>
#include <utils/Export.h>

#include <QString>
#include <QVector>
#include <string>
#include <vector>

namespace kvn {

class Project;

/// What a feature that was drawn of a network stands for. The pointers lead into the project's network.
struct NetworkRecords {
  std::string point;                    ///< name of the point; empty for a line
  KnownPoint* knownPoint = nullptr;     ///< the control point of that name; null where there is none
  std::vector<NetworkDataInfo*> lines;  ///< of a point, the lines that begin or end there; of a line, the line itself
};

/// Made by `Project::getOrCreateMapScene` and owned by the project. Used on the project's thread.
class KELVANE_EXPORT MapScene : public mvz::ProjectMapScene {
  Q_OBJECT

 public:
  MapScene(Project* project, mvz::ViewerManager* viewerManager, QObject* parent);
  MapScene(MapScene const&) = delete;
  MapScene& operator=(MapScene const&) = delete;
  ~MapScene() override;

  Project* getProject() const { return project; }
  void setProject(Project* value) { project = value; }

  using mvz::ProjectMapScene::getILayer;
  using mvz::ProjectMapScene::getLayer;
  using mvz::ProjectMapScene::getLayerName;

  std::string getLayerName(FeatureDataType type) const;
  osgEarth::Layer* getLayer(FeatureDataType type);  ///< null when the scene has no such layer
  mvz::ILayer* getILayer(FeatureDataType type);     ///< null when the scene has no such layer
  /// The layer of the type; a `KVNLayer` is added when there is none. Layers lie in the order of their first use.
  osgEarth::Layer* getOrCreateLayer(FeatureDataType type);
  bool removeFeature(FeatureDataType type);  ///< empties the layer, which stays; false when there is none

  std::vector<std::string> getSelectIDList(FeatureDataType type);  ///< ids of the picked features of the layer
  /// The picked features of the type, in the order of picking: all its sub-kinds, stations and targets.
  std::vector<osgEarth::AnnotationNode*> getSelectFeatureList(FeatureDataType type) const;

  /// The records behind a feature of this scene that was drawn of the network: of a station by its name, of a line by
  /// its ends, from station to target, the first such line of the network. Nothing for any other feature: those of
  /// rows and coordinate points have the id of their record, and lines of rows have no record. Nothing either for what
  /// the network no longer holds.
  NetworkRecords findNetworkRecords(osgEarth::AnnotationNode* node);

  /// Highlights the feature of that id and no other; nothing for an empty or an unknown id.
  Q_SLOT void selectFeature(QString id, kvn::FeatureDataType t);
  Q_SLOT void selectFeature(QVector<QString> ids, kvn::FeatureDataType t);
  Q_SLOT void addFeature(QString id, kvn::FeatureDataType type);

  Q_SIGNAL void onModifyData(QString featureDataType, QString id = QString());  ///< for the host's use

 private:
  Project* project;
};

}  // namespace kvn
