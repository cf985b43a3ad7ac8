// The failure of a calculation as a whole, which has a text and nothing else.
#pragma once

#include <QString>
#include <exception>
#include <string>

namespace kvn::detail {

class CalculationFailure : public std::exception {
 public:
  explicit CalculationFailure(QString const& message) : text(message.toStdString()) {}
  char const* what() const noexcept override { return text.c_str(); }

 private:
  std::string text;
};

}  // namespace kvn::detail
