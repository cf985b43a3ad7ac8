#include "commands/cmd/CmdException.h"

namespace cmd {

CmdException::CmdException(CmdErrorCode errorCode) : code(errorCode), text(errorCode.toString()) {}
CmdException::~CmdException() = default;
char const* CmdException::what() const noexcept { return text.c_str(); }

}  // namespace cmd
