// heights: trigonometric heights with their errors.
#include "Commands.h"
#include "Failures.h"
#include "HeightsReport.h"
#include "LiteralHeightsReport.h"
#include "Options.h"
#include "Output.h"
#include "PlaneSetup.h"
#include "Saving.h"
#include "Session.h"

namespace kvn::host {
namespace {

void takeOptions(Session& session, HeightsOptions const& options) {
  Configure& configure = session.project().getConfigure();
  configure.AngleError = options.angleError.value_or(configure.AngleError);
  configure.LineFixedError = options.fixedError.value_or(configure.LineFixedError);
  configure.LineProportionError = options.proportionalError.value_or(configure.LineProportionError);
  HeightOptions heights = heightOptions(options);
  heights.keepsObservations = !options.saveFile.isEmpty();  // a report of the heights is all that is wanted
  session.job().setHeightOptions(heights);
  PlaneOptions plane;
  plane.confidence = options.confidence.value_or(plane.confidence);
  if (options.isAPriori) plane.unitWeight = PlaneSettings::UnitWeight::APriori;
  session.job().setPlaneOptions(plane);
}

/// The run itself has told them.
std::vector<FieldFinding> findingsOfTheRun(Job const& job) {
  std::vector<FieldFinding> findings = job.findingsOf(Job::HeightRun);
  sortByCost(findings);
  return findings;
}

template <typename Report>
void print(Session& session, Report const& finished, bool asJson) {
  if (asJson) {
    finished.writeJson(session.messages().take(), printBytes);
  } else {
    finished.writeText(printBytes);
  }
  finishPrinting();
}

void report(Session& session, HeightsOptions const& options) {
  if (options.asRead) {
    double const refraction = options.refraction.value_or(double(session.project().getConfigure().AtmosphericIndex));
    LiteralHeightsReport const finished(session.file(), refraction, session.job().heightLines(),
                                        *session.project().getTriangleHeightAdjust());
    print(session, finished, options.json);
    return;
  }
  std::vector<FieldFinding> const findings = findingsOfTheRun(session.job());
  print(session, HeightsReport(session.file(), session.job(), findings), options.json);
}

}  // namespace

int runHeights(QStringList const& arguments) {
  auto const options = parseHeights(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    QString const out = options->saveFile.isEmpty() ? QString() : session.outputFor(options->saveFile);
    if (!out.isEmpty()) Job::requireWritableKind(out, exchangeKinds());
    session.open(options->file, options->asRead ? Job::Reading::AsRead : Job::Reading::Careful);
    session.job().requireNoError(Job::FileText);
    takeOptions(session, *options);
    tellWarnings(session.job().findingsOf(Job::FileText | Job::FieldReduced));
    tellWarnings(session.job().findingsOf(Job::RowChecks, FieldFinding::Warning));
    session.job().adjustHeights();
    bool const saved = out.isEmpty() || save(session, out, [&options](Session& from, QString const& path) {
                         saveJob(from, path, options->exchange);
                       });
    bool const isPrinted = options->json || !(options->quiet || options->saveFile == kStream);
    if (isPrinted) report(session, *options);
    return saved ? Done : Refused;
  });
}

}  // namespace kvn::host
