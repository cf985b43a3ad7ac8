#include <utils/HTextStream.h>

#include <QTextCodec>

HTextStream::HTextStream(QIODevice* device) : QTextStream(device) {
  setCodec(QTextCodec::codecForLocale());
  setAutoDetectUnicode(false);
}

HTextStream::~HTextStream() = default;
