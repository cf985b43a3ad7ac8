// Heights: the sights of a field book, each with its own error, and their adjustment.
#include "adjust/HeightAdjustment.h"
#include "adjust/NameIndex.h"
#include "adjust/TriangleHeightAdjust.h"
#include "adjust/TriangleHeightDataConvert.h"
#include "adjust/TriangleHeightDataRead.h"
#include "core/AlgorithmException.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/HeightTexts.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"

#include <QStringList>
#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kvn {
namespace {

/// Takes a message: to send it, or to keep it until the run has come to its end.
using Tell = std::function<void(QString const&, MessType)>;

QString reasonText(LeftOutSight::Reason reason) {
  switch (reason) {
    case LeftOutSight::NoStation:
      return Messages::tr("no height from a sight before the first station");
    case LeftOutSight::SightsItself:
      return Messages::tr("no height from a sight to the station itself");
    case LeftOutSight::NoAngle:
      return Messages::tr("no height from a sight without a vertical reading within the circle");
    case LeftOutSight::NoDistance:
      return Messages::tr("no height from a sight without a distance");
    case LeftOutSight::AlongVertical:
      return Messages::tr("no height from a sight straight up or down, or without a vertical reading");
  }
  return {};
}

void tellLeftOut(detail::OpenedFile const& opened, std::vector<LeftOutSight> const& sights) {
  std::vector<FieldFinding> findings;
  findings.reserve(sights.size());
  for (LeftOutSight const& sight : sights) {
    findings.push_back({FieldFinding::Warning, sight.station, {sight.target}, reasonText(sight.reason), sight.row, 0});
  }
  for (QString const& line : warningLines(opened.placed(findings))) detail::sendWarning(line);
}

/// A control point known in plan only has the height 0 in the field book, as one at sea level.
QString textOfKnownHeightOfZero(std::string const& name) {
  return Messages::tr("The known height of %1 is 0").arg(recordText(name));
}

[[noreturn]] void refuseUnconnected(QString const& file, std::vector<std::string> const& points) {
  QStringList names;
  for (std::string const& name : points) names << recordText(name);
  throw JobException(file, Messages::tr("no line connects these points to a known height: %1").arg(listedNames(names)));
}

HeightErrors errorsOfSights(detail::JobState const& state) {
  ObservationErrors const plane = detail::observationErrors(state);
  HeightErrors errors;
  errors.zenithSeconds = state.heights.zenithError.value_or(plane.directionSeconds);
  errors.distanceFixed = plane.distanceFixed;
  errors.distanceProportional = plane.distanceProportional;
  errors.form = plane.form;
  errors.height = state.heights.heightError;
  errors.refraction = detail::refractionOf(state);
  errors.refractionError = state.heights.refractionError;
  return errors;
}

void requireErrors(detail::JobState const& state) {
  QString const fault = detail::faultOfErrors(state.project->getConfigure(), Network());
  if (!fault.isEmpty()) throw JobException(state.file, fault);
}

/// Other errors of the reduction are about directions, which heights do without.
void requireNoNegative(detail::JobState const& state) {
  std::vector<FieldFinding> findings = state.opened.placed(state.opened.reduction.findings);
  auto const& rows = state.project->getTraverseDataList();
  auto const isOther = [&rows](FieldFinding const& finding) {
    bool const isNegative = finding.row < rows.size() && rows[finding.row].slant_distance < 0.0;
    return finding.severity != FieldFinding::Error || !isNegative;
  };
  findings.erase(std::remove_if(findings.begin(), findings.end(), isOther), findings.end());
  detail::requireNoError(state.file, findings);
}

/// Why the rows give no heights; empty where they do.
QString missingIn(HeightNetwork const& network) {
  auto const isKnown = [](HeightNetwork::Point const& point) { return point.isKnown; };
  if (std::none_of(network.points.begin(), network.points.end(), isKnown)) {
    return Messages::tr("no station has a known height");
  }
  return network.sights.empty() ? Messages::tr("no sight gives a height difference") : QString();
}

/// Every sight by itself.
detail::FinishedHeights adjustedSights(detail::JobState const& state, HeightReduction reduction, Tell const& tell,
                                       utils::IProcessCancel const& cancel) {
  requireErrors(state);
  HeightNetwork& network = reduction.network;
  for (HeightNetwork::Point const& point : network.points) {
    if (point.isKnown && point.height == 0.0) tell(textOfKnownHeightOfZero(point.name), Warning);
  }
  detail::reduceSightsOf(state, network);
  FieldFinding unsighted{FieldFinding::Warning,
                         {},
                         reduction.withoutSights,
                         Messages::tr("no sight gives it a height: it is left out of the heights")};
  unsighted.isOfHeights = true;
  HeightSettings settings;
  settings.unitWeight = state.plane.unitWeight;
  settings.confidence = state.plane.confidence;
  detail::FinishedHeights done;
  done.run = std::make_unique<HeightAdjustment>(std::move(network), settings);
  done.run->setCancelCall(cancel.getCancelCall());
  try {
    done.run->adjust();
  } catch (AlgorithmException const&) {
    if (done.run->unplacedPoints().empty()) throw;
    refuseUnconnected(state.file, done.run->unplacedPoints());
  }
  done.run->setCancelCall({});  // of the host, for the time of the run
  done.findings = state.opened.placed(detail::findingsOnHeights(*done.run));
  if (!unsighted.targets.empty()) done.findings.push_back(std::move(unsighted));
  for (QString const& line : warningLines(done.findings)) tell(line, Warning);
  for (HeightNetwork::Point const& point : done.run->network().points) {
    if (!point.isKnown || point.height != 0.0) continue;  // told before the run, which this may spoil
    done.findings.push_back(detail::findingAt({}, {point.name}, Messages::tr("the known height is 0"), 0.0));
  }
  return done;
}

/// Points that no chain of lines connects to a known station, which the library refuses without their names.
std::vector<std::string> unconnected(TriangleHeightDataConvert const& observations) {
  NameIndex names;
  std::vector<std::vector<int>> neighbours(static_cast<std::size_t>(observations.getPnumber()));
  for (TriangleStationData const& station : observations.getTriangleStationData()) names.numberOf(station.name);
  for (TriangleViewData const& line : observations.getTraingleViewData()) {
    int const start = names.numberOf(line.start_name);
    int const end = names.numberOf(line.end_name);
    neighbours[static_cast<std::size_t>(start)].push_back(end);
    neighbours[static_cast<std::size_t>(end)].push_back(start);
  }
  std::vector<bool> reached(neighbours.size(), false);
  std::vector<int> open;
  auto const reach = [&](int point) {
    if (reached[static_cast<std::size_t>(point)]) return;
    reached[static_cast<std::size_t>(point)] = true;
    open.push_back(point);
  };
  for (int known = 0; known < observations.getKnPnumber(); ++known) reach(known);
  while (!open.empty()) {
    int const point = open.back();
    open.pop_back();
    for (int const neighbour : neighbours[static_cast<std::size_t>(point)]) reach(neighbour);
  }
  std::vector<std::string> left;
  for (std::size_t n = 0; n < reached.size(); ++n) {
    if (!reached[n]) left.push_back(names.names()[n]);
  }
  return left;
}

/// The reader keeps the rows, for which there is no need while the heights are adjusted.
TriangleHeightDataConvert linesOf(detail::JobState const& state) {
  TriangleHeightDataRead reader(state.project->getVerticalAngleType());
  std::vector<TraverseDataInfo>& rows = state.project->getTraverseDataList();
  if (state.heights.keepsObservations) {
    reader.setTraverseDataList(rows, detail::refractionOf(state));
  } else {
    reader.setTraverseDataList(std::exchange(rows, {}), detail::refractionOf(state));
  }
  TriangleHeightDataConvert lines;
  lines.setTriangleHeightDataRead(reader);
  return lines;
}

/// What the plane alone is made of, before the sights are taken from the rows.
void giveBackPlane(detail::JobState& state) {
  state.project->setNetwork(Network());
  detail::OpenedFile& opened = state.opened;
  opened.observations = std::make_shared<PlaneNetwork>();
  opened.lineMarks = std::vector<detail::LineMark>();
  opened.reduction.pairs = std::vector<FacePair>();
  opened.reduction.spreads = std::vector<DistanceSpread>();
}

/// As the library takes the rows.
void adjustLines(detail::JobState& state) {
  Project& project = *state.project;
  if (!state.heights.keepsObservations) giveBackPlane(state);
  TriangleHeightDataConvert const lines = linesOf(state);
  for (TriangleStationData const& station : lines.getTriangleStationData()) {
    if (station.height == 0.0) detail::sendWarning(textOfKnownHeightOfZero(station.name));
  }
  if (lines.getKnPnumber() == 0) throw JobException(state.file, Messages::tr("no station has a known height"));
  std::vector<std::string> const left = unconnected(lines);
  if (!left.empty()) refuseUnconnected(state.file, left);
  auto adjustment = std::make_unique<TriangleHeightAdjust>();
  adjustment->setTriangleHeightDataConvert(lines);
  adjustment->heightLSAdjust();
  project.setTriangleHeightAdjust(std::move(adjustment));
  state.heightLines = lines;
  state.heightRun.reset();
  state.heightFindings.clear();
}

}  // namespace

double detail::refractionOf(JobState const& state) {
  return state.heights.refraction.value_or(double(state.project->getConfigure().AtmosphericIndex));
}

void detail::reduceSightsOf(JobState const& state, HeightNetwork& network) {
  reduceSights(network, errorsOfSights(state));
  for (HeightNetwork::SetUp& setUp : network.setUps) state.opened.placeLine(setUp.origin);
  for (HeightNetwork::Sight& sight : network.sights) state.opened.placeLine(sight.origin);
}

void detail::adjustHeights(JobState& state, utils::IProcessCancel const& cancel) {
  if (state.project->getTraverseDataList().empty()) {
    throw JobException(state.file,
                       Messages::tr("the file has no rows of a field book, from which heights are computed"));
  }
  if (state.asRead) return adjustLines(state);
  requireNoNegative(state);
  if (!state.heights.keepsObservations) giveBackPlane(state);
  HeightReduction reduction = heightNetworkOf(state.project->getTraverseDataList());
  if (!state.heights.keepsObservations) state.project->setTraverseDataList({});
  tellLeftOut(state.opened, reduction.leftOut);
  QString const missing = missingIn(reduction.network);
  if (!missing.isEmpty()) throw JobException(state.file, missing);
  keepHeights(state, adjustedSights(state, std::move(reduction), send, cancel));
}

/// What gives no height is not told: many a field book is one for the plane alone.
detail::FinishedHeights detail::heightsBeside(JobState const& state, utils::IProcessCancel const& cancel) {
  FinishedHeights done;
  if (state.asRead || state.project->getTraverseDataList().empty()) return done;
  HeightReduction reduction = heightNetworkOf(state.project->getTraverseDataList());
  QString missing = missingIn(reduction.network);
  // A control point known in plan only has the height 0 in a field book.
  auto const isUseful = [](HeightNetwork::Point const& point) { return point.isKnown && point.height != 0.0; };
  bool const isAnyUseful = std::any_of(reduction.network.points.begin(), reduction.network.points.end(), isUseful);
  if (missing.isEmpty() && !isAnyUseful) missing = Messages::tr("every known height is 0");
  QString const text = Messages::tr("No heights: %1");
  if (!missing.isEmpty()) {
    done.messages.emplace_back(text.arg(missing), Info);
    return done;
  }
  std::vector<std::pair<QString, MessType>> messages;
  auto const keep = [&messages](QString const& told, MessType type) { messages.emplace_back(told, type); };
  try {
    done = adjustedSights(state, std::move(reduction), keep, cancel);
  } catch (JobException const& failure) {
    missing = failure.text;
  } catch (AlgorithmException const& failure) {
    missing = worded(failure, Network());
  }
  if (!missing.isEmpty()) {
    keep(text.arg(missing), Warning);
    done.findings.push_back(detail::findingAt({}, {}, text.arg(missing), 0.0));
  }
  done.messages = std::move(messages);
  return done;
}

void detail::keepHeights(JobState& state, FinishedHeights&& done) {
  forgetHeights(state);
  state.heightRun = std::move(done.run);
  state.heightFindings = std::move(done.findings);
  state.hasTriedHeights = true;
  for (auto const& [text, type] : done.messages) send(text, type);
}

void detail::forgetHeights(JobState& state) {
  state.project->setTriangleHeightAdjust(std::make_unique<TriangleHeightAdjust>());
  state.heightRun.reset();
  state.hasTriedHeights = false;
  state.heightFindings.clear();
  state.heightLines = TriangleHeightDataConvert();
}

}  // namespace kvn
