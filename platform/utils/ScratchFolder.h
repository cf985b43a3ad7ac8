// ScratchFolder: a folder of its own for files that nobody keeps.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <QTemporaryDir>
#include <cstddef>
#include <vector>

namespace utils {

/// Copies of a user's data, for what reads or writes by the path of a file. The folder goes with this object and, where
/// the program asks for it by `removeScratchFiles`, when a signal ends the program.
class KELVANE_EXPORT ScratchFolder {
 public:
  ScratchFolder();
  ScratchFolder(ScratchFolder const&) = delete;
  ScratchFolder& operator=(ScratchFolder const&) = delete;
  ~ScratchFolder();

  /// Of a file in the folder.
  QString filePath(QString const& name);

 private:
  void remember(QString const& path);

  QTemporaryDir folder;
  std::vector<std::size_t> places;  // of the paths that a signal handler looks at
};

/// Removes the files of all scratch folders, and these, for the signal handler of a program that is about to end. It
/// does nothing that a signal handler may not do.
KELVANE_EXPORT void removeScratchFiles() noexcept;

}  // namespace utils
