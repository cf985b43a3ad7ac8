// adjust: coordinates, with their errors or misclosures.
#include "AdjustReport.h"
#include "Commands.h"
#include "Failures.h"
#include "FindingsText.h"
#include "Options.h"
#include "Output.h"
#include "PlaneReport.h"
#include "PlaneSetup.h"
#include "RecordJson.h"
#include "Saving.h"
#include "Session.h"
#include "TraverseReport.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kvn::host {
namespace {

constexpr int kLeastSquares = 0;  // Configure::AdjustMethod; the others are single traverses

/// Shows where an adjustment stands, once it has taken long enough for someone to ask.
class ProgressLine {
 public:
  explicit ProgressLine(std::size_t sights) : count(sights) {}
  ProgressLine(ProgressLine const&) = delete;
  ProgressLine& operator=(ProgressLine const&) = delete;
  ~ProgressLine() { eraseProgress(); }

  void show(AdjustProgress const& progress) const {
    if (std::chrono::steady_clock::now() - start < kPatience) return;
    showProgress(System::tr("Adjusting %1 sights: %2").arg(count).arg(textOf(progress)));
  }

 private:
  static constexpr std::chrono::milliseconds kPatience{300};

  static QString textOf(AdjustProgress const& progress) {
    switch (progress.stage) {
      case AdjustProgress::Start:
        return System::tr("approximate coordinates");
      case AdjustProgress::Equations:
        break;
      case AdjustProgress::Inverse:
        return System::tr("inverse");
      case AdjustProgress::Results:
        return System::tr("errors of the results");
      case AdjustProgress::Check:
        return System::tr("search for gross errors");
    }
    QString round = System::tr("round %1").arg(progress.round);
    if (std::isnan(progress.largestMove)) return round;
    return round + System::tr(", largest move %1 m").arg(progress.largestMove, 0, 'g', 3);
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

/// What the run has not told itself; what may cost most first, then by line.
std::vector<FieldFinding> findingsBesideTheRun(Job const& job) {
  auto findings = job.findingsOf(Job::FileText | Job::FieldReduced | Job::RowChecks | Job::NetworkChecks,
                                 FieldFinding::Warning);  // notes are not told
  sortFindings(findings);
  sortByCost(findings);
  return findings;
}

/// A traverse that misses by far may do so by what the file tells: that is printed ahead of the refusal.
void adjustOrTell(Session& session) {
  try {
    adjust(session);
  } catch (JobMisclosureException const& failure) {
    std::vector<FieldFinding> all = failure.findings;
    std::vector<FieldFinding> const beside = findingsBesideTheRun(session.job());
    all.insert(all.end(), beside.begin(), beside.end());
    sortByCost(all);
    tellWarnings(all);
    throw JobMisclosureException(failure.file, failure.text, std::move(all));
  }
}

/// What is read with care has adjusted its heights with the plane, or said why not.
void adjustHeightsForExchange(Session& session) {
  Job& job = session.job();
  if (job.reading() != Job::Reading::AsRead) return;
  // Heights of a book that has none would be the rises above 0.
  auto const& rows = session.project().getTraverseDataList();
  auto const hasHeight = [](TraverseDataInfo const& row) { return row.isKnown && row.Z != 0.0; };
  if (std::none_of(rows.begin(), rows.end(), hasHeight)) return;
  try {
    job.adjustHeights();
  } catch (JobException const& failure) {
    System::Instance()->sendMessage(System::tr("No heights are adjusted: %1").arg(failure.text), Warning);
  }
}

void saveResults(Session& session, QString const& path, ExchangeChoice const& choice) {
  if (isExchange(path)) {
    adjustHeightsForExchange(session);
    return saveJob(session, path, choice);
  }
  QString const kind = path.section('.', -1).toLower();
  if (kind == "dat" || kind == "kvn") {
    session.job().takeResults();
  } else {
    System::Instance()->sendMessage(
        System::tr("%1 holds the observations, not the adjusted coordinates").arg(session.shown(path)), Warning);
  }
  saveJob(session, path, choice);
}

std::vector<FieldFinding> withFindingsOfTheRun(Job const& job, std::vector<FieldFinding> const& beside) {
  std::vector<FieldFinding> all = job.findingsOf(Job::AdjustmentRun | Job::HeightRun | Job::FileTold);
  all.insert(all.end(), beside.begin(), beside.end());
  sortByCost(all);
  return all;
}

void reportPlane(Session& session, std::vector<FieldFinding> const& findings, AdjustOptions const& wanted) {
  PlaneAdjustment const& run = *session.job().planeAdjustment();
  PlaneReport finished(session.file(), session.project().getConfigure(), session.job().planeOptions(), run);
  finished.setHeights(session.job().heightAdjustment());
  if (wanted.json) {
    finished.writeJson(findingsJson(findings), session.messages().take(), printBytes);
  } else {
    finished.writeSummary(judgementText(session.job()), findings, printBytes);
    if (!wanted.isShort) finished.writeTables(printBytes);
  }
  finishPrinting();
}

void reportLiteral(Session& session, bool asJson) {
  AlgorithmAdjust const& result = *session.project().getAlgorithmAdjust();
  AdjustReport const finished(session.file(), session.project().getConfigure(), result,
                              session.job().adjustedNetwork());
  if (asJson) {
    finished.writeJson(session.messages().take(), printBytes);
  } else {
    finished.writeText(printBytes);
  }
  finishPrinting();
}

/// Of several traverses the first stands at the top of the JSON too, as that of a file with one does.
void reportTraverses(Session& session, std::vector<FieldFinding> const& findings, AdjustOptions const& wanted) {
  QString const judged = judgementText(session.job());
  QString const first = (judged.isEmpty() ? judged : '\n' + judged) + findingsText(findings);
  QString text;
  Json::Value json;
  Json::Value all(Json::arrayValue);
  PointHeights const heights(session.job().heightAdjustment());
  Configure configure = session.project().getConfigure();
  bool const isSum = session.job().planeOptions().distanceForm == ObservationErrors::Form::Sum;
  if (session.job().reading() != Job::Reading::AsRead) configure.LineCalculateExpression = isSum;
  for (TraverseResult const& traverse : session.job().traverses()) {
    TraverseReport finished(session.file(), configure, traverse, session.job().adjustedNetwork(), heights);
    finished.setLimits(session.job().traverseOptions());
    if (wanted.json) {
      all.append(finished.json());
    } else {
      bool const isFirst = text.isEmpty();
      text += (isFirst ? "" : "\n") + finished.headText() + (isFirst ? first : QString());
      if (!wanted.isShort) text += finished.tablesText();
    }
  }
  if (!wanted.json) return printText(text);
  json = all[0];
  if (all.size() > 1) json["traverses"] = all;
  json["findings"] = findingsJson(findings);
  json["messages"] = session.messages().take();
  printJson(json);
}

void report(Session& session, std::vector<FieldFinding> const& findings, AdjustOptions const& wanted) {
  if (session.project().getConfigure().AdjustMethod != kLeastSquares) {
    reportTraverses(session, findings, wanted);
  } else if (session.job().planeAdjustment() != nullptr) {
    reportPlane(session, findings, wanted);
  } else {
    reportLiteral(session, wanted.json);
  }
}

}  // namespace

int runAdjust(QStringList const& arguments) {
  auto const options = parseAdjust(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    QString const out = options->saveFile.isEmpty() ? QString() : session.outputFor(options->saveFile);
    if (!out.isEmpty()) Job::requireWritableKind(out, savableKinds());
    session.open(options->file, options->asRead ? Job::Reading::AsRead : Job::Reading::Careful);
    useOptions(session, *options);
    adjustOrTell(session);
    // After the run: a job that cannot be computed prints exactly one line.
    std::vector<FieldFinding> findings;
    if (!options->asRead) findings = findingsBesideTheRun(session.job());
    tellWarnings(findings);
    bool const saved = out.isEmpty() || save(session, out, [&options](Session& from, QString const& path) {
                         saveResults(from, path, options->exchange);
                       });
    if (!options->asRead) findings = withFindingsOfTheRun(session.job(), findings);
    bool const isPrinted = options->json || !(options->quiet || options->saveFile == kStream);
    if (isPrinted) report(session, findings, *options);
    return saved && !hasErrors(findings) ? Done : Refused;
  });
}

}  // namespace kvn::host
