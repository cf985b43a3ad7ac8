// KVNLayer: a layer of the map that this library made.
#pragma once

#include "map/ILayer.h"

#include <mvz/CommonAnnotationLayer.h>
#include <utils/Export.h>

namespace kvn {

class KELVANE_EXPORT KVNLayer : public mvz::CommonAnnotationLayer, public ILayer {
 public:
  KVNLayer();

 protected:
  ~KVNLayer() override;
};

}  // namespace kvn
