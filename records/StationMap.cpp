#include "records/StationMap.h"

namespace kvn {

void OneTraverseInfo::add(TraverseDataInfo* row) { rows.push_back(row); }
void OneTraverseInfo::setTraverseInfo(TraverseDataInfo const& headRow) { traverseInfo = headRow; }

}  // namespace kvn
