#include "Saving.h"

#include "Failures.h"

#include <new>

namespace kvn::host {
namespace {

void tellNotWritten(QString const& path, QString const& reason) {
  System::Instance()->sendMessage(QString("%1 was not written: %2").arg(utils::readablePath(path), reason), Error);
}

}  // namespace

void saveJob(Session& session, QString const& path) { session.job().save(path); }

bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write) {
  int const errorsBefore = session.messages().errorCount();
  try {
    write(session, path);
  } catch (std::bad_alloc const&) {
    throw;  // there may be no memory for a message
  } catch (JobException const& failure) {
    tellNotWritten(path, refusalText(failure));
  } catch (std::exception const& failure) {
    tellNotWritten(path, QString::fromUtf8(failure.what()));
  }
  return session.messages().errorCount() == errorsBefore;
}

}  // namespace kvn::host
