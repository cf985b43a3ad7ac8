// ExecWords: what the commands of a script read of their arguments, and what is said where an argument is another one.
#pragma once

#include <json/value.h>
#include <QString>
#include <QStringList>
#include <string>

namespace kvn::host {

/// What the argument of one command has that the command cannot use or does not look at, a sentence each.
struct ArgumentFaults {
  QStringList wrong;   ///< members that are missing or of another type
  QStringList unread;  ///< members that the command has none of: a slip in a name leaves a value as it was, or at 0
};

/// Nothing for a name that is no command of the library.
ArgumentFaults faultsOf(std::string const& name, Json::Value const& in);

/// "unknown command: lst; did you mean list?"
QString unknownCommand(std::string const& name);

}  // namespace kvn::host
