#include "job/Job.h"

#include "adjust/AlgorithmAdjust.h"
#include "adjust/TriangleHeightAdjust.h"
#include "core/DataException.h"
#include "core/Project.h"
#include "core/System.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "reduction/FieldInspection.h"

#include <QFileInfo>
#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace kvn {
namespace {

std::shared_ptr<Project> newProject() {
  System* const system = System::Instance();
  return system == nullptr ? std::make_shared<Project>() : system->createProject();
}

/// Runs a step; its failure names the file.
template <typename Step>
void guarded(QString const& file, Network const& network, Step const& step) {
  try {
    step();
  } catch (...) {
    detail::throwNaming(file, network);
  }
}

template <typename Step>
void guarded(detail::JobState const& state, Step const& step) {
  guarded(state.file, state.project->getNetwork(), step);
}

/// A coordinate without a height has the height 0, as a point at sea level.
void tellMissingHeights(std::vector<CoordinatePointInfo> const& points) {
  auto const missing = static_cast<std::size_t>(
      std::count_if(points.begin(), points.end(), [](CoordinatePointInfo const& point) { return point.Z == 0.0; }));
  if (missing == 0) return;
  QString const text("%1 of %2 coordinates have no height: 0 stands in its place");
  detail::sendWarning(text.arg(missing).arg(points.size()));
}

/// Heights where the rows give any.
void tryHeights(detail::JobState& state, double refraction) {
  QString reason;
  try {
    detail::adjustHeights(state, refraction);
    return;
  } catch (std::bad_alloc const&) {
    throw;  // says nothing about the heights
  } catch (JobException const& failure) {
    reason = failure.text;
  } catch (std::exception const& failure) {
    reason = QString::fromUtf8(failure.what());
  }
  state.project->setTriangleHeightAdjust(std::make_unique<TriangleHeightAdjust>());  // those of a run before
  detail::sendWarning(QString("No heights are adjusted: %1").arg(reason));
}

void takePlaneResults(Project& project, PlaneAdjustment const& adjustment) {
  std::vector<CoordinatePointInfo> points = detail::coordinatesOf(adjustment);
  TriangleHeightAdjust const* const heights = project.getTriangleHeightAdjust();
  if (project.getConfigure().TraversePointAdjust == 0 && heights != nullptr) heights->convertCoordZ(points);
  project.setCoordinatePointList(std::move(points));
}

}  // namespace

QString detail::suffixOf(QString const& path) { return QFileInfo(path).suffix().toLower(); }

void detail::sendWarning(QString const& text) {
  System const* const system = System::Instance();
  if (system != nullptr) system->sendMessage(text, Warning);
}

void detail::sendInfo(QString const& text) {
  System const* const system = System::Instance();
  if (system != nullptr) system->sendMessage(text, Info);
}

void detail::throwNaming(QString const& file, Network const& network) {
  try {
    throw;
  } catch (std::bad_alloc const&) {
    throw;
  } catch (JobException const&) {
    throw;
  } catch (DataException const& failure) {
    std::throw_with_nested(JobException(file, QString::fromUtf8(failure.what()), std::max(0, failure.line)));
  } catch (AlgorithmException const& failure) {
    std::throw_with_nested(JobException(file, worded(failure, network)));
  } catch (std::exception const& failure) {
    std::throw_with_nested(JobException(file, QString::fromUtf8(failure.what())));
  }
}

Job::Job() : Job(newProject()) {}

Job::Job(std::shared_ptr<Project> project) : state(std::make_unique<detail::JobState>()) {
  state->project = std::move(project);
}

Job::~Job() = default;

QStringList Job::readableKinds() { return {"in2", "kvn", "txt", "dat", "lqf"}; }
QStringList Job::writableKinds() { return {"txt", "lqf", "in2", "dat", "kvn"}; }

void Job::open(QString const& path, Reading reading) {
  Project read;
  read.setConfigure(state->project->getConfigure());
  bool const asRead = reading == Reading::AsRead;
  bool const isPlan = reading == Reading::Plan;
  detail::OpenedFile opened;
  guarded(path, read.getNetwork(), [&] { opened = detail::takeIn(read, path, detail::bytesOf(path), asRead, isPlan); });
  state->project->takeData(std::move(read));
  detail::JobState now;
  now.project = std::move(state->project);
  now.file = path;
  now.asRead = asRead;
  now.isPlan = isPlan;
  now.opened = std::move(opened);
  now.progress = std::move(state->progress);
  now.plane = state->plane;
  *state = std::move(now);
}

QString const& Job::file() const { return state->file; }
Job::Reading Job::reading() const {
  if (state->isPlan) return Reading::Plan;
  return state->asRead ? Reading::AsRead : Reading::Careful;
}
std::shared_ptr<Project> const& Job::project() const { return state->project; }

void Job::reduce() {
  guarded(*state, [this] { detail::reduce(*state); });
}

std::vector<FieldFinding> Job::findings() const {
  std::vector<FieldFinding> all = findingsOf(FileText | FieldReduced | RowChecks | NetworkChecks | AdjustmentStart);
  sortFindings(all);
  return all;
}

std::vector<FieldFinding> Job::findingsOf(unsigned sources) const {
  Project const& project = *state->project;
  detail::OpenedFile const& opened = state->opened;
  std::vector<FieldFinding> all;
  auto const add = [&all](std::vector<FieldFinding> const& more) { all.insert(all.end(), more.begin(), more.end()); };
  guarded(*state, [&] {
    if ((sources & FileText) != 0) add(opened.text.findings);
    if ((sources & FieldReduced) != 0) add(opened.placed(opened.reduction.findings));
    if ((sources & RowChecks) != 0) {
      add(opened.placed(inspectRows(project.getTraverseDataList(), opened.reduction)));
    }
    if ((sources & NetworkChecks) != 0) add(inspectNetwork(project.getNetwork(), project.getConfigure()));
    if ((sources & AdjustmentStart) != 0) add(detail::findingsOnStart(*state));
  });
  return all;
}

void Job::requireNoError(unsigned sources) const { detail::requireNoError(state->file, findingsOf(sources)); }

void Job::setProgressCall(AdjustProgressCall call) { state->progress = std::move(call); }

void Job::setPlaneOptions(PlaneOptions const& options) {
  auto const require = [this](double value, double least, double largest, char const* text) {
    if (!(value >= least && value <= largest)) throw JobException(state->file, QString(text));
  };
  require(options.centring, 0.0, 1.0, "the centring error must be from 0 to 1 m");
  require(options.controlError, 0.0, 100.0, "the error of known coordinates must be from 0 to 100 m");
  require(options.confidence, 0.5, 0.9999, "the confidence must be from 0.5 to 0.9999");
  if (options.leavesOutSuspects && options.weighsDownSuspects) {
    throw JobException(state->file, "suspects are left out or weighed down, not both");
  }
  state->plane = options;
}

PlaneOptions const& Job::planeOptions() const { return state->plane; }

void Job::adjust() {
  guarded(*state, [this] { detail::adjust(*state, *this); });
}

PlaneAdjustment const& Job::plan() {
  guarded(*state, [this] { detail::planNetwork(*state, *this); });
  return *state->planned;
}

PlaneAdjustment const* Job::planeAdjustment() const { return state->planeRun.get(); }

Network const& Job::adjustedNetwork() const { return state->adjusted; }

TriangleHeightAdjust const& Job::adjustHeights(std::optional<double> refraction) {
  double const coefficient = refraction.value_or(double(state->project->getConfigure().AtmosphericIndex));
  guarded(*state, [&] { detail::adjustHeights(*state, coefficient); });
  return *state->project->getTriangleHeightAdjust();
}

TriangleHeightDataConvert const& Job::heightLines() const { return state->heightLines; }

void Job::takeResults(std::optional<double> refraction) {
  Project& project = *state->project;
  double const coefficient = refraction.value_or(double(project.getConfigure().AtmosphericIndex));
  guarded(*state, [&] {
    PlaneAdjustment const* const plane = planeAdjustment();
    bool const hasResult = plane != nullptr || project.getAlgorithmAdjust() != nullptr;
    if (hasResult && !project.getTraverseDataList().empty()) tryHeights(*state, coefficient);
    if (plane == nullptr) {
      project.algorithmPointConvertCoord();
    } else {
      takePlaneResults(project, *plane);
    }
    tellMissingHeights(project.getCoordinatePointList());
  });
}

void Job::requireWritableKind(QString const& path, QStringList const& kinds) {
  if (kinds.contains(detail::suffixOf(path))) return;
  throw JobException(path, "unknown kind of file; what can be written: ." + kinds.join(", ."));
}

void Job::save(QString const& path) {
  requireWritableKind(path);
  guarded(path, state->project->getNetwork(), [&] { detail::write(*state, path); });
}

}  // namespace kvn
