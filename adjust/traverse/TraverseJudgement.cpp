#include "adjust/TraverseJudgement.h"

#include "adjust/traverse/TraverseChain.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace kvn {
namespace {

using detail::Closure;
using detail::Covariance;
using detail::kChiSquare99;
using detail::kNormal99;
using detail::Plane;
using detail::turned;
using detail::turnedBy;
using Chain = detail::TraverseChain;

constexpr double kSamePoint = 1e-3;  // metres; a line between first and last station must have a direction

/// Whether misclosures are inside of what is allowed.
class Allowed {
 public:
  Allowed(TraverseJudgement const& judgement, Covariance const& covariance, Plane const& line)
      : angle(judgement.angleAllowed),
        along(judgement.alongAllowed),
        across(judgement.acrossAllowed),
        direction(line),
        weight(covariance.bottomRightCorner<2, 2>().inverse()) {}

  bool holds(double misclosureOfAngles, Plane const& f) const {
    if (std::abs(misclosureOfAngles) > angle) return false;
    if (std::isnan(along)) return f.dot(weight * f) <= kChiSquare99;
    return std::abs(f.dot(direction)) <= along && std::abs(f.dot(turned(direction))) <= across;
  }

 private:
  double angle;
  double along;
  double across;
  Plane direction;
  Eigen::Matrix2d weight;
};

/// Looks for the one angle or leg that explains the misclosures, on the chain of the angles as observed.
class SuspectSearch {
 public:
  SuspectSearch(Chain const& observed, TraverseErrors const& errors, Allowed const& bounds)
      : chain(observed), allowed(bounds), weight(observed.covariance(errors, false).inverse()) {}

  std::vector<TraverseSuspect> found(std::vector<TraverseInfo> const& stations) {
    for (std::size_t i = 0; i < stations.size(); ++i) {
      if (chain.closes() && chain.counts(i)) behind += chain.end() - chain.station(i);
    }
    std::vector<TraverseSuspect> list;
    for (std::size_t i = 0; i < stations.size(); ++i) {
      pass(i);
      double const ofAngle = correctionOfAngle(i);
      if (chain.counts(i) && explainsAngle(i, ofAngle)) list.push_back({TraverseSuspect::Angle, i, -ofAngle});
      if (i >= chain.legs()) continue;
      double const ofLeg = correctionOfLeg(i);
      if (stations[i].distance + ofLeg > 0.0 && explainsLeg(i, ofLeg)) {
        list.push_back({TraverseSuspect::Leg, i, -ofLeg});
      }
    }
    return list;
  }

 private:
  /// Moves a station from those behind the place in question to those before.
  void pass(std::size_t i) {
    if (!chain.closes() || !chain.counts(i)) return;
    Plane const way = chain.end() - chain.station(i);
    before += way;
    behind -= way;
    ++beforeCount;
  }

  Plane turnedEnd(std::size_t i, double by) const {
    return chain.station(i) + turnedBy(chain.end() - chain.station(i), by);
  }

  /// Gauss-Newton on the turn of all that lies behind the station. A coarse angle is far from linear, so that it begins
  /// with the turn that closes the angles, or else with the one that points at the known end.
  double correctionOfAngle(std::size_t i) const {
    constexpr int kRounds = 10;  // four settle a correction of 60°
    double by = -chain.misclosureOfAngles();
    if (!chain.closes()) {
      Plane const has = chain.end() - chain.station(i);
      Plane const wants = chain.knownEnd() - chain.station(i);
      by = std::atan2(has.x() * wants.y() - has.y() * wants.x(), has.dot(wants));
    }
    for (int round = 0; round < kRounds; ++round) {
      Plane const end = turnedEnd(i, by);
      Plane const f = end - chain.knownEnd();
      Plane const move = turned(end - chain.station(i));
      double const angular = chain.closes() ? 1.0 : 0.0;
      Closure const misclosure(chain.misclosureOfAngles() + angular * by, f.x(), f.y());
      Closure const effect(angular, move.x(), move.y());
      double const scale = effect.dot(weight * effect);
      if (!(scale > 0.0)) return 0.0;
      by -= effect.dot(weight * misclosure) / scale;
    }
    return by;
  }

  double correctionOfLeg(std::size_t i) const {
    Closure const effect = chain.effectOfLeg(i);
    return -effect.dot(weight * chain.misclosure()) / effect.dot(weight * effect);
  }

  /// The coordinate misclosure once the angular one is distributed.
  Plane distributed(Plane const& f, double misclosureOfAngles, Plane const& sumOfWays) const {
    if (!chain.closes()) return f;
    return f - misclosureOfAngles / static_cast<double>(chain.angles()) * turned(sumOfWays);
  }

  bool explainsAngle(std::size_t i, double by) const {
    Plane const end = turnedEnd(i, by);
    double const left = chain.misclosureOfAngles() + (chain.closes() ? by : 0.0);
    Plane const ways = before + beforeCount * (end - chain.end()) + turnedBy(behind, by);
    return allowed.holds(left, distributed(end - chain.knownEnd(), left, ways));
  }

  bool explainsLeg(std::size_t i, double by) const {
    Plane const move = by * chain.along(i);
    Plane const ways = before + beforeCount * move + behind;
    double const left = chain.misclosureOfAngles();
    return allowed.holds(left, distributed(chain.end() + move - chain.knownEnd(), left, ways));
  }

  Chain const& chain;
  Allowed const& allowed;
  Covariance weight;
  // Sums of the ways from the stations to the end, of those up to the place in question and of those behind it.
  Plane before = Plane::Zero();
  Plane behind = Plane::Zero();
  double beforeCount = 0.0;
};

double errorAlong(Eigen::Matrix2d const& covariance, Plane const& direction) {
  return std::sqrt(direction.dot(covariance * direction));
}

}  // namespace

double TraverseJudgement::excess() const {
  double worst = 0.0;
  auto const take = [&worst](double misclosure, double allowedSize) {
    if (allowedSize > 0.0) worst = std::max(worst, std::abs(misclosure) / allowedSize);
  };
  take(angle, angleAllowed);
  take(along, alongAllowed);
  take(across, acrossAllowed);
  if (isLoop()) take(fs, fsAllowed);
  return worst;
}

TraverseJudgement judgedTraverse(std::vector<TraverseInfo> const& stations, TraverseSummary const& summary,
                                 TraverseClosing closing, TraverseErrors const& errors) {
  TraverseJudgement judgement;
  if (stations.empty() || summary.azimuths.empty()) return judgement;
  Chain chain(stations, summary, closing);
  Covariance const covariance = chain.covariance(errors, true);
  Eigen::Matrix2d const ofPlace = covariance.bottomRightCorner<2, 2>();
  if (chain.closes()) {
    judgement.angles = chain.angles();
    judgement.angle = chain.misclosureOfAngles();
    judgement.angleAllowed = kNormal99 * std::sqrt(covariance(0, 0));
  }
  Plane line = chain.knownEnd() - chain.start();
  if (chain.legs() == 0) return judgement;
  Plane const f(summary.fx, summary.fy);
  judgement.fs = f.norm();
  judgement.relative = summary.relativeError;
  Plane const toward = judgement.fs > 0.0 ? Plane(f / judgement.fs) : Plane(1.0, 0.0);
  judgement.fsAllowed = std::sqrt(kChiSquare99 / toward.dot(ofPlace.inverse() * toward));
  if (line.norm() > kSamePoint) {
    line.normalize();
    judgement.along = f.dot(line);
    judgement.across = f.dot(turned(line));
    judgement.alongAllowed = kNormal99 * errorAlong(ofPlace, line);
    judgement.acrossAllowed = kNormal99 * errorAlong(ofPlace, turned(line));
  }
  if (judgement.excess() <= 1.0) return judgement;
  Allowed const allowed(judgement, covariance, line);
  chain.undistribute();
  judgement.suspects = SuspectSearch(chain, errors, allowed).found(stations);
  return judgement;
}

}  // namespace kvn
