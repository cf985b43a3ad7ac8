// Numbers of elements as array indices.
#pragma once

#include <cstddef>

namespace kvn::detail {

/// An int as an index.
constexpr std::size_t index(int i) { return static_cast<std::size_t>(i); }

}  // namespace kvn::detail
