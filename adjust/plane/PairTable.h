// PairTable: which entries of a list belong to a pair of numbers.
#pragma once

#include "adjust/linalg/Poll.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace kvn::detail {

/// Entries with the same first number stand together, so that one look-up after another in the order of these numbers
/// finds what it needs in the caches; in a large network a hash table does not.
class PairTable {
 public:
  PairTable() = default;
  /// Entry i belongs to the pair (firsts[i], seconds[i]); firsts are from 0 to `count` - 1.
  PairTable(int count, std::vector<int> const& firsts, std::vector<int> const& seconds, Poll const& poll = {});

  /// The first and the last entry of the pair; -1 for none.
  int firstOf(int first, int second) const;
  int lastOf(int first, int second) const;

 private:
  using Entry = std::pair<int, int>;  // second number, entry
  using Iterator = std::vector<Entry>::const_iterator;

  std::pair<Iterator, Iterator> of(int first) const;

  std::vector<std::size_t> starts;
  std::vector<Entry> entries;  // of the first number f from starts[f] up to starts[f + 1], ascending
};

}  // namespace kvn::detail
