// What the careful readers look at in a text.
#pragma once

#include <QString>
#include <string_view>

namespace kvn::detail {

/// The beginning of a text, short enough for a message.
inline QString quoted(std::string_view text) {
  std::string_view const beginning = text.substr(0, 60);
  return QString::fromUtf8(beginning.data(), static_cast<int>(beginning.size()));
}

/// Minutes or seconds of 60 and above in a DD.MMSS text.
inline bool hasFullField(std::string_view text) {
  auto const point = text.find('.');
  if (point == std::string::npos) return false;
  auto const tens = [&text](std::size_t at) { return at < text.size() && text[at] >= '6'; };
  return tens(point + 1) || tens(point + 3);
}

}  // namespace kvn::detail
