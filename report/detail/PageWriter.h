// PageWriter: markup and text of a page, piece by piece.
#pragma once

#include <QString>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvn::detail {

/// Appends a text to markup: & < > and quotes as entities. What XML cannot hold (control characters but for blanks,
/// bytes that are no UTF-8, the two noncharacters U+FFFE and U+FFFF) becomes U+FFFD.
void appendEscaped(std::string& markup, std::string_view utf8);

/// The name of a record, which keeps the bytes of its source, in UTF-8.
std::string utf8Of(std::string const& bytes);

/// Gathers small pieces before they go to the stream.
class PageWriter {
 public:
  explicit PageWriter(std::ostream& target) : out(target) {}

  PageWriter& markup(std::string_view piece);
  PageWriter& markup(std::size_t number);
  PageWriter& text(std::string_view utf8);  ///< escaped
  PageWriter& text(QString const& words);   ///< escaped
  /// `<name>text</name>`; a name with attributes ends with them, as `p class="a"`.
  PageWriter& element(std::string_view name, QString const& words);

  /// The stream, with everything so far in it.
  std::ostream& stream();

  /// Sections so far, by id and title, for the contents.
  std::vector<std::pair<std::string, QString>> sections;

 private:
  void passOn(std::size_t least);

  std::ostream& out;
  std::string pending;
};

}  // namespace kvn::detail
