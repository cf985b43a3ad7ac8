// SparseVector: a vector that has few elements.
#pragma once

#include <utility>
#include <vector>

namespace kvn::sparse {

/// Unknowns and their elements; of one that stands there several times the sum counts.
using SparseVector = std::vector<std::pair<int, double>>;

}  // namespace kvn::sparse
