#include "report/Judgement.h"

#include "adjust/AlgorithmAdjust.h"
#include "adjust/HeightAdjustment.h"
#include "adjust/PlaneAdjustment.h"
#include "adjust/TraverseResult.h"
#include "core/Project.h"
#include "job/Job.h"
#include "records/detail/Messages.h"
#include "report/detail/PageNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kvn {
namespace {

QString told(std::string const& utf8) { return QString::fromStdString(utf8); }

/// Observations that are out or marked, where these are more than chance marks of so many good ones; else 0.
std::size_t misfits(PlaneResult const& result) {
  constexpr double kMarkedByChance = 0.001;
  std::size_t out = 0;
  std::size_t marked = 0;
  for (auto const* list : {&result.directions, &result.distances}) {
    for (PlaneObservation const& observation : *list) {
      if (observation.weight == 0.0) ++out;
      if (observation.weight != 0.0 && observation.test > 1.0) ++marked;
    }
  }
  double const expected = kMarkedByChance * static_cast<double>(result.directions.size() + result.distances.size());
  bool const isChance = static_cast<double>(marked) <= expected + 3.0 * std::sqrt(expected) && expected >= 1.0;
  return isChance ? out : out + marked;
}

/// Of a PlaneResult or a HeightResult.
template <typename Result>
QString numbersOf(Result const& result, double confidence) {
  return Messages::tr("unit weight error %1, expected between %2 and %3 at %4")
      .arg(told(detail::ratio(result.unitError)), told(detail::ratio(result.lowerBound)),
           told(detail::ratio(result.upperBound)), told(detail::percent(confidence)));
}

Judgement judgedPlane(PlaneResult const& result, double confidence) {
  if (!result.hasRedundancy) {
    return {Judgement::Look, Messages::tr("Nothing is redundant: a wrong observation would not show anywhere.")};
  }
  QString const numbers = numbersOf(result, confidence);
  if (!result.isPassed && result.unitError > result.upperBound) {
    return {Judgement::Bad, Messages::tr("The observations do not agree with their a-priori errors: %1.").arg(numbers)};
  }
  Judgement judgement;
  if (result.isPassed) {
    judgement.sentence = Messages::tr("The observations agree with their a-priori errors: %1.").arg(numbers);
  } else {
    judgement = {Judgement::Look,
                 Messages::tr("The observations agree better than their a-priori errors let expect: %1.").arg(numbers)};
  }
  std::size_t const suspects = misfits(result);
  if (suspects == 0) return judgement;
  judgement.level = Judgement::Look;
  judgement.sentence += ' ' + Messages::tr("Observations that do not fit the others: %1.").arg(suspects);
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

/// Of a run by least squares to the letter; else null.
AlgorithmAdjust const* literalRun(Job const& job) {
  bool const isOther = job.planeAdjustment() != nullptr || !job.traverses().empty();
  return isOther || job.project() == nullptr ? nullptr : job.project()->getAlgorithmAdjust();
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

Judgement judgedTraverses(std::vector<TraverseResult> const& traverses) {
  double worst = 0.0;
  bool isJudged = false;
  bool isOpen = false;
  for (TraverseResult const& traverse : traverses) {
    if (!traverse.summary.hasMisclosure) isOpen = true;
    if (!traverse.judgement) continue;
    isJudged = true;
    worst = std::max(worst, traverse.judgement->excess());
  }
  if (worst > 1.0) {
    return {Judgement::Bad, Messages::tr("A misclosure is larger than the a-priori errors allow (99 %).")};
  }
  if (isOpen) {
    return {Judgement::Look, Messages::tr("Nothing checks an open traverse: a wrong observation would not show.")};
  }
  if (!isJudged) return {Judgement::Look, Messages::tr("The misclosures are not judged.")};
  return {Judgement::Good, Messages::tr("All misclosures are within what the a-priori errors allow (99 %).")};
}

}  // namespace

std::vector<Judgement> judgementsOf(Job const& job) {
  std::vector<Judgement> list;
  double const confidence = job.planeOptions().confidence;
  if (job.planeAdjustment() != nullptr) list.push_back(judgedPlane(job.planeAdjustment()->result(), confidence));
  if (AlgorithmAdjust const* const run = literalRun(job)) list.push_back(judgedLiteral(run->getSummary()));
  if (!job.traverses().empty()) list.push_back(judgedTraverses(job.traverses()));
  if (job.heightAdjustment() != nullptr) list.push_back(judgedHeights(job.heightAdjustment()->result(), confidence));
  if (list.empty())
    list.push_back({Judgement::Look, Messages::tr("Coordinates as they were given: nothing was adjusted.")});
  return list;
}

}  // namespace kvn
