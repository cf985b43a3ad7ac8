// Planning: the network of a job before it is measured.
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"

#include <memory>
#include <utility>

namespace kvn {

void detail::planNetwork(JobState& state, utils::IProcessCancel const& cancel) {
  requireObservations(state);
  QString const fault = faultOfErrors(state.project->getConfigure(), state.project->getNetwork());
  if (!fault.isEmpty()) throw JobException(state.file, fault);
  PlaneNetwork network = observedNetwork(state);
  tellUnusedApproximate(state, network);
  std::vector<FieldFinding> const contradictions = tellContradictions(state, network);
  setPlannedValues(network);
  setErrors(network, observationErrors(state));
  auto run = std::make_unique<PlaneAdjustment>(std::move(network), settingsOf(state.plane));
  run->setProgressCall(state.progress);
  run->setCancelCall(cancel.getCancelCall());
  try {
    run->plan();
  } catch (AlgorithmException const& failure) {
    QStringList const names = namesIn(*run);
    if (names.isEmpty()) throw;
    QString const text = QString("%1: %2").arg(worded(failure, Network()), listedNames(names));
    std::throw_with_nested(JobException(state.file, text));
  }
  run->setProgressCall({});
  run->setCancelCall({});
  tellUnchecked(*run);
  state.runFindings = findingsToldBy(*run);
  state.runFindings.insert(state.runFindings.end(), contradictions.begin(), contradictions.end());
  state.planned = std::move(run);
}

}  // namespace kvn
