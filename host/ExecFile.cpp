#include "ExecFile.h"

#include <Kelvane.h>
#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <QTextCodec>
#include <string>

namespace kvn::host {

ExecFile::ExecFile(QString const& path) : readable(path) {
  QString const kind = QFileInfo(path).suffix().toLower();
  if (kind == "kvn") return;  // XML
  utils::FileBytes const file = utils::readFile(path);
  if (file.state == utils::FileBytes::State::Broken) throw JobException(path, file.reason);
  bool const isCoordinates = kind == "dat";  // which the library reads in the local 8-bit encoding itself
  if (!file.isWhole() || (!isCoordinates && utils::isUtf8(file.bytes))) return;
  QString const text = HTextCodec::FromLocal8Bit(file.bytes);
  if (HTextCodec::ToLocal8Bit(text) != file.bytes) {
    QString const codec = QString::fromLatin1(QTextCodec::codecForLocale()->name());
    throw JobEncodingException(path, System::tr("the file is no text in the encoding %1").arg(codec));
  }
  if (isCoordinates) return;
  folder = std::make_unique<utils::ScratchFolder>();
  readable = folder->filePath(QFileInfo(path).fileName());  // a project keeps the name
  QString const error = utils::replaceFile(readable, text.toStdString());
  if (!error.isEmpty()) throw JobException(path, error);
}

}  // namespace kvn::host
