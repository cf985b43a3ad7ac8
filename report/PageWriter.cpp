#include "report/detail/PageWriter.h"

#include "job/FindingTexts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>

namespace kvn::detail {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr std::size_t kPiece = 1U << 16U;

/// Length of the UTF-8 sequence that a text begins with, and what it says; 0 where it is none.
struct Sequence {
  std::size_t length = 0;
  std::uint32_t code = 0;
};

Sequence sequenceAt(std::string_view text) {
  auto const byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  unsigned const first = byte(0);
  std::size_t const length = first < 0x80U ? 1 : first < 0xC2U ? 0 : first < 0xE0U ? 2 : first < 0xF0U ? 3 : 4;
  if (length == 0 || first > 0xF4U || text.size() < length) return {};
  if (length == 1) return {1, first};
  std::uint32_t code = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return {};
    code = code << 6U | (byte(i) & 0x3FU);
  }
  bool const isOverlong = (length == 3 && code < 0x800U) || (length == 4 && code < 0x10000U);
  bool const isSurrogate = code >= 0xD800U && code <= 0xDFFFU;
  return isOverlong || isSurrogate || code > 0x10FFFFU ? Sequence{} : Sequence{length, code};
}

bool canStand(std::uint32_t code) {
  if (code < 0x20U) return code == '\t' || code == '\n' || code == '\r';
  // The second group are control characters too, which XML allows and no reader of a page wants.
  return !(code >= 0x7FU && code < 0xA0U) && code != 0xFFFEU && code != 0xFFFFU;
}

std::string_view entityOf(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

void appendEscaped(std::string& markup, std::string_view utf8) {
  auto const isPlain = [](char c) { return c >= ' ' && c <= '~' && entityOf(c).empty(); };
  while (!utf8.empty()) {
    auto const plain = static_cast<std::size_t>(std::find_if_not(utf8.begin(), utf8.end(), isPlain) - utf8.begin());
    markup += utf8.substr(0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    std::string_view const entity = entityOf(utf8.front());
    Sequence const sequence = sequenceAt(utf8);
    if (!entity.empty()) {
      markup += entity;
    } else if (sequence.length == 0 || !canStand(sequence.code)) {
      markup += kReplacement;
    } else {
      markup += utf8.substr(0, sequence.length);
    }
    utf8.remove_prefix(std::max<std::size_t>(sequence.length, 1));
  }
}

std::string utf8Of(std::string const& bytes) {
  bool const isPlain = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= ' ' && c <= '~'; });
  return isPlain ? bytes : recordText(bytes).toStdString();
}

PageWriter& PageWriter::markup(std::string_view piece) {
  pending += piece;
  passOn(kPiece);
  return *this;
}

PageWriter& PageWriter::markup(std::size_t number) { return markup(std::to_string(number)); }

PageWriter& PageWriter::text(std::string_view utf8) {
  appendEscaped(pending, utf8);
  passOn(kPiece);
  return *this;
}

PageWriter& PageWriter::text(QString const& words) { return text(words.toStdString()); }

PageWriter& PageWriter::element(std::string_view name, QString const& words) {
  markup("<").markup(name).markup(">").text(words);
  return markup("</").markup(name.substr(0, name.find(' '))).markup(">");
}

std::ostream& PageWriter::stream() {
  passOn(0);
  return out;
}

void PageWriter::passOn(std::size_t least) {
  if (pending.size() < least) return;
  out.write(pending.data(), static_cast<std::streamsize>(pending.size()));
  pending.clear();
}

}  // namespace kvn::detail
