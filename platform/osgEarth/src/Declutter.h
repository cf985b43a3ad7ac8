// The order in which annotations are drawn, and the labels that give way to others.
#pragma once

#include <osg/StateSet>

namespace osgEarth {
inline namespace kelvane {

/// Numbers of the render bins: lines below icons and labels, all above the scene, which is in bin 0.
constexpr int kLineBin = 1;
constexpr int kPlaceBin = 2;

/// What a drawable has that gives way to other icons and labels.
class Ranked {
 public:
  Ranked() = default;
  Ranked(Ranked const&) = default;
  Ranked& operator=(Ranked const&) = delete;
  virtual ~Ranked();

  float priority = 0.0f;
  bool givesWay = false;
};

/// Draws in the bin, on top of what is there, without light and whatever stands above in the scene.
void setLineState(osg::StateSet& state);
/// The same for icons and labels, icons below labels. Those that are Ranked and give way are dropped from the frame
/// when their box on the screen overlaps that of one that does not, or of one kept before: of higher priority or, at
/// equal priority, earlier in the scene.
void setDeclutterState(osg::StateSet& state);

}  // namespace kelvane
}  // namespace osgEarth
