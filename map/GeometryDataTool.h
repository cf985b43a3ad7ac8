// kvn::GeometryDataTool: base of the tools that turn records into features of the map.
#pragma once

#include "core/IHasProject.h"
#include "map/KVNLayer.h"
#include "map/MapScene.h"
#include "records/FeatureDataType.h"

#include <mvz/GeometryDataTool.h>
#include <utils/Export.h>

#include <coord/xyh.h>
#include <QString>
#include <osgEarth/AnnotationLayer>
#include <osgEarth/FeatureNode>
#include <string>

namespace kvn {

/// A tool is made for one list of records, draws each of them into the layer of its type and is dropped; it knows
/// nothing of what it has drawn. Copies draw for the same scene.
class KELVANE_EXPORT GeometryDataTool : public mvz::GeometryDataTool, public IHasProject {
 public:
  /// Reads from the configuration whether descriptions are shown ("Globle.Configuration.DisplayDescribe").
  GeometryDataTool(MapScene* scene, FeatureDataType type);
  GeometryDataTool(GeometryDataTool const&);
  GeometryDataTool& operator=(GeometryDataTool const&);
  ~GeometryDataTool() override;

  bool remove(QString id) override;     ///< false: the tools take no feature away
  bool updateMap(QString id) override;  ///< false: the tools change no feature
  /// The scene's layer of the tool's type; null when the layer of that name is of another class.
  KVNLayer* getOrCreateLayer() override;
  bool getVrd_dam_para(VRD_DAM_PARA_T& parameters) const override;  ///< the project's; false without a project

  MapScene* getMapScene() const;
  Project* getProject() const override;  ///< the one that was set, else the scene's

  /// Stores on a feature: the record's id; the type's name, with ":" and the sub-kind when there is one; the name; and
  /// the addresses of the system and of the scene's project in hexadecimal digits.
  void setFeatureInfo(osgEarth::AnnotationNode* node, std::string const& id, std::string const& name,
                      std::string const& subKind);
  /// Adds a line to the layer, with its look in the normal and in the selected state.
  osgEarth::FeatureNode* drawLine(osgEarth::AnnotationLayer* layer, coord::xyh from, coord::xyh to,
                                  osgEarth::Style style, osgEarth::Style selectedStyle);

 private:
  FeatureDataType type;
};

}  // namespace kvn
