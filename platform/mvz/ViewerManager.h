// mvz::ViewerManager: the map views of the host.
#pragma once

#include <utils/Export.h>

#include <mutex>
#include <osg/Referenced>

namespace mvz {

/// The views of the host's map: one lock for all of them, and one place that asks them to repaint.
class KELVANE_EXPORT ViewerManager : public osg::Referenced {
 public:
  ViewerManager();
  ViewerManager(ViewerManager const&) = delete;
  ViewerManager& operator=(ViewerManager const&) = delete;

  /// Holds the views' recursive lock until the result is destroyed.
  [[nodiscard]] std::unique_lock<std::recursive_mutex> lock() const;

  /// Asks the views of this manager to repaint; a manager without views has nothing to do.
  virtual void requestRedraw();

  /// Asks the views of every manager of the process.
  static void requestRedrawOfAll();

 protected:
  ~ViewerManager() override;

 private:
  mutable std::recursive_mutex mutex;
};

}  // namespace mvz
