// writeWhole: a file that is replaced by a complete one.
#pragma once

#include <QString>
#include <functional>
#include <iosfwd>

namespace kvn::detail {

/// Replaces a file, creating its folder, by what `print` prints. An old file stays whole until the new one is complete.
/// @throws JobException with the reason where it cannot be written; what `print` throws.
void writeWhole(QString const& path, std::function<void(std::ostream&)> const& print);

}  // namespace kvn::detail
