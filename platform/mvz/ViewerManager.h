// mvz::ViewerManager: the map views of the host.
#pragma once

#include <mvz/MapLibrary.h>
#include <mvz/View.h>
#include <utils/Export.h>

#include <memory>
#include <mutex>
#include <osg/Vec2d>
#include <osg/ref_ptr>
#include <osgEarth/AnnotationNode>
#include <osgEarth/Layer>
#include <osgEarth/MapNode>
#include <string>
#include <vector>

namespace mvz {

/// The views of the host's map: one map for all of them, one lock, one list of what the user has picked, and one place
/// that frames them and asks them to repaint.
class KELVANE_EXPORT ViewerManager : public osg::Referenced {
 public:
  using Lock = std::unique_lock<std::recursive_mutex>;

  ViewerManager();
  ViewerManager(ViewerManager const&) = delete;
  ViewerManager& operator=(ViewerManager const&) = delete;

  /// Holds the views' recursive lock until the result is destroyed.
  [[nodiscard]] Lock lock() const;
  /// The same for a manager that may be null: nothing is held then.
  [[nodiscard]] static Lock LockOf(ViewerManager const* manager);

  osgEarth::MapNode* getMapNode() const;

  void addView(View* view);     ///< shows the map from now on; null and a view that is there already are passed over
  void removeView(View* view);  ///< shows nothing from now on
  std::vector<osg::ref_ptr<View>> const& getViews() const;

  /// Moves all views so that the features of the layers fill them. Null layers are passed over; without a feature that
  /// has finite coordinates no view moves.
  virtual void fullMapAllView(std::vector<osgEarth::Layer*> layers);

  /// Asks the views of this manager to repaint; a manager without views has nothing to do.
  virtual void requestRedraw();
  /// Asks the views of every manager of the process.
  static void requestRedrawOfAll();

  /// Ids of the features of the layer that the user has picked, in the order of picking; none for a null layer.
  virtual std::vector<std::string> getPickFeatureIDList(osgEarth::Layer* layer) const;
  /// All nodes that the user has picked, in the order of picking; a feature that has left the map is no longer picked.
  virtual std::vector<osg::Node*> getPickNodeList() const;

  /// What a click at a pixel of a view hits: a point within the tolerance, else a line, else null. Of several those of
  /// the layers with the highest `ILayer::hitRank`, of these the nearest, of equals the one that was drawn first.
  osgEarth::AnnotationNode* hit(View const& view, osg::Vec2d const& pixel, double tolerance = kPickTolerance) const;
  void pick(osg::Node* node);  ///< adds to the picked ones and highlights; null and what is picked are passed over
  void clearPick();            ///< a feature that is highlighted by its id as well loses that highlight too

  static constexpr double kPickTolerance = 8.0;  ///< pixels: half an icon

 protected:
  ~ViewerManager() override;

 private:
  friend class ProjectMapScene;
  void unpick(osg::Group const* layerGroup);
  /// A view may take itself or another one out while it is asked to do something.
  [[nodiscard]] std::vector<osg::ref_ptr<View>> copyOfViews() const;

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace mvz
