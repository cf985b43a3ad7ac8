// How the program ends, and the two failures of its own.
#pragma once

#include <QString>
#include <stdexcept>

namespace kvn::host {

enum ExitCode {
  Done = 0,
  Refused = 1,     ///< the data cannot be used, or a command of `exec` failed
  WrongUsage = 2,  ///< unknown subcommand or option, a missing argument, an option value out of range
};

/// A command line that cannot be understood. Ends the program with `WrongUsage`.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(QString const& text) : std::runtime_error(text.toStdString()) {}
};

/// A file that the program itself refuses, before or after the library had it. Ends the program with `Refused`.
class Refusal : public std::runtime_error {
 public:
  Refusal(QString path, QString const& text) : std::runtime_error(text.toStdString()), file(std::move(path)) {}

  QString file;  ///< empty when no file is concerned
};

}  // namespace kvn::host
