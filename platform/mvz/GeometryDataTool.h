// mvz::GeometryDataTool: makes the features of one kind of record.
#pragma once

#include <mvz/CommonAnnotationLayer.h>
#include <mvz/ProjectMapScene.h>
#include <mvz/VRD_DAM_PARA_T.h>
#include <utils/Export.h>

#include <coord/xyh.h>
#include <QString>
#include <osgEarth/AnnotationNode>
#include <osgEarth/GeoData>
#include <osgEarth/PlaceNode>
#include <osgEarth/Style>
#include <string>

namespace mvz {

/// Bound to a scene, which outlives it. What is made goes to the layer, and looks as the styles, that the virtual
/// operations give.
class KELVANE_EXPORT GeometryDataTool {
 public:
  explicit GeometryDataTool(ProjectMapScene* scene);
  GeometryDataTool(GeometryDataTool const&);
  GeometryDataTool(GeometryDataTool&&) noexcept;
  GeometryDataTool& operator=(GeometryDataTool const&);
  GeometryDataTool& operator=(GeometryDataTool&&) noexcept;
  virtual ~GeometryDataTool();

  virtual bool remove(QString id) = 0;
  virtual bool updateMap(QString id) = 0;
  virtual CommonAnnotationLayer* getOrCreateLayer() = 0;  ///< null: nothing is drawn
  virtual osgEarth::Layer* getLayer() const;              ///< the same layer, made when it is not there yet
  /// Looks of a feature in the normal and in the selected state: line, label font and size.
  virtual osgEarth::Style getStyle() const;
  virtual osgEarth::Style getSelectedStyle() const;
  /// Datum of the plane coordinates; false when there is none.
  virtual bool getVrd_dam_para(VRD_DAM_PARA_T& parameters) const = 0;

  ProjectMapScene* getMapScene() const { return mapScene; }
  bool isDrawDescription() const { return drawDescription; }
  void setIsDrawDescription(bool value) { drawDescription = value; }

  /// Makes an icon with a text in the tool's layer; null without a layer. Metres.
  osgEarth::PlaceNode* createPoint(QString text, double east, double north, double height);
  /// The point on the map. Our map is the plane itself, whatever the datum: x of the map is east, y is north.
  /// A height that no view shows, or that is no number, becomes 0.
  osgEarth::GeoPoint toGeoPoint(coord::xyh point);
  /// Stores the texts by which the record behind a feature is found; read them with `ILayer::GetFeatureInfo`. A null
  /// node is passed over.
  void setFeatureInfo(osgEarth::AnnotationNode* node, std::string const& featureId, std::string const& typeKey,
                      std::string const& featureName, std::string const& systemTag, std::string const& projectTag);

 private:
  ProjectMapScene* mapScene = nullptr;
  bool drawDescription = false;
};

}  // namespace mvz
