// The careful run by least squares: every observation of a job by itself.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/PlaneAdjustment.h"
#include "adjust/input/CalculationFailure.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kvn {
namespace {

// Millimetres and parts per million of a project's settings.
constexpr double kMillimetre = 1e-3;
constexpr double kMillionth = 1e-6;

/// @throws AlgorithmException with the number of the line, as of a network whose lines are edited.
/// @throws JobException with the line of the file, where it is one of that.
void requireSound(QString const& file, PlaneNetwork const& observations, Network const& network) {
  auto const refuse = [&](int from, int to, PlaneNetwork::Origin const& origin) {
    std::string const& start = observations.points[static_cast<std::size_t>(from)].name;
    std::string const& end = observations.points[static_cast<std::size_t>(to)].name;
    if (origin.line > 0 && from == to) {
      QString const text = Messages::tr("line %1: %2: an observation from a point to itself");
      throw JobException(file, text.arg(origin.line).arg(recordText(start)), origin.line);
    }
    auto const line = std::find_if(network.lines.begin(), network.lines.end(), [&](NetworkDataInfo const& one) {
      return one.start_name == start && one.end_name == end;
    });
    throw AlgorithmException(static_cast<int>(line - network.lines.begin()), AlgorithmException::DataError);
  };
  for (PlaneNetwork::Direction const& direction : observations.directions) {
    int const station = observations.setUps[static_cast<std::size_t>(direction.setUp)].station;
    if (direction.target == station || !std::isfinite(direction.value)) {
      refuse(station, direction.target, direction.origin);
    }
  }
  for (PlaneNetwork::Distance const& distance : observations.distances) {
    bool const isSound = distance.from != distance.to && std::isfinite(distance.value) && distance.value > 0.0;
    if (!isSound) refuse(distance.from, distance.to, distance.origin);
  }
}

/// Of each point, whether something is observed from it or to it.
std::vector<bool> observedPoints(PlaneNetwork const& network) {
  std::vector<bool> isObserved(network.points.size(), false);
  auto const mark = [&isObserved](int point) { isObserved[static_cast<std::size_t>(point)] = true; };
  for (PlaneNetwork::SetUp const& setUp : network.setUps) mark(setUp.station);
  for (PlaneNetwork::Direction const& direction : network.directions) mark(direction.target);
  for (PlaneNetwork::Distance const& distance : network.distances) {
    mark(distance.from);
    mark(distance.to);
  }
  return isObserved;
}

/// Leaves out the points that nothing observes: known ones, which the checks of the network tell.
void keepObservedPoints(PlaneNetwork& network) {
  std::vector<bool> const isObserved = observedPoints(network);
  std::vector<int> number(network.points.size(), -1);
  auto const renumber = [&number](int& point) { point = number[static_cast<std::size_t>(point)]; };
  std::vector<PlaneNetwork::Point> kept;
  for (std::size_t p = 0; p < number.size(); ++p) {
    if (!isObserved[p]) continue;
    number[p] = static_cast<int>(kept.size());
    kept.push_back(std::move(network.points[p]));
  }
  network.points = std::move(kept);
  for (PlaneNetwork::SetUp& setUp : network.setUps) renumber(setUp.station);
  for (PlaneNetwork::Direction& direction : network.directions) renumber(direction.target);
  for (PlaneNetwork::Distance& distance : network.distances) {
    renumber(distance.from);
    renumber(distance.to);
  }
}

/// @throws JobException with the line of an observation that is still to be measured.
void requireValues(QString const& file, PlaneNetwork const& network) {
  auto const refuse = [&](int from, int to, int line) {
    QString const text = Messages::tr("line %1: the observation from %2 to %3 has no value; see kelvane plan");
    throw JobException(file,
                       text.arg(line).arg(recordText(network.points[static_cast<std::size_t>(from)].name),
                                          recordText(network.points[static_cast<std::size_t>(to)].name)),
                       line);
  };
  for (PlaneNetwork::Direction const& d : network.directions) {
    int const station = network.setUps[static_cast<std::size_t>(d.setUp)].station;
    if (std::isnan(d.value)) refuse(station, d.target, d.origin.line);
  }
  for (PlaneNetwork::Distance const& d : network.distances) {
    if (std::isnan(d.value)) refuse(d.from, d.to, d.origin.line);
  }
}

}  // namespace

ObservationErrors detail::observationErrors(JobState const& state) {
  Configure const& configure = state.project->getConfigure();
  PlaneOptions const& options = state.plane;
  ObservationErrors errors;
  errors.directionSeconds = double(configure.AngleError);
  errors.distanceFixed = double(configure.LineFixedError) * kMillimetre;
  errors.distanceProportional = double(configure.LineProportionError) * kMillionth;
  errors.form = options.distanceForm;
  errors.control = options.controlError;
  return errors;
}

void detail::requireControl(PlaneNetwork const& network, PlaneOptions const& options) {
  auto const isKnown = [](PlaneNetwork::Point const& point) { return point.isKnown; };
  bool const isFree = options.datum == PlaneSettings::Datum::Free;
  if (isFree || std::count_if(network.points.begin(), network.points.end(), isKnown) >= 2) return;
  throw AlgorithmException(AlgorithmException::KnownPointNotEnough, std::string());
}

QStringList detail::namesIn(PlaneAdjustment const& adjustment) {
  QStringList names;
  for (UnplacedPoint const& point : adjustment.unplacedPoints()) names << recordText(point.name);
  for (LooseMotion const& motion : adjustment.looseMotions()) {
    for (std::string const& name : motion.names) names << recordText(name);
  }
  for (auto const& [a, b] : adjustment.coincidentPoints()) names << recordText(a) << recordText(b);
  names.removeDuplicates();
  return names;
}

void detail::tellUnchecked(PlaneAdjustment const& adjustment) {
  QStringList names;
  for (std::size_t p = 0; p < adjustment.network().points.size(); ++p) {
    if (!adjustment.result().points[p].isChecked) names << recordText(adjustment.network().points[p].name);
  }
  if (!names.isEmpty()) detail::sendWarning(Messages::tr("Nothing checks: %1").arg(listedNames(names)));
}

namespace {

PlaneNetwork observationsIn(detail::JobState const& state) {
  PlaneNetwork network = *detail::observationsNow(state);
  keepObservedPoints(network);
  return network;
}

}  // namespace

PlaneNetwork detail::observationsWithErrors(JobState const& state) {
  PlaneNetwork network = observationsIn(state);
  requireSound(state.file, network, state.project->getNetwork());
  setErrors(network, observationErrors(state));
  return network;
}

PlaneNetwork detail::observedNetwork(JobState const& state) {
  PlaneNetwork network = observationsIn(state);
  if (network.points.empty()) throw JobException(state.file, Messages::tr("there are no observations to adjust"));
  giveApproximate(state, network);
  requireControl(network, state.plane);
  return network;
}

namespace {

void weigh(detail::JobState const& state, PlaneNetwork& network) {
  if (state.isPlan) requireValues(state.file, network);
  requireSound(state.file, network, state.project->getNetwork());
  setErrors(network, detail::observationErrors(state));
}

bool areAllObserved(PlaneNetwork const& network) {
  std::vector<bool> const isObserved = observedPoints(network);
  return std::find(isObserved.begin(), isObserved.end(), false) == isObserved.end();
}

/// Those of the file themselves, which a large job would hold twice otherwise, where nothing in them changes but their
/// errors and no earlier run has them.
std::shared_ptr<PlaneNetwork const> observationsOfRun(detail::JobState& state) {
  std::shared_ptr<PlaneNetwork>& ofFile = state.opened.observations;
  bool const isFree = ofFile.use_count() == 1 && state.approximate.empty();
  if (!isFree || detail::observationsNow(state) != ofFile || !areAllObserved(*ofFile)) {
    return std::make_shared<PlaneNetwork const>(detail::weighedObservations(state));
  }
  detail::requireControl(*ofFile, state.plane);
  weigh(state, *ofFile);
  return ofFile;
}

}  // namespace

PlaneNetwork detail::weighedObservations(JobState const& state) {
  PlaneNetwork network = observedNetwork(state);
  weigh(state, network);
  return network;
}

PlaneSettings detail::settingsOf(PlaneOptions const& options) {
  PlaneSettings settings;
  settings.datum = options.datum;
  settings.unitWeight = options.unitWeight;
  settings.centring = options.centring;
  settings.confidence = options.confidence;
  settings.leavesOutSuspects = options.leavesOutSuspects;
  settings.weighsDownSuspects = options.weighsDownSuspects;
  settings.keepsSystem = false;  // every run has options of its own
  return settings;
}

void detail::adjustPlane(JobState& state, utils::IProcessCancel const& cancel) {
  std::shared_ptr<PlaneNetwork const> network = observationsOfRun(state);
  tellUnusedApproximate(state, *network);
  std::vector<FieldFinding> const contradictions = tellContradictions(state, *network);
  PlaneSettings const settings = settingsOf(state.plane);
  std::function<bool()> const isCancelled = cancel.getCancelCall();
  auto run = std::make_unique<PlaneAdjustment>(std::move(network), settings);
  run->setProgressCall(state.progress);
  run->setCancelCall(isCancelled);
  auto const refuse = [&](QString text, QStringList const& names, bool isExplained = false) {
    std::optional<FieldFinding> const exchange = findingOnExchange(*run, settings, isCancelled);
    if (names.isEmpty() && !exchange && !isExplained) throw;
    if (!names.isEmpty()) text = QString("%1: %2").arg(text, listedNames(names));
    if (exchange) text = QString("%1. %2").arg(text, exchange->text);
    std::throw_with_nested(JobException(state.file, text));
  };
  try {
    run->adjust();
  } catch (AlgorithmException const& failure) {
    if (!run->unplacedPoints().empty()) refuse(worded(run->unplacedPoints()), {}, true);
    if (!run->looseMotions().empty()) refuse(worded(run->looseMotions()), {}, true);
    refuse(worded(failure, Network()), namesIn(*run));
  } catch (CalculationFailure const& failure) {
    refuse(QString::fromUtf8(failure.what()), {});
  }
  // The calls of the host are for the time of the run.
  run->setProgressCall({});
  run->setCancelCall({});
  tellUnchecked(*run);
  for (QString const& line : warningLines(findingsOnEdits(state))) sendWarning(line);
  std::vector<FieldFinding> findings = findingsOnResult(state, *run);
  if (std::optional<FieldFinding> exchange = findingOnExchange(*run, settings, isCancelled)) {
    findings.push_back(std::move(*exchange));
  }
  for (QString const& line : warningLines(findings)) sendWarning(line);
  std::vector<FieldFinding> const told = findingsToldBy(*run);
  findings.insert(findings.end(), told.begin(), told.end());
  findings.insert(findings.end(), contradictions.begin(), contradictions.end());
  sortByCost(findings);
  FinishedHeights heights = heightsBeside(state, cancel);
  state.runFindings = std::move(findings);
  state.planeRun = std::move(run);
  state.project->setAlgorithmAdjust(nullptr);
  state.traverses.clear();
  state.adjusted = Network();
  keepHeights(state, std::move(heights));
}

std::vector<CoordinatePointInfo> detail::coordinatesOf(PlaneAdjustment const& adjustment) {
  std::vector<CoordinatePointInfo> coordinates(adjustment.network().points.size());
  for (std::size_t p = 0; p < coordinates.size(); ++p) {
    coordinates[p].name = adjustment.network().points[p].name;
    coordinates[p].N = adjustment.result().points[p].x;
    coordinates[p].E = adjustment.result().points[p].y;
  }
  return coordinates;
}

}  // namespace kvn
