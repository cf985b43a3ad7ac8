#include <utils/HTextCodec.h>

std::string HTextCodec::ToLocal8Bit(QString const& text) { return text.toLocal8Bit().toStdString(); }

QString HTextCodec::FromLocal8Bit(std::string const& bytes) {
  return QString::fromLocal8Bit(bytes.data(), static_cast<int>(bytes.size()));
}
