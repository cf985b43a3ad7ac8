#include "report/detail/ReportParts.h"

#include "adjust/AlgorithmAdjust.h"
#include "adjust/HeightAdjustment.h"
#include "adjust/PlaneAdjustment.h"
#include "adjust/TraverseResult.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/Job.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace kvn::detail {
namespace {

constexpr double kFirst = std::numeric_limits<double>::infinity();

/// What a row of an observation is worth where not all have a place: marked ones, then those that nothing checks, then
/// by the size of their tests.
double weightOf(PlaneObservation const& observation) {
  if (observation.weight < 1.0 || observation.test > 1.0) return kFirst;
  return std::isnan(observation.test) ? 1.0 : observation.test;
}

double weightOf(SitePoint const& point) {
  if (point.isKnown || !point.isChecked || point.isSuspect) return kFirst;
  return std::max(point.mp.value_or(0.0), point.heightError.value_or(0.0));
}

}  // namespace

RowChoice::RowChoice(std::size_t count, std::size_t most, std::function<double(std::size_t)> const& weightOf)
    : list(count), isIn(count, true) {
  std::iota(list.begin(), list.end(), std::size_t{0});
  if (count <= most) return;
  std::vector<double> weights(count);
  for (std::size_t i = 0; i < count; ++i) weights[i] = weightOf(i);
  auto const isBefore = [&weights](std::size_t a, std::size_t b) {
    return weights[a] != weights[b] ? weights[a] > weights[b] : a < b;
  };
  std::nth_element(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(most), list.end(), isBefore);
  for (std::size_t i = most; i < count; ++i) isIn[list[i]] = false;
  list.resize(most);
  std::sort(list.begin(), list.end());
}

namespace {

/// No notes; what may cost most first.
std::vector<FieldFinding> findingsOf(Job const& job) {
  std::vector<FieldFinding> findings = job.findingsOf(Job::AdjustmentRun | Job::HeightRun | Job::FileTold);
  std::vector<FieldFinding> beside =
      job.findingsOf(Job::FileText | Job::FieldReduced | Job::RowChecks | Job::NetworkChecks);
  sortFindings(beside);
  findings.insert(findings.end(), beside.begin(), beside.end());
  auto const isNote = [](FieldFinding const& finding) { return finding.severity == FieldFinding::Note; };
  findings.erase(std::remove_if(findings.begin(), findings.end(), isNote), findings.end());
  sortByCost(findings);
  return findings;
}

ReportContent contentOf(Job const& job) {
  ReportContent content;
  content.file = job.file();
  content.instrument = job.project()->getInstrumentName();
  content.plane = job.planeAdjustment();
  content.heights = job.heightAdjustment();
  content.traverses = job.traverses();
  content.findings = findingsOf(job);
  content.configure = job.project()->getConfigure();
  content.planeOptions = job.planeOptions();
  content.heightOptions = job.heightOptions();
  content.traverseOptions = job.traverseOptions();
  return content;
}

}  // namespace

AlgorithmAdjust const* literalRunOf(Job const& job) {
  bool const isOther = job.planeAdjustment() != nullptr || !job.traverses().empty();
  return isOther ? nullptr : job.project()->getAlgorithmAdjust();
}

ReportParts::ReportParts(Job const& job, ReportOptions const& pageOptions)
    : ReportParts(contentOf(job), pageOptions, siteDrawingOf(job), judgementsOf(job), literalRunOf(job)) {}

ReportParts::ReportParts(ReportContent finished, ReportOptions const& pageOptions)
    : ReportParts(finished, pageOptions, siteDrawingOf(finished), judgementsOf(finished), nullptr) {}

ReportParts::ReportParts(ReportContent finished, ReportOptions const& pageOptions, SiteDrawing drawn,
                         std::vector<Judgement> judged, AlgorithmAdjust const* literalRun)
    : content(std::move(finished)),
      options(pageOptions),
      drawing(std::move(drawn)),
      plane(content.plane),
      heights(content.heights),
      traverses(content.traverses),
      literal(literalRun),
      judgements(std::move(judged)) {
  for (std::size_t p = 0; p < drawing.points.size(); ++p) pointNumbers.emplace(drawing.points[p].name, p);
  choosePoints();
  chooseObservations();
  countCircles();
  nameObservations();
  nameHeights();
  findLines();
}

void ReportParts::choosePoints() {
  points = RowChoice(drawing.points.size(), options.rowsAtMost,
                     [this](std::size_t p) { return weightOf(drawing.points[p]); });
}

void ReportParts::chooseObservations() {
  if (hasPlane()) {
    PlaneResult const& result = plane->result();
    directions = RowChoice(result.directions.size(), options.rowsAtMost,
                           [&result](std::size_t d) { return weightOf(result.directions[d]); });
    distances = RowChoice(result.distances.size(), options.rowsAtMost,
                          [&result](std::size_t d) { return weightOf(result.distances[d]); });
  }
  if (heights != nullptr) {
    std::vector<HeightObservation> const& list = heights->result().sights;
    sights = RowChoice(list.size(), options.rowsAtMost, [&list](std::size_t s) {
      return list[s].test > 1.0 ? kFirst : std::isnan(list[s].test) ? 1.0 : list[s].test;
    });
    std::vector<HeightNetwork::Point> const& given = heights->network().points;
    std::vector<HeightPoint> const& found = heights->result().points;
    heightPoints = RowChoice(given.size(), options.rowsAtMost, [&](std::size_t p) {
      return given[p].isKnown || !found[p].isChecked ? kFirst : found[p].error;
    });
  }
  if (literal != nullptr) {
    std::vector<DirectionResult> const& stations = literal->getDirectionResultList();
    for (std::size_t s = 0; s < stations.size(); ++s) {
      for (std::size_t t = 0; t < stations[s].targetNames.size(); ++t) literalDirections.push_back({s, t});
    }
    directions = RowChoice(literalDirections.size(), options.rowsAtMost, [&](std::size_t d) {
      return std::abs(stations[literalDirections[d].station].residuals[literalDirections[d].target]);
    });
    std::vector<LineErrorInfo> const& list = literal->getLineErrorInfoList();
    distances =
        RowChoice(list.size(), options.rowsAtMost, [&list](std::size_t d) { return std::abs(list[d].residual); });
  }
}

void ReportParts::countCircles() {
  if (!hasPlane()) return;
  PlaneNetwork const& network = plane->network();
  circleOfSetUp.assign(network.setUps.size(), 0);
  for (PlaneNetwork::Direction const& direction : network.directions) {
    circleOfSetUp[static_cast<std::size_t>(direction.setUp)] = 1;
  }
  std::vector<std::size_t> circles(network.points.size(), 0);
  for (std::size_t s = 0; s < circleOfSetUp.size(); ++s) {
    if (circleOfSetUp[s] != 0) circleOfSetUp[s] = ++circles[static_cast<std::size_t>(network.setUps[s].station)];
  }
  for (std::size_t const count : circles) hasSeveral.push_back(count > 1);
}

std::size_t ReportParts::mapElements() const {
  constexpr std::size_t kAnyProgramOpens = 1000;
  return std::max(options.rowsAtMost, kAnyProgramOpens);
}

bool ReportParts::hasErrors() const {
  bool const isAPriori = content.planeOptions.unitWeight == PlaneSettings::UnitWeight::APriori;
  return isAPriori || (hasPlane() && plane->result().hasRedundancy);
}

std::string const& ReportParts::pointName(int point) const {
  return drawing.points[static_cast<std::size_t>(point)].name;
}

std::string ReportParts::stationName(std::size_t setUp) const {
  int const station = plane->network().setUps[setUp].station;
  bool const isOnlyOne = !hasSeveral[static_cast<std::size_t>(station)];
  return isOnlyOne ? pointName(station) : pointName(station) + " (" + std::to_string(circleOfSetUp[setUp]) + ')';
}

std::size_t ReportParts::pointOf(std::string const& recordName) const {
  auto const found = pointNumbers.find(utf8Of(recordName));
  return found == pointNumbers.end() ? kNowhere : found->second;
}

std::string ReportParts::keyOf(std::string const& from, std::string const& to) { return from + '\0' + to; }

/// Only of lines that a finding is about: a large network has few of them.
void ReportParts::nameObservations() {
  for (FieldFinding const& finding : content.findings) {
    for (std::string const& target : finding.targets) places[keyOf(finding.station, target)];
  }
  if (places.empty()) return;
  auto const add = [this](std::string const& from, std::string const& to, Place const& place) {
    auto const found = places.find(keyOf(from, to));
    if (found != places.end()) found->second.push_back(place);
  };
  if (hasPlane()) {
    PlaneNetwork const& network = plane->network();
    auto const nameOf = [&network](int point) -> std::string const& {
      return network.points[static_cast<std::size_t>(point)].name;
    };
    PlaneResult const& result = plane->result();
    for (std::size_t d = 0; d < network.directions.size(); ++d) {
      PlaneNetwork::Direction const& direction = network.directions[d];
      int const station = network.setUps[static_cast<std::size_t>(direction.setUp)].station;
      add(nameOf(station), nameOf(direction.target),
          {true, false, d, direction.origin.line, weightOf(result.directions[d]) == kFirst});
    }
    for (std::size_t d = 0; d < network.distances.size(); ++d) {
      PlaneNetwork::Distance const& distance = network.distances[d];
      add(nameOf(distance.from), nameOf(distance.to),
          {false, false, d, distance.origin.line, weightOf(result.distances[d]) == kFirst});
    }
  }
  for (std::size_t d = 0; d < literalDirections.size(); ++d) {
    DirectionResult const& station = literal->getDirectionResultList()[literalDirections[d].station];
    add(station.stationName, station.targetNames[literalDirections[d].target], {true, false, d, 0, false});
  }
  if (literal != nullptr) {
    std::vector<LineErrorInfo> const& list = literal->getLineErrorInfoList();
    for (std::size_t d = 0; d < list.size(); ++d)
      add(list[d].start_name, list[d].end_name, {false, false, d, 0, false});
  }
  if (heights == nullptr) return;
  HeightNetwork const& network = heights->network();
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    HeightNetwork::Sight const& sight = network.sights[s];
    int const station = network.setUps[static_cast<std::size_t>(sight.setUp)].station;
    add(network.points[static_cast<std::size_t>(station)].name,
        network.points[static_cast<std::size_t>(sight.target)].name,
        {false, true, s, sight.origin.line, heights->result().sights[s].test > 1.0});
  }
}

void ReportParts::nameHeights() {
  auto const isOfHeights = [](FieldFinding const& finding) { return finding.isOfHeights; };
  if (heights == nullptr || std::none_of(content.findings.begin(), content.findings.end(), isOfHeights)) return;
  std::vector<HeightNetwork::Point> const& given = heights->network().points;
  for (std::size_t p = 0; p < given.size(); ++p) heightNumbers.emplace(given[p].name, p);
}

ReportParts::Ends ReportParts::endsOf(FieldFinding const& finding) const {
  Ends ends{kNowhere, kNowhere};
  if (finding.traverse < traverses.size()) {
    TraverseResult const& traverse = traverses[finding.traverse];
    bool const isOne = traverse.judgement && traverse.judgement->suspects.size() == 1 &&
                       traverse.judgement->suspects.front().kind == TraverseSuspect::Leg;
    if (!isOne) return ends;
    TraverseInfo const& station = traverse.stations[traverse.judgement->suspects.front().station];
    ends = {pointOf(station.stationPoint.name), pointOf(station.forePoints.front().name)};
  } else if (finding.targets.size() == 1 && !finding.station.empty()) {
    ends = {pointOf(finding.station), pointOf(finding.targets.front())};
  }
  return {std::min(ends.first, ends.second), std::max(ends.first, ends.second)};
}

/// Only those that a finding is about.
void ReportParts::findLines() {
  if (!hasMap()) return;
  for (FieldFinding const& finding : content.findings) {
    Ends const ends = endsOf(finding);
    if (ends.second != kNowhere) lines.emplace(ends, kNowhere);
  }
  if (lines.empty()) return;
  for (std::size_t l = 0; l < drawing.lines.size(); ++l) {
    SiteLine const& line = drawing.lines[l];
    auto const found = lines.find({std::min(line.from, line.to), std::max(line.from, line.to)});
    if (found != lines.end()) found->second = l;
  }
}

std::string ReportParts::rowOfPoint(std::string const& recordName, bool isOfHeights) const {
  if (isOfHeights) {
    auto const found = heightNumbers.find(recordName);
    if (found != heightNumbers.end() && heightPoints.has(found->second)) return "rh" + std::to_string(found->second);
  }
  std::size_t const point = pointOf(recordName);
  bool const hasRow = point != kNowhere && points.has(point) && !drawing.points[point].isApproximate;
  return hasRow ? "rp" + std::to_string(point) : std::string();
}

std::string ReportParts::rowOf(FieldFinding const& finding) const {
  if (finding.traverse < traverses.size()) {
    bool const hasMisclosures = traverses[finding.traverse].summary.hasMisclosure;
    return (hasMisclosures ? "rm" : "traverse") + std::to_string(finding.traverse + 1);
  }
  if (finding.targets.size() + (finding.station.empty() ? 0 : 1) == 1) {
    return rowOfPoint(finding.station.empty() ? finding.targets.front() : finding.station, finding.isOfHeights);
  }
  if (finding.targets.size() != 1 || finding.station.empty()) return {};
  auto const found = places.find(keyOf(finding.station, finding.targets.front()));
  if (found == places.end()) return {};
  Place const* best = nullptr;
  auto const rank = [&finding](Place const& place) {
    bool const isKind =
        finding.isOfHeights == place.isSight && finding.isOfDistance == !(place.isDirection || place.isSight);
    return (isKind ? 4 : 0) + (finding.line > 0 && place.fileLine == finding.line ? 2 : 0) + (place.isMarked ? 1 : 0);
  };
  for (Place const& place : found->second) {
    RowChoice const& rows = place.isSight ? sights : place.isDirection ? directions : distances;
    if (rows.has(place.number) && (best == nullptr || rank(place) > rank(*best))) best = &place;
  }
  if (best == nullptr) return {};
  return (best->isSight ? "rz" : best->isDirection ? "rd" : "rs") + std::to_string(best->number);
}

std::size_t ReportParts::pointOf(TraverseResult const& traverse) const {
  bool const isOne = traverse.judgement && traverse.judgement->suspects.size() == 1;
  std::size_t const station = isOne ? traverse.judgement->suspects.front().station : traverse.stations.size() - 1;
  return pointOf(traverse.stations[station].stationPoint.name);
}

ReportParts::MapPlace ReportParts::placeOf(FieldFinding const& finding) const {
  MapPlace place;
  if (!hasMap()) return place;
  auto const line = lines.find(endsOf(finding));
  if (line != lines.end()) place.line = line->second;
  if (place.line != kNowhere) return place;
  if (finding.traverse < traverses.size()) {
    place.point = pointOf(traverses[finding.traverse]);
  } else if (finding.targets.size() + (finding.station.empty() ? 0 : 1) == 1) {
    place.point = pointOf(finding.station.empty() ? finding.targets.front() : finding.station);
  }
  return place;
}

void beginSection(PageWriter& page, char const* id, QString const& title, QString const& sentence) {
  page.sections.emplace_back(id, title);
  page.markup("<section id=\"")
      .markup(id)
      .markup("\"><h2 id=\"h-")
      .markup(id)
      .markup("\">")
      .text(title)
      .markup("</h2>\n");
  if (!sentence.isEmpty()) page.element("p class=\"lead\"", sentence).markup("\n");
}

void endSection(PageWriter& page) { page.markup("</section>\n"); }

}  // namespace kvn::detail
