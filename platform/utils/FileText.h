// Whole files: reading one, and replacing one only when the new one is complete.
#pragma once

#include <utils/Export.h>
#include <utils/FileName.h>

#include <QString>
#include <string>

namespace utils {

/// What came of reading a file.
struct FileBytes {
  enum class State {
    Whole,
    Missing,     ///< no such file
    NotAFile,    ///< a folder, a pipe, a device
    Unreadable,  ///< it could not be opened
    Broken,      ///< it could not be read to its end, or for a fault of the system not at all
  };

  State state = State::Missing;
  std::string bytes;  ///< empty unless whole
  QString reason;     ///< why it is not whole, for the user, without the file's name

  bool isWhole() const { return state == State::Whole; }
};

/// All bytes of a regular file. Failures are told by the result and throw nothing but std::bad_alloc.
KELVANE_EXPORT FileBytes readFile(QString const& path);
KELVANE_EXPORT FileBytes readLocalFile(std::string const& localPath);  ///< by a path in the local 8-bit encoding

/// Creates the folder of a file and those above it; nothing happens when it is there.
KELVANE_EXPORT void createFolderOf(QString const& path);

/// Replaces the file by `bytes`; the old file stays whole until the new one is on the disk.
///
/// A link stays a link: what it leads to is replaced. Mode, group, access list and user attributes of the old file are
/// kept, its owner where the process may give files away; a new file gets what the process gives to new files. What is
/// no regular file (a pipe, a device, /dev/stdout) is written through. Refused are files without the right to write,
/// files of more than one name, which would come apart, and those whose group the new file cannot be given.
///
/// @return  empty when done, else why not, without the file's name. The old file is as it was then, but for one
/// failure:
///          when the folder cannot be brought to the disk the new file is in its place already, and the text says so.
KELVANE_EXPORT QString replaceFile(QString const& path, std::string const& bytes);
KELVANE_EXPORT QString replaceLocalFile(std::string const& localPath, std::string const& bytes);

/// Removes the file that `replaceFile` is just writing, for the signal handler of a program that is about to end. It
/// does nothing that a signal handler may not do. Mostly there is none: where the file system can, a new file has no
/// name until it is complete.
KELVANE_EXPORT void removeUnfinishedFile() noexcept;

}  // namespace utils
