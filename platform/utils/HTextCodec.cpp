#include <utils/HTextCodec.h>

#include <QTextCodec>

std::string HTextCodec::ToLocal8Bit(QString const& text) { return text.toLocal8Bit().toStdString(); }

QString HTextCodec::FromLocal8Bit(std::string const& bytes) {
  return QString::fromLocal8Bit(bytes.data(), static_cast<int>(bytes.size()));
}

bool utils::isUtf8(std::string_view bytes) {
  QTextCodec::ConverterState state;
  QTextCodec::codecForName("UTF-8")->toUnicode(bytes.data(), static_cast<int>(bytes.size()), &state);
  return state.invalidChars == 0 && state.remainingChars == 0;
}
