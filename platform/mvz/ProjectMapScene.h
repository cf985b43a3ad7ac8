// mvz::ProjectMapScene: what the map shows of one project.
#pragma once

#include <mvz/ILayer.h>
#include <utils/Export.h>

#include <QObject>
#include <QString>
#include <QVector>
#include <memory>
#include <osgEarth/AnnotationNode>
#include <osgEarth/Layer>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <string>
#include <vector>

namespace mvz {

class ViewerManager;

/// Layers by name. They are part of the viewers' map as long as the scene lives; a scene without viewers keeps them for
/// itself, and asks the views of every manager of the process to repaint.
class KELVANE_EXPORT ProjectMapScene : public QObject {
  Q_OBJECT

 public:
  /// @param viewerManager  held by the scene; null for a host without a map.
  ProjectMapScene(ViewerManager* viewerManager, QObject* parent);
  ProjectMapScene(ProjectMapScene const&) = delete;
  ProjectMapScene& operator=(ProjectMapScene const&) = delete;
  ~ProjectMapScene() override;

  virtual ILayer* getILayer(std::string name);                        ///< null when there is none of that name
  virtual osgEarth::Layer* getLayer(osgEarth::AnnotationNode* node);  ///< the one that holds the feature, or null
  virtual osgEarth::Layer* getLayer(std::string name);                ///< null when there is none of that name
  virtual std::vector<ILayer*> getILayers() const;
  virtual std::vector<osgEarth::Layer*> getLayers() const;   ///< in the order in which they were added
  virtual void addLayer(osgEarth::Layer* layer);             ///< null is passed over
  virtual osgEarth::MapNode* getMapNode() const;             ///< null without viewers
  virtual osgEarth::SpatialReference const* getSRS() const;  ///< the plane of the survey, metres: x east, y north

  std::string getLayerName(QString const& type) const;  ///< the type name is the layer's name
  /// Asks whoever draws that kind of record to make a feature: emits `featureRequested`.
  void addFeature(QString id, QString type);
  /// Highlights the features of these ids in the layer, and no other of this scene. Unknown ids are passed over, and an
  /// empty one too: features without an id cannot be told apart by it.
  void selectFeature(QVector<QString> ids, QString layerName);
  void clearSelect();      ///< drops highlight and picks of this scene's features
  void clearAllFeature();  ///< empties all layers of this scene
  ViewerManager* getMvzViewerManager() const;

  /// Asks the views of every manager of the process to repaint.
  static void reDraw();

  Q_SIGNAL void featureRequested(QString id, QString type);

 private:
  void repaint();

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace mvz
