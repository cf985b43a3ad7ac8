#include <osgEarth/AnnotationLayer>
#include <osgEarth/FeatureNode>
#include <osgEarth/MapNode>
#include <osgEarth/PlaceNode>

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <osg/Geometry>
#include <osgUtil/RenderLeaf>
#include <osgUtil/SceneView>
#include <set>
#include <string>
#include <vector>

namespace osgEarth {
namespace {

constexpr double kEast = 500000.0;
constexpr double kNorth = 4000000.0;
constexpr int kLineBin = 1;
constexpr int kPlaceBin = 2;

GeoPoint at(double east, double north) {
  return {SpatialReference::create("epsg:4547"), kEast + east, kNorth + north, 0.0, ALTMODE_ABSOLUTE};
}

osg::ref_ptr<osg::Image> image(int width, int height) {
  osg::ref_ptr<osg::Image> result = new osg::Image;
  result->allocateImage(width, height, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  return result;
}

/// The text of a drawable of a PlaceNode that is no icon; empty for an icon.
std::string labelOf(osg::Drawable const& drawable) {
  if (drawable.asGeometry() != nullptr) return {};
  return dynamic_cast<PlaceNode const&>(*drawable.getParent(0)->getParent(0)).getText();
}

/// A view of 400 by 200 pixels onto the grid point, without a graphics context: it culls and does not draw.
class CulledView {
 public:
  explicit CulledView(osg::Node* scene) {
    view->setDefaults();
    view->setSceneData(scene);
    view->setViewport(0, 0, 400, 200);
    view->setProjectionMatrixAsOrtho(-200.0, 200.0, -100.0, 100.0, -1000.0, 1000.0);
    osg::Vec3d const center(kEast, kNorth, 0.0);
    view->setViewMatrixAsLookAt(center + osg::Vec3d(0, 0, 100), center, osg::Vec3d(0, 1, 0));
  }

  std::set<std::string> labels() {
    view->cull();
    std::set<std::string> texts;
    for (osgUtil::RenderLeaf const* leaf : leaves()) {
      std::string const text = labelOf(*leaf->getDrawable());
      if (!text.empty()) texts.insert(text);
    }
    return texts;
  }

  osgUtil::RenderBin::RenderLeafList leaves() {
    auto const& bins = view->getRenderStage()->getRenderBinList();
    auto const found = bins.find(kPlaceBin);
    return found == bins.end() ? osgUtil::RenderBin::RenderLeafList() : found->second->getRenderLeafList();
  }

  /// Of the lines in sight.
  std::size_t lines() {
    view->cull();
    std::size_t count = 0;
    auto const found = view->getRenderStage()->getRenderBinList().find(kLineBin);
    if (found == view->getRenderStage()->getRenderBinList().end()) return 0;
    for (osgUtil::StateGraph const* state : found->second->getStateGraphList()) count += state->_leaves.size();
    return count;
  }

  osg::ref_ptr<osgUtil::SceneView> const view = new osgUtil::SceneView;
};

TEST(OsgEarthFeatureNode, DrawsEachFeatureOnceWhateverChanges) {
  osg::ref_ptr<LineString> const line = new LineString;
  line->push_back(kEast + 0.1234, kNorth + 0.4321, 55.5555);
  line->push_back(kEast + 90.0, kNorth - 80.0, 56.1111);
  osg::ref_ptr<FeatureNode> const node = new FeatureNode(new Feature(line, SpatialReference::create("epsg:4547")));
  node->setStyle(Style());
  CulledView view(node);
  EXPECT_EQ(view.lines(), 1u) << "a change of style replaces what is there";
  view.view->setViewMatrix(osg::Matrixd::translate(-kEast - 1000.0, -kNorth, 0.0));
  EXPECT_EQ(view.lines(), 0u) << "a line out of view is left out";
  node->setFeature(nullptr);
  EXPECT_TRUE(node->getNumChildren() == 0 && node->getFeature() == nullptr);
}

// Bounds are in single precision, which has steps of a quarter of a metre at 4,000 km: more than this view is high.
TEST(OsgEarthFeatureNode, IsInSightOfACloseView) {
  osg::ref_ptr<LineString> const line = new LineString;
  line->push_back(kEast + 0.02, kNorth + 0.10);
  line->push_back(kEast + 0.03, kNorth + 0.11);
  CulledView view(new FeatureNode(new Feature(line, nullptr)));
  view.view->setProjectionMatrixAsOrtho(-0.1, 0.1, -0.05, 0.05, -1000.0, 1000.0);
  view.view->setViewMatrix(osg::Matrixd::translate(-line->front()));
  EXPECT_EQ(view.lines(), 1u);
}

TEST(OsgEarthPlaceNode, HasOnlyItsTextWhereTheIconCannotBeRead) {
  Style style;
  style.getOrCreate<IconSymbol>()->url().mutable_value().setLiteral(std::string("no\\such file.png"));
  osg::ref_ptr<PlaceNode> const node = new PlaceNode(at(0, 0), "P1", style);
  EXPECT_EQ(node->getIconImage(), nullptr);
  auto* const drawn = node->getChild(0)->asGroup();
  ASSERT_EQ(drawn->getNumChildren(), 1u);
  EXPECT_EQ(labelOf(*drawn->getChild(0)->asDrawable()), "P1");
  node->setText("");
  EXPECT_EQ(drawn->getNumChildren(), 0u);
  node->setIconImage(image(8, 8));
  node->setText("P2");
  EXPECT_EQ(drawn->getNumChildren(), 2u);
  EXPECT_LT((drawn->getBound().center() - osg::Vec3(at(0, 0).vec3d())).length(), 0.5) << "single precision at 4,000 km";
}

TEST(OsgEarthPlaceNode, MeasuresPixelsUprightInEveryView) {
  osg::ref_ptr<PlaceNode> const node = new PlaceNode(at(3.0, 4.0), "", Style(), image(20, 10));
  CulledView parallel(node);
  CulledView oblique(node);
  oblique.view->setProjectionMatrixAsPerspective(40.0, 2.0, 1.0, 1e4);
  osg::Vec3d const center(kEast, kNorth, 0.0);
  oblique.view->setViewMatrixAsLookAt(center + osg::Vec3d(30, -160, 120), center, osg::Vec3d(0.3, 0, 1));
  for (CulledView* view : {&parallel, &oblique, &parallel}) {
    view->view->cull();
    auto const leaves = view->leaves();
    ASSERT_EQ(leaves.size(), 1u);
    osg::Matrixd const window = view->view->getViewport()->computeWindowMatrix();
    osg::Matrixd const local = osg::Matrixd(*leaves[0]->_modelview) * osg::Matrixd(*leaves[0]->_projection) * window;
    osg::Vec3d const place =
        node->getPosition().vec3d() * view->view->getViewMatrix() * osg::Matrixd(*leaves[0]->_projection) * window;
    auto const& corners =
        dynamic_cast<osg::Vec3Array const&>(*leaves[0]->getDrawable()->asGeometry()->getVertexArray());
    // Lower left and upper right of an icon that stands on its position. Doubles of 4e6 leave 1e-9 m; a pixel is 0.3 m
    // or more.
    osg::Vec3d const low = osg::Vec3d(corners[0]) * local - place;
    osg::Vec3d const high = osg::Vec3d(corners[3]) * local - place;
    EXPECT_NEAR(low.x(), -10.0, 1e-6);
    EXPECT_NEAR(low.y(), 0.0, 1e-6);
    EXPECT_NEAR(high.x(), 10.0, 1e-6);
    EXPECT_NEAR(high.y(), 10.0, 1e-6);
  }
}

TEST(OsgEarthPlaceNode, DropsTheLabelOfLowerPriorityAndThenTheLaterOne) {
  Style always;
  always.getOrCreate<TextSymbol>()->declutter() = false;
  osg::ref_ptr<osg::Group> const scene = new osg::Group;
  auto const add = [&](double east, double north, char const* text, Style const& style = Style()) {
    osg::ref_ptr<PlaceNode> node = new PlaceNode(at(east, north), text, style);
    scene->addChild(node);
    return node;
  };
  auto const first = add(0, 0, "first");
  auto const second = add(5, 2, "second");
  add(0, 60, "apart");
  add(100, -60, "gives way");
  add(104, -59, "always", always);
  add(90, 40, "over the icon");
  scene->addChild(new PlaceNode(at(110, 40), "", Style(), image(8, 8)));
  add(-201, -50, "reaches into the view");
  add(-500, 0, "away");
  CulledView view(scene);
  using Set = std::set<std::string>;
  EXPECT_EQ(view.labels(), (Set{"first", "apart", "always", "reaches into the view"}));
  second->setPriority(1.0f);
  second->setText("now second");
  EXPECT_EQ(view.labels(), (Set{"now second", "apart", "always", "reaches into the view"}));
}

TEST(OsgEarthPlaceNode, KeepsExactlyTheLabelsThatComparingAllPairsWouldKeep) {
  osg::ref_ptr<osg::Group> const scene = new osg::Group;
  std::vector<osg::ref_ptr<PlaceNode>> nodes;
  unsigned random = 12345;
  auto const next = [&random](unsigned range) {
    return static_cast<double>((random = random * 1664525u + 1013904223u) >> 8u) * range / (1u << 24u);
  };
  for (int i = 0; i < 300; ++i) {
    nodes.emplace_back(new PlaceNode(at(next(300) - 150, next(180) - 90),
                                     std::string(1 + static_cast<std::size_t>(next(12)), 'x') + std::to_string(i)));
    nodes.back()->setPriority(std::floor(static_cast<float>(next(5))));
    scene->addChild(nodes.back());
  }
  std::stable_sort(nodes.begin(), nodes.end(),
                   [](auto const& a, auto const& b) { return a->getPriority() > b->getPriority(); });
  std::set<std::string> expected;
  std::vector<osg::BoundingBox> kept;
  for (auto const& node : nodes) {
    // One unit is a pixel in this view, and its whole is seen.
    osg::BoundingBox box = node->getChild(0)->asGroup()->getChild(0)->asDrawable()->getBoundingBox();
    osg::Vec3 const move(node->getPosition().vec3d() - osg::Vec3d(kEast, kNorth, 0.0));
    box.set(box._min + move, box._max + move);
    auto const overlaps = [&box](osg::BoundingBox const& o) {
      return box.xMin() < o.xMax() && o.xMin() < box.xMax() && box.yMin() < o.yMax() && o.yMin() < box.yMax();
    };
    box.xMax() = std::min(box.xMax(), 200.0f);
    if (std::any_of(kept.begin(), kept.end(), overlaps)) continue;
    kept.push_back(box);
    expected.insert(node->getText());
  }
  EXPECT_GT(expected.size(), 20u);
  EXPECT_EQ(CulledView(scene).labels(), expected);
}

TEST(OsgEarthMapNode, ShowsTheLayersOfItsMapAsTheyComeAndGo) {
  osg::ref_ptr<Map> const map = new Map;
  osg::ref_ptr<AnnotationLayer> const early = new AnnotationLayer;
  osg::ref_ptr<AnnotationLayer> const late = new AnnotationLayer;
  late->setName("late");
  map->addLayer(early);
  osg::ref_ptr<MapNode> node = new MapNode(map);
  map->addLayer(late);
  map->addLayer(late);
  EXPECT_TRUE(late->isOpen());
  EXPECT_EQ(map->getNumLayers(), 2u);
  EXPECT_EQ(map->getLayerByName("late"), late);
  EXPECT_EQ(MapNode::get(late->getNode()), node);
  osg::ref_ptr<PlaceNode> const place = new PlaceNode(at(0, 0), "P");
  late->addChild(place);
  EXPECT_EQ(place->getMapNode(), node);
  late->setVisible(false);
  EXPECT_EQ(CulledView(node).labels().size(), 0u);
  late->setVisible(true);
  EXPECT_EQ(CulledView(node).labels().size(), 1u);
  map->removeLayer(late);
  EXPECT_FALSE(late->isOpen());
  EXPECT_EQ(place->getMapNode(), nullptr);
  EXPECT_EQ(CulledView(node).labels().size(), 0u);
  node = nullptr;
  map->addLayer(late);  // tells no map node that is gone
  EXPECT_EQ(late->getGroup()->getNumParents(), 0u);
}

}  // namespace
}  // namespace osgEarth
