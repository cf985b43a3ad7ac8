#include <mvz/detail/Decoration.h>
#include <mvz/detail/MapFont.h>
#include <mvz/detail/PlanScale.h>
#include <mvz/detail/Shading.h>
#include <utils/detail/InstalledCode.h>

#include <osg/Geometry>
#include <osgText/Text>
#include <string>
#include <utility>
#include <vector>

namespace mvz::detail {
namespace {

/// Pixels between the edge of the picture and what stands there.
constexpr float kInset = 16;
/// Pixels of white around everything dark.
constexpr float kHalo = 2;
constexpr float kTextSize = 15;
constexpr float kBarThickness = 2;
constexpr float kBarTick = 8;
constexpr float kArrowHeight = 36;
constexpr float kArrowHalfWidth = 7;
/// The longest bar, as a part of the picture's width.
constexpr double kLongestBar = 0.2;
/// Narrower pictures have no room for either.
constexpr double kLeastSize = 100;

osg::Vec4 const& dark() {
  static osg::Vec4 const colour(0.1F, 0.1F, 0.1F, 1);
  return colour;
}

osg::Vec4 const& white() {
  static osg::Vec4 const colour(1, 1, 1, 1);
  return colour;
}

osg::ref_ptr<osg::Geometry> polygon(std::vector<osg::Vec2> const& corners, osg::Vec4 const& colour) {
  osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
  osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
  for (osg::Vec2 const& corner : corners) vertices->push_back(osg::Vec3(corner.x(), corner.y(), 0));
  geometry->setVertexArray(vertices);
  osg::ref_ptr<osg::Vec4Array> colours = new osg::Vec4Array(1, &colour);
  geometry->setColorArray(colours, osg::Array::BIND_OVERALL);
  geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, static_cast<GLsizei>(vertices->size())));
  return geometry;
}

osg::ref_ptr<osg::Geometry> box(float left, float bottom, float right, float top, osg::Vec4 const& colour) {
  return polygon({{left, bottom}, {right, bottom}, {right, top}, {left, top}}, colour);
}

osg::ref_ptr<osgText::Text> text(std::string const& utf8, osg::Vec2 const& place) {
  utils::InstalledCode const guard;
  osg::ref_ptr<osgText::Text> label = new osgText::Text;
  if (!mapFontFile().empty()) label->setFont(mapFontFile());
  label->setText(utf8, osgText::String::ENCODING_UTF8);
  label->setCharacterSize(kTextSize);
  label->setFontResolution(static_cast<unsigned>(kTextSize), static_cast<unsigned>(kTextSize));
  label->setAlignment(osgText::Text::CENTER_BOTTOM_BASE_LINE);
  label->setPosition(osg::Vec3(place.x(), place.y(), 0));
  label->setColor(dark());
  label->setBackdropType(osgText::Text::OUTLINE);
  label->setBackdropColor(white());
  return label;
}

void addScaleBar(osg::Group& group, double pictureWidth, double metresPerPixel) {
  double const length = scaleBarLength(kLongestBar * pictureWidth * metresPerPixel);
  float const left = kInset;
  float const right = left + static_cast<float>(length / metresPerPixel);
  float const bottom = kInset;
  std::pair<float, osg::Vec4> const layers[] = {{kHalo, white()}, {0, dark()}};
  for (auto const& [edge, colour] : layers) {
    group.addChild(box(left - edge, bottom - edge, right + edge, bottom + kBarThickness + edge, colour));
    for (float const tick : {left, right - kBarThickness}) {
      group.addChild(box(tick - edge, bottom - edge, tick + kBarThickness + edge, bottom + kBarTick + edge, colour));
    }
  }
  group.addChild(text(scaleBarText(length).toStdString(), {(left + right) / 2, bottom + kBarTick + kHalo}));
}

std::vector<osg::Vec2> arrow(osg::Vec2 const& foot, float edge) {
  // The slim tip needs a longer edge than the foot to be as thick at the sides.
  float const tip = edge * kArrowHeight / kArrowHalfWidth / 2;
  return {{foot.x() - kArrowHalfWidth - 1.5F * edge, foot.y() - edge},
          {foot.x() + kArrowHalfWidth + 1.5F * edge, foot.y() - edge},
          {foot.x(), foot.y() + kArrowHeight + tip}};
}

void addNorthArrow(osg::Group& group, double pictureWidth, double pictureHeight) {
  osg::Vec2 const foot(static_cast<float>(pictureWidth) - kInset - kArrowHalfWidth,
                       static_cast<float>(pictureHeight) - kInset - kTextSize - kArrowHeight);
  group.addChild(polygon(arrow(foot, kHalo), white()));
  group.addChild(polygon(arrow(foot, 0), dark()));
  group.addChild(text("N", {foot.x(), foot.y() + kArrowHeight + 2 * kHalo}));
}

}  // namespace

Decoration::Decoration(osg::Camera* mapCamera) : map(mapCamera) {
  setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  setViewMatrix(osg::Matrixd::identity());
  setRenderOrder(osg::Camera::POST_RENDER);
  setClearMask(0);
  setAllowEventFocus(false);
  setCullingActive(false);
  setNumChildrenRequiringUpdateTraversal(1);
  osg::StateSet* const state = getOrCreateStateSet();
  state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  state->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
  state->setMode(GL_BLEND, osg::StateAttribute::ON);
  if (auto const program = plainProgram()) state->setAttributeAndModes(program);
  // One after the other as they were added: the dark parts lie over the white ones.
  state->setRenderBinDetails(0, "TraversalOrderBin", osg::StateSet::OVERRIDE_RENDERBIN_DETAILS);
}

Decoration::~Decoration() = default;

void Decoration::traverse(osg::NodeVisitor& visitor) {
  if (visitor.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR) fit();
  osg::Camera::traverse(visitor);
}

void Decoration::fit() {
  osg::ref_ptr<osg::Camera> mapCamera;
  if (!map.lock(mapCamera)) return;
  double const newWidth = mapCamera->getViewport()->width();
  double const newHeight = mapCamera->getViewport()->height();
  double const newScale = metresPerPixel(*mapCamera);
  if (newWidth == width && newHeight == height && newScale == scale && wanted == shown) return;
  width = newWidth;
  height = newHeight;
  scale = newScale;
  shown = wanted;
  removeChildren(0, getNumChildren());
  // As in a smaller picture, which is then enlarged.
  double const across = width / shown;
  double const down = height / shown;
  setProjectionMatrixAsOrtho2D(0, across, 0, down);
  if (across < kLeastSize || down < kLeastSize) return;
  addScaleBar(*this, across, scale * shown);
  addNorthArrow(*this, across, down);
}

}  // namespace mvz::detail
