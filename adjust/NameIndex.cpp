#include "adjust/NameIndex.h"

#include <utils/detail/PlaceTable.h>
#include <utils/detail/PrivateData.h>

#include <functional>

namespace kvn {

struct KELVANE_PRIVATE NameIndex::Data {
  KELVANE_LATER_MEMBER
  utils::PlaceTable numbers;
  std::vector<std::string> list;
};

NameIndex::NameIndex() : own(std::make_unique<Data>()) {}
NameIndex::NameIndex(NameIndex const& other) : own(std::make_unique<Data>(*other.own)) {}
NameIndex::NameIndex(NameIndex&&) noexcept = default;
NameIndex& NameIndex::operator=(NameIndex const& other) { return *this = NameIndex(other); }
NameIndex& NameIndex::operator=(NameIndex&&) noexcept = default;
NameIndex::~NameIndex() = default;

int NameIndex::numberOf(std::string_view name) {
  auto const isAt = [this, name](std::size_t number) { return own->list[number] == name; };
  std::size_t const number = own->numbers.findOrAdd(std::hash<std::string_view>()(name), own->list.size(), isAt);
  if (number == own->list.size()) own->list.emplace_back(name);
  return static_cast<int>(number);
}

int NameIndex::find(std::string_view name) const {
  auto const isAt = [this, name](std::size_t number) { return own->list[number] == name; };
  std::size_t const number = own->numbers.find(std::hash<std::string_view>()(name), isAt);
  return number == utils::PlaceTable::kNowhere ? -1 : static_cast<int>(number);
}

bool NameIndex::contains(std::string_view name) const { return find(name) >= 0; }
int NameIndex::size() const { return static_cast<int>(own->list.size()); }
std::vector<std::string> const& NameIndex::names() const { return own->list; }

}  // namespace kvn
