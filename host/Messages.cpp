#include "Messages.h"

#include "Output.h"

#include <new>
#include <utility>

namespace kvn::host {
namespace {

char const* nameOf(MessType type) {
  switch (type) {
    case Info:
      return "Info";
    case Warning:
      return "Warning";
    case Error:
      break;
  }
  return "Error";
}

/// The same for people, about a text.
QString prefixed(MessType type) {
  switch (type) {
    case Info:
      return System::tr("Info: %1");
    case Warning:
      return System::tr("Warning: %1");
    case Error:
      break;
  }
  return System::tr("Error: %1");
}

}  // namespace

Messages::Messages(System& system) {
  system.setSendMessageFunc([this](QString const& text, MessType type) { receive(text, type); });
}

Json::Value Messages::take() {
  errors = 0;
  return std::exchange(kept, Json::Value(Json::arrayValue));
}

void Messages::receive(QString const& text, MessType type) {
  if (isQuiet) return;
  try {
    Json::Value message;
    message["type"] = nameOf(type);
    message["text"] = utils::readablePath(text).toStdString();
    kept.append(message);
  } catch (Json::RuntimeError const&) {
    throw std::bad_alloc();  // its word for want of memory, which would pass for a failure of what is being told
  }
  if (type == Error) ++errors;
  if (isErrorsOnly && type != Error) return;
  printLine(printable(prefixed(type).arg(text)));
}

}  // namespace kvn::host
