#include "core/DataException.h"

#include "records/detail/Messages.h"

#include <utility>

namespace kvn {

DataException::DataException(std::string what) : message(std::move(what)), text(message) {}

DataException::DataException(int lineNumber, std::string what)
    : line(lineNumber), message(std::move(what)), text(toString(line, message, "")) {}

DataException::DataException(std::string itemName, std::string what)
    : message(std::move(what)), name(std::move(itemName)), text(toString(0, message, name)) {}

DataException::~DataException() = default;

char const* DataException::what() const noexcept { return text.c_str(); }

std::string DataException::toString(int line, std::string const& message, std::string const& name) {
  std::string result;
  if (line >= 0) result += Messages::tr("line %1").arg(line).toStdString();
  result += " " + message;
  if (!name.empty()) result += Messages::tr(" name:").toStdString() + name;
  return result;
}

}  // namespace kvn
