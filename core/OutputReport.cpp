#include "core/OutputReport.h"

namespace kvn {

OutputReport::~OutputReport() = default;

}  // namespace kvn
