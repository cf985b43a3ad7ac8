// NumberLists: many short lists of numbers in one block of memory.
#pragma once

#include "adjust/linalg/Index.h"

#include <cstddef>
#include <vector>

namespace kvn::detail {

/// Which items belong to which owner, in ascending order of the items.
class NumberLists {
 public:
  class List {
   public:
    List(int const* begin, int const* end) : first(begin), last(end) {}
    int const* begin() const { return first; }
    int const* end() const { return last; }
    bool empty() const { return first == last; }
    std::size_t size() const { return static_cast<std::size_t>(last - first); }
    int operator[](std::size_t i) const { return first[i]; }

   private:
    int const* first;
    int const* last;
  };

  NumberLists() = default;
  /// Item i belongs to `ownerOf[i]`, from 0 to `owners` - 1. With several entries for each item, entry e belongs to the
  /// item e / `entriesEach`.
  NumberLists(int owners, std::vector<int> const& ownerOf, int entriesEach = 1)
      : starts(index(owners) + 1, 0), items(ownerOf.size()) {
    for (int const owner : ownerOf) ++starts[index(owner) + 1];
    for (std::size_t o = 1; o < starts.size(); ++o) starts[o] += starts[o - 1];
    std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
    for (std::size_t e = 0; e < ownerOf.size(); ++e) {
      items[next[index(ownerOf[e])]++] = static_cast<int>(e) / entriesEach;
    }
  }

  List of(int owner) const { return {items.data() + starts[index(owner)], items.data() + starts[index(owner) + 1]}; }

 private:
  std::vector<std::size_t> starts = {0};
  std::vector<int> items;
};

}  // namespace kvn::detail
