#include "Saving.h"

#include "Failures.h"
#include "Output.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <QStringList>
#include <filesystem>
#include <system_error>

namespace kvn::host {

void requireWritableKind(QString const& path, QStringList const& kinds) {
  requireNameInEncoding(path);
  if (kinds.contains(QFileInfo(path).suffix().toLower())) return;
  throw Refusal(path, "unknown kind of file; what can be written: ." + kinds.join(", ."));
}

bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write) {
  bool const hadError = session.messages().hasError();
  try {
    write(session, path);
  } catch (std::exception const& failure) {
    printLine(printable(QString("kelvane: %1: %2").arg(path, QString::fromUtf8(failure.what()))));
    return false;
  }
  std::error_code error;
  bool const isThere = std::filesystem::is_regular_file(utils::nativePath(HTextCodec::ToLocal8Bit(path)), error);
  if (isThere && (hadError || !session.messages().hasError())) return true;
  printLine(printable(QString("kelvane: %1: the file was not written").arg(path)));
  return false;
}

}  // namespace kvn::host
