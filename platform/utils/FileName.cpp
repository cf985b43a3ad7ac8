#include <utils/FileName.h>

#include <QTextCodec>
#include <algorithm>

#if !defined(_WIN32)
#include <langinfo.h>
#endif

namespace utils {
namespace {

// A byte that is no character, as a lone surrogate; in a text a low surrogate always follows a high one.
constexpr ushort kFirstByte = 0xDC80;
constexpr ushort kLastByte = 0xDCFF;
constexpr ushort kByteOffset = 0xDC00;
constexpr int kLongestCharacter = 4;  // bytes of one character, in UTF-8 and in GB18030

bool isByte(QString const& text, int at) {
  ushort const unit = text.at(at).unicode();
  return unit >= kFirstByte && unit <= kLastByte && (at == 0 || !text.at(at - 1).isHighSurrogate());
}

/// Whether the bytes are characters of the encoding and nothing else; `text` is what they say.
bool decodes(QTextCodec const& codec, char const* bytes, int size, QString& text) {
  QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
  text = codec.toUnicode(bytes, size, &state);
  if (state.invalidChars != 0 || state.remainingChars != 0) return false;
  QTextCodec::ConverterState back(QTextCodec::IgnoreHeader);
  return codec.fromUnicode(text.constData(), text.size(), &back) == QByteArray::fromRawData(bytes, size);
}

QString decoded(QTextCodec const& codec, std::string const& bytes) {
  QString text;
  auto const size = static_cast<int>(bytes.size());
  if (decodes(codec, bytes.data(), size, text)) return text;
  QString all;
  for (int at = 0; at < size;) {
    int length = 1;
    while (length <= std::min(kLongestCharacter, size - at) && !decodes(codec, bytes.data() + at, length, text)) {
      ++length;
    }
    bool const isCharacter = length <= std::min(kLongestCharacter, size - at);
    auto const byte = static_cast<unsigned char>(bytes[static_cast<std::size_t>(at)]);
    all += isCharacter ? text : QString(QChar(ushort(kByteOffset + byte)));
    at += isCharacter ? length : 1;
  }
  return all;
}

/// Empty where the encoding lacks a character.
std::string encoded(QTextCodec const& codec, QString const& path) {
  std::string bytes;
  for (int at = 0; at < path.size();) {
    if (isByte(path, at)) {
      bytes += static_cast<char>(path.at(at).unicode() - kByteOffset);
      ++at;
      continue;
    }
    int end = at;
    while (end < path.size() && !isByte(path, end)) ++end;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QByteArray const piece = codec.fromUnicode(path.constData() + at, end - at, &state);
    if (state.invalidChars != 0 || piece.contains('\0')) return {};
    bytes.append(piece.constData(), static_cast<std::size_t>(piece.size()));
    at = end;
  }
  return bytes;
}

QTextCodec const& codecOfNames() {
#if !defined(_WIN32)
  QByteArray charset(nl_langinfo(CODESET));
  if (charset.isEmpty() || charset == "ANSI_X3.4-1968" || charset == "US-ASCII") charset = "UTF-8";
  if (QTextCodec const* const names = QTextCodec::codecForName(charset)) return *names;
#endif
  return *QTextCodec::codecForLocale();
}

}  // namespace

std::string nativePathOf(QString const& path) { return encoded(codecOfNames(), path); }

std::string nativePath(std::string const& localPath) {
  QTextCodec const& names = codecOfNames();
  if (&names != QTextCodec::codecForLocale()) return encoded(names, pathOfLocal(localPath));
  return localPath.find('\0') == std::string::npos ? localPath : std::string();
}

QString pathOfLocal(std::string const& localPath) { return decoded(*QTextCodec::codecForLocale(), localPath); }

QString pathOfNative(std::string const& bytes) { return decoded(codecOfNames(), bytes); }

QString readablePath(QString const& path) {
  QString text;
  for (int at = 0; at < path.size(); ++at) {
    if (isByte(path, at)) {
      text += QStringLiteral("\\x%1").arg(path.at(at).unicode() - kByteOffset, 2, 16).toUpper().replace("\\X", "\\x");
    } else {
      text += path.at(at);
    }
  }
  return text;
}

}  // namespace utils
