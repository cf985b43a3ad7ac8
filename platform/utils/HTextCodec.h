// HTextCodec: text to and from the local 8-bit encoding.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <string>

/// Conversions with the process's local 8-bit codec (`QTextCodec::codecForLocale`), which the host program sets.
class KELVANE_EXPORT HTextCodec {
 public:
  static std::string ToLocal8Bit(QString const& text);
  static QString FromLocal8Bit(std::string const& bytes);
};
