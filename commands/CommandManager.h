// CommandManager: the JSON door of a project.
#pragma once

#include "commands/Command.h"

#include <utils/Export.h>

#include <json/value.h>
#include <functional>

namespace kvn {

/// Runs the commands of one project and tells the outcome in JSON.
class KELVANE_EXPORT CommandManager : public cmd::CommandMgr<Command> {
 public:
  explicit CommandManager(Project* project);
  ~CommandManager() override;

  /// Runs a command; nothing is thrown out of it.
  ///
  /// @param in      the command's argument, an object.
  /// @param out     after a command that ran to its end: its result, null for the commands of this library. After a
  ///                failure: "code" (0 unknown, 2 no such command, 3 nothing to redo, 4 nothing to undo) and "message".
  /// @param cancel  polled by long commands; may be empty.
  /// @return        whether the command succeeded; this is the sign of success, not "code".
  bool execute(char const* name, Json::Value const& in, Json::Value& out, std::function<bool()> cancel) override;
};

}  // namespace kvn
