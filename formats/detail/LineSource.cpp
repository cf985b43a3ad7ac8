#include "formats/detail/LineSource.h"

#include "formats/detail/FileAccess.h"

#include <QString>
#include <algorithm>
#include <istream>

namespace kvn::detail {
namespace {

constexpr char const* kByteOrderMark = "\xEF\xBB\xBF";

bool isAsciiSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Whether no byte is a blank, a control character or beyond ASCII, so that nothing is to be done. Without an early
/// end, which lets the compiler look at many bytes at once.
bool isSolid(std::string const& text) {
  unsigned char other = 0;
  for (char const c : text) other |= static_cast<unsigned char>(static_cast<unsigned char>(c - 0x21) > 0x5E);
  return other == 0;
}

void simplifyAscii(std::string& text) {
  auto write = text.begin();
  bool blankPending = false;
  for (char const c : text) {
    if (isAsciiSpace(c)) {
      blankPending = write != text.begin();
      continue;
    }
    if (blankPending) *write++ = ' ';
    blankPending = false;
    *write++ = c;
  }
  text.erase(write, text.end());
}

}  // namespace

LineSource::LineSource(std::istream& stream) : in(stream) {}

bool LineSource::next(std::string& line) {
  do {
    if (!nextBytes(line)) return false;
  } while (line.empty());
  if (!isSolid(line)) line = simplifiedUtf8(std::move(line));
  return true;
}

bool LineSource::nextBytes(std::string& line) {
  if (!std::getline(in, line)) {
    requireNoReadError(in);
    return false;
  }
  ++number;
  if (number == 1 && line.rfind(kByteOrderMark, 0) == 0) line.erase(0, 3);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

std::string simplifiedUtf8(std::string text) {
  bool const ascii = std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (ascii) {
    simplifyAscii(text);
    return text;
  }
  return QString::fromUtf8(text.data(), static_cast<int>(text.size())).simplified().toStdString();
}

bool hasLostBytes(std::string const& line) { return line.find("\xEF\xBF\xBD") != std::string::npos; }

}  // namespace kvn::detail
