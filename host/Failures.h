// How the program ends, and what it says of a failure.
#pragma once

#include <Kelvane.h>
#include <QString>
#include <stdexcept>
#include <utility>

namespace kvn::host {

enum ExitCode {
  Done = 0,
  Refused = 1,     ///< the data cannot be used, or a command of `exec` failed
  WrongUsage = 2,  ///< unknown subcommand or option, a missing argument, an option value out of range
};

/// A command line that cannot be understood. Ends the program with `WrongUsage`.
class UsageError : public std::runtime_error {
 public:
  /// @param of  the subcommand whose help tells more; empty for that of the program.
  explicit UsageError(QString const& text, QString of = {})
      : std::runtime_error(text.toStdString()), name(std::move(of)) {}

  QString const& subcommand() const { return name; }

 private:
  QString name;
};

/// Text of a failure with what the program has to add. A file that the program refuses is a JobException as well.
QString refusalText(JobException const& failure);

}  // namespace kvn::host
