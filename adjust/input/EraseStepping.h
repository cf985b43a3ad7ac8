// The erasing walk of the reductions, which steps past the element that moves into an erased place.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace kvn::detail {

/// Erases elements as this plain loop does, in linear time:
///
///     for (i = 0; i < list.size(); ++i) if (isToErase(list[i])) list.erase(list.begin() + i);
///
/// The element behind an erased one is not looked at, so that of two neighbours to erase the second stays.
template <typename Element, typename Predicate>
void eraseAndStepPast(std::vector<Element>& list, Predicate isToErase) {
  std::size_t kept = 0;
  bool stepsPast = false;
  for (std::size_t i = 0; i < list.size(); ++i) {
    stepsPast = !stepsPast && isToErase(std::as_const(list[i]));
    if (stepsPast) continue;
    if (kept != i) list[kept] = std::move(list[i]);
    ++kept;
  }
  list.erase(list.begin() + static_cast<std::ptrdiff_t>(kept), list.end());
}

}  // namespace kvn::detail
