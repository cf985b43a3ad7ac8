// Streams: standard input and output in the place of files.
#pragma once

#include <utils/ScratchFolder.h>

#include <QString>
#include <memory>
#include <optional>
#include <string>

namespace kvn::host {

/// What stands for standard input or output in the place of a file.
constexpr char const* kStream = "-";

/// All that is left on standard input. @throws JobException when it cannot be read to its end.
std::string standardInput();

/// Standard input line by line, each as soon as it is there.
class StandardLines {
 public:
  /// The next line without its end; empty at the end of the input. @throws JobException as `standardInput`.
  std::optional<std::string> next();
  /// All that is left. @throws as `next`.
  std::string rest() { return kept + standardInput(); }

 private:
  std::string kept;
  bool isAtEnd = false;
};

/// Files in a folder of their own that stand in for standard input and output: what reads and writes a job goes by the
/// suffix of a path, and replaces a file as a whole. The folder goes with this object.
class Streams {
 public:
  /// A file with what is on standard input for "-", with the suffix `kind`; any other path as it is.
  /// @throws JobException where standard input cannot be read or kept.
  QString inputOf(QString const& path, QString const& kind);
  /// The file to write for "-", with the suffix `kind`; any other path as it is.
  QString outputOf(QString const& path, QString const& kind);
  /// Prints what has been written for "-"; nothing for any other path. @throws std::runtime_error as `printText`.
  void pass(QString const& written) const;
  /// A path as the user knows it.
  QString shown(QString const& path) const;

 private:
  QString inFolder(QString const& name);

  std::unique_ptr<utils::ScratchFolder> folder;  ///< none as long as nothing asks for one
  QString input;
  QString output;
};

}  // namespace kvn::host
