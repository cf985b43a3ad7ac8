// What does not fit, and the adjustment without it.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/GrossErrors.h"
#include "records/detail/Messages.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

using detail::index;

}  // namespace

/// What does not fit: a known point, where one explains it better than any observation, else observations.
void PlaneAdjustment::Data::judge() {
  testControl();
  std::vector<PlaneControl const*> const suspected = suspectedControl();
  if (!suspected.empty()) {
    tellControl(suspected);
    return;
  }
  if (!engine.suspectNumbers.empty() && leftOut.empty()) {
    findAlternatives();  // the suspects were found, and told, on the way
    return;
  }
  engine.judgeObservations();
  findAlternatives();
}

void PlaneAdjustment::Data::tellControl(std::vector<PlaneControl const*> const& suspected) {
  engine.suspects.clear();
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
  if (!engine.suspectNumbers.empty()) engine.normals->needFactor(engine.poll);
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

/// One after the other, the one with the largest test first, until none is suspected. The suspects have been told, and
/// those that come up behind them are in the list of what is left out: told is what stands at the end.
void PlaneAdjustment::Data::leaveOutSuspects() {
  constexpr std::size_t kMost = 100;
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
    engine.suspectNumbers.clear();
    auto const tell = std::exchange(engine.tell, nullptr);
    judge();
    engine.tell = tell;
  }
  result.leftOut = leftOut;
  if (leftOut.empty()) return;
  if (!result.suspectedControl.empty()) {
    result.suspectedControl.clear();
    tellControl(suspectedControl());
  }
  engine.tellSuspects();
}

}  // namespace kvn
