// heights: trigonometric heights with their errors.
#include "Commands.h"
#include "Failures.h"
#include "HeightsReport.h"
#include "Options.h"
#include "Output.h"
#include "Session.h"

namespace kvn::host {
namespace {

int report(Session& session, HeightsOptions const& options) {
  double const refraction = options.refraction.value_or(double(session.project().getConfigure().AtmosphericIndex));
  TriangleHeightAdjust const& adjustment = session.job().adjustHeights(refraction);
  HeightsReport const finished(session.file(), refraction, session.job().heightLines(), adjustment);
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
    session.open(options->file, options->asRead ? Job::Reading::AsRead : Job::Reading::Careful);
    session.job().requireNoError(Job::FileText);
    tellWarnings(session.job().findingsOf(Job::FileText | Job::FieldReduced));
    tellWarnings(session.job().findingsOf(Job::RowChecks));
    return report(session, *options);
  });
}

}  // namespace kvn::host
