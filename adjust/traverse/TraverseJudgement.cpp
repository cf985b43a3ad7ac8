#include "adjust/TraverseJudgement.h"

#include <utils/Circle.h>

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace kvn {
namespace {

using Plane = Eigen::Vector2d;    // x, y
using Closure = Eigen::Vector3d;  // angle, x, y
using Covariance = Eigen::Matrix3d;

constexpr double kNormal99 = 2.576;    // two-sided quantile of the normal distribution
constexpr double kChiSquare99 = 9.21;  // of two degrees of freedom
constexpr double kShortest = 1e-6;     // metres; centring says nothing of a leg that is not there
constexpr double kSamePoint = 1e-3;    // metres; a line between first and last station must have a direction
constexpr double kSecond = utils::kPi / 648000.0;

Plane unit(double azimuth) { return {std::cos(azimuth), std::sin(azimuth)}; }
/// By a quarter circle clockwise, which is how a point moves when the azimuth to it grows.
Plane turned(Plane const& v) { return {-v.y(), v.x()}; }
Plane turnedBy(Plane const& v, double angle) { return std::cos(angle) * v + std::sin(angle) * turned(v); }

/// Standard errors that the errors at one station give its angle and its leg.
struct StationErrors {
  double angle = 0.0;  // variances and covariance
  double leg = 0.0;
  double both = 0.0;
};

/// A chain as a function of its angles and legs: station i at `at[i]`, the end at `at.back()` or behind the last leg.
class Chain {
 public:
  Chain(std::vector<TraverseInfo> const& stations, TraverseSummary const& summary, TraverseClosing kind)
      : list(stations),
        closing(kind),
        legCount(kind == TraverseClosing::AtForePoint ? stations.size() : stations.size() - 1) {
    Plane const start(stations.front().stationPoint.x, stations.front().stationPoint.y);
    Plane end = start;
    for (std::size_t i = 0; i < legCount; ++i) end += Plane(stations[i].deltaX, stations[i].deltaY);
    known = end - Plane(summary.fx, summary.fy);
    angleMisclosure = closes() ? -summary.angleCorrection * static_cast<double>(angles()) : 0.0;
    shift = closes() ? summary.angleCorrection : 0.0;
    place(start, summary.azimuths.front());
  }

  bool closes() const { return closing != TraverseClosing::AtForePoint; }
  bool counts(std::size_t station) const { return closing != TraverseClosing::OnItself || station > 0; }
  std::size_t angles() const { return list.size() - (closing == TraverseClosing::OnItself ? 1 : 0); }
  std::size_t legs() const { return legCount; }
  Plane const& end() const { return at[legCount]; }
  Plane const& knownEnd() const { return known; }
  Plane const& start() const { return at.front(); }
  Plane const& station(std::size_t i) const { return at[i]; }
  Plane along(std::size_t leg) const { return unit(azimuths[leg + 1]); }
  double misclosureOfAngles() const { return angleMisclosure; }
  Closure misclosure() const {
    Plane const f = end() - known;
    return {angleMisclosure, f.x(), f.y()};
  }

  /// Places the stations by the angles as observed, where they have been placed by corrected ones.
  void undistribute() {
    shift = 0.0;
    Plane const first = start();
    place(first, azimuths.front());
  }

  /// What an error of 1 of an angle adds to the misclosures; distributed: the mean of all is taken off.
  Closure effectOfAngle(std::size_t i) const {
    Plane const move = turned(end() - at[i]);
    return {closes() && counts(i) ? 1.0 : 0.0, move.x(), move.y()};
  }
  Closure effectOfLeg(std::size_t i) const {
    Plane const move = along(i);
    return {0.0, move.x(), move.y()};
  }
  /// Share of x and y that the equal share of 1 in the angular misclosure takes off.
  Plane meanEffect() const {
    Plane sum = Plane::Zero();
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (closes() && counts(i)) sum += turned(end() - at[i]);
    }
    return sum / static_cast<double>(angles());
  }

  Covariance covariance(TraverseErrors const& errors, bool isDistributed) const {
    Plane const mean = isDistributed ? meanEffect() : Plane::Zero();
    Covariance sum = Covariance::Zero();
    for (std::size_t i = 0; i < list.size(); ++i) {
      StationErrors const own = errorsAt(i, errors);
      Closure a = effectOfAngle(i);
      if (counts(i)) a.tail<2>() -= mean;
      sum += own.angle * a * a.transpose();
      if (i >= legCount) continue;
      Closure const b = effectOfLeg(i);
      sum += own.leg * b * b.transpose() + own.both * (a * b.transpose() + b * a.transpose());
    }
    // An angular misclosure that does not exist stays out of it.
    if (!closes()) sum(0, 0) = 1.0;
    return sum;
  }

 private:
  void place(Plane const& start, double azimuth) {
    azimuths = {azimuth};
    at = {start};
    for (std::size_t i = 0; i < list.size(); ++i) {
      azimuths.push_back(azimuths.back() + list[i].angle + (counts(i) ? shift : 0.0) - utils::kPi);
      if (i < legCount) at.push_back(at.back() + list[i].distance * unit(azimuths.back()));
    }
  }

  double backDistance(std::size_t i) const {
    if (i > 0) return list[i - 1].distance;
    return std::hypot(list[0].backPoint.x - list[0].stationPoint.x, list[0].backPoint.y - list[0].stationPoint.y);
  }
  /// The last station looks to a known point, or along the first leg of its loop.
  double foreDistance(std::size_t i) const {
    if (i < legCount) return list[i].distance;
    if (closing == TraverseClosing::OnItself) return list.front().distance;
    PointInfo const& fore = list[i].forePoints.front();
    return std::hypot(fore.x - list[i].stationPoint.x, fore.y - list[i].stationPoint.y);
  }

  StationErrors errorsAt(std::size_t i, TraverseErrors const& errors) const {
    ObservationErrors const& observed = errors.observations;
    double const direction = observed.directionSeconds * kSecond;
    StationErrors own;
    own.angle = 2.0 * direction * direction;
    double const distance = list[i].distance;
    double const grows = observed.distanceProportional * distance;
    double const one = observed.form == ObservationErrors::Form::Sum ? observed.distanceFixed + grows
                                                                     : std::hypot(observed.distanceFixed, grows);
    int const count = i < errors.distanceCounts.size() ? std::max(errors.distanceCounts[i], 1) : 1;
    own.leg = one * one / count;
    addCentring(own, i, errors.centring * errors.centring);
    return own;
  }

  /// A shift of the instrument turns the directions to both sides and lengthens the leg, one of a target turns its own
  /// direction, and that of the fore target lengthens the leg.
  void addCentring(StationErrors& own, std::size_t i, double variance) const {
    double const back = backDistance(i);
    double const fore = foreDistance(i);
    if (variance == 0.0 || back < kShortest || fore < kShortest) return;
    double const toBack = azimuths[i] + utils::kPi;
    double const toFore = azimuths[i + 1];
    Plane const turn = unit(toFore) / fore - unit(toBack) / back;
    own.angle += variance * (turn.squaredNorm() + 1.0 / (back * back) + 1.0 / (fore * fore));
    own.leg += 2.0 * variance;
    own.both += variance * std::sin(toBack - toFore) / back;
  }

  std::vector<TraverseInfo> const& list;
  TraverseClosing closing;
  std::size_t legCount;
  double shift = 0.0;  // of each angle that counts
  double angleMisclosure = 0.0;
  Plane known;
  std::vector<double> azimuths;
  std::vector<Plane> at;
};

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
