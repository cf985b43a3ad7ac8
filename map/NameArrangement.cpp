#include "map/NameArrangement.h"

#include "map/MapScene.h"
#include "mvz/detail/OsgEarthVersions.h"

#include <mvz/View.h>
#include <utils/Utf8.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <osgEarth/AnnotationLayer>
#include <osgEarth/FeatureNode>
#include <osgEarth/PlaceNode>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvn {
namespace {

// Pixels.
constexpr double kRasterCell = 3.0;
constexpr double kNameSize = 15.0;   // of names, as the drawing tools make them
constexpr double kIconRadius = 9.0;  // of the icons that are installed
constexpr double kIconCore = 6.0;    // of an icon, what a name must not cover
constexpr float kPlainWidth = 1.0F;

struct NameBox {
  double left, top, right, bottom;
};

/// What of a picture is taken.
class Raster {
 public:
  Raster(double pictureWidth, double pictureHeight)
      : width(pictureWidth),
        height(pictureHeight),
        columns(static_cast<int>(width / kRasterCell) + 1),
        rows(static_cast<int>(height / kRasterCell) + 1),
        cells(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), false) {}

  bool isFree(NameBox const& box) const {
    if (box.left < 0.0 || box.top < 0.0 || box.right > width || box.bottom > height) return false;
    bool isTaken = false;
    forEach(box, [&](std::size_t cell) { isTaken = isTaken || cells[cell]; });
    return !isTaken;
  }
  void take(NameBox const& box) {
    forEach(box, [this](std::size_t cell) { cells[cell] = true; });
  }

 private:
  template <typename Action>
  void forEach(NameBox const& box, Action const& action) const {
    auto const clamped = [](double value, int count) {
      return static_cast<int>(std::clamp(std::floor(value / kRasterCell), 0.0, static_cast<double>(count - 1)));
    };
    for (int row = clamped(box.top, rows); row <= clamped(box.bottom, rows); ++row) {
      for (int column = clamped(box.left, columns); column <= clamped(box.right, columns); ++column) {
        action(static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column));
      }
    }
  }

  double width;
  double height;
  int columns;
  int rows;
  std::vector<bool> cells;
};

/// Signs of East Asian writing are as wide as they are high.
double widthOfName(std::string const& utf8, double size) {
  constexpr std::uint32_t kFirstWide = 0x1100;
  double width = 0.0;
  std::string_view rest = utf8;
  while (!rest.empty()) {
    utils::Utf8Sign const sign = utils::firstUtf8(rest);
    width += sign.code >= kFirstWide ? 1.0 : 0.62;
    rest.remove_prefix(std::max<std::size_t>(sign.size, 1));
  }
  return width * size;
}

struct NameSide {
  osgEarth::TextSymbol::Alignment alignment;
  int across;  ///< of the text from its point: 1 right, 0 in the middle, -1 left
  int down;    ///< 1 below, 0 level, -1 above
};

constexpr NameSide kSides[] = {
    {osgEarth::TextSymbol::ALIGN_LEFT_CENTER, 1, 0},    {osgEarth::TextSymbol::ALIGN_RIGHT_CENTER, -1, 0},
    {osgEarth::TextSymbol::ALIGN_CENTER_BOTTOM, 0, -1}, {osgEarth::TextSymbol::ALIGN_CENTER_TOP, 0, 1},
    {osgEarth::TextSymbol::ALIGN_LEFT_BOTTOM, 1, -1},   {osgEarth::TextSymbol::ALIGN_LEFT_TOP, 1, 1},
    {osgEarth::TextSymbol::ALIGN_RIGHT_BOTTOM, -1, -1}, {osgEarth::TextSymbol::ALIGN_RIGHT_TOP, -1, 1}};

NameBox boxAt(osg::Vec2d const& place, NameSide const& side, double width, double size, double radius) {
  auto const start = [radius](double middle, int direction, double length) {
    if (direction == 0) return middle - length / 2.0;
    return direction > 0 ? middle + radius : middle - radius - length;
  };
  double const left = start(place.x(), side.across, width);
  double const top = start(place.y(), side.down, size);
  return {left, top, left + width, top + size};
}

class Arrangement {
 public:
  Arrangement(mvz::View const& mapView, double scale)
      : view(mapView), magnification(scale), raster(mapView.getWidth(), mapView.getHeight()) {}

  void takeIcon(osgEarth::PlaceNode const& node) {
    osg::Vec2d const place = placeOf(node);
    double const core = kIconCore * magnification;
    raster.take({place.x() - core, place.y() - core, place.x() + core, place.y() + core});
  }

  void takeText(osgEarth::PlaceNode const& node) {
    auto const* const text = node.getStyle().get<osgEarth::TextSymbol>();
    if (text == nullptr) return;
    double const size = text->size().get().eval();
    raster.take(boxAt(placeOf(node), kSides[0], widthOfName(node.getText(), size), size, 0.0));
  }

  void arrange(osgEarth::PlaceNode& node) {
    osg::Vec2d const place = placeOf(node);
    osgEarth::Style style = node.getStyle();
    auto* const text = style.getOrCreate<osgEarth::TextSymbol>();
    text->size() = static_cast<float>(kNameSize * magnification);
    bool const isFirst =
        seen.insert({node.getText(), {std::lround(place.x() / kRasterCell), std::lround(place.y() / kRasterCell)}})
            .second;
    if (isFirst && !node.getText().empty())
      choose(*text, place, widthOfName(node.getText(), kNameSize * magnification));
    if (magnification != 1.0) style.getOrCreate<osgEarth::IconSymbol>()->scale() = static_cast<float>(magnification);
    node.setStyle(style);
  }

 private:
  osg::Vec2d placeOf(osgEarth::PlaceNode const& node) const { return view.toPixel(node.getPosition().vec3d()); }

  void choose(osgEarth::TextSymbol& text, osg::Vec2d const& place, double width) {
    for (NameSide const& side : kSides) {
      NameBox const box = boxAt(place, side, width, kNameSize * magnification, kIconRadius * magnification);
      if (!raster.isFree(box)) continue;
      raster.take(box);
      text.alignment() = side.alignment;
      return;
    }
  }

  mvz::View const& view;
  double magnification;
  Raster raster;
  std::set<std::pair<std::string, std::pair<long, long>>> seen;
};

template <typename Node>
std::vector<Node*> nodesOf(MapScene& scene, FeatureDataType type) {
  std::vector<Node*> nodes;
  auto* const layer = dynamic_cast<osgEarth::AnnotationLayer*>(scene.getLayer(type));
  if (layer == nullptr) return nodes;
  for (unsigned i = 0; i < layer->getGroup()->getNumChildren(); ++i) {
    if (auto* const node = dynamic_cast<Node*>(layer->getGroup()->getChild(i))) nodes.push_back(node);
  }
  return nodes;
}

}  // namespace

void arrangeNames(MapScene& scene, mvz::View const& view, double magnification) {
  Arrangement arrangement(view, magnification);
  std::vector<osgEarth::PlaceNode*> nodes = nodesOf<osgEarth::PlaceNode>(scene, FeatureDataType::ViewPointData);
  auto const coordinates = nodesOf<osgEarth::PlaceNode>(scene, FeatureDataType::CoordData);
  nodes.insert(nodes.end(), coordinates.begin(), coordinates.end());
  for (osgEarth::PlaceNode const* node : nodesOf<osgEarth::PlaceNode>(scene, FeatureDataType::Default)) {
    arrangement.takeText(*node);
  }
  for (osgEarth::PlaceNode const* node : nodes) arrangement.takeIcon(*node);
  for (osgEarth::PlaceNode* node : nodes) arrangement.arrange(*node);
  if (magnification == 1.0) return;
  for (auto* node : nodesOf<osgEarth::FeatureNode>(scene, FeatureDataType::NetworkData)) {
    osgEarth::Style style = node->getStyle();
    mvz::detail::setPixels(style.getOrCreate<osgEarth::LineSymbol>()->stroke().mutable_value().width(),
                           kPlainWidth * static_cast<float>(magnification));
    node->setStyle(style);
  }
}

}  // namespace kvn
