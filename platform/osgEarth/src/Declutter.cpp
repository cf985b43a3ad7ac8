#include "Declutter.h"

#include "LabelText.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <mutex>
#include <osg/BlendFunc>
#include <osg/Drawable>
#include <osg/Viewport>
#include <osgUtil/RenderBin>
#include <osgUtil/RenderLeaf>
#include <osgUtil/RenderStage>
#include <string>
#include <vector>

namespace osgEarth {
inline namespace kelvane {

Ranked::~Ranked() = default;

namespace {

constexpr char const* kLineBinName = "RenderBin";
constexpr char const* kDeclutterBinName = "osgEarthStandInDeclutter";
constexpr double kCellPixels = 64.0;  // about one label: a label lies in a few cells, and few labels touch a cell

/// Pixels of the window.
struct Box {
  double xMin, yMin, xMax, yMax;
  bool isEmpty() const { return !(xMin < xMax && yMin < yMax); }
  bool overlaps(Box const& other) const {
    return xMin < other.xMax && other.xMin < xMax && yMin < other.yMax && other.yMin < yMax;
  }
  bool operator==(Box const& other) const {
    return xMin == other.xMin && yMin == other.yMin && xMax == other.xMax && yMax == other.yMax;
  }
};

/// The boxes kept so far, in the cells of a grid over the viewport.
class Kept {
 public:
  explicit Kept(osg::Viewport const& viewport)
      : left_(viewport.x()),
        bottom_(viewport.y()),
        right_(viewport.x() + viewport.width()),
        top_(viewport.y() + viewport.height()),
        columns_(index(viewport.width()) + 1),
        cells_(columns_ * (index(viewport.height()) + 1)) {}

  /// Keeps the visible part of the box, unless it is empty or overlaps one that is there.
  bool add(Box const& whole) {
    Box const box = visible(whole);
    if (box.isEmpty() || isTaken(box)) return false;
    forEachCell(box, [&](std::vector<Box>& cell) { cell.push_back(box); });
    return true;
  }

  /// Keeps the box in any case. Thousands may lie on one spot: of those in the same pixels one is enough.
  void occupy(Box const& whole) {
    Box const box =
        visible({std::floor(whole.xMin), std::floor(whole.yMin), std::ceil(whole.xMax), std::ceil(whole.yMax)});
    if (box.isEmpty()) return;
    forEachCell(box, [&](std::vector<Box>& cell) {
      if (std::find(cell.begin(), cell.end(), box) == cell.end()) cell.push_back(box);
    });
  }

 private:
  static std::size_t index(double pixels) { return static_cast<std::size_t>(std::max(pixels, 0.0) / kCellPixels); }

  Box visible(Box const& box) const {
    return {std::max(box.xMin, left_), std::max(box.yMin, bottom_), std::min(box.xMax, right_),
            std::min(box.yMax, top_)};
  }

  bool isTaken(Box const& box) {
    bool taken = false;
    forEachCell(box, [&](std::vector<Box> const& cell) {
      taken = taken || std::any_of(cell.begin(), cell.end(), [&](Box const& other) { return other.overlaps(box); });
    });
    return taken;
  }

  template <typename Action>
  void forEachCell(Box const& box, Action const& action) {
    for (std::size_t row = index(box.yMin - bottom_); row <= index(box.yMax - bottom_); ++row) {
      for (std::size_t column = index(box.xMin - left_); column <= index(box.xMax - left_); ++column) {
        action(cells_[row * columns_ + column]);
      }
    }
  }

  double left_, bottom_, right_, top_;
  std::size_t columns_;
  std::vector<std::vector<Box>> cells_;
};

Box boxOf(osgUtil::RenderLeaf const& leaf, osg::Matrixd const& window) {
  osg::Matrixd const toWindow = osg::Matrixd(*leaf._modelview) * osg::Matrixd(*leaf._projection) * window;
  osg::BoundingBox const bound = leaf._drawable->getBoundingBox();
  if (!bound.valid()) return {0.0, 0.0, 0.0, 0.0};
  // Upright and flat: two corners tell the box.
  osg::Vec3d const a = osg::Vec3d(bound._min) * toWindow;
  osg::Vec3d const b = osg::Vec3d(bound._max) * toWindow;
  return {std::min(a.x(), b.x()), std::min(a.y(), b.y()), std::max(a.x(), b.x()), std::max(a.y(), b.y())};
}

/// The rim of an icon is mostly transparent: a label may come near.
Box core(Box const& box) {
  constexpr double kRim = 0.2;
  double const x = kRim * (box.xMax - box.xMin);
  double const y = kRim * (box.yMax - box.yMin);
  return {box.xMin + x, box.yMin + y, box.xMax - x, box.yMax - y};
}

struct Candidate {
  std::size_t leaf;  // index in the bin's list
  float priority;
  unsigned order;
  bool operator<(Candidate const& other) const {
    return priority != other.priority ? priority > other.priority : order < other.order;
  }
};

bool isLabel(osgUtil::RenderLeaf const* leaf) { return dynamic_cast<LabelText const*>(leaf->getDrawable()) != nullptr; }

/// Icons come before labels, and within each what is left stays in the order of the states, the cheapest to draw.
class Declutter : public osgUtil::RenderBin::SortCallback {
 public:
  void sortImplementation(osgUtil::RenderBin* bin) override {
    bin->copyLeavesFromStateGraphListToRenderLeafList();
    osg::Viewport const* const viewport = bin->getStage()->getViewport();
    if (viewport == nullptr) return;
    auto& leaves = bin->getRenderLeafList();
    std::stable_partition(leaves.begin(), leaves.end(), [](auto const* leaf) { return !isLabel(leaf); });
    osg::Matrixd const window = viewport->computeWindowMatrix();
    Kept kept(*viewport);
    std::vector<Candidate> candidates;
    for (std::size_t i = 0; i < leaves.size(); ++i) {
      auto const* const rank = dynamic_cast<Ranked const*>(leaves[i]->getDrawable());
      if (rank != nullptr && rank->givesWay) {
        candidates.push_back({i, rank->priority, leaves[i]->_traversalOrderNumber});
      } else {
        kept.occupy(core(boxOf(*leaves[i], window)));
      }
    }
    std::sort(candidates.begin(), candidates.end());
    for (Candidate const& candidate : candidates) {
      if (!kept.add(boxOf(*leaves[candidate.leaf], window))) leaves[candidate.leaf] = nullptr;
    }
    leaves.erase(std::remove(leaves.begin(), leaves.end(), nullptr), leaves.end());
  }
};

void registerDeclutterBin() {
  static std::once_flag once;
  std::call_once(once, [] {
    osg::ref_ptr<osgUtil::RenderBin> const prototype = new osgUtil::RenderBin;
    prototype->setSortCallback(new Declutter);
    osgUtil::RenderBin::addRenderBinPrototype(kDeclutterBinName, prototype);
  });
}

/// Said, since OpenGL's own start is to paint transparent pixels white.
osg::BlendFunc* overPaper() {
  // Never destroyed: a host may make nodes after the statics of this library are gone.
  static auto* const function = new osg::ref_ptr<osg::BlendFunc>(
      new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA));
  return function->get();
}

void setState(osg::StateSet& state, int bin, std::string const& name) {
  state.setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  state.setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
  state.setAttributeAndModes(overPaper());
  // Overrides the bin that osgText asks for in its own state; an icon is protected from that of the label around it.
  state.setRenderBinDetails(bin, name,
                            static_cast<osg::StateSet::RenderBinMode>(osg::StateSet::USE_RENDERBIN_DETAILS |
                                                                      osg::StateSet::OVERRIDE_RENDERBIN_DETAILS |
                                                                      osg::StateSet::PROTECTED_RENDERBIN_DETAILS));
  // A bin within a bin would be drawn after it and not know of its labels.
  state.setNestRenderBins(false);
}

}  // namespace

void setLineState(osg::StateSet& state) { setState(state, kLineBin, kLineBinName); }

void setDeclutterState(osg::StateSet& state) {
  registerDeclutterBin();
  setState(state, kPlaceBin, kDeclutterBinName);
}

}  // namespace kelvane
}  // namespace osgEarth
