// Failures of the command engine itself.
#pragma once

#include <utils/Export.h>
#include <utils/NamedValue.h>

#include <exception>
#include <string>

namespace cmd {

struct CmdErrorCodeTable {
  enum Value : std::int32_t {
    unknown,    ///< any failure that is not a CmdException
    Good,       ///< success
    noCommand,  ///< no command of that name, a null name, or a create function that gave null
    noRedo,     ///< the redo stack is empty
    noUndo,     ///< the undo queue is empty
  };
  static constexpr std::array<char const*, 5> names{"unknown", "Good", "noCommand", "noRedo", "noUndo"};
};

using CmdErrorCode = utils::NamedValue<CmdErrorCodeTable>;

/// `what()` is the name of the error code.
class KELVANE_EXPORT CmdException : public std::exception {
 public:
  explicit CmdException(CmdErrorCode code);
  ~CmdException() override;
  char const* what() const noexcept override;

  CmdErrorCode code;

 private:
  std::string text;
};

}  // namespace cmd
