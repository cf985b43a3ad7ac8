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
    message["text"] = text.toStdString();
    kept.append(message);
  } catch (Json::RuntimeError const&) {
    throw std::bad_alloc();  // its word for want of memory, which would pass for a failure of what is being told
  }
  if (type == Error) ++errors;
  printLine(printable(QString("%1: %2").arg(QLatin1String(nameOf(type)), text)));
}

}  // namespace kvn::host
