#include "Output.h"

#include <utils/HTextCodec.h>

#include <json/writer.h>
#include <QTextCodec>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace kvn::host {

QString versionLine() { return QStringLiteral("kelvane " KELVANE_VERSION "\n"); }

void printText(QString const& text) {
  QByteArray const bytes = text.toUtf8();
  auto const size = static_cast<std::size_t>(bytes.size());
  if (std::fwrite(bytes.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0) {
    throw std::runtime_error("standard output cannot be written");
  }
}

void printJson(Json::Value const& value) {
  Json::StreamWriterBuilder builder;
  builder["precision"] = 17;
  builder["emitUTF8"] = true;
  builder["indentation"] = "  ";
  builder["enableYAMLCompatibility"] = true;  // no blank before a colon
  printText(QString::fromStdString(Json::writeString(builder, value)) + '\n');
}

void printLine(QString const& text) { std::fprintf(stderr, "%s\n", text.toUtf8().constData()); }

Json::Value number(double value) { return std::isfinite(value) ? Json::Value(value) : Json::Value(); }

QString textOf(std::string const& bytes) {
  QTextCodec::ConverterState state;
  QTextCodec const* const utf8 = QTextCodec::codecForName("UTF-8");
  QString const text = utf8->toUnicode(bytes.data(), static_cast<int>(bytes.size()), &state);
  bool const valid = state.invalidChars == 0 && state.remainingChars == 0;
  return valid ? text : HTextCodec::FromLocal8Bit(bytes);
}

Json::Value jsonText(std::string const& bytes) { return textOf(bytes).toStdString(); }

QString printable(QString text) {
  for (QChar& c : text) {
    if (c.category() == QChar::Other_Control) c = QLatin1Char(' ');
  }
  return text;
}

}  // namespace kvn::host
