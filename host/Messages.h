// Messages: what the library has to say while it works.
#pragma once

#include <Kelvane.h>
#include <json/value.h>

namespace kvn::host {

/// Prints each message to standard error as it comes and keeps it for the JSON result.
class Messages {
 public:
  /// Becomes the system's receiver; must outlive its messages.
  explicit Messages(System& system);
  Messages(Messages const&) = delete;
  Messages& operator=(Messages const&) = delete;

  /// The messages since the last call, [{type, text}].
  Json::Value take();
  /// `Error` messages since the last `take`.
  int errorCount() const { return errors; }
  bool hasError() const { return errors > 0; }
  /// Whether messages are neither printed nor kept: of work beside that which was asked for, whose failure the caller
  /// tells itself.
  void setQuiet(bool value) { isQuiet = value; }
  /// Whether only errors are printed; all are kept.
  void setErrorsOnly(bool value) { isErrorsOnly = value; }
  bool errorsOnly() const { return isErrorsOnly; }

 private:
  void receive(QString const& text, MessType type);

  Json::Value kept{Json::arrayValue};
  int errors = 0;
  bool isQuiet = false;
  bool isErrorsOnly = false;
};

}  // namespace kvn::host
