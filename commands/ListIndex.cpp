#include "commands/ListIndex.h"

#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

namespace kvn {

void checkInsertIndex(int index, std::size_t size) {
  if (index >= 0 && static_cast<std::size_t>(index) <= size) return;
  throw QLogicError(Messages::tr("The index %1 is not in the range 0 to %2").arg(index).arg(size));
}

}  // namespace kvn
