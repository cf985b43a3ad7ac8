// PairIndex: numbers of ordered pairs of names, in the order of their first use.
#pragma once

#include "adjust/NameIndex.h"
#include "adjust/input/PairKey.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

namespace kvn::detail {

/// A line has a direction: from A to B and from B to A have numbers of their own.
class PairIndex {
 public:
  /// Number of the pair; a new one gets the next number.
  std::size_t numberOf(std::string const& start, std::string const& end) {
    return numbers.try_emplace(orderedKey(names.numberOf(start), names.numberOf(end)), numbers.size()).first->second;
  }
  std::size_t size() const { return numbers.size(); }

 private:
  NameIndex names;
  std::unordered_map<std::uint64_t, std::size_t> numbers;
};

}  // namespace kvn::detail
