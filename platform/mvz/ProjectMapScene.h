// mvz::ProjectMapScene: what the map shows of one project.
#pragma once

#include <utils/Export.h>

namespace mvz {

class KELVANE_EXPORT ProjectMapScene {
 public:
  /// Asks all views to repaint; a process without views has nothing to do.
  static void reDraw();
};

}  // namespace mvz
