// Exchange files by path: opening one, and replacing one only when the new one is complete.
#pragma once

#include <QFile>
#include <fstream>
#include <functional>
#include <iosfwd>
#include <string>

namespace kvn::detail {

/// The file at a path in the local 8-bit encoding. A stream that has failed, and so reads as an empty file, when it
/// cannot be opened or is no regular file.
std::ifstream openForReading(std::string const& path);

/// The same for a reader that goes through Qt; false when it cannot be opened or is no regular file.
bool openForReading(QFile& file, QString const& path, QIODevice::OpenMode mode);

/// Replaces the file at a path in the local 8-bit encoding by what `print` prints. When that fails the old file stays
/// as it was, and an `Error` message says why.
void replaceFile(std::string const& path, std::function<void(std::ostream&)> const& print);

}  // namespace kvn::detail
