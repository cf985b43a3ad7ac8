// Positions in a list, as commands get them.
#pragma once

#include <json/value.h>
#include <vector>

namespace kvn {

/// @throws QLogicError that names the index and the allowed range, 0 to the list's size inclusive.
void checkInsertIndex(int index, std::size_t size);

/// Inserts before position `index`; the list's size appends. The index has been checked.
template <typename Record>
void insertAt(std::vector<Record>& list, int index, Record record) {
  list.insert(list.begin() + index, std::move(record));
}

}  // namespace kvn
