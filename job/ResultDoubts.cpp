// What makes the result of a calculator doubtful, though it came to an end.
#include "adjust/AlgorithmAdjust.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>
#include <utils/Degree.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

namespace kvn {
namespace {

// Configure::AdjustMethod
constexpr int kMethodOfLeastSquares = 0;
constexpr int kMethodOfPolygon = 3;

QStringList doubtsOfUnitError(bool hasRedundancy, double unitError) {
  if (!hasRedundancy || unitError <= detail::kDoubtfulUnitError) return {};
  return {Messages::tr("The unit weight error is far above 1: a gross error, or known points that do not fit")};
}

/// Stations of the network that the chain does not come to.
QStringList leftOut(std::vector<TraverseResult> const& traverses, Network const& network) {
  std::unordered_set<std::string> told;
  for (TraverseResult const& traverse : traverses) {
    for (TraverseInfo const& station : traverse.stations) told.insert(station.stationPoint.name);
  }
  QStringList names;
  for (NetworkDataInfo const& line : network.lines) {
    if (told.insert(line.start_name).second) names.append(recordText(line.start_name));
  }
  return names;
}

QStringList doubtsOfTraverse(TraverseResult const& result) {
  QStringList list;
  std::vector<TraverseInfo> const& chain = result.stations;
  TraverseSummary const& summary = result.summary;
  // The last station of a traverse with a misclosure looks to a known point, or back to the first.
  std::size_t const legs = summary.hasMisclosure && result.closing != TraverseClosing::AtForePoint && !chain.empty()
                               ? chain.size() - 1
                               : chain.size();
  for (std::size_t i = 0; i < legs; ++i) {
    if (chain[i].distance != 0.0) continue;
    list << Messages::tr("The leg from %1 to %2 has no distance and counts as 0")
                .arg(recordText(chain[i].stationPoint.name), recordText(chain[i].forePoints.front().name));
  }
  // No faults of observing add up to a half circle, but outer angles are off by a full one.
  double const misclosure = -summary.angleCorrection * static_cast<double>(chain.size());
  if (result.method == kMethodOfPolygon && std::abs(misclosure) > utils::kPi) {
    std::string const angle = utils::Degree(misclosure * (180.0 / utils::kPi)).toUtf8(utils::DDRMMRSS, 2);
    list << Messages::tr("The angles are off by %1; the stations must go around counter-clockwise")
                .arg(QString::fromStdString(angle));
  }
  return list;
}

}  // namespace

std::vector<FieldFinding> detail::findingsOnCalculated(JobState const& state) {
  int const method = state.project->getConfigure().AdjustMethod;
  std::vector<FieldFinding> findings;
  auto const tell = [&findings](QStringList const& doubts, std::size_t traverse) {
    for (QString const& text : doubts) {
      findings.push_back({FieldFinding::Warning, {}, {}, text});
      findings.back().traverse = traverse;
    }
  };
  if (method == kMethodOfLeastSquares) {
    AdjustSummary const& summary = state.project->getAlgorithmAdjust()->getSummary();
    tell(doubtsOfUnitError(summary.hasRedundancy, summary.unitError), FieldFinding::kNoRow);
    return findings;
  }
  QStringList const names = leftOut(state.traverses, state.adjusted);
  if (!names.isEmpty()) {
    tell({Messages::tr("Stations outside the traverse are left out: %1").arg(names.join(", "))}, FieldFinding::kNoRow);
  }
  for (std::size_t t = 0; t < state.traverses.size(); ++t) tell(doubtsOfTraverse(state.traverses[t]), t);
  return findings;
}

}  // namespace kvn
