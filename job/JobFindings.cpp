// Findings: what a surveyor should know about an opened job.
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "reduction/FieldInspection.h"

#include <algorithm>
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
  try {
    observations = observationsWithErrors(state);
  } catch (AlgorithmException const&) {  // NOLINT(bugprone-empty-catch): an observation that the adjustment refuses
  }
  bool const isFree = state.plane.datum == PlaneSettings::Datum::Free;
  return inspectNetwork(network, observations, state.plane.centring, isFree);
}

void detail::requireWholeRounds(QString const& file, OpenedFile const& opened, FieldReduction const& reduction) {
  if (!reduction.lostRound) return;
  FieldFinding const lost = opened.placed({reduction.findings[*reduction.lostRound]}).front();
  throw JobException(file, worded(lost), lost.line);
}

}  // namespace kvn
