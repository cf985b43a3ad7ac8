#include "Output.h"

#include <Kelvane.h>
#include <utils/FileName.h>

#include <json/writer.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace kvn::host {
namespace {

bool isProgressShown = false;

std::runtime_error notWritten() {
  return std::runtime_error(System::tr("standard output cannot be written: %1")
                                .arg(QString::fromStdString(std::generic_category().message(errno)))
                                .toStdString());
}

}  // namespace

QString versionLine() { return QStringLiteral("kelvane " KELVANE_VERSION "\n"); }

void printText(QString const& text) {
  QByteArray const bytes = text.toUtf8();
  printBytes({bytes.constData(), static_cast<std::size_t>(bytes.size())});
  finishPrinting();
}

void printBytes(std::string_view utf8) {
  if (std::fwrite(utf8.data(), 1, utf8.size(), stdout) != utf8.size()) throw notWritten();
}

void finishPrinting() {
  if (std::fflush(stdout) != 0) throw notWritten();
}

/// With a stream that passes a failed allocation on: its text would be short, and nobody would know.
std::string jsonOf(Json::Value const& value, char const* indentation) {
  Json::StreamWriterBuilder builder;
  builder["precision"] = 17;
  builder["emitUTF8"] = true;
  builder["indentation"] = indentation;
  builder["enableYAMLCompatibility"] = true;  // no blank before a colon
  std::ostringstream text;
  text.exceptions(std::ios::badbit);
  std::unique_ptr<Json::StreamWriter> const writer(builder.newStreamWriter());
  writer->write(value, &text);
  return text.str();
}

std::string jsonOf(Json::Value const& value) { return jsonOf(value, "  "); }

std::string jsonLineOf(Json::Value const& value) { return jsonOf(value, ""); }

void printJson(Json::Value const& value) {
  printBytes(jsonOf(value) + '\n');
  finishPrinting();
}

void printLine(QString const& text) {
  eraseProgress();
  std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

void showProgress(QString const& text) {
  if (isatty(STDERR_FILENO) == 0) return;
  std::fprintf(stderr, "\r%s\x1b[K", text.toUtf8().constData());  // the sequence erases the rest of the line
  std::fflush(stderr);
  isProgressShown = true;
}

void eraseProgress() {
  if (!isProgressShown) return;
  std::fputs("\r\x1b[K", stderr);
  isProgressShown = false;
}

Json::Value number(double value) { return std::isfinite(value) ? Json::Value(value + 0.0) : Json::Value(); }

QString textOf(std::string const& bytes) { return recordText(bytes); }

std::string utf8Of(std::string const& bytes) { return isPlainAscii(bytes) ? bytes : textOf(bytes).toStdString(); }

Json::Value jsonText(std::string const& bytes) { return utf8Of(bytes); }

QString printable(QString text) {
  text = utils::readablePath(text);
  for (QChar& c : text) {
    if (c.category() == QChar::Other_Control) c = QLatin1Char(' ');
  }
  return text;
}

bool isPlainAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace kvn::host
