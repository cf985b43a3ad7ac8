// ExecFile: a file that a command of a script names, read once for all that look at it.
#pragma once

#include <Kelvane.h>
#include <utils/FileText.h>
#include <utils/ScratchFolder.h>

#include <QString>

namespace kvn::host {

/// The commands of the library go by a path. They get a copy of what was read, in a folder that goes with this object:
/// a file that somebody writes anew meanwhile is not judged by one reading and taken from another.
///
/// Networks, traverse files and instrument jobs may be in the local 8-bit encoding. The readers that the commands call
/// know UTF-8 alone, and would make one point of all names that they cannot read: their copy is in UTF-8.
class ExecFile {
 public:
  /// @throws JobEncodingException for a file in neither encoding: its names would be garbled for good. JobException for
  ///         one that cannot be read to its end.
  explicit ExecFile(QString const& path);

  /// The path of the copy. There is none of a file that is not there, which the commands find missing as well.
  QString const& copy() const { return copied; }
  /// Opens in a job what was read, and gives it away. @throws JobException as `Job::open`.
  void openIn(Job& job);

 private:
  QString given;
  utils::FileBytes file;
  utils::ScratchFolder folder;
  QString copied;
};

}  // namespace kvn::host
