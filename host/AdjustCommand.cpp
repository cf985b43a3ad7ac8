// adjust: coordinates, with their errors or misclosures.
#include "AdjustReport.h"
#include "Commands.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"
#include "TraverseReport.h"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kvn::host {
namespace {

constexpr int kLeastSquares = 0;  // Configure::AdjustMethod; the others are single traverses

// Far beyond what a-priori errors that were set too small explain.
constexpr double kDoubtfulUnitError = 20.0;

void takeOptions(AdjustOptions const& options, Configure& configure) {
  configure.AdjustMethod = options.method;
  configure.AngleError = options.angleError.value_or(configure.AngleError);
  configure.LineFixedError = options.fixedError.value_or(configure.LineFixedError);
  configure.LineProportionError = options.proportionalError.value_or(configure.LineProportionError);
  configure.LineCalculateExpression = options.sumForm.value_or(configure.LineCalculateExpression);
}

/// Shows where an adjustment stands, once it has taken long enough for someone to ask.
class ProgressLine {
 public:
  explicit ProgressLine(std::size_t sights) : count(sights) {}
  ProgressLine(ProgressLine const&) = delete;
  ProgressLine& operator=(ProgressLine const&) = delete;
  ~ProgressLine() { eraseProgress(); }

  void show(AdjustProgress const& progress) const {
    if (std::chrono::steady_clock::now() - start < kPatience) return;
    showProgress(QString("Adjusting %1 sights: %2").arg(count).arg(textOf(progress)));
  }

 private:
  static constexpr std::chrono::milliseconds kPatience{300};

  static QString textOf(AdjustProgress const& progress) {
    switch (progress.stage) {
      case AdjustProgress::Start:
        return "approximate coordinates";
      case AdjustProgress::Equations:
        break;
      case AdjustProgress::Inverse:
        return "inverse";
      case AdjustProgress::Results:
        return "errors of the results";
      case AdjustProgress::Check:
        return "search for gross errors";
    }
    QString round = QString("round %1").arg(progress.round);
    if (std::isnan(progress.largestMove)) return round;
    return round + QString(", largest move %1 m").arg(progress.largestMove, 0, 'g', 3);
  }

  std::size_t count;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

void adjust(Session& session) {
  ProgressLine const line(session.project().getNetwork().lines.size());
  session.job().setProgressCall([&line](AdjustProgress const& progress) { line.show(progress); });
  session.job().adjust();
  session.job().setProgressCall({});
}

void saveResults(Session& session, QString const& path) {
  QString const kind = path.section('.', -1).toLower();
  if (kind == "dat" || kind == "kvn") {
    session.job().takeResults();
  } else {
    System::Instance()->sendMessage(QString("%1 holds the observations, not the adjusted coordinates").arg(path),
                                    Warning);
  }
  session.job().save(path);
}

/// By line, but for what the adjustment itself has told.
std::vector<FieldFinding> findingsBesideTheRun(Job const& job) {
  auto findings = job.findingsOf(Job::FileText | Job::FieldReduced | Job::RowChecks | Job::NetworkChecks);
  sortFindings(findings);
  return findings;
}

int report(Session& session, bool asJson) {
  Network const& network = session.job().adjustedNetwork();
  Project const& project = session.project();
  Configure const& configure = project.getConfigure();
  AlgorithmAdjust const& result = *project.getAlgorithmAdjust();
  if (configure.AdjustMethod == kLeastSquares) {
    AdjustSummary const& summary = result.getSummary();
    if (summary.hasRedundancy && summary.unitError > kDoubtfulUnitError) {
      System::Instance()->sendMessage(
          "The unit weight error is far above 1: a gross error, or known points that do not fit", Warning);
    }
    AdjustReport const finished(session.file(), configure, result, network);
    if (asJson) {
      finished.writeJson(session.messages().take(), printBytes);
    } else {
      finished.writeText(printBytes);
    }
    finishPrinting();
    return Done;
  }
  TraverseReport const finished(session.file(), configure, result, network);
  for (QString const& warning : finished.warnings()) System::Instance()->sendMessage(warning, Warning);
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
    if (!options->saveFile.isEmpty()) Job::requireWritableKind(options->saveFile);
    session.open(options->file, options->asRead);
    takeOptions(*options, session.project().getConfigure());
    adjust(session);
    // Behind the run, so that a refusal stays the one line that it is.
    if (!options->asRead) tellWarnings(findingsBesideTheRun(session.job()));
    bool const saved = options->saveFile.isEmpty() || save(session, options->saveFile, saveResults);
    int const reported = report(session, options->json);
    return saved ? reported : Refused;
  });
}

}  // namespace kvn::host
