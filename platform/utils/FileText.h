// Whole files: opening by a byte-string path, and replacing a file only when the new one is complete.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <optional>
#include <string>

namespace utils {

/// The bytes under which the operating system knows a path that is given in the local 8-bit encoding.
///
/// File names are in the charset of the environment (UTF-8 where the environment says nothing), which is not the local
/// 8-bit codec when the user asked for another one for the contents of files.
KELVANE_EXPORT std::string nativePath(std::string const& path);

/// Creates the folder of a file and those above it; nothing happens when it is there.
KELVANE_EXPORT void createFolderOf(QString const& path);

/// All bytes of a regular file; nothing when there is none or it cannot be read to its end.
KELVANE_EXPORT std::optional<std::string> readFile(QString const& path);

/// Replaces the file by `bytes`; the old file stays whole until the new one is on the disk.
///
/// @return  empty when done, else why not, with the file's name.
KELVANE_EXPORT QString replaceFile(QString const& path, std::string const& bytes);

}  // namespace utils
