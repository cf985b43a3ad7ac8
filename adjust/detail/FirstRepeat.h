// The first name that comes twice in a list.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_map>

namespace kvn::detail {

/// Of the names that come twice, the one whose first place comes first; null when there is none.
///
/// @param nameOf  gives a reference to the name inside an entry of the list.
template <typename List, typename NameOf>
std::string const* firstRepeat(List const& list, NameOf nameOf) {
  std::unordered_map<std::string, std::size_t> firstPlace;
  std::size_t earliest = list.size();
  for (std::size_t i = 0; i < list.size(); ++i) {
    auto const [entry, isNew] = firstPlace.try_emplace(nameOf(list[i]), i);
    if (!isNew) earliest = std::min(earliest, entry->second);
  }
  return earliest == list.size() ? nullptr : &nameOf(list[earliest]);
}

}  // namespace kvn::detail
