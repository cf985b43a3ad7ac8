// convert: the same job in another format.
#include "Commands.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"

namespace kvn::host {

int runConvert(QStringList const& arguments) {
  auto const options = parseConvert(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    QString const out = session.outputFor(options->outFile);
    Job::requireWritableKind(out, savableKinds());
    session.open(options->file);
    tellWarnings(session.job().findingsOf(Job::FileText));
    bool const saved =
        save(session, out, [&options](Session& from, QString const& path) { saveJob(from, path, options->exchange); });
    return finishSaving(session, options->outFile, saved, options->json);
  });
}

}  // namespace kvn::host
