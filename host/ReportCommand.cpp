// report: what adjust computes, as a page to look at, to print and to hand over.
#include "Commands.h"
#include "Failures.h"
#include "FindingsText.h"
#include "Options.h"
#include "Output.h"
#include "PlaneSetup.h"
#include "Saving.h"
#include "Session.h"

#include <algorithm>
#include <exception>

namespace kvn::host {
namespace {

/// Points with coordinates, and nothing that was observed.
bool isListAlone(Project const& project) {
  return project.getNetwork().lines.empty() && project.getTraverseDataList().empty();
}

/// @return why there is no plane, where the rows give heights all the same; else empty.
/// @throws JobException of the plane where they do not.
QString adjustAll(Session& session, bool isOfHeights) {
  Job& job = session.job();
  if (isOfHeights) {
    job.adjustHeights();
    return {};
  }
  if (isListAlone(session.project())) return {};
  try {
    job.adjust();
    return {};
  } catch (JobException const& failure) {
    bool const isFieldBook = !session.project().getTraverseDataList().empty();
    if (!isFieldBook || job.reading() == Job::Reading::AsRead) throw;
    QString const reason = failure.text;
    std::exception_ptr const ofPlane = std::current_exception();
    try {
      job.adjustHeights();
    } catch (JobException const&) {
      std::rethrow_exception(ofPlane);
    }
    // A control point known in plan only has the height 0 in a field book.
    auto const& points = job.heightAdjustment()->network().points;
    auto const isUseful = [](HeightNetwork::Point const& point) { return point.isKnown && point.height != 0.0; };
    if (std::none_of(points.begin(), points.end(), isUseful)) std::rethrow_exception(ofPlane);
    System::Instance()->sendMessage(System::tr("The plane cannot be adjusted: %1").arg(reason), Warning);
    return System::tr("The plane cannot be adjusted: %1. The heights alone are here.").arg(reason);
  }
}

}  // namespace

int runReport(QStringList const& arguments) {
  auto const options = parseReport(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    QString const out = session.outputFor(options->outFile);
    Job::requireWritableKind(out, {"html", "htm"});
    session.open(options->file, options->asRead ? Job::Reading::AsRead : Job::Reading::Careful);
    useOptions(session, *options);
    ReportOptions page;
    page.title = options->title;
    page.program = versionLine().trimmed();
    page.refusal = adjustAll(session, options->isOfHeights);
    tellWarnings(session.job().findingsOf(Job::FileText | Job::FieldReduced | Job::RowChecks | Job::NetworkChecks,
                                          FieldFinding::Warning));
    if (isListAlone(session.project())) session.job().requireNoError(Job::FileText);
    if (isListAlone(session.project())) tellWithoutPlace(siteDrawingOf(session.job()));
    bool const saved =
        save(session, out, [&page](Session& of, QString const& path) { saveReport(of.job(), path, page); });
    int const code = finishSaving(session, options->outFile, saved, options->json);
    return hasErrors(session.job().findingsOf(Job::AdjustmentRun)) ? Refused : code;
  });
}

}  // namespace kvn::host
