#include "report/Judgement.h"

#include "adjust/AlgorithmAdjust.h"
#include "adjust/HeightAdjustment.h"
#include "adjust/PlaneAdjustment.h"
#include "adjust/TraverseResult.h"
#include "core/Project.h"
#include "job/Job.h"
#include "records/detail/Messages.h"
#include "report/ReportContent.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/ReportParts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kvn {
namespace {

QString told(std::string const& utf8) { return QString::fromStdString(utf8); }

/// Observations that are suspected, or out.
std::size_t misfits(PlaneAdjustment const& run) {
  PlaneResult const& result = run.result();
  std::size_t count = 0;
  for (auto const* list : {&result.directions, &result.distances}) {
    count += static_cast<std::size_t>(std::count_if(
        list->begin(), list->end(), [](PlaneObservation const& observation) { return observation.weight == 0.0; }));
  }
  for (SuspectObservation const& suspect : run.suspects()) {
    auto const& list = suspect.isDirection ? result.directions : result.distances;
    auto const number = static_cast<std::size_t>(std::max(suspect.number, 0));
    if (number < list.size() && list[number].weight != 0.0) ++count;
  }
  return count;
}

}  // namespace

std::size_t detail::markedBy(PlaneResult const& result) {
  std::size_t count = 0;
  for (auto const* list : {&result.directions, &result.distances}) {
    count += static_cast<std::size_t>(std::count_if(
        list->begin(), list->end(), [](PlaneObservation const& observation) { return observation.test > 1.0; }));
  }
  return count;
}

namespace {

/// Of a PlaneResult or a HeightResult.
template <typename Result>
QString numbersOf(Result const& result, double confidence) {
  return Messages::tr("unit weight error %1, expected between %2 and %3 at %4")
      .arg(told(detail::ratio(result.unitError)), told(detail::ratio(result.lowerBound)),
           told(detail::ratio(result.upperBound)), told(detail::percent(confidence)));
}

Judgement judgedPlane(PlaneAdjustment const& run, double confidence) {
  PlaneResult const& result = run.result();
  if (!result.hasRedundancy) {
    return {Judgement::Look, Messages::tr("Nothing is redundant: a wrong observation would not show anywhere.")};
  }
  QString const numbers = numbersOf(result, confidence);
  if (!result.isPassed && result.unitError > result.upperBound) {
    return {Judgement::Bad, Messages::tr("The observations do not agree with their a-priori errors: %1.").arg(numbers)};
  }
  Judgement judgement;
  if (result.isWithoutSuspects) {
    QString const text = Messages::tr("The adjustment does not settle with all observations: %1 of %2 have no weight.");
    return {Judgement::Bad, text.arg(misfits(run)).arg(result.directions.size() + result.distances.size())};
  }
  if (result.isPassed) {
    judgement.sentence = Messages::tr("The observations agree with their a-priori errors: %1.").arg(numbers);
  } else {
    judgement = {Judgement::Look,
                 Messages::tr("The observations agree better than their a-priori errors let expect: %1.").arg(numbers)};
  }
  std::size_t const suspects = misfits(run);
  if (suspects > 0) {
    judgement.level = Judgement::Look;
    QString const text = result.leftOut.empty() ? Messages::tr("Observations that do not fit the others: %1.")
                                                : Messages::tr(
                                                      "Observations that do not fit the others: %1, and "
                                                      "%2 of them are left out.");
    judgement.sentence +=
        ' ' + (result.leftOut.empty() ? text.arg(suspects) : text.arg(suspects).arg(result.leftOut.size()));
    return judgement;
  }
  std::size_t const marked = detail::markedBy(result);
  if (marked == 0) return judgement;
  judgement.sentence +=
      ' ' + Messages::tr("Rows that their own tests mark: %1, where one in a thousand is by chance.").arg(marked);
  return judgement;
}

/// Its errors of distances are not those of its weights: there is no test of the whole.
Judgement judgedLiteral(AdjustSummary const& summary) {
  if (!summary.hasRedundancy) {
    return {Judgement::Look, Messages::tr("Nothing is redundant: a wrong observation would not show anywhere.")};
  }
  QString const text =
      Messages::tr("Adjusted to the letter of the file, without tests: unit weight error %1, expected 1.");
  return {Judgement::Look, text.arg(told(detail::ratio(summary.unitError)))};
}

Judgement judgedHeights(HeightResult const& result, double confidence) {
  if (!result.hasRedundancy) {
    return {Judgement::Look,
            Messages::tr("Nothing is redundant in the heights: a wrong height difference would not show.")};
  }
  QString const numbers = numbersOf(result, confidence);
  if (result.isPassed) {
    return {Judgement::Good, Messages::tr("The heights agree with their a-priori errors: %1.").arg(numbers)};
  }
  if (result.unitError < result.lowerBound) {
    return {Judgement::Look,
            Messages::tr("The heights agree better than their a-priori errors let expect: %1.").arg(numbers)};
  }
  return {Judgement::Bad, Messages::tr("The heights do not agree with their a-priori errors: %1.").arg(numbers)};
}

/// Sights to known points that are judged and that the chain does not need. A distance from the first station, which is
/// known, checks known points alone; a direction from there checks that to the mark.
std::size_t checksOf(TraverseResult const& traverse) {
  std::string const& first = traverse.stations.front().stationPoint.name;
  auto const isSide = [](TraverseSidePoint const& side) { return side.isKnown && std::isfinite(side.offAllowed); };
  auto const isJudged = [&first](TraverseCheck const& check) {
    bool const isOfKnown = check.kind == TraverseCheck::Distance && check.station == first;
    return !isOfKnown && std::isfinite(check.allowed);
  };
  auto const ofSides = std::count_if(traverse.sidePoints.begin(), traverse.sidePoints.end(), isSide);
  return static_cast<std::size_t>(ofSides + std::count_if(traverse.checks.begin(), traverse.checks.end(), isJudged));
}

Judgement judgedTraverses(std::vector<TraverseResult> const& traverses) {
  double worst = 0.0;
  bool isJudged = false;
  bool isOpen = false;
  bool isBesideKnown = false;
  bool isOffKnown = false;
  bool hasUnchecked = false;
  std::size_t checks = 0;  // of what nothing closes
  for (TraverseResult const& traverse : traverses) {
    for (TraverseSidePoint const& side : traverse.sidePoints) {
      if (std::hypot(side.offNorth, side.offEast) > side.offAllowed) isBesideKnown = true;
    }
    for (TraverseCheck const& check : traverse.checks) isOffKnown = isOffKnown || check.isBeyond();
    if (!traverse.summary.hasMisclosure) {
      isOpen = true;
      std::size_t const own = checksOf(traverse);
      hasUnchecked = hasUnchecked || own == 0;
      checks += own;
    }
    if (!traverse.judgement) continue;
    isJudged = true;
    worst = std::max(worst, traverse.judgement->excess());
  }
  if (worst > 1.0) {
    return {Judgement::Bad, Messages::tr("A misclosure is larger than the a-priori errors allow (99 %).")};
  }
  if (isBesideKnown) {
    return {Judgement::Bad, Messages::tr("A side shot misses a known point by more than the a-priori errors allow.")};
  }
  if (isOffKnown) {
    return {Judgement::Bad,
            Messages::tr("A sight to a known point does not fit it: by more than the a-priori errors allow.")};
  }
  if (isOpen && !hasUnchecked) {
    QString const text =
        Messages::tr("Nothing closes an open traverse; sights to known points that check it in part, and fit: %1.");
    return {Judgement::Look, text.arg(checks)};
  }
  if (isOpen) {
    return {Judgement::Look, Messages::tr("Nothing checks an open traverse: a wrong observation would not show.")};
  }
  if (!isJudged) return {Judgement::Look, Messages::tr("The misclosures are not judged.")};
  return {Judgement::Good, Messages::tr("All misclosures are within what the a-priori errors allow (99 %).")};
}

std::vector<Judgement> judged(PlaneAdjustment const* plane, AlgorithmAdjust const* literal,
                              std::vector<TraverseResult> const& traverses, HeightAdjustment const* heights,
                              double confidence) {
  std::vector<Judgement> list;
  if (plane != nullptr) list.push_back(judgedPlane(*plane, confidence));
  if (literal != nullptr) list.push_back(judgedLiteral(literal->getSummary()));
  if (!traverses.empty()) list.push_back(judgedTraverses(traverses));
  if (heights != nullptr) list.push_back(judgedHeights(heights->result(), confidence));
  if (list.empty()) {
    list.push_back({Judgement::Look, Messages::tr("Coordinates as they were given: nothing was adjusted.")});
  }
  return list;
}

}  // namespace

std::vector<Judgement> judgementsOf(Job const& job) {
  return judged(job.planeAdjustment(), detail::literalRunOf(job), job.traverses(), job.heightAdjustment(),
                job.planeOptions().confidence);
}

std::vector<Judgement> judgementsOf(ReportContent const& content) {
  return judged(content.plane, nullptr, content.traverses, content.heights, content.planeOptions.confidence);
}

}  // namespace kvn
