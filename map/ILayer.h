// kvn::ILayer: tells the layers of this library from those of others.
#pragma once

#include <utils/Export.h>

namespace kvn {

class KELVANE_EXPORT ILayer {
 public:
  virtual ~ILayer();
};

}  // namespace kvn
