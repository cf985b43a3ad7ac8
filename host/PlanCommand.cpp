// plan: how good the results of a network will be, before it is measured.
#include "Commands.h"
#include "Failures.h"
#include "FindingsText.h"
#include "Options.h"
#include "Output.h"
#include "PlaneReport.h"
#include "PlaneSetup.h"
#include "Session.h"

namespace kvn::host {

int runPlan(QStringList const& arguments) {
  auto const options = parsePlan(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    session.open(options->file, Job::Reading::Plan);
    useOptions(session, *options);
    PlaneAdjustment const& planned = session.job().plan();
    PlaneReport const finished(session.file(), session.project().getConfigure(), session.job().planeOptions(), planned,
                               PlaneReport::Kind::Planned);
    std::vector<FieldFinding> findings = session.job().findingsOf(Job::AdjustmentRun | Job::FileTold);
    sortByCost(findings);
    if (options->json) {
      finished.writeJson(findingsJson(findings), session.messages().take(), printBytes);
    } else if (!options->quiet) {
      finished.writePlanText(findings, printBytes);
    }
    finishPrinting();
    return Done;
  });
}

}  // namespace kvn::host
