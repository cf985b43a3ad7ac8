// DataException: input data that cannot be used.
#pragma once

#include <utils/Export.h>

#include <exception>
#include <string>

namespace kvn {

/// Bad input data. Usual causes: a line with a field too many or too few, a letter in a number, a file of another kind
/// under the wrong suffix. The text names the line or the point to look at.
class KELVANE_EXPORT DataException : public std::exception {
 public:
  DataException(std::string message);                    ///< `what()` is the message unchanged
  DataException(int line, std::string message);          ///< `what()` is "line N message"
  DataException(std::string name, std::string message);  ///< `what()` is "line 0 message name:NAME"
  ~DataException() override;

  char const* what() const noexcept override;

  /// "line N", left out when `line` is negative; a blank; the message; " name:" and the name, left out when empty.
  static std::string toString(int line, std::string const& message, std::string const& name);

  int line = 0;
  std::string message;
  std::string name;

 private:
  std::string text;
};

}  // namespace kvn
