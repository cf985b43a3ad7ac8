#include "adjust/NameIndex.h"

#include <functional>

namespace kvn {

int NameIndex::numberOf(std::string_view name) {
  auto const isAt = [this, name](std::size_t number) { return list[number] == name; };
  std::size_t const number = numbers.findOrAdd(std::hash<std::string_view>()(name), list.size(), isAt);
  if (number == list.size()) list.emplace_back(name);
  return static_cast<int>(number);
}

int NameIndex::find(std::string_view name) const {
  auto const isAt = [this, name](std::size_t number) { return list[number] == name; };
  std::size_t const number = numbers.find(std::hash<std::string_view>()(name), isAt);
  return number == utils::PlaceTable::kNowhere ? -1 : static_cast<int>(number);
}

}  // namespace kvn
