// ExecFile: a file that a command of a script names, as the library's own readers take it.
#pragma once

#include <utils/ScratchFolder.h>

#include <QString>
#include <memory>

namespace kvn::host {

/// Networks, traverse files and instrument jobs may be in the local 8-bit encoding. The readers that the commands call
/// know UTF-8 alone, and would make one point of all names that they cannot read: they get a copy in UTF-8, in a folder
/// that goes with this object. All other files are read where they are.
class ExecFile {
 public:
  /// @throws JobEncodingException for a file in neither encoding: its names would be garbled for good. JobException for
  ///         one that cannot be read to its end: the next one to read it may come through, and take it for UTF-8.
  explicit ExecFile(QString const& path);

  QString const& toRead() const { return readable; }

 private:
  std::unique_ptr<utils::ScratchFolder> folder;  ///< none where there is no copy
  QString readable;
};

}  // namespace kvn::host
