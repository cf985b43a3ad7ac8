#include "adjust/traverse/TraverseSidePoints.h"

#include "adjust/traverse/Azimuth.h"
#include "adjust/traverse/TraverseChain.h"

namespace kvn::detail {
namespace {

// What the errors at one station do to the chain behind it, whatever the point in question: the error of the angle,
// that error times the place of the station, and the error of the leg along its direction.
using Sums = Eigen::Matrix<double, 5, 5>;
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
    own.setZero();
    if (chain.counts(i)) {
      own.head<2>() = behind.block<2, 1>(0, 0) + behind.block<2, 2>(0, 1) * here;
      own(2) = behind(2, 0);
    }
    return sum;
  }

 private:
  Sums sumsAt(std::size_t i) const {
    StationErrors const one = chain.errorsAt(i, errors);
    Eigen::Matrix<double, 5, 1> angle = Eigen::Matrix<double, 5, 1>::Zero();
    angle(0) = 1.0;
    angle.segment<2>(1) = chain.station(std::min(i, chain.legs()));
    Sums sums = one.angle * angle * angle.transpose();
    if (i >= chain.legs()) return sums;
    Eigen::Matrix<double, 5, 1> leg = Eigen::Matrix<double, 5, 1>::Zero();
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

void setErrors(TraverseSidePoint& side, SideSight const& sight, TraverseChain const& chain,
               StationCovariances const& stations, TraverseErrors const& errors) {
  OwnAngle own;
  Eigen::Matrix3d const ofStation = stations.at(sight.station, own);
  Plane const ray = unit(side.azimuth);
  Plane const move = side.distance * turned(ray);
  Eigen::Matrix<double, 2, 3> carried;
  carried << 1.0, 0.0, move.x(), 0.0, 1.0, move.y();
  double const direction = errors.observations.directionSeconds * kSecond;
  // The direction to the back point is in the angle of the chain too.
  Plane const shared = carried * own;
  Eigen::Matrix2d sum = carried * ofStation * carried.transpose();
  sum += 2.0 * direction * direction * move * move.transpose();
  sum += direction * direction * (shared * move.transpose() + move * shared.transpose());
  double const distance = distanceError(errors.observations, side.distance);
  sum += distance * distance * ray * ray.transpose();
  // Instrument and target beside their marks, the back target as well.
  double const centring = errors.centring * errors.centring;
  double const back = chain.backDistance(sight.station);
  sum += 2.0 * centring * Eigen::Matrix2d::Identity();
  if (back > kShortest) sum += 2.0 * centring / (back * back) * move * move.transpose();
  side.mx = std::sqrt(sum(0, 0));
  side.my = std::sqrt(sum(1, 1));
  side.mp = std::sqrt(sum.trace());
}

}  // namespace

void addSidePoints(TraverseResult& result, std::vector<SideSight> const& sights, TraverseErrors const* errors) {
  TraverseChain const chain(result.stations, result.summary, result.closing, result.summary.hasMisclosure);
  std::optional<StationCovariances> covariances;
  if (errors != nullptr) covariances.emplace(chain, *errors, result.stations.size());
  for (SideSight const& sight : sights) {
    if (sight.distance <= 0.0) continue;
    PointInfo const& at = result.stations[sight.station].stationPoint;
    TraverseSidePoint side;
    side.station = at.name;
    side.point.name = sight.target;
    side.distance = sight.distance;
    side.azimuth = ontoCircle(result.summary.azimuths[sight.station] + utils::kPi + sight.angle);
    if (side.azimuth >= utils::kFullCircle) side.azimuth -= utils::kFullCircle;
    side.point.x = at.x + side.distance * std::cos(side.azimuth);
    side.point.y = at.y + side.distance * std::sin(side.azimuth);
    if (covariances) setErrors(side, sight, chain, *covariances, *errors);
    result.sidePoints.push_back(std::move(side));
  }
}

}  // namespace kvn::detail
