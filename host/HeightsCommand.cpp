// heights: trigonometric heights with their errors.
#include "Commands.h"
#include "Failures.h"
#include "FieldJob.h"
#include "Heights.h"
#include "HeightsReport.h"
#include "Options.h"
#include "Output.h"
#include "Session.h"

namespace kvn::host {
namespace {

int report(Session& session, HeightsOptions const& options) {
  Project const& project = session.project();
  if (project.getTraverseDataList().empty()) {
    throw Refusal(session.file(), "the file has no rows of a field book, from which heights are computed");
  }
  double const refraction = options.refraction.value_or(double(project.getConfigure().AtmosphericIndex));
  TriangleHeightDataConvert const observations = observeHeights(session, refraction, options.asRead);
  requireSolvable(session.file(), observations);
  TriangleHeightAdjust adjustment;
  adjustment.setTriangleHeightDataConvert(observations);
  adjustment.heightLSAdjust();
  HeightsReport const finished(session.file(), refraction, observations, adjustment);
  if (!options.json) {
    printText(finished.text());
    return Done;
  }
  Json::Value json = finished.json();
  json["messages"] = session.messages().take();
  printJson(json);
  return Done;
}

}  // namespace

int runHeights(QStringList const& arguments) {
  auto const options = parseHeights(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    session.open(options->file, options->asRead);
    requireNoError(session.file(), session.job().text.findings);
    tellWarnings(session.job().findings());
    tellWarnings(session.job().placed(inspectRows(session.project().getTraverseDataList(), session.job().reduction)));
    return report(session, *options);
  });
}

}  // namespace kvn::host
