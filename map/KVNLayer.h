// KVNLayer: a layer of the map that this library made.
#pragma once

#include "map/ILayer.h"

#include <mvz/CommonAnnotationLayer.h>
#include <utils/Export.h>

namespace kvn {

class KELVANE_EXPORT KVNLayer : public mvz::CommonAnnotationLayer, public ILayer {
 public:
  KVNLayer();

  /// 1 for the coordinate list, which has what was adjusted: rows and networks stand at approximate coordinates, a few
  /// pixels beside them.
  int hitRank() const override;

 protected:
  ~KVNLayer() override;
};

}  // namespace kvn
