// Numbers of files: a point for the decimals, whatever the locale.
#pragma once

#include <utils/Number.h>

#include <charconv>
#include <string>

namespace kvn::detail {

/// The shortest text without an exponent that reads back as the same double.
inline std::string plainNumber(double value) {
  char digits[400];
  auto const end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed);
  return utils::withoutSignOfZero({digits, end.ptr});
}

inline std::string plainNumber(double value, int decimals) {
  char digits[400];
  auto const end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
  return utils::withoutSignOfZero({digits, end.ptr});
}

}  // namespace kvn::detail
