#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QSaveFile>
#include <QTextCodec>

#if !defined(_WIN32)
#include <langinfo.h>
#endif

namespace utils {

std::string nativePath(std::string const& path) {
#if defined(_WIN32)
  return path;
#else
  QByteArray charset(nl_langinfo(CODESET));
  if (charset.isEmpty() || charset == "ANSI_X3.4-1968" || charset == "US-ASCII") charset = "UTF-8";
  QTextCodec const* const names = QTextCodec::codecForName(charset);
  if (names == nullptr || names == QTextCodec::codecForLocale()) return path;
  return names->fromUnicode(HTextCodec::FromLocal8Bit(path)).toStdString();
#endif
}

QString replaceFile(QString const& path, std::string const& bytes) {
  QSaveFile file(path);
  // A target that cannot be replaced by renaming (a device, a link into a read-only directory) is refused, not patched.
  bool const written =
      file.open(QIODevice::WriteOnly) &&
      file.write(bytes.data(), static_cast<qint64>(bytes.size())) == static_cast<qint64>(bytes.size()) && file.commit();
  return written ? QString() : QStringLiteral("%1: %2").arg(path, file.errorString());
}

}  // namespace utils
