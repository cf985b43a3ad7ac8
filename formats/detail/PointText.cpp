#include "formats/detail/PointText.h"

#include <utils/Utf8.h>

#include <QTextCodec>
#include <algorithm>
#include <array>

namespace kvn::detail {
namespace {

constexpr int kUtf8 = 106;  // MIB numbers of the IANA character sets
// Supersets of ASCII in which no byte below 128 ever means anything else.
constexpr std::array<int, 28> kWithAscii{
    3,   4,   5,   6,     7,    8,    9,    10,   11,   12,   13,   109,  110,  111,
    112, 113, 114, kUtf8, 2025, 2250, 2251, 2252, 2253, 2254, 2255, 2256, 2257, 2258,
};

/// Size of the well-formed sequence of two or three bytes at the start of the text; 0 when there is none, and for marks
/// of byte order and code points that are no characters, with their neighbours, which converters treat in their own
/// ways.
std::size_t sequenceAt(std::string_view text) {
  auto const [code, size] = utils::firstUtf8(text);
  bool const isMark = code >> 6U == 0xFDC0 >> 6U || code >> 6U == 0xFEC0 >> 6U || code >> 6U == 0xFFC0 >> 6U;
  return isMark || size == 4 ? 0 : size;
}

bool isPlain(std::string_view text, bool mayBeUtf8) {
  while (!text.empty()) {
    auto const byte = static_cast<unsigned char>(text.front());
    std::size_t size = byte == '\t' || byte == '\n' || (byte >= 0x20 && byte < 0x7F) ? 1 : 0;
    if (byte == '\r' && text.size() > 1 && text[1] == '\n') size = 2;
    if (byte >= 0x80 && mayBeUtf8) size = sequenceAt(text);
    if (size == 0) return false;
    text.remove_prefix(size);
  }
  return true;
}

}  // namespace

bool isSameInLocal8Bit(std::string_view text) {
  QTextCodec const* const codec = QTextCodec::codecForLocale();
  int const kind = codec == nullptr ? 0 : codec->mibEnum();
  bool const hasAscii = std::find(kWithAscii.begin(), kWithAscii.end(), kind) != kWithAscii.end();
  return hasAscii && isPlain(text, kind == kUtf8);
}

bool isSameInUtf8(std::string_view text) { return isPlain(text, true); }

}  // namespace kvn::detail
