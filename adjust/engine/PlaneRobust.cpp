// The adjustment in which observations that do not fit weigh less.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/NetworkEquations.h"
#include "adjust/plane/Quantiles.h"
#include "records/detail/Messages.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace kvn {
namespace {

using detail::index;

// Yang's IGG III (Yang 1994, Robust estimation for dependent observations, manuscripta geodaetica 19): an observation
// keeps its weight up to kKept standard errors, has none from kNone on, and a falling share between. One of 80 good
// observations lies beyond kKept, and next to none beyond kNone, which leaves room above the bound of a suspect.
constexpr double kKept = 2.5;
constexpr double kNone = 6.0;
// A median of fewer observations of a kind may be that of gross errors.
constexpr std::size_t kFewOfAKind = 20;
// The first rounds of a network that has no trusted start lower weights as Huber (1964) does, and take none away.
constexpr int kGentleRounds = 8;
constexpr int kRounds = 60;
// From this round on a weight goes half the way only: what still changes swings.
constexpr int kCalmFrom = 20;
// What an observation pulls with, its weight times its size: off by this many standard errors it changes coordinates by
// a small share of their errors. A hundredth of the weight where weights begin to fall, and far less of one of a gross
// error, which pulls with 2.5 standard errors under a weight of 0.005 as well.
constexpr double kSettledPull = 0.01 * kKept;

double gentleWeight(double size) { return size <= kKept ? 1.0 : kKept / size; }

double strictWeight(double size) {
  if (size <= kKept) return 1.0;
  if (size >= kNone) return 0.0;
  double const rest = (kNone - size) / (kNone - kKept);
  return kKept / size * rest * rest;
}

bool isSettled(double change, double size) { return std::abs(change) * std::max(size, kKept) <= kSettledPull; }

}  // namespace

void PlaneAdjustment::Data::setWeight(std::size_t number, double weight) {
  double const error = errorOf(number);
  std::size_t const directions = engine.network.directions.size();
  bool const isDirection = number < directions;
  robustWeights[number] = weight;
  double const factor = std::sqrt(std::max(weight, kLeastWeight));
  double const scaled = error * (isDirection ? kSecondsPerRadian : 1.0) / factor;
  (isDirection ? engine.network.directions[number].error : engine.network.lines[number - directions].error) =
      error / factor;
  (isDirection ? engine.directionWeights[number] : engine.lineWeights[number - directions]) = 1.0 / (scaled * scaled);
}

/// Sizes of the standardised residuals of all observations, each against the others as they are weighed; -1 where
/// nothing checks it. With s for the variance of the adjusted value over σ² and w for the weight, v is the difference
/// from what the others say times 1 - w s, and the square of its standard error σ² (1 - w s) (1 - w s + s): that does
/// not depend on w, so that a weight does not feed back on itself, and an observation that pulls the network to itself
/// (1 - s small) is judged by how little of its error shows.
std::vector<double> PlaneAdjustment::Data::standardisedSizes() {
  std::vector<double> const reduced =
      engine.directionResiduals;  // from which the residuals of the result are made anew
  engine.calculateResiduals();
  std::size_t const directions = engine.network.directions.size();
  std::size_t const count = robustWeights.size();
  std::vector<double> sizes(count, -1.0);
  detail::Effort effort(engine.poll);
  double a[5];
  int at[5];
  for (std::size_t i = 0; i < count; ++i) {
    effort.step();
    if (isLeftOut[i]) continue;
    double const error = scaledErrorOf(i);
    int const unknowns = engine.equationFactors(i, a, at);
    double const share = engine.cofactor(a, at, unknowns) / (error * error);
    double const left = std::max(0.0, 1.0 - robustWeights[i] * share);
    double const redundancy = left / (left + share);  // if it had its full weight
    if (!(redundancy >= kUncheckedRedundancy)) continue;
    double const residual = i < directions ? engine.directionResiduals[i] : engine.lineResiduals[i - directions];
    sizes[i] = std::abs(residual) / (error * std::sqrt(left * (left + share)));
  }
  engine.directionResiduals = reduced;
  if (settings.unitWeight == PlaneSettings::UnitWeight::APriori) return sizes;
  // Where a kind is worse throughout than its a-priori errors, most of it is no gross error.
  auto const middle = static_cast<std::ptrdiff_t>(directions);
  auto const checked = [](auto begin, auto end) {
    std::vector<double> list;
    std::copy_if(begin, end, std::back_inserter(list), [](double size) { return size >= 0.0; });
    return list;
  };
  double const ofAll = detail::medianOf(checked(sizes.begin(), sizes.end()));
  for (auto const& [begin, end] :
       {std::make_pair(sizes.begin(), sizes.begin() + middle), std::make_pair(sizes.begin() + middle, sizes.end())}) {
    std::vector<double> const kind = checked(begin, end);
    double const median = kind.size() < kFewOfAKind ? ofAll : detail::medianOf(kind);
    double const scale = std::max(1.0, median / detail::kNormalMedian);
    std::for_each(begin, end, [scale](double& size) { size = size < 0.0 ? size : size / scale; });
  }
  return sizes;
}

/// Gives the observations the weights that their residuals ask for. @return whether any changes; none does, by however
/// little, where all have settled, so that the results are those of the weights.
///
/// Of several that touch one point only the one that fits worst loses weight in a round: its error shows in the others
/// as well, and where residuals cannot be told apart, all of them would go and nothing be left to hold the point.
bool PlaneAdjustment::Data::takeWeights(std::vector<double> const& sizes, bool isGentle, double step) {
  std::vector<std::size_t> falling;
  bool isChanged = false;
  std::vector<double> wanted(sizes.size());
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    wanted[i] = sizes[i] < 0.0 ? 1.0 : (isGentle ? gentleWeight(sizes[i]) : strictWeight(sizes[i]));
    double const change = wanted[i] - robustWeights[i];
    bool const mustGo = change < 0.0 && wanted[i] == 0.0;  // a suspect has no weight, and not a small one
    if (!mustGo && isSettled(change, sizes[i])) continue;
    if (change < 0.0) {
      falling.push_back(i);
    } else {
      setWeight(i, robustWeights[i] + step * change);
      isChanged = true;
    }
  }
  std::sort(falling.begin(), falling.end(), [&](std::size_t a, std::size_t b) { return sizes[a] > sizes[b]; });
  std::vector<bool> isTouched(index(engine.network.points), false);
  double a[5];
  int at[5];
  for (std::size_t const i : falling) {
    engine.equationFactors(i, a, at);
    std::size_t const from = index(at[0] / 2);
    std::size_t const to = index(at[2] / 2);
    bool const isFree = !isTouched[from] && !isTouched[to];
    // A known point hands nothing on: it does not move.
    auto const touch = [&](std::size_t point) {
      bool const isHeld = point < index(engine.network.known) && engine.heldUnknowns.empty() &&
                          !(engine.holdingWeights[point] < detail::PlaneEngine::kFixedWeight);
      if (!isHeld) isTouched[point] = true;
    };
    if (!isFree) continue;
    touch(from);
    touch(to);
    double const change = wanted[i] - robustWeights[i];
    double const rest = (1.0 - step) * change;
    setWeight(i, isSettled(rest, sizes[i]) ? wanted[i] : wanted[i] - rest);
    isChanged = true;
  }
  return isChanged;
}

/// Suspects of the search that several gross errors do not lead astray begin without weight.
bool PlaneAdjustment::Data::startFromTrusted() {
  auto const tell = std::exchange(engine.tell, nullptr);  // told when the weights are known
  engine.findSuspects(engine.start, false);
  engine.tell = tell;
  if (engine.trustedPlaces.empty()) return false;
  for (int n = 0; n < engine.network.points; ++n) {
    detail::Place const place = engine.trustedPlaces[index(n)];
    if (!isFixed(n)) detail::place(engine.xy, n, place.real(), place.imag());
  }
  for (int const suspect : engine.suspectNumbers) setWeight(index(suspect), 0.0);
  return true;
}

void PlaneAdjustment::Data::weighDown() {
  std::size_t const count = isLeftOut.size();
  std::vector<bool> const wasLeftOut = isLeftOut;
  weigh();
  robustWeights.assign(count, 1.0);
  bool const isTrusted = startFromTrusted();
  // Those with which the iteration did not settle; what the host has taken out stays so.
  for (std::size_t i = 0; i < count && !isTrusted; ++i) {
    if (wasLeftOut[i] && !isLeftOut[i]) setWeight(i, 0.0);
  }
  settle();
  if (!engine.invert()) fail();
  bool isGentle = !isTrusted;
  bool hasSettled = false;
  for (int round = 0; round < kRounds && !hasSettled; ++round) {
    isGentle = isGentle && round < kGentleRounds;
    if (takeWeights(standardisedSizes(), isGentle, round < kCalmFrom ? 1.0 : 0.5)) {
      settle();
      if (!engine.invert()) fail();
    } else {
      hasSettled = !isGentle;
      isGentle = false;
    }
  }
  if (!hasSettled && engine.tell) {
    engine.tell(Messages::tr("The weights of the robust adjustment do not settle: its results are those of the last of "
                             "%1 rounds")
                    .arg(kRounds),
                Warning);
  }
  if (isFree()) {
    layOnDatum();
    if (!engine.invert()) fail();
  }
  result = PlaneResult();
  takeResults();
  judgeWeighed();
}

/// What has no weight is told as suspected.
void PlaneAdjustment::Data::judgeWeighed() {
  engine.suspects.clear();
  engine.suspectNumbers.clear();
  result.alternatives.clear();
  testControl();
  std::vector<PlaneControl const*> const suspected = suspectedControl();
  if (!suspected.empty()) tellControl(suspected);
  for (std::size_t i = 0; i < robustWeights.size(); ++i) {
    if (robustWeights[i] > 0.0) continue;
    PlaneObservation const& o = resultOf(i);
    engine.suspectNumbers.push_back(static_cast<int>(i));
    engine.suspects.push_back(engine.suspectOf(static_cast<int>(i), o.residual / o.redundancy));
    for (PlaneAlternative other : alternativesWithout(i)) {
      other.suspect = engine.suspects.size() - 1;
      result.alternatives.push_back(other);
    }
  }
  engine.tellSuspects();
}

}  // namespace kvn
