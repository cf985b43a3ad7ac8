// LiveList: the elements of a list that have not been erased yet, linked in order.
#pragma once

#include <cstddef>
#include <vector>

namespace kvn::detail {

/// Erasing is constant in time, and the places of the others stay what they were.
class LiveList {
 public:
  explicit LiveList(std::size_t size) : before(size + 1), after(size + 1) {
    for (std::size_t i = 0; i <= size; ++i) {
      before[i] = i == 0 ? size : i - 1;
      after[i] = i == size ? 0 : i + 1;
    }
  }
  std::size_t end() const { return before.size() - 1; }
  std::size_t begin() const { return after[end()]; }
  std::size_t next(std::size_t i) const { return after[i]; }
  void erase(std::size_t i) {
    after[before[i]] = after[i];
    before[after[i]] = before[i];
  }

 private:
  std::vector<std::size_t> before;
  std::vector<std::size_t> after;
};

}  // namespace kvn::detail
