// Heights before their adjustment: differences and heights of the instrument that do not agree.
#include "adjust/HeightNetwork.h"
#include "core/Project.h"
#include "job/detail/HeightTexts.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace kvn {
namespace {

using detail::findingAt;
using detail::millimetres;

// Standard errors by which two measurements of one difference may differ.
constexpr double kApart = 3.0;
// Two heights of an instrument on one point that differ by less, metres, are rarely those of two tripods: one in
// twenty.
constexpr double kMistyped = 0.01;
constexpr double kSameHeight = 5e-5;  // metres, half of the last digit of a field book

std::size_t stationOf(HeightNetwork const& network, int setUp) {
  return static_cast<std::size_t>(network.setUps[static_cast<std::size_t>(setUp)].station);
}

/// The heights of the instrument on a point that is occupied several times: each set-up with the one before it.
class InstrumentHeights {
 public:
  /// @param error  standard error of each height of an instrument, metres.
  InstrumentHeights(HeightNetwork const& sights, double error)
      : network(sights), heightError(error), isWrong(sights.setUps.size(), false) {}

  /// Fills `told` with the set-ups whose heights do not fit the sights of the one before.
  std::vector<FieldFinding> run(std::vector<bool>& told) {
    // Sights in the order of their set-ups.
    std::vector<std::vector<std::size_t>> sightsOf(network.setUps.size());
    for (std::size_t s = 0; s < network.sights.size(); ++s) {
      sightsOf[static_cast<std::size_t>(network.sights[s].setUp)].push_back(s);
    }
    std::map<int, std::size_t> lastAt;
    for (std::size_t setUp = 0; setUp < network.setUps.size(); ++setUp) {
      if (sightsOf[setUp].empty()) continue;
      auto const [before, isFirst] = lastAt.try_emplace(network.setUps[setUp].station, setUp);
      if (!isFirst) compare(std::exchange(before->second, setUp), setUp, sightsOf);
    }
    told = std::move(isWrong);
    return std::move(findings);
  }

 private:
  void compare(std::size_t before, std::size_t setUp, std::vector<std::vector<std::size_t>> const& sightsOf) {
    std::map<int, std::size_t> firstTo;
    for (std::size_t const s : sightsOf[before]) firstTo.emplace(network.sights[s].target, s);
    struct Common {
      double difference;
      double variance;
    };
    std::vector<Common> common;
    double weights = 0.0;
    double weighted = 0.0;
    for (std::size_t const s : sightsOf[setUp]) {
      auto const found = firstTo.find(network.sights[s].target);
      if (found == firstTo.end()) continue;
      HeightNetwork::Sight const& now = network.sights[s];
      HeightNetwork::Sight const& then = network.sights[found->second];
      common.push_back({now.difference - then.difference, now.error * now.error + then.error * then.error});
      weights += 1.0 / common.back().variance;
      weighted += common.back().difference / common.back().variance;
    }
    double const first = network.setUps[before].instrumentHeight;
    double const second = network.setUps[setUp].instrumentHeight;
    double const apart = std::abs(second - first);
    if (common.empty()) {
      if (apart > kSameHeight) tellUncompared(setUp, first, second);
      return;
    }
    // One target alone may have got another height itself.
    double const mean = weighted / weights;
    bool const isOne = common.size() > 1 && std::all_of(common.begin(), common.end(), [mean](Common const& one) {
                         return std::abs(one.difference - mean) <= kApart * std::sqrt(one.variance);
                       });
    double const error = std::sqrt(1.0 / weights + 2.0 * heightError * heightError);
    if (!isOne || !(std::abs(mean) > kApart * error)) return;
    isWrong[setUp] = true;
    QString const text = Messages::tr(
        "the heights of the instrument in two set-ups, %1 m and %2 m, do not agree: by their common targets one of "
        "them is off by %3 mm");
    tell(FieldFinding::Warning, setUp,
         text.arg(first, 0, 'f', 4).arg(second, 0, 'f', 4).arg(millimetres(std::abs(mean))), std::abs(mean));
  }

  void tellUncompared(std::size_t setUp, double first, double second) {
    double const apart = std::abs(second - first);
    if (apart < kMistyped) {
      QString const text = Messages::tr(
          "the heights of the instrument in two set-ups, %1 m and %2 m, differ by little: one of them may be mistyped");
      tell(FieldFinding::Warning, setUp, text.arg(first, 0, 'f', 4).arg(second, 0, 'f', 4), apart);
    } else {
      QString const text = Messages::tr(
          "the heights of the instrument in two set-ups are %1 m and %2 m, and no common target compares them");
      tell(FieldFinding::Note, setUp, text.arg(first, 0, 'f', 4).arg(second, 0, 'f', 4), 0.0);
    }
  }

  void tell(FieldFinding::Severity severity, std::size_t setUp, QString const& text, double cost) {
    HeightNetwork::SetUp const& at = network.setUps[setUp];
    findings.push_back(findingAt(network.points[static_cast<std::size_t>(at.station)].name, {}, text, cost, at.origin));
    findings.back().severity = severity;
  }

  HeightNetwork const& network;
  double heightError;
  std::vector<bool> isWrong;  // of each set-up
  std::vector<FieldFinding> findings;
};

}  // namespace

std::vector<FieldFinding> detail::differencesOfLines(HeightNetwork const& network, std::vector<bool> const& isTold) {
  std::vector<FieldFinding> findings;
  std::map<std::pair<std::size_t, std::size_t>, std::size_t> firstOf;
  for (std::size_t i = 0; i < network.sights.size(); ++i) {
    HeightNetwork::Sight const& sight = network.sights[i];
    std::size_t const station = stationOf(network, sight.setUp);
    auto const target = static_cast<std::size_t>(sight.target);
    auto const [place, isFirst] = firstOf.try_emplace(std::minmax(station, target), i);
    if (isFirst) continue;
    HeightNetwork::Sight const& first = network.sights[place->second];
    bool const isBack = stationOf(network, first.setUp) == target;
    double const apart = std::abs(sight.difference - (isBack ? -first.difference : first.difference));
    if (!(apart > kApart * std::hypot(sight.error, first.error))) continue;
    if (!isBack && !isTold.empty() && isTold[static_cast<std::size_t>(sight.setUp)]) continue;
    QString text = Messages::tr("the height differences of two set-ups differ by %1 mm");
    if (isBack) text = Messages::tr("the height differences of both ends differ by %1 mm");
    if (sight.setUp == first.setUp) text = Messages::tr("the height differences by two target heights differ by %1 mm");
    findings.push_back(findingAt(network.points[station].name, {network.points[target].name},
                                 text.arg(millimetres(apart)), apart, sight.origin));
  }
  return findings;
}

std::vector<FieldFinding> detail::findingsBeforeHeights(JobState const& state) {
  if (state.asRead || state.project->getTraverseDataList().empty()) return {};
  HeightNetwork network = heightNetworkOf(state.project->getTraverseDataList()).network;
  reduceSightsOf(state, network);
  std::vector<bool> told;
  std::vector<FieldFinding> findings = InstrumentHeights(network, state.heights.heightError).run(told);
  std::vector<FieldFinding> const ofLines = differencesOfLines(network, told);
  findings.insert(findings.end(), ofLines.begin(), ofLines.end());
  return state.opened.placed(std::move(findings));
}

}  // namespace kvn
