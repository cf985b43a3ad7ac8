#include "job/Job.h"

#include "adjust/AlgorithmAdjust.h"
#include "adjust/HeightAdjustment.h"
#include "adjust/TriangleHeightAdjust.h"
#include "core/DataException.h"
#include "core/Project.h"
#include "core/System.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"
#include "reduction/FieldInspection.h"

#include <utils/QLogicError.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <exception>
#include <iterator>
#include <new>
#include <string>
#include <unordered_map>
#include <unordered_set>
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
  QString const text = Messages::tr("%1 of %2 coordinates have no height: 0 stands in its place");
  detail::sendWarning(text.arg(missing).arg(points.size()));
}

/// A point that the adjustment cannot place for want of a connection is told as that.
void dropLooseOfUnplaced(std::vector<FieldFinding>& findings) {
  std::unordered_set<std::string> unplaced;
  for (FieldFinding const& finding : findings) {
    bool const isOfPoint = finding.severity == FieldFinding::Error && finding.station.empty();
    if (isOfPoint && finding.targets.size() == 1 && finding.line == 0) unplaced.insert(finding.targets.front());
  }
  QString const texts[] = {Messages::tr("nothing connects the point to a known one"),
                           Messages::tr("nothing connects the point to most of the others"),
                           Messages::tr("a single observation does not fix the point")};
  auto const isTold = [&](FieldFinding const& finding) {
    bool const isLoose = finding.severity == FieldFinding::Warning && finding.targets.size() <= 1 &&
                         std::find(std::begin(texts), std::end(texts), finding.text) != std::end(texts);
    return isLoose && unplaced.count(finding.targets.empty() ? finding.station : finding.targets.front()) > 0;
  };
  findings.erase(std::remove_if(findings.begin(), findings.end(), isTold), findings.end());
}

/// Heights where the rows give any.
void tryHeights(detail::JobState& state, utils::IProcessCancel const& cancel) {
  QString reason;
  try {
    detail::adjustHeights(state, cancel);
    return;
  } catch (std::bad_alloc const&) {
    throw;  // says nothing about the heights
  } catch (QLogicError const&) {
    throw;  // the host has cancelled
  } catch (JobException const& failure) {
    reason = failure.text;
  } catch (std::exception const& failure) {
    reason = QString::fromUtf8(failure.what());
  }
  detail::forgetHeights(state);  // those of a run before
  detail::sendWarning(Messages::tr("No heights are adjusted: %1").arg(reason));
}

/// Adjusted points into a list of coordinates. What no run knows of a point stays: its height, its code, its id, and
/// the point itself where the network lacks it.
/// @param list  may have names in the local 8-bit encoding, those of a coordinate file.
void mergeInto(std::vector<CoordinatePointInfo>& list, std::vector<CoordinatePointInfo> adjusted) {
  std::unordered_map<std::string, std::size_t> placeOf;
  for (std::size_t i = 0; i < adjusted.size(); ++i) placeOf.emplace(adjusted[i].name, i);
  std::vector<bool> isInList(adjusted.size(), false);
  for (CoordinatePointInfo& point : list) {
    auto const found = placeOf.find(recordText(point.name).toStdString());
    if (found == placeOf.end()) continue;
    CoordinatePointInfo const& now = adjusted[found->second];
    isInList[found->second] = true;
    point.name = now.name;
    point.N = now.N;
    point.E = now.E;
    if (now.Z != 0.0) point.Z = now.Z;  // the calculators of the project have put their heights there
  }
  for (std::size_t i = 0; i < adjusted.size(); ++i) {
    if (!isInList[i]) list.push_back(std::move(adjusted[i]));
  }
}

/// The heights of the last run into the coordinates, where the project wants them.
void takeHeights(detail::JobState const& state) {
  Project& project = *state.project;
  if (project.getConfigure().TraversePointAdjust != 0) return;
  std::vector<CoordinatePointInfo> points = project.getCoordinatePointList();
  if (TriangleHeightAdjust const* const literal = project.getTriangleHeightAdjust(); literal != nullptr) {
    literal->convertCoordZ(points);
  }
  if (state.heightRun == nullptr) return project.setCoordinatePointList(std::move(points));
  HeightAdjustment const& heights = *state.heightRun;
  std::unordered_map<std::string, double> heightOf;
  for (std::size_t p = 0; p < heights.network().points.size(); ++p) {
    heightOf.emplace(heights.network().points[p].name, heights.result().points[p].height);
  }
  for (CoordinatePointInfo& point : points) {
    auto const found = heightOf.find(point.name);
    if (found != heightOf.end()) point.Z = found->second;
  }
  project.setCoordinatePointList(std::move(points));
}

}  // namespace

QString detail::suffixOf(QString const& path) { return QFileInfo(path).suffix().toLower(); }

void detail::send(QString const& text, MessType type) {
  System const* const system = System::Instance();
  if (system != nullptr) system->sendMessage(text, type);
}

void detail::sendWarning(QString const& text) { send(text, Warning); }

void detail::sendInfo(QString const& text) { send(text, Info); }

namespace {

/// What readers pass on from the conversion of numbers is no text for users.
QString reasonOf(std::exception const& failure) {
  QString text = QString::fromUtf8(failure.what());
  static QRegularExpression const missing("invalid.stod.argument");
  static QRegularExpression const large("stod.argument.out.of.range");
  return text.replace(missing, Messages::tr("a number is missing or cannot be read"))
      .replace(large, Messages::tr("a number is too large"));
}

}  // namespace

void detail::throwNaming(QString const& file, Network const& network) {
  try {
    throw;
  } catch (std::bad_alloc const&) {
    throw;
  } catch (JobException const&) {
    throw;
  } catch (DataException const& failure) {
    std::throw_with_nested(JobException(file, reasonOf(failure), std::max(0, failure.line)));
  } catch (AlgorithmException const& failure) {
    std::throw_with_nested(JobException(file, worded(failure, network)));
  } catch (std::exception const& failure) {
    std::throw_with_nested(JobException(file, reasonOf(failure)));
  }
}

Job::Job() : Job(newProject()) {}

Job::Job(std::shared_ptr<Project> project) : state(std::make_unique<detail::JobState>()) {
  state->project = std::move(project);
}

Job::~Job() = default;

QStringList Job::readableKinds() { return {"in2", "kvn", "txt", "dat", "lqf"}; }
QStringList Job::writableKinds() { return {"txt", "lqf", "in2", "dat", "kvn"}; }

void Job::open(QString const& path, Reading reading) { openContents(path, detail::bytesOf(path), reading); }

void Job::openContents(QString const& path, std::string bytes, Reading reading) {
  Project read;
  read.setConfigure(state->project->getConfigure());
  bool const asRead = reading == Reading::AsRead;
  bool const isPlan = reading == Reading::Plan;
  detail::OpenedFile opened;
  guarded(path, read.getNetwork(), [&] { opened = detail::takeIn(read, path, std::move(bytes), asRead, isPlan); });
  state->project->takeData(std::move(read));
  detail::JobState now;
  now.project = std::move(state->project);
  now.file = path;
  now.asRead = asRead;
  now.isPlan = isPlan;
  now.opened = std::move(opened);
  now.progress = std::move(state->progress);
  now.plane = state->plane;
  now.traverseOptions = state->traverseOptions;
  now.heights = state->heights;
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
  std::vector<FieldFinding> all =
      findingsOf(FileTold | FileText | FieldReduced | RowChecks | HeightChecks | NetworkChecks | AdjustmentStart);
  dropLooseOfUnplaced(all);
  sortFindings(all);
  return all;
}

std::vector<FieldFinding> Job::findingsOf(unsigned sources) const { return findingsOf(sources, FieldFinding::Note); }

std::vector<FieldFinding> Job::findingsOf(unsigned sources, FieldFinding::Severity least) const {
  Project const& project = *state->project;
  detail::OpenedFile const& opened = state->opened;
  std::vector<FieldFinding> all;
  auto const add = [&all, least](std::vector<FieldFinding> more) {
    std::copy_if(std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()), std::back_inserter(all),
                 [least](FieldFinding const& finding) { return finding.severity >= least; });
  };
  guarded(*state, [&] {
    if ((sources & FileTold) != 0) add(opened.toldFindings);
    if ((sources & FileText) != 0) add(opened.text.findings);
    if ((sources & FieldReduced) != 0) {
      add(opened.placed(opened.reduction.findings));
      ObservationErrors const errors = detail::observationErrors(*state);
      add(opened.placed(inspectDistances(opened.reduction, errors, state->plane.centring)));
    }
    if ((sources & RowChecks) != 0) {
      add(opened.placed(inspectRows(project.getTraverseDataList(), opened.reduction, least)));
    }
    if ((sources & HeightChecks) != 0) add(detail::findingsBeforeHeights(*state));
    if ((sources & NetworkChecks) != 0) add(detail::findingsOnNetwork(*state));
    detail::dropCostsOfHeld(*state, all);
    if ((sources & AdjustmentStart) != 0) add(detail::findingsOnStart(*state));
    if ((sources & AdjustmentRun) != 0) add(state->runFindings);
    if ((sources & HeightRun) != 0) add(state->heightFindings);
  });
  return all;
}

void Job::requireNoError(unsigned sources) const { detail::requireNoError(state->file, findingsOf(sources)); }

void Job::setProgressCall(AdjustProgressCall call) { state->progress = std::move(call); }

void Job::setPlaneOptions(PlaneOptions const& options) {
  auto const require = [this](double value, double least, double largest, QString const& text) {
    if (!(value >= least && value <= largest)) throw JobException(state->file, text);
  };
  require(options.centring, 0.0, 1.0, Messages::tr("the centring error must be from 0 to 1 m"));
  require(options.controlError, 0.0, 100.0, Messages::tr("the error of known coordinates must be from 0 to 100 m"));
  require(options.confidence, 0.5, 0.9999, Messages::tr("the confidence must be from 0.5 to 0.9999"));
  if (options.leavesOutSuspects && options.weighsDownSuspects) {
    throw JobException(state->file, Messages::tr("suspects are left out or weighed down, not both"));
  }
  state->plane = options;
}

PlaneOptions const& Job::planeOptions() const { return state->plane; }

void Job::setTraverseOptions(TraverseOptions const& options) {
  auto const isSound = [](double value, double largest) { return value >= 0.0 && value <= largest; };
  bool const fits = isSound(options.allowedAngle, 100000.0) && isSound(options.allowedRelative, 1e9);
  if (!fits) throw JobException(state->file, Messages::tr("the limits of misclosures must be 0 or more"));
  state->traverseOptions = options;
}

TraverseOptions const& Job::traverseOptions() const { return state->traverseOptions; }

std::vector<TraverseResult> const& Job::traverses() const { return state->traverses; }

void Job::adjust() {
  guarded(*state, [this] { detail::adjust(*state, *this); });
}

PlaneAdjustment const& Job::plan() {
  guarded(*state, [this] { detail::planNetwork(*state, *this); });
  return *state->planned;
}

PlaneAdjustment const* Job::planeAdjustment() const { return state->planeRun.get(); }

Network const& Job::adjustedNetwork() const { return state->adjusted; }

void Job::setHeightOptions(HeightOptions const& options) {
  auto const require = [this](bool isSound, QString const& text) {
    if (!isSound) throw JobException(state->file, text);
  };
  require(!options.zenithError || (*options.zenithError > 0.0 && *options.zenithError <= 10000.0),
          Messages::tr("the error of a zenith angle must be above 0 and up to 10000 seconds"));
  require(options.heightError >= 0.0 && options.heightError <= 1.0,
          Messages::tr("the error of a height of instrument or target must be from 0 to 1 m"));
  require(!options.refraction || std::abs(*options.refraction) <= 10.0,
          Messages::tr("the refraction must be from -10 to 10"));
  require(options.refractionError >= 0.0 && options.refractionError <= 10.0,
          Messages::tr("the error of the refraction must be from 0 to 10"));
  state->heights = options;
  detail::forgetHeights(*state);
}

HeightOptions const& Job::heightOptions() const { return state->heights; }

void Job::adjustHeights() {
  guarded(*state, [this] { detail::adjustHeights(*state, *this); });
}

HeightAdjustment const* Job::heightAdjustment() const { return state->heightRun.get(); }

TriangleHeightDataConvert const& Job::heightLines() const { return state->heightLines; }

void Job::takeResults() {
  Project& project = *state->project;
  guarded(*state, [&] {
    PlaneAdjustment const* const plane = planeAdjustment();
    bool const hasResult = plane != nullptr || !state->traverses.empty() || project.getAlgorithmAdjust() != nullptr;
    bool const isTried = state->heightRun != nullptr || (!state->asRead && state->hasTriedHeights);
    bool const mayHave = hasResult && !isTried && !project.getTraverseDataList().empty();
    // What `adjust` has said about the heights holds, whatever the results are taken for.
    if (mayHave && state->asRead) tryHeights(*state, *this);
    if (mayHave && !state->asRead) keepHeights(*state, heightsBeside(*state, *this));
    std::vector<CoordinatePointInfo> points = project.getCoordinatePointList();
    if (plane == nullptr && !state->traverses.empty() && !state->asRead) {
      mergeInto(points, detail::coordinatesOf(state->traverses));
    } else if (plane == nullptr) {
      project.algorithmPointConvertCoord();  // in the place of the list
      mergeInto(points, project.getCoordinatePointList());
    } else {
      mergeInto(points, detail::coordinatesOf(*plane));
    }
    project.setCoordinatePointList(std::move(points));
    takeHeights(*state);
    tellMissingHeights(project.getCoordinatePointList());
  });
}

void Job::requireWritableKind(QString const& path, QStringList const& kinds) {
  if (kinds.contains(detail::suffixOf(path))) return;
  throw JobException(path, Messages::tr("unknown kind of file; what can be written: %1").arg('.' + kinds.join(", .")));
}

void Job::save(QString const& path) {
  requireWritableKind(path);
  guarded(path, state->project->getNetwork(), [&] { detail::write(*state, path); });
}

}  // namespace kvn
