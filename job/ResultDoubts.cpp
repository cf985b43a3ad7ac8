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
QStringList leftOut(std::vector<TraverseResult> const& traverses, Network const& network,
                    std::vector<std::string> const& refused) {
  std::unordered_set<std::string> told(refused.begin(), refused.end());
  for (TraverseResult const& traverse : traverses) {
    for (std::string const& name : detail::namesOfStations(traverse)) told.insert(name);
  }
  QStringList names;
  for (NetworkDataInfo const& line : network.lines) {
    if (told.insert(line.start_name).second) names.append(recordText(line.start_name));
  }
  return names;
}

/// No faults of observing add up to a half circle, but outer angles are off by a full one.
QStringList doubtsOfAngles(TraverseResult const& result) {
  double const misclosure = -result.summary.angleCorrection * static_cast<double>(result.stations.size());
  bool const isPolygon = result.method == kMethodOfPolygon && result.closing == TraverseClosing::AtStation;
  if (!isPolygon || std::abs(misclosure) <= utils::kPi) return {};
  std::string const angle = utils::Degree(misclosure * (180.0 / utils::kPi)).toUtf8(utils::DDRMMRSS, 2);
  return {Messages::tr("The angles are off by %1; the stations must go around counter-clockwise")
              .arg(QString::fromStdString(angle))};
}

}  // namespace

std::vector<TraverseInfo const*> detail::legsWithoutDistance(TraverseResult const& result) {
  std::vector<TraverseInfo const*> legs;
  // The last station of a traverse with a misclosure looks to a known point, or back to the first.
  bool const isClosing = result.summary.hasMisclosure && result.closing != TraverseClosing::AtForePoint;
  std::size_t const count = result.stations.size() - (isClosing && !result.stations.empty() ? 1 : 0);
  for (std::size_t i = 0; i < count; ++i) {
    if (result.stations[i].distance == 0.0) legs.push_back(&result.stations[i]);
  }
  return legs;
}

std::vector<FieldFinding> detail::findingsOnLegs(TraverseResult const& result, std::size_t traverse) {
  std::vector<FieldFinding> findings;
  for (TraverseInfo const* station : legsWithoutDistance(result)) {
    findings.push_back(
        {FieldFinding::Warning,
         {},
         {},
         Messages::tr("The leg from %1 to %2 has no distance and counts as 0")
             .arg(recordText(station->stationPoint.name), recordText(station->forePoints.front().name))});
    findings.back().traverse = traverse;
  }
  return findings;
}

std::vector<FieldFinding> detail::findingsOnCalculated(JobState const& state, std::vector<std::string> const& refused) {
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
  QStringList const names = leftOut(state.traverses, state.adjusted, refused);
  if (!names.isEmpty()) {
    tell({Messages::tr("Stations outside the traverse are left out: %1").arg(names.join(", "))}, FieldFinding::kNoRow);
  }
  for (std::size_t t = 0; t < state.traverses.size(); ++t) {
    std::vector<FieldFinding> const ofLegs = findingsOnLegs(state.traverses[t], t);
    findings.insert(findings.end(), ofLegs.begin(), ofLegs.end());
    tell(doubtsOfAngles(state.traverses[t]), t);
  }
  return findings;
}

}  // namespace kvn
