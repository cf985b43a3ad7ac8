// The marker of a coordinate or an observation that is not there, and array indices.
#pragma once

#include <cstddef>

namespace kvn::detail {

/// Stands for a missing value; told by threshold, never by equality.
constexpr double kMissing = 1e30;
/// A value above this is missing.
constexpr double kMissingFrom = 1e29;

/// False for a missing value of either sign, and for what is not a number at all.
constexpr bool isPresent(double value) { return value < kMissingFrom && value > -kMissingFrom; }

/// An int as an index.
constexpr std::size_t index(int i) { return static_cast<std::size_t>(i); }

}  // namespace kvn::detail
