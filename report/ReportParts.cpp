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

void ReportParts::addPlace(std::string const& from, std::string const& to, Place place) {
  places[keyOf(from, to)].push_back(place);
}

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

std::string ReportParts::rowOf(FieldFinding const& finding) const {
  if (finding.targets.size() != 1 || finding.station.empty()) return {};
  auto const found = places.find(keyOf(finding.station, finding.targets.front()));
  if (found == places.end()) return {};
  Place const* best = nullptr;
  auto const rank = [&finding](Place const& place) {
    return (finding.line > 0 && place.fileLine == finding.line ? 2 : 0) + (place.isMarked ? 1 : 0);
  };
  for (Place const& place : found->second) {
    RowChoice const& rows = place.isSight ? sights : place.isDirection ? directions : distances;
    if (rows.has(place.number) && (best == nullptr || rank(place) > rank(*best))) best = &place;
  }
  if (best == nullptr) return {};
  return (best->isSight ? "rz" : best->isDirection ? "rd" : "rs") + std::to_string(best->number);
}

std::size_t ReportParts::lineOf(FieldFinding const& finding) const {
  if (finding.targets.size() != 1 || finding.station.empty()) return kNowhere;
  auto const found = places.find(keyOf(finding.station, finding.targets.front()));
  if (found == places.end()) return kNowhere;
  for (Place const& place : found->second) {
    auto const& lines = place.isSight       ? drawing.lineOfSight
                        : place.isDirection ? drawing.lineOfDirection
                                            : drawing.lineOfDistance;
    if (place.number < lines.size() && lines[place.number] != kNowhere) return lines[place.number];
  }
  return kNowhere;
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
