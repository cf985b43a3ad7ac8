#include "ExecFile.h"

#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <QTextCodec>
#include <string>
#include <utility>

namespace kvn::host {
namespace {

/// As the readers of the commands take it.
std::string readableBytes(QString const& path, std::string const& bytes) {
  QString const kind = QFileInfo(path).suffix().toLower();
  bool const isCoordinates = kind == "dat";  // which the library reads in the local 8-bit encoding itself
  bool const isXml = kind == "kvn";
  if (isXml || (!isCoordinates && utils::isUtf8(bytes))) return bytes;
  QString const text = HTextCodec::FromLocal8Bit(bytes);
  if (HTextCodec::ToLocal8Bit(text) != bytes) {
    QString const codec = QString::fromLatin1(QTextCodec::codecForLocale()->name());
    throw JobEncodingException(path, System::tr("the file is no text in the encoding %1").arg(codec));
  }
  return isCoordinates ? bytes : text.toStdString();
}

}  // namespace

ExecFile::ExecFile(QString const& path)
    : given(path),
      file(utils::readFile(path)),
      copied(folder.filePath(QFileInfo(path).fileName())) {  // a project keeps the name
  if (file.state == utils::FileBytes::State::Broken) throw JobException(path, file.reason);
  if (!file.isWhole()) return;
  QString const error = utils::replaceFile(copied, readableBytes(path, file.bytes));
  if (!error.isEmpty()) throw JobException(path, error);
}

void ExecFile::openIn(Job& job) {
  if (!file.isWhole()) throw JobException(given, file.reason);
  job.openContents(given, std::exchange(file.bytes, {}));
}

}  // namespace kvn::host
