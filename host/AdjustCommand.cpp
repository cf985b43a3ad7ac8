// adjust: coordinates with their errors.
#include "AdjustReport.h"
#include "Commands.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"
#include "Session.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace kvn::host {
namespace {

void takeOptions(AdjustOptions const& options, Configure& configure) {
  configure.AdjustMethod = options.method;
  configure.AngleError = options.angleError.value_or(configure.AngleError);
  configure.LineFixedError = options.fixedError.value_or(configure.LineFixedError);
  configure.LineProportionError = options.proportionalError.value_or(configure.LineProportionError);
  configure.LineCalculateExpression = options.sumForm.value_or(configure.LineCalculateExpression);
}

/// The options are in range by now, so that a value that is not came with the file.
void requireUsableErrors(QString const& file, Configure const& configure, Network const& network) {
  auto const isBad = [](float value) { return !std::isfinite(value) || value < 0.0F; };
  if (isBad(configure.AngleError) || configure.AngleError == 0.0F) {
    throw Refusal(file, "the a-priori error of a direction (first number of line 1) must be above 0");
  }
  if (isBad(configure.LineFixedError) || isBad(configure.LineProportionError)) {
    throw Refusal(file, "the a-priori errors of a distance (second and third number of line 1) must be 0 or more");
  }
  // A distance without error would have a weight without bound.
  bool const hasDistances = std::any_of(network.lines.begin(), network.lines.end(),
                                        [](NetworkDataInfo const& line) { return line.horizontal_distance > 0.0; });
  if (hasDistances && configure.LineFixedError == 0.0F && configure.LineProportionError == 0.0F) {
    throw Refusal(file, "the a-priori errors of a distance are both 0");
  }
}

Configure configureFor(Session& session, AdjustOptions const& options) {
  Project const& project = session.project();
  Configure configure = session.head();
  takeOptions(options, configure);
  requireUsableErrors(session.file(), configure, project.getNetwork());
  return configure;
}

void adjust(Project& project, bool asRead) {
  auto adjustment = std::make_unique<AlgorithmAdjust>();
  adjustment->setConfigure(project.getConfigure());
  // The distance between two known points moves nothing, but it tells whether they fit. A line of which the file has
  // the distance alone has no direction of 0.
  adjustment->setCountControlDistances(!asRead);
  adjustment->setNetworkData(project.getNetwork(), asRead ? MissingDirection::IsZero : MissingDirection::IsLeftOut);
  adjustment->calculateAdjust();
  project.setAlgorithmAdjust(std::move(adjustment));
}

int report(Session& session, bool asJson) {
  Project const& project = session.project();
  AdjustReport const finished(session.file(), project.getConfigure(), *project.getAlgorithmAdjust(),
                              project.getNetwork());
  if (!asJson) {
    printText(finished.text());
    return Done;
  }
  Json::Value json = finished.json();
  json["messages"] = session.messages().take();
  printJson(json);
  return Done;
}

}  // namespace

int runAdjust(QStringList const& arguments) {
  auto const options = parseAdjust(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    session.open(options->file, options->asRead);
    session.project().setConfigure(configureFor(session, *options));
    adjust(session.project(), options->asRead);
    return report(session, options->json);
  });
}

}  // namespace kvn::host
