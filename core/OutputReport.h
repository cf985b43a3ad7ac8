// OutputReport: a report object of the host that a project keeps for it.
#pragma once

#include <utils/Export.h>

namespace kvn {

/// Base of the host's report. A project owns the object it is given and releases it through the destructor.
class KELVANE_EXPORT OutputReport {
 public:
  virtual ~OutputReport();
};

}  // namespace kvn
