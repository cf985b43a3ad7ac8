// mvz::ILayer: what a layer of the map can do beside holding its features.
#pragma once

#include <mvz/MapLibrary.h>
#include <utils/Export.h>

#include <osgEarth/AnnotationNode>
#include <string>

namespace mvz {

class KELVANE_EXPORT ILayer {
 public:
  ILayer();
  ILayer(ILayer const&) = delete;
  ILayer& operator=(ILayer const&) = delete;
  virtual ~ILayer();

  /// Removes the features of the layer; the layer itself stays where it is.
  virtual void clearFeatures() = 0;

  /// A click meets the points of a layer before those of one with a lower rank, even where these are nearer; lines in
  /// the same way. 0 unless a layer says otherwise.
  virtual int hitRank() const;

  /// The texts that `GeometryDataTool::setFeatureInfo` stored on a node; all are empty when it stored none. A null
  /// pointer skips that text.
  static void GetFeatureInfo(osgEarth::AnnotationNode* node, std::string* featureId, std::string* typeKey,
                             std::string* featureName, std::string* systemTag, std::string* projectTag);
};

}  // namespace mvz
