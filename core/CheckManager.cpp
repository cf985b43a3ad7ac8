#include "core/CheckManager.h"

namespace kvn {

void CheckManager::setConfigureValue(Configure const& value) { configure = value; }

}  // namespace kvn
