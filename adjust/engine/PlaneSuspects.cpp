// What does not fit, and the adjustment without it.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/GrossErrors.h"
#include "records/detail/Messages.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <exception>
#include <new>
#include <utility>

namespace kvn {
namespace {

using detail::index;

// Metres. What moves nothing by more is no other result.
constexpr double kLeastApart = 5e-5;

}  // namespace

/// What does not fit: a known point, where one explains it far better than any observation, and what does not fit when
/// that one is free; else observations, with the known points that may be the reason in their place.
void PlaneAdjustment::Data::judge() {
  testControl();
  std::vector<PlaneControl const*> const suspected = suspectedControl();
  if (!suspected.empty() && result.isControlAlone) {
    engine.suspects.clear();
    engine.suspectNumbers.clear();
    tellControl(suspected);
    if (suspected.size() == 1) judgeWithFree(suspected.front()->point);
    return;
  }
  // Suspects that were found on the way have been told.
  if (engine.suspectNumbers.empty() || !leftOut.empty()) engine.judgeObservations();
  findAlternatives();
  if (!suspected.empty()) tellControl(suspected);
}

/// A known point that is wrong covers the errors of observations: those are looked for with the point free.
void PlaneAdjustment::Data::judgeWithFree(std::size_t point) {
  PlaneNetwork freed = network;
  freed.points[point].isKnown = false;
  PlaneSettings plain = settings;
  plain.leavesOutSuspects = plain.weighsDownSuspects = false;
  PlaneAdjustment other(std::move(freed), plain);
  other.setTellFindings(false);
  other.setCancelCall(cancelCall);
  other.own->isDirectionOut = isDirectionOut;
  other.own->isDistanceOut = isDistanceOut;
  for (PlaneLeftOut const& out : leftOut) {
    if (out.isDirection) {
      other.setDirectionUsed(out.observation, false);
    } else {
      other.setDistanceUsed(out.observation, false);
    }
  }
  try {
    other.adjust();
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
    if (cancelCall && cancelCall()) throw;
    return;  // it does not settle, or nothing holds the point: the result stands, and no more can be said of it
  }
  engine.suspects = other.suspects();
  engine.tellSuspects();
}

void PlaneAdjustment::Data::tellControl(std::vector<PlaneControl const*> const& suspected) {
  QStringList names;
  for (PlaneControl const* control : suspected) {
    result.suspectedControl.push_back(control->point);
    QString const text = Messages::tr("%1 (it would lie %2 m north and %3 m east of its coordinates)");
    names << text.arg(QString::fromStdString(network.points[control->point].name))
                 .arg(control->north, 0, 'f', 3)
                 .arg(control->east, 0, 'f', 3);
  }
  if (!engine.tell) return;
  QString const list = names.join(QStringLiteral("; "));
  QString text = suspected.size() == 1 ? Messages::tr("A known point does not fit the observations: %1")
                                       : Messages::tr("One of these known points does not fit the observations: %1");
  if (!result.isControlAlone) {
    text = Messages::tr("An observation does not fit, or one of these known points, and nothing tells which: %1");
  }
  engine.tell(text.arg(list), Warning);
}

/// Observations whose residuals are those of a suspect times a factor: an error of one looks like an error of the
/// other, as with the two directions of a station that has two.
void PlaneAdjustment::Data::findAlternatives() {
  result.alternatives.clear();
  std::size_t const directions = engine.network.directions.size();
  std::size_t const count = directions + engine.network.lines.size();
  QStringList told;
  if (!engine.suspectNumbers.empty()) engine.needFactor();
  for (std::size_t s = 0; s < engine.suspectNumbers.size(); ++s) {
    auto const suspect = static_cast<std::size_t>(engine.suspectNumbers[s]);
    if (isLeftOut[suspect]) continue;
    double a[5];
    int at[5];
    std::vector<double> right(index(engine.unknowns()), 0.0);
    int const size = engine.solvedFactors(suspect, a, at);
    for (int r = 0; r < size; ++r) right[index(at[r])] = a[r];
    std::vector<double> const q = engine.normals->solved(std::move(right), engine.poll);
    for (std::size_t other = 0; other < count; ++other) {
      PlaneObservation const& o = resultOf(other);
      if (other == suspect || isLeftOut[other] || o.redundancy < kUncheckedRedundancy) continue;
      double covariance = 0.0;
      int const otherSize = engine.solvedFactors(other, a, at);
      for (int r = 0; r < otherSize; ++r) covariance -= a[r] * q[index(at[r])];
      double const errors = scaledErrorOf(suspect) * scaledErrorOf(other);
      double const correlation = covariance / (errors * std::sqrt(resultOf(suspect).redundancy * o.redundancy));
      if (std::abs(correlation) < detail::kInseparable) continue;
      result.alternatives.push_back(
          {s, other < directions, other < directions ? directionOf[other] : other - directions});
      SuspectObservation const name = engine.suspectOf(static_cast<int>(other), 0.0);
      told << QStringLiteral("%1 - %2").arg(QString::fromStdString(name.from), QString::fromStdString(name.to));
    }
  }
  if (told.isEmpty() || !engine.tell) return;
  engine.tell(Messages::tr("Not to be told apart from the suspected observations: %1").arg(listedNames(told)), Warning);
}

/// The observations whose errors an observation that has no weight cannot be told from, by the residuals of the
/// adjustment that has it, and how far the coordinates would be elsewhere if one of them were out in its place.
///
/// With Q of the adjustment without it (i), q = a Q a' and w = 1 / σ²: Q with it is Q - Q a_i' a_i Q w_i / (1 + w_i
/// q_ii), and a difference d_i from what the others say, put back, moves x by Q a_i' d_i w_i / (1 + w_i q_ii).
std::vector<PlaneAlternative> PlaneAdjustment::Data::alternativesWithout(std::size_t suspect) {
  std::vector<PlaneAlternative> list;
  std::size_t const directions = engine.network.directions.size();
  std::size_t const count = directions + engine.network.lines.size();
  auto const unitOf = [&](std::size_t number) { return number < directions ? kSecondsPerRadian : 1.0; };
  double a[5];
  int at[5];
  auto const solvedOf = [&](std::size_t number) {
    std::vector<double> right(index(engine.unknowns()), 0.0);
    int const size = engine.solvedFactors(number, a, at);
    for (int r = 0; r < size; ++r) right[index(at[r])] = a[r];
    return engine.normals->solved(std::move(right), engine.poll);
  };
  auto const productWith = [&](std::size_t number, std::vector<double> const& x) {
    int const size = engine.solvedFactors(number, a, at);
    double sum = 0.0;
    for (int r = 0; r < size; ++r) sum += a[r] * x[index(at[r])];
    return sum;
  };
  engine.needFactor();
  std::vector<double> const q = solvedOf(suspect);
  double const w = std::pow(errorOf(suspect) * unitOf(suspect), -2);
  double const own = productWith(suspect, q);
  double const share = 1.0 + w * own;
  double const moved = -resultOf(suspect).residual * unitOf(suspect) * w / share;  // times q, once it is back
  for (std::size_t other = 0; other < count; ++other) {
    PlaneObservation const& o = resultOf(other);
    if (other == suspect || !(o.weight > 0.0)) continue;
    double const across = productWith(other, q);
    double const weight = std::pow(o.error * unitOf(other), -2);
    double const redundancy = o.redundancy + weight * w * across * across / share;
    if (redundancy < kUncheckedRedundancy) continue;
    double const correlation = across * std::sqrt(w * weight / (share * redundancy));
    if (std::abs(correlation) < detail::kInseparable) continue;
    std::vector<double> qOther = solvedOf(other);
    for (std::size_t r = 0; r < q.size(); ++r) qOther[r] -= q[r] * across * w / share;
    double const off = -o.residual * unitOf(other) - across * moved;  // from the adjustment with both
    double const back = -off * weight / redundancy;
    PlaneAlternative entry;
    entry.isDirection = other < directions;
    entry.observation = entry.isDirection ? directionOf[other] : other - directions;
    for (int n = 0; n < 2 * engine.network.points; ++n) {
      entry.apart = std::max(entry.apart, std::abs(moved * q[index(n)] + back * qOther[index(n)]));
    }
    if (entry.apart >= kLeastApart) list.push_back(entry);
  }
  return list;
}

/// One after the other, the one with the largest test first, until none is suspected. The suspects have been told, and
/// those that come up behind them are in the list of what is left out: told is what stands at the end.
void PlaneAdjustment::Data::leaveOutSuspects() {
  constexpr std::size_t kMost = 100;
  std::vector<std::size_t> numbersOut;
  // Those with which the iteration did not settle have lost their weight already.
  auto& numbers = engine.suspectNumbers;
  auto const isOut = [this](int number) { return isLeftOut[index(number)]; };
  numbers.erase(std::remove_if(numbers.begin(), numbers.end(), isOut), numbers.end());
  while (!engine.suspectNumbers.empty() && result.suspectedControl.empty() && leftOut.size() < kMost) {
    auto const sizeOf = [this](int number) {
      PlaneObservation const& o = resultOf(index(number));
      return std::abs(o.residual) / (o.error * std::sqrt(o.redundancy));
    };
    int const worst = *std::max_element(engine.suspectNumbers.begin(), engine.suspectNumbers.end(),
                                        [&](int a, int b) { return sizeOf(a) < sizeOf(b); });
    detail::Coordinates const before = engine.xy;
    std::size_t const idle = engine.idleUnknowns.size();
    leaveOut(worst);
    if (engine.idleUnknowns.size() == idle) moveFor({index(worst)});
    settle();
    if (isFree()) layOnDatum();
    if (!engine.invert()) fail();
    PlaneResult fresh;
    std::swap(fresh, result);
    takeResults();
    std::size_t const directions = engine.network.directions.size();
    std::size_t const number = index(worst);
    PlaneLeftOut entry;
    entry.isDirection = number < directions;
    entry.observation = entry.isDirection ? directionOf[number] : number - directions;
    entry.gross = -resultOf(number).residual;
    for (std::size_t r = 0; r < before.size(); ++r) {
      entry.largestMove = std::max(entry.largestMove, std::abs(engine.xy[r] - before[r]));
    }
    leftOut.push_back(entry);
    numbersOut.push_back(number);
    engine.suspectNumbers.clear();
    auto const tell = std::exchange(engine.tell, nullptr);
    judge();
    engine.tell = tell;
  }
  for (std::size_t i = 0; i < leftOut.size(); ++i) leftOut[i].alternatives = alternativesWithout(numbersOut[i]);
  result.leftOut = leftOut;
  if (!engine.suspectNumbers.empty() && !result.suspectedControl.empty()) {
    result.untreated =
        Messages::tr("suspected observations are not left out, since a known point may be wrong in their place");
    if (engine.tell) engine.tell(result.untreated, Warning);
  }
  if (leftOut.empty()) return;
  if (!result.suspectedControl.empty()) {
    result.suspectedControl.clear();
    tellControl(suspectedControl());
  }
  engine.tellSuspects();
}

}  // namespace kvn
