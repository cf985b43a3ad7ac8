// HTextStream: text files in the local 8-bit encoding.
#pragma once

#include <utils/Export.h>

#include <QTextStream>

/// A QTextStream over an open file, with the process's local 8-bit codec. It does not guess another encoding from the
/// first bytes, so that `HTextCodec::ToLocal8Bit` gives the file's bytes back.
class KELVANE_EXPORT HTextStream : public QTextStream {
 public:
  explicit HTextStream(QIODevice* device);
  ~HTextStream() override;
};
