// File names: between texts, byte strings in the local 8-bit encoding and the bytes that the operating system knows.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <string>

namespace utils {

/// A name on the disk is a string of bytes, which need not be a text in any encoding. So that each name can be held in
/// a QString and comes out as the same bytes, a byte b that is no character stands as the lone surrogate U+DC00 + b
/// (0x80 to 0xFF), which no text has.
///
/// File names are in the charset of the environment (UTF-8 where the environment says nothing). That is not the local
/// 8-bit codec when the user asked for another one for the contents of files.

/// The bytes under which the operating system knows a path. Empty for a path that it cannot have: one with a character
/// that the charset of file names lacks, or with the character NUL.
KELVANE_EXPORT std::string nativePathOf(QString const& path);

/// The same for a path in the local 8-bit encoding; its bytes stay as they are where both encodings are the same.
KELVANE_EXPORT std::string nativePath(std::string const& localPath);

/// The path of a byte string in the local 8-bit encoding.
KELVANE_EXPORT QString pathOfLocal(std::string const& localPath);

/// The path of a name that the operating system gave, for example an argument of the program.
KELVANE_EXPORT QString pathOfNative(std::string const& bytes);

/// The path for people to read: a byte that is no character stands as \xE9.
KELVANE_EXPORT QString readablePath(QString const& path);

}  // namespace utils
