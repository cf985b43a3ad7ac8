// Exchange files by path: the bytes of one, and replacing one only when the new one is complete.
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace utils {
struct FileBytes;
}

namespace kvn::detail {

/// The bytes of a file that was read. Nothing when it could not be opened or is no regular file, which the readers take
/// as an empty one or refuse, each in its way.
/// @throws DataException for a file that could not be read to its end: what is missing must not pass for its end.
std::optional<std::string> wholeFile(utils::FileBytes read);

/// Reads a file as a stream, once. One that cannot be opened or is no regular
/// file is a stream that has failed, and so reads as an empty file. @throws as `wholeFile`; what `read` throws.
void readFile(QString const& path, std::function<void(std::istream&)> const& read);
void readFile(std::string const& localPath, std::function<void(std::istream&)> const& read);

/// Bytes for the readers that go through Qt, which counts them in 32 bits. @throws DataException beyond 2 GB.
QByteArray qtBytes(std::string const& bytes);

/// For a stream from which nothing more comes. @throws DataException when that is not its end but an error.
void requireNoReadError(std::istream const& stream);

/// Sends an `Error` message that a file was not written, and why; nothing without a reason.
void tellNotWritten(QString const& path, QString const& reason);

/// Replaces a file by what `print` prints. When that fails the old file stays as it was, and an `Error` message says
/// why. @throws what `print` throws; std::bad_alloc.
void replaceFile(QString const& path, std::function<void(std::ostream&)> const& print);
void replaceFile(std::string const& localPath, std::function<void(std::ostream&)> const& print);

}  // namespace kvn::detail
