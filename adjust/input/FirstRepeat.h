// The first name that comes twice in a list.
#pragma once

#include <utils/detail/PlaceTable.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace kvn::detail {

/// The earliest entry of the list whose name appears again later; null when there is none.
///
/// @param nameOf  gives a reference to the name inside an entry of the list.
template <typename List, typename NameOf>
std::string const* firstRepeat(List const& list, NameOf nameOf) {
  utils::PlaceTable places;
  std::size_t earliest = list.size();
  for (std::size_t i = 0; i < list.size(); ++i) {
    std::string_view const name = nameOf(list[i]);
    auto const isAt = [&list, &nameOf, name](std::size_t place) { return nameOf(list[place]) == name; };
    std::size_t const place = places.findOrAdd(std::hash<std::string_view>()(name), i, isAt);
    if (place != i) earliest = std::min(earliest, place);
  }
  return earliest == list.size() ? nullptr : &nameOf(list[earliest]);
}

}  // namespace kvn::detail
