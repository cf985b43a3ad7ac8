#include "adjust/traverse/TraverseSidePoints.h"

#include "adjust/traverse/Azimuth.h"
#include "adjust/traverse/TraverseChain.h"

#include <cmath>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace kvn::detail {
namespace {

// What the errors at one station do to the chain behind it, whatever the point in question: the error of the angle,
// that error times the place of the station, and the error of the leg along its direction.
using Sum = Eigen::Matrix<double, 5, 1>;
using Sums = Eigen::Matrix<double, 5, 5>;    // squares and products
using Effect = Eigen::Matrix<double, 3, 5>;  // on x, y and orientation of a station
using OwnAngle = Eigen::Vector3d;            // of the angle at that station itself

Eigen::Matrix2d quarterTurn() { return (Eigen::Matrix2d() << 0.0, -1.0, 1.0, 0.0).finished(); }

/// Errors of the adjusted stations, by sums along the chain from both ends.
class StationCovariances {
 public:
  StationCovariances(TraverseChain const& along, TraverseErrors const& given, std::size_t count)
      : chain(along),
        errors(given),
        before(count + 1, Sums::Zero()),
        ways(count + 1, Plane::Zero()),
        legs(count + 1, 0.0) {
    for (std::size_t i = 0; i < count; ++i) {
      bool const isCounted = chain.counts(i);
      if (!isCounted) uncounted = sumsAt(i);
      before[i + 1] = before[i] + (isCounted ? sumsAt(i) : Sums(Sums::Zero()));
      ways[i + 1] = ways[i] + (isCounted ? chain.station(i) : Plane(Plane::Zero()));
      legs[i + 1] = legs[i] + (i < chain.legs() ? chain.length(i) : 0.0);
    }
  }

  /// As below; the known station at the end of an open chain has an azimuth alone from it.
  Eigen::Matrix3d ofSetUp(std::size_t i, OwnAngle& own) const {
    Eigen::Matrix3d covariance = at(i, own);
    if (i < errorsCount()) return covariance;
    covariance.topRows<2>().setZero();
    covariance.leftCols<2>().setZero();
    return covariance;
  }

  /// Covariance of x, y and the azimuth of the back line of a station; `own` is what its own angle adds to them.
  Eigen::Matrix3d at(std::size_t i, OwnAngle& own) const {
    Eigen::Matrix2d const turn = quarterTurn();
    Plane const here = chain.station(i);
    double const share = chain.closes() ? legs[i] / legs[chain.legs()] : 0.0;
    double const all = static_cast<double>(chain.angles());
    double const passed = chain.counts(0) ? static_cast<double>(i) : static_cast<double>(i > 0 ? i - 1 : 0);
    Plane common = Plane::Zero();
    double turned1 = 0.0;
    if (chain.closes()) {
      Plane const toHere = passed * here - ways[i];
      Plane const toEnd = all * chain.end() - ways.back();
      common = turn * (toHere - share * toEnd) / all;
      turned1 = passed / all;
    }
    Plane const reach = turn * (here - share * chain.end());
    Effect ahead = Effect::Zero();
    ahead.block<2, 1>(0, 0) = reach - common;
    ahead.block<2, 2>(0, 1) = -(1.0 - share) * turn;
    ahead.block<2, 2>(0, 3) = (1.0 - share) * Eigen::Matrix2d::Identity();
    ahead(2, 0) = 1.0 - turned1;
    Effect behind = Effect::Zero();
    behind.block<2, 1>(0, 0) = -common - share * turn * chain.end();
    behind.block<2, 2>(0, 1) = share * turn;
    behind.block<2, 2>(0, 3) = -share * Eigen::Matrix2d::Identity();
    behind(2, 0) = -turned1;
    Effect first = ahead;
    first.block<2, 1>(0, 0) = reach;
    first(2, 0) = 1.0;
    bool const isFirst = i == 0;
    Sums const later = before.back() - before[i];
    Eigen::Matrix3d sum = ahead * before[i] * ahead.transpose() + behind * later * behind.transpose();
    if (!isFirst) sum += first * uncounted * first.transpose();
    if (!isFirst && !chain.counts(0)) {
      // The angle at the mark and the last one of the loop both have the direction of the first leg.
      double const direction = errors.observations.directionSeconds * kSecond;
      Eigen::Vector3d const ofMark = first * angleAt(0);
      Eigen::Vector3d const ofLast = behind * angleAt(before.size() - 2);
      Eigen::Matrix3d const both = ofMark * ofLast.transpose();
      sum += direction * direction / roundsAt(errors, 0).fore * (both + both.transpose());
    }
    own.setZero();
    if (i < errorsCount() && chain.counts(i)) {
      own.head<2>() = behind.block<2, 1>(0, 0) + behind.block<2, 2>(0, 1) * here;
      own(2) = behind(2, 0);
    }
    return sum;
  }

 private:
  std::size_t errorsCount() const { return before.size() - 1; }

  Sum angleAt(std::size_t i) const {
    Sum angle = Sum::Zero();
    angle(0) = 1.0;
    angle.segment<2>(1) = chain.station(std::min(i, chain.legs()));
    return angle;
  }

  Sums sumsAt(std::size_t i) const {
    StationErrors const one = chain.errorsAt(i, errors);
    Sum const angle = angleAt(i);
    Sums sums = one.angle * angle * angle.transpose();
    if (i >= chain.legs()) return sums;
    Sum leg = Sum::Zero();
    leg.segment<2>(3) = chain.along(i);
    return sums + one.leg * leg * leg.transpose() + one.both * (angle * leg.transpose() + leg * angle.transpose());
  }

  TraverseChain const& chain;
  TraverseErrors const& errors;
  Sums uncounted = Sums::Zero();
  std::vector<Sums> before;
  std::vector<Plane> ways;
  std::vector<double> legs;
};

using KnownOf = std::unordered_map<std::string, KnownPoint const*>;

KnownOf byName(std::vector<KnownPoint> const& known) {
  KnownOf points;
  for (KnownPoint const& point : known) points.emplace(point.name, &point);
  return points;
}

TraverseChain chainOf(TraverseResult const& result) {
  return {result.stations, result.summary, result.closing, result.summary.hasMisclosure};
}

/// Where a sight starts, which may be behind the chain.
PointInfo const& standpoint(TraverseResult const& result, std::size_t station) {
  return station < result.stations.size() ? result.stations[station].stationPoint
                                          : result.stations.back().forePoints.front();
}

double variance(double error, double rounds) { return error * error / rounds; }

void setErrors(TraverseSidePoint& side, SideSight const& sight, TraverseChain const& chain,
               StationCovariances const& stations, TraverseErrors const& errors) {
  OwnAngle own;
  Eigen::Matrix3d const ofStation = stations.ofSetUp(sight.station, own);
  Plane const ray = unit(side.azimuth);
  Plane const move = side.distance * turned(ray);
  Eigen::Matrix<double, 2, 3> carried;
  carried << 1.0, 0.0, move.x(), 0.0, 1.0, move.y();
  double const direction = errors.observations.directionSeconds * kSecond;
  double const back = variance(direction, roundsAt(errors, sight.station).back);
  // The direction to the back point is in the angle of the chain too.
  Plane const shared = carried * own;
  Eigen::Matrix2d sum = carried * ofStation * carried.transpose();
  sum += (back + variance(direction, sight.rounds)) * move * move.transpose();
  sum += back * (shared * move.transpose() + move * shared.transpose());
  double const distance = distanceError(errors.observations, side.distance);
  sum += variance(distance, sight.distances) * ray * ray.transpose();
  // Instrument and target beside their marks, the back target as well.
  double const centring = errors.centring * errors.centring;
  double const backDistance = chain.backDistance(sight.station);
  sum += 2.0 * centring * Eigen::Matrix2d::Identity();
  if (backDistance > kShortest) sum += 2.0 * centring / (backDistance * backDistance) * move * move.transpose();
  side.mx = std::sqrt(sum(0, 0));
  side.my = std::sqrt(sum(1, 1));
  side.mp = std::sqrt(sum.trace());
  if (!side.isKnown) return;
  Plane const off(side.offNorth, side.offEast);
  Plane const toward = off.norm() > 0.0 ? Plane(off.normalized()) : Plane(1.0, 0.0);
  side.offAllowed = std::sqrt(kChiSquare99 / toward.dot(sum.inverse() * toward));
}

/// Directions and distances to known points, compared with those of the chain.
class Checker {
 public:
  Checker(TraverseResult& traverse, KnownOf const& points, TraverseErrors const* given)
      : result(traverse), known(points), errors(given), chain(chainOf(traverse)) {
    if (errors != nullptr) covariances.emplace(chain, *errors, result.stations.size());
  }

  void addDirection(SideSight const& sight) {
    TraverseCheck check;
    Plane const way = wayOf(sight, check);
    double const length = way.norm();
    if (!(length > kShortest)) return;
    bool const isAtStart = sight.station == 0;
    bool const isAtEnd = chain.closes() && sight.station + 1 == result.stations.size();
    double azimuth = result.summary.azimuths[sight.station] + utils::kPi + sight.angle;
    if (isAtEnd) {
      // From the mark there, which the chain has no part in.
      TraverseInfo const& last = result.stations.back();
      azimuth = azimuthFrom(last.stationPoint, last.forePoints.front()) + sight.angle - last.angle;
      check.mark = last.forePoints.front().name;
    } else if (isAtStart) {
      check.mark = result.stations.front().backPoint.name;
    }
    check.off = std::remainder(azimuth - std::atan2(way.y(), way.x()), utils::kFullCircle);
    if (errors != nullptr) check.allowed = kNormal99 * std::sqrt(varianceOf(sight, way, isAtEnd));
    result.checks.push_back(std::move(check));
  }

  void addDistance(SideSight const& sight) {
    TraverseCheck check;
    check.kind = TraverseCheck::Distance;
    double const length = wayOf(sight, check).norm();
    check.off = sight.distance - length;
    if (errors != nullptr) {
      double const own = variance(distanceError(errors->observations, length), sight.distances);
      check.allowed = kNormal99 * std::sqrt(own + 2.0 * errors->centring * errors->centring);
    }
    result.checks.push_back(std::move(check));
  }

 private:
  static double azimuthFrom(PointInfo const& at, PointInfo const& to) { return std::atan2(to.y - at.y, to.x - at.x); }

  Plane wayOf(SideSight const& sight, TraverseCheck& check) const {
    PointInfo const& at = standpoint(result, sight.station);
    KnownPoint const& target = *known.at(sight.target);
    check.station = at.name;
    check.target = sight.target;
    return {target.x - at.x, target.y - at.y};
  }

  /// Of the direction less the azimuth to the target from where the station is computed.
  double varianceOf(SideSight const& sight, Plane const& way, bool isAtEnd) const {
    double const length = way.norm();
    double const direction = errors->observations.directionSeconds * kSecond;
    double const centring = 2.0 * errors->centring * errors->centring;
    TraverseRounds const rounds = roundsAt(*errors, sight.station);
    double const mark = variance(direction, isAtEnd ? rounds.fore : rounds.back);
    double sum = mark + variance(direction, sight.rounds) + centring / (length * length);
    PointInfo const& fore = result.stations.back().forePoints.front();
    PointInfo const& last = result.stations.back().stationPoint;
    double const toMark = isAtEnd ? std::hypot(fore.x - last.x, fore.y - last.y) : chain.backDistance(sight.station);
    if (toMark > kShortest) sum += centring / (toMark * toMark);
    if (isAtEnd) return sum;
    OwnAngle own;
    Eigen::Matrix3d const ofStation = covariances->ofSetUp(sight.station, own);
    Plane const turn = turned(way) / (length * length);
    Eigen::Vector3d const effect(turn.x(), turn.y(), 1.0);
    // The direction to the back point is in the angle of the chain too.
    return sum + effect.dot(ofStation * effect) + 2.0 * mark * own.dot(effect);
  }

  TraverseResult& result;
  KnownOf const& known;
  TraverseErrors const* errors;
  TraverseChain chain;
  std::optional<StationCovariances> covariances;
};

}  // namespace

void addSidePoints(TraverseResult& result, std::vector<SideSight> const& sights, std::vector<KnownPoint> const& known,
                   TraverseErrors const* errors) {
  KnownOf const knownOf = byName(known);
  TraverseChain const chain = chainOf(result);
  std::optional<StationCovariances> covariances;
  if (errors != nullptr) covariances.emplace(chain, *errors, result.stations.size());
  for (SideSight const& sight : sights) {
    if (sight.distance <= 0.0) continue;
    PointInfo const& at = standpoint(result, sight.station);
    TraverseSidePoint side;
    side.station = at.name;
    side.point.name = sight.target;
    side.distance = sight.distance;
    side.azimuth = ontoCircle(result.summary.azimuths[sight.station] + utils::kPi + sight.angle);
    if (side.azimuth >= utils::kFullCircle) side.azimuth -= utils::kFullCircle;
    side.point.x = at.x + side.distance * std::cos(side.azimuth);
    side.point.y = at.y + side.distance * std::sin(side.azimuth);
    if (auto const found = knownOf.find(side.point.name); found != knownOf.end()) {
      side.isKnown = true;
      side.offNorth = side.point.x - found->second->x;
      side.offEast = side.point.y - found->second->y;
    }
    if (covariances) setErrors(side, sight, chain, *covariances, *errors);
    result.sidePoints.push_back(std::move(side));
  }
}

void addChecks(TraverseResult& result, TraverseWalk const& walk, std::vector<KnownPoint> const& known,
               TraverseErrors const* errors) {
  KnownOf const knownOf = byName(known);
  Checker checker(result, knownOf, errors);
  for (SideSight const& sight : walk.sideSights) {
    if (sight.distance <= 0.0 && knownOf.count(sight.target) != 0) checker.addDirection(sight);
  }
  for (SideSight const& sight : walk.markDistances) checker.addDistance(sight);
}

void addPointErrors(TraverseResult& result, std::vector<KnownPoint> const& known, TraverseErrors const& errors) {
  KnownOf const knownOf = byName(known);
  TraverseChain const chain = chainOf(result);
  StationCovariances const covariances(chain, errors, result.stations.size());
  std::unordered_map<std::string, std::size_t> placeOf;
  for (std::size_t i = 0; i < result.stations.size(); ++i) placeOf.emplace(result.stations[i].stationPoint.name, i);
  placeOf.emplace(result.stations.back().forePoints.front().name, result.stations.size());
  for (PointInfo const& point : result.points) {
    TraversePointError error;
    auto const place = placeOf.find(point.name);
    if (knownOf.count(point.name) != 0) {
      error = {0.0, 0.0, 0.0};
    } else if (place != placeOf.end()) {
      OwnAngle own;
      Eigen::Matrix2d const ofPlace = covariances.at(place->second, own).topLeftCorner<2, 2>();
      error = {std::sqrt(ofPlace(0, 0)), std::sqrt(ofPlace(1, 1)), std::sqrt(ofPlace.trace())};
    }
    result.pointErrors.push_back(error);
  }
}

}  // namespace kvn::detail
