// CheckManager: a holder of settings for the host's own checks.
#pragma once

#include "core/Configure.h"

#include <utils/Export.h>

namespace kvn {

/// Holds one `Configure`; the library itself does not read it.
class KELVANE_EXPORT CheckManager {
 public:
  void setConfigureValue(Configure const& value);

 private:
  Configure configure;
};

}  // namespace kvn
