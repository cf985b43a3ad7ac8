// Findings: what a surveyor should know about an opened job.
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "reduction/FieldInspection.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

namespace kvn {

std::vector<FieldFinding> detail::OpenedFile::findings() const {
  std::vector<FieldFinding> all = text.findings;
  std::vector<FieldFinding> const ofRows = placed(reduction.findings);
  all.insert(all.end(), ofRows.begin(), ofRows.end());
  return all;
}

std::vector<FieldFinding> detail::OpenedFile::placed(std::vector<FieldFinding> list) const {
  for (FieldFinding& finding : list) {
    if (finding.line == 0 && finding.row < text.rowLines.size()) finding.line = text.rowLines[finding.row];
  }
  return list;
}

void detail::requireNoError(QString const& file, std::vector<FieldFinding> const& findings) {
  auto const isError = [](FieldFinding const& finding) { return finding.severity == FieldFinding::Error; };
  auto const first = std::find_if(findings.begin(), findings.end(), isError);
  if (first == findings.end()) return;
  auto const further = static_cast<int>(std::count_if(first + 1, findings.end(), isError));
  throw JobException(file, worded(*first), first->line, further);
}

std::vector<FieldFinding> detail::findingsOnNetwork(JobState const& state) {
  Project const& project = *state.project;
  Network const& network = project.getNetwork();
  if (state.asRead) return inspectNetwork(network, project.getConfigure());
  PlaneNetwork observations;
  std::vector<FieldFinding> ofEdits;
  try {
    ofEdits = findingsOnEdits(state);
    observations = observationsWithErrors(state);
  } catch (AlgorithmException const&) {  // NOLINT(bugprone-empty-catch): an observation that the adjustment refuses
  } catch (JobException const&) {        // NOLINT(bugprone-empty-catch): the same
  }
  bool const isFree = state.plane.datum == PlaneSettings::Datum::Free;
  std::vector<FieldFinding> findings = inspectNetwork(network, observations, state.plane.centring, isFree);
  findings.insert(findings.end(), ofEdits.begin(), ofEdits.end());
  return findings;
}

void detail::dropCostsOfHeld(JobState const& state, std::vector<FieldFinding>& findings) {
  std::unordered_map<std::string, std::unordered_map<std::string, std::vector<FieldFinding*>>> costing;
  for (FieldFinding& finding : findings) {
    bool const isOfLine = finding.cost > 0.0 && !finding.station.empty() && finding.targets.size() == 1;
    if (!isOfLine || finding.isOfHeights) continue;
    costing[finding.station][finding.targets.front()].push_back(&finding);
    costing[finding.targets.front()][finding.station].push_back(&finding);
  }
  if (costing.empty() || state.planeRun == nullptr) return;
  PlaneNetwork const& network = state.planeRun->network();
  std::vector<bool> isTold(network.distances.size(), false);
  for (SuspectObservation const& suspect : state.planeRun->suspects()) {
    if (!suspect.isDirection && suspect.number >= 0) isTold[static_cast<std::size_t>(suspect.number)] = true;
  }
  bool const holdsKnown = state.plane.datum != PlaneSettings::Datum::Free && state.plane.controlError == 0.0;
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    PlaneNetwork::Point const& from = network.points[static_cast<std::size_t>(network.distances[d].from)];
    PlaneNetwork::Point const& to = network.points[static_cast<std::size_t>(network.distances[d].to)];
    bool const isOut = isTold[d] || state.planeRun->result().distances[d].weight == 0.0;
    if (!isOut && !(holdsKnown && from.isKnown && to.isKnown)) continue;
    auto const ofStation = costing.find(from.name);
    if (ofStation == costing.end()) continue;
    auto const found = ofStation->second.find(to.name);
    if (found == ofStation->second.end()) continue;
    for (FieldFinding* finding : found->second) finding->cost = 0.0;
  }
}

void detail::requireWholeRounds(QString const& file, OpenedFile const& opened, FieldReduction const& reduction) {
  if (!reduction.lostRound) return;
  FieldFinding const lost = opened.placed({reduction.findings[*reduction.lostRound]}).front();
  throw JobException(file, worded(lost), lost.line);
}

}  // namespace kvn
