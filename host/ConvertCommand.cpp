// convert: the same job in another format.
#include "Commands.h"
#include "Failures.h"
#include "FieldJob.h"
#include "JobWriter.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"

namespace kvn::host {

int runConvert(QStringList const& arguments) {
  auto const options = parseConvert(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    requireWritableKind(options->outFile, writableKinds());
    session.open(options->file);
    tellWarnings(session.job().text.findings);
    bool const saved = save(session, options->outFile, writeJob);
    if (options->json) {
      Json::Value json;
      json["file"] = options->outFile.toStdString();
      json["ok"] = saved;
      json["messages"] = session.messages().take();
      printJson(json);
    }
    return saved ? Done : Refused;
  });
}

}  // namespace kvn::host
