// The chain of a traverse as a function of its angles and legs, with what their errors do to it.
#pragma once

#include "adjust/TraverseJudgement.h"
#include "adjust/input/DistanceError.h"

#include <utils/Circle.h>

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kvn::detail {

using Plane = Eigen::Vector2d;    // x, y
using Closure = Eigen::Vector3d;  // angle, x, y
using Covariance = Eigen::Matrix3d;

constexpr double kNormal99 = 2.576;    // two-sided quantile of the normal distribution
constexpr double kChiSquare99 = 9.21;  // 99 %, two degrees of freedom
constexpr double kShortest = 1e-6;     // metres; centring says nothing of a leg that is not there
constexpr double kSecond = utils::kPi / 648000.0;

inline Plane unit(double azimuth) { return {std::cos(azimuth), std::sin(azimuth)}; }
/// By a quarter circle clockwise, which is how a point moves when the azimuth to it grows.
inline Plane turned(Plane const& v) { return {-v.y(), v.x()}; }
inline Plane turnedBy(Plane const& v, double angle) { return std::cos(angle) * v + std::sin(angle) * turned(v); }

inline TraverseRounds roundsAt(TraverseErrors const& errors, std::size_t station) {
  return station < errors.rounds.size() ? errors.rounds[station] : TraverseRounds();
}

/// What the errors at one station give its angle and its leg.
struct StationErrors {
  double angle = 0.0;  // variances and covariance
  double leg = 0.0;
  double both = 0.0;
};

/// A chain as a function of its angles and legs: station i at `at[i]`, the end at `at.back()` or behind the last leg.
class TraverseChain {
 public:
  /// @param isClosing  false for an open traverse, which ends at its last fore point.
  TraverseChain(std::vector<TraverseInfo> const& stations, TraverseSummary const& summary, TraverseClosing kind,
                bool isClosing = true)
      : list(stations),
        closing(isClosing ? kind : TraverseClosing::AtForePoint),
        legCount(closing == TraverseClosing::AtForePoint ? stations.size() : stations.size() - 1) {
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
  double length(std::size_t leg) const { return list[leg].distance; }
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

  StationErrors errorsAt(std::size_t i, TraverseErrors const& errors) const {
    ObservationErrors const& observed = errors.observations;
    double const direction = observed.directionSeconds * kSecond;
    TraverseRounds const rounds = roundsAt(errors, i);
    StationErrors own;
    own.angle = direction * direction * (1.0 / rounds.back + 1.0 / rounds.fore);
    double const one = distanceError(observed, list[i].distance);
    own.leg = one * one / rounds.leg;
    addCentring(own, i, errors.centring * errors.centring);
    return own;
  }

  double backDistance(std::size_t i) const {
    if (i > 0) return list[i - 1].distance;
    return std::hypot(list[0].backPoint.x - list[0].stationPoint.x, list[0].backPoint.y - list[0].stationPoint.y);
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

  /// The last station looks to a known point, or along the first leg of its loop.
  double foreDistance(std::size_t i) const {
    if (i < legCount) return list[i].distance;
    if (closing == TraverseClosing::OnItself) return list.front().distance;
    PointInfo const& fore = list[i].forePoints.front();
    return std::hypot(fore.x - list[i].stationPoint.x, fore.y - list[i].stationPoint.y);
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

}  // namespace kvn::detail
