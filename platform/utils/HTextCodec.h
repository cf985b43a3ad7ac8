// HTextCodec: text to and from the local 8-bit encoding.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <string>
#include <string_view>

/// Conversions with the process's local 8-bit codec (`QTextCodec::codecForLocale`), which the host program sets.
class KELVANE_EXPORT HTextCodec {
 public:
  static std::string ToLocal8Bit(QString const& text);
  static QString FromLocal8Bit(std::string const& bytes);
};

namespace utils {

/// Whether all of the bytes are UTF-8; ASCII is.
KELVANE_EXPORT bool isUtf8(std::string_view bytes);

}  // namespace utils
