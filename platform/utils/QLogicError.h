// QLogicError: a refusal with a text that the user is to read.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <stdexcept>

/// Refusal with a translated text; `what()` gives the text in UTF-8.
class KELVANE_EXPORT QLogicError : public std::logic_error {
 public:
  QLogicError(char const* text);
  QLogicError(QString const& text);
  QLogicError(QLogicError const&) = default;
  QLogicError& operator=(QLogicError const&) = default;
  ~QLogicError() override;
};
