// adjust: coordinates, with their errors or misclosures.
#include "AdjustReport.h"
#include "Commands.h"
#include "Failures.h"
#include "Heights.h"
#include "JobWriter.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"
#include "TraverseFailure.h"
#include "TraverseReport.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

namespace kvn::host {
namespace {

constexpr int kLeastSquares = 0;  // Configure::AdjustMethod; the others are single traverses

// Each round inverts the whole matrix.
constexpr int kIterationLimit = 50;

// Far beyond what a-priori errors that were set too small explain.
constexpr double kDoubtfulUnitError = 20.0;

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
  Configure configure = project.getConfigure();
  takeOptions(options, configure);
  if (options.method == kLeastSquares) requireUsableErrors(session.file(), configure, project.getNetwork());
  return configure;
}

void requireObservations(Session& session) {
  if (session.project().getFileType() != Project::CoordFile) return;
  throw Refusal(session.file(), "a coordinate file has no observations to adjust");
}

/// The network as the method wants it.
Network prepared(Network const& network, int method, bool asRead) {
  if (method == kLeastSquares || asRead) return network;
  // A failure in the input names a line by its number, and the lines change.
  AlgorithmData().readNetworkData(network, MissingDirection::IsLeftOut);
  return withForwardDistances(turnedCircles(network));
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

/// Puts the finished adjustment into the project.
void adjust(Session& session, Network const& network, bool asRead) {
  Project& project = session.project();
  int const method = project.getConfigure().AdjustMethod;
  auto adjustment = std::make_unique<AlgorithmAdjust>();
  adjustment->setConfigure(project.getConfigure());
  // The distance between two known points moves nothing, but it tells whether they fit. A line of which the file has
  // the distance alone has no direction of 0.
  adjustment->setCountControlDistances(!asRead);
  adjustment->setFoldToNearest(!asRead);
  if (!asRead) adjustment->setIterationLimit(kIterationLimit);
  adjustment->setNetworkData(network, asRead ? MissingDirection::IsZero : MissingDirection::IsLeftOut);
  ProgressLine const line(network.lines.size());
  adjustment->setProgressCall([&line](AdjustProgress const& progress) { line.show(progress); });
  try {
    adjustment->calculateAdjust();
    adjustment->setProgressCall({});
  } catch (AlgorithmException const& failure) {
    if (method == kLeastSquares) throw;
    throw Refusal(session.file(), explained(failure, method));
  }
  project.setAlgorithmAdjust(std::move(adjustment));
}

void warn(QString const& text) { System::Instance()->sendMessage(text, Warning); }

/// Puts adjusted heights into the project, where the rows give any.
void adjustHeights(Session& session) {
  Project& project = session.project();
  try {
    double const refraction = double(project.getConfigure().AtmosphericIndex);
    TriangleHeightDataConvert const observations = observeHeights(session, refraction, session.isAsRead());
    requireSolvable(session.file(), observations);
    auto heights = std::make_unique<TriangleHeightAdjust>();
    heights->setTriangleHeightDataConvert(observations);
    heights->heightLSAdjust();
    project.setTriangleHeightAdjust(std::move(heights));
  } catch (std::bad_alloc const&) {
    throw;  // says nothing about the heights
  } catch (std::exception const& failure) {
    warn(QString("No heights are adjusted: %1").arg(QString::fromUtf8(failure.what())));
  }
}

/// A coordinate without a height has the height 0, as a point at sea level.
void tellMissingHeights(std::vector<CoordinatePointInfo> const& points) {
  auto const missing = static_cast<std::size_t>(
      std::count_if(points.begin(), points.end(), [](CoordinatePointInfo const& point) { return point.Z == 0.0; }));
  if (missing == 0) return;
  warn(QString("%1 of %2 coordinates have no height: 0 stands in its place").arg(missing).arg(points.size()));
}

void saveResults(Session& session, QString const& path) {
  QString const kind = path.section('.', -1).toLower();
  if (kind == "dat" || kind == "kvn") {
    if (!session.project().getTraverseDataList().empty()) adjustHeights(session);
    session.project().algorithmPointConvertCoord();
    tellMissingHeights(session.project().getCoordinatePointList());
  } else {
    warn(QString("%1 holds the observations, not the adjusted coordinates").arg(path));
  }
  writeJob(session, path);
}

int report(Session& session, Network const& network, bool asJson) {
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
    if (!options->saveFile.isEmpty()) requireWritableKind(options->saveFile, writableKinds());
    session.open(options->file, options->asRead);
    requireNoError(session.file(), session.job().findings());
    requireObservations(session);
    session.project().setConfigure(configureFor(session, *options));
    Network const network = prepared(session.project().getNetwork(), options->method, options->asRead);
    adjust(session, network, options->asRead);
    // Behind the run, so that a refusal stays the one line that it is.
    if (!options->asRead) tellWarnings(findingsOn(session));
    bool const saved = options->saveFile.isEmpty() || save(session, options->saveFile, saveResults);
    int const reported = report(session, network, options->json);
    return saved ? reported : Refused;
  });
}

}  // namespace kvn::host
