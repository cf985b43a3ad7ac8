#include "ExecFile.h"

#include <Kelvane.h>
#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <QTextCodec>
#include <string>

namespace kvn::host {
namespace {

bool isUtf8(std::string const& bytes) {
  QTextCodec::ConverterState state;
  QTextCodec::codecForName("UTF-8")->toUnicode(bytes.data(), static_cast<int>(bytes.size()), &state);
  return state.invalidChars == 0 && state.remainingChars == 0;
}

/// Coordinate files are read in the local 8-bit encoding anyway, and project files are XML.
bool mayBeLocal(QString const& path) {
  QString const kind = QFileInfo(path).suffix().toLower();
  return kind != "dat" && kind != "kvn";
}

}  // namespace

ExecFile::ExecFile(QString const& path) : readable(path) {
  if (!mayBeLocal(path)) return;
  utils::FileBytes const file = utils::readFile(path);
  if (!file.isWhole() || isUtf8(file.bytes)) return;
  QString const text = HTextCodec::FromLocal8Bit(file.bytes);
  if (HTextCodec::ToLocal8Bit(text) != file.bytes) return;  // neither: the reader names the line
  folder = std::make_unique<QTemporaryDir>();
  readable = folder->filePath(QFileInfo(path).fileName());  // a project keeps the name
  QString const error = utils::replaceFile(readable, text.toStdString());
  if (!error.isEmpty()) throw JobException(path, error);
}

}  // namespace kvn::host
