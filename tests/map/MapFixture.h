// A project with viewers, and what its scene holds.
#pragma once

#include <gtest/gtest.h>
#include <array>
#include <memory>
#include <osgEarth/AnnotationLayer>
#include <osgEarth/Map>
#include <string>
#include <vector>

#include "support/Support.h"

namespace test {

/// The features of a layer, in the order in which they were drawn.
inline std::vector<osgEarth::AnnotationNode*> featuresOf(kvn::MapScene& scene, kvn::FeatureDataType type) {
  std::vector<osgEarth::AnnotationNode*> features;
  auto const* const layer = dynamic_cast<osgEarth::AnnotationLayer const*>(scene.getLayer(type));
  for (unsigned i = 0; layer != nullptr && i < layer->getGroup()->getNumChildren(); ++i) {
    features.push_back(dynamic_cast<osgEarth::AnnotationNode*>(layer->getGroup()->getChild(i)));
  }
  return features;
}

/// featureId, typeKey, featureName, systemTag, projectTag.
inline std::array<std::string, 5> infoOf(osgEarth::AnnotationNode* node) {
  std::array<std::string, 5> texts;
  mvz::ILayer::GetFeatureInfo(node, &texts[0], &texts[1], &texts[2], &texts[3], &texts[4]);
  return texts;
}

/// Viewers that keep the names of the layers that they were to frame, each with a semicolon.
struct FramingRecorder : mvz::ViewerManager {
  std::vector<std::string> framed;

  void fullMapAllView(std::vector<osgEarth::Layer*> layers) override {
    framed.emplace_back();
    for (osgEarth::Layer const* layer : layers) framed.back() += (layer == nullptr ? "null" : layer->getName()) + ";";
  }
};

struct MapProject : testing::Test {
  Host host;
  kvn::System& system = host.system;
  osg::ref_ptr<mvz::ViewerManager> viewers = new mvz::ViewerManager;
  osg::ref_ptr<mvz::View> view = new mvz::View(800, 600);
  std::shared_ptr<kvn::Project> project;

  MapProject() {
    viewers->addView(view);
    system.setMvzViewerManager(viewers);
    project = system.createProject();
    system.setCurrentProject(project);
  }

  static kvn::CoordinatePointInfo point(std::string const& id, std::string const& name, double north, double east) {
    kvn::CoordinatePointInfo result;
    result.id = id;
    result.name = name;
    result.N = north;
    result.E = east;
    return result;
  }

  static kvn::TraverseDataInfo row(std::string const& id, kvn::TraversePointType type, double north, double east) {
    kvn::TraverseDataInfo result;
    result.id = id;
    result.name = id;
    result.pointType = type;
    result.N = north;
    result.E = east;
    return result;
  }

  /// A station "s" at 4000000, 500000, a target "t" 100 m north and east of it with the line between them, and a
  /// coordinate point "c" further east.
  void drawOneOfEach() {
    project->setTraverseDataList({row("s", kvn::TraversePointType::StationPoint, 4000000, 500000),
                                  row("t", kvn::TraversePointType::PrismPoint, 4000100, 500100)});
    project->setCoordinatePointList({point("c", "C", 4000050, 500200)});
    project->build();
  }
};

}  // namespace test
