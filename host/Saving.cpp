#include "Saving.h"

#include "Failures.h"
#include "Output.h"

#include <utils/FileText.h>

#include <QFileInfo>
#include <QStringList>
#include <new>
#include <sstream>

namespace kvn::host {

void requireWritableKind(QString const& path, QStringList const& kinds) {
  if (kinds.contains(QFileInfo(path).suffix().toLower())) return;
  throw Refusal(path, "unknown kind of file; what can be written: ." + kinds.join(", ."));
}

bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write) {
  int const errorsBefore = session.messages().errorCount();
  try {
    write(session, path);
  } catch (std::bad_alloc const&) {
    throw;  // there may be no memory for a message
  } catch (std::exception const& failure) {
    QString const text =
        QString("%1 was not written: %2").arg(utils::readablePath(path), QString::fromUtf8(failure.what()));
    System::Instance()->sendMessage(text, Error);
  }
  return session.messages().errorCount() == errorsBefore;
}

void writeWhole(QString const& path, std::function<void(std::ostream&)> const& print) {
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // else a failed allocation would leave a part of the file
  print(text);
  utils::createFolderOf(path);
  QString const error = utils::replaceFile(path, text.str());
  if (!error.isEmpty()) throw Refusal(path, error);
}

}  // namespace kvn::host
