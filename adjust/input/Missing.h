// The marker of a coordinate or an observation that is not there.
#pragma once

namespace kvn::detail {

/// Stands for a missing value; told by threshold, never by equality.
constexpr double kMissing = 1e30;
/// A value above this is missing.
constexpr double kMissingFrom = 1e29;

/// False for a missing value of either sign, and for what is not a number at all.
constexpr bool isPresent(double value) { return value < kMissingFrom && value > -kMissingFrom; }

}  // namespace kvn::detail
