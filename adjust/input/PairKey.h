// Hash keys of pairs of point numbers.
#pragma once

#include <algorithm>
#include <cstdint>

namespace kvn::detail {

/// Key of the ordered pair (a, b).
inline std::uint64_t orderedKey(int a, int b) {
  return (std::uint64_t{static_cast<std::uint32_t>(a)} << 32U) | static_cast<std::uint32_t>(b);
}

/// Key of the pair in either order.
inline std::uint64_t unorderedKey(int a, int b) { return orderedKey(std::min(a, b), std::max(a, b)); }

}  // namespace kvn::detail
