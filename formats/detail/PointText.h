// Coordinate files in one piece: the lines of a file that means the same in every encoding it may be read in.
#pragma once

#include <cstddef>
#include <string_view>

namespace kvn::detail {

/// Whether reading a text in the process's local 8-bit encoding and writing it again gives the same bytes: all are
/// printable ASCII, tabs or line ends, or the encoding is UTF-8 and the text is well-formed, without marks of byte
/// order.
bool isSameInLocal8Bit(std::string_view text);

/// The same for UTF-8.
bool isSameInUtf8(std::string_view text);

/// Lines of a text without their line ends, "\n" or "\r\n"; no empty one behind a line end at the very end.
class TextLines {
 public:
  explicit TextLines(std::string_view text) : rest(text) {}

  /// False at the end.
  bool next(std::string_view& line) {
    if (rest.empty()) return false;
    std::size_t const end = rest.find('\n');
    line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return true;
  }

 private:
  std::string_view rest;
};

}  // namespace kvn::detail
