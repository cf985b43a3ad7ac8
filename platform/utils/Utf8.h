// Signs of a text in UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace utils {

struct Utf8Sign {
  std::uint32_t code = 0;  ///< code point
  std::size_t size = 0;    ///< bytes; 0 where the text is empty or does not begin with a well-formed sequence
};

/// The first sign of a text. Overlong sequences, halves of surrogate pairs and code points above U+10FFFF are not
/// well-formed.
inline Utf8Sign firstUtf8(std::string_view text) {
  if (text.empty()) return {};
  auto const lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return {lead, 1};
  std::size_t const size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return {};
  std::uint32_t code = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    auto const byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80U) return {};
    code = code << 6U | (byte & 0x3FU);
  }
  bool const isLong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  bool const isSurrogate = code >= 0xD800 && code < 0xE000;
  return isLong || isSurrogate || code > 0x10FFFF ? Utf8Sign() : Utf8Sign{code, size};
}

}  // namespace utils
