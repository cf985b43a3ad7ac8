// LineSource: the lines of a text file with their numbers, for all readers that go line by line.
#pragma once

#include <iosfwd>
#include <string>

namespace kvn::detail {

/// Lines of a stream, UTF-8 where they are simplified. A carriage return before the line feed belongs to the line end
/// and a byte order mark at the start is passed over on every platform: the files come from instruments and from
/// Windows programs.
class LineSource {
 public:
  explicit LineSource(std::istream& stream);

  /// The next line that has a character, simplified; false at the end. Empty lines are passed over, but counted.
  /// @throws DataException, as `nextBytes`, when the stream has an error in place of an end.
  bool next(std::string& line);

  /// The next line, an empty one too, with its bytes as they are.
  bool nextBytes(std::string& line);

  /// Number of the last line, from 1, as an editor counts.
  int lineNumber() const { return number; }

 private:
  std::istream& in;
  int number = 0;
};

/// `QString::simplified` of UTF-8 text: white space at the ends goes, every inner run of it becomes one blank. Bytes
/// that are no UTF-8 become the replacement character. Plain ASCII does not go through QString.
std::string simplifiedUtf8(std::string text);

/// Whether a line has bytes that were no UTF-8: names in another encoding, which all become the same characters.
bool hasLostBytes(std::string const& line);

}  // namespace kvn::detail
