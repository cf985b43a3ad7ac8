#include "adjust/NameIndex.h"

namespace kvn {

int NameIndex::numberOf(std::string const& name) {
  auto const [entry, isNew] = numbers.try_emplace(name, size());
  if (isNew) list.push_back(name);
  return entry->second;
}

int NameIndex::find(std::string const& name) const {
  auto const entry = numbers.find(name);
  return entry == numbers.end() ? -1 : entry->second;
}

}  // namespace kvn
