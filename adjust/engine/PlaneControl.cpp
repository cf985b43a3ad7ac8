// Which known point would fit if it were free.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/Quantiles.h"
#include "records/detail/Messages.h"

#include <Eigen/Dense>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <limits>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;

// A direction in which the others hold a point by less than this share of its own observations is one in which nothing
// holds it, and often the network, if it is free.
constexpr double kNoDatum = 1e-9;
// Points within this share of the largest test value cannot be told apart.
constexpr double kAsLikely = 0.95;
// A known point and an observation of which one is up to twenty times as probable as the other, 2 ln 20, cannot be told
// apart.
constexpr double kAsProbable = 6.0;

/// What is known of a point from its own observations, its coordinates being unknowns: the gradient A'Pv of the sum of
/// squares and the normal equations, those of the other unknowns reduced.
struct PointEquations {
  Eigen::Vector2d gradient = Eigen::Vector2d::Zero();
  Eigen::Matrix2d own = Eigen::Matrix2d::Zero();
  /// Elements of N between each coordinate and the unknowns that it is observed with, as they come.
  std::vector<sparse::SparseVector> others = {{}, {}};
};

class ControlTest {
 public:
  explicit ControlTest(PlaneEngine const& planeEngine) : engine(planeEngine), net(planeEngine.network) {}

  /// Reduction of the sum of squares when the point is free, and where it moves; none where nothing else holds it.
  struct Freed {
    double reduction = 0.0;
    double north = 0.0;
    double east = 0.0;
    int directions = 0;  ///< in which the others hold the point: 2 as a rule, 0 where nothing can be said
  };

  Freed freed(int point) {
    PointEquations const equations = equationsOf(point);
    double const weight = engine.holdingWeights[index(point)];
    Eigen::Matrix2d reduced;
    double own = 0.0;
    if (weight < PlaneEngine::kFixedWeight) {
      // Q of the point is the inverse of its weight and of what the others say.
      int const at[2] = {2 * point, 2 * point + 1};
      double q[4];
      engine.normals->block(at, 2, q);
      reduced =
          (Eigen::Matrix2d() << q[0], q[1], q[2], q[3]).finished().inverse() - weight * Eigen::Matrix2d::Identity();
      for (int const unknown : at)
        own += weight * std::pow(engine.xy[index(unknown)] - engine.given[index(unknown)], 2);
    } else {
      reduced = equations.own - acrossOthers(equations);
    }
    Freed result;
    Eigen::SelfAdjointEigenSolver<Eigen::Matrix2d> const eigen(reduced);
    double const scale = equations.own.trace();
    Eigen::Vector2d moved = Eigen::Vector2d::Zero();
    for (int i = 0; i < 2; ++i) {
      if (!(eigen.eigenvalues()(i) > kNoDatum * scale)) continue;
      ++result.directions;
      Eigen::Vector2d const along = eigen.eigenvectors().col(i);
      moved -= along * along.dot(equations.gradient) / eigen.eigenvalues()(i);
    }
    if (result.directions == 0) return result;
    result.reduction = own - equations.gradient.dot(moved);
    result.north = engine.xy[2 * index(point)] + moved(0) - engine.given[2 * index(point)];
    result.east = engine.xy[2 * index(point) + 1] + moved(1) - engine.given[2 * index(point) + 1];
    return result;
  }

 private:
  bool isHeld(int unknown) const {
    return unknown < 2 * net.known && !(engine.holdingWeights[index(unknown / 2)] < PlaneEngine::kFixedWeight);
  }

  PointEquations equationsOf(int point) const {
    PointEquations equations;
    for (int const d : net.sightingsOf(point)) addDirection(d, point, equations);
    for (int const s : net.stationsAt(point)) {
      for (int d = net.firstDirection(s); d < net.endDirection(s); ++d) addDirection(d, point, equations);
    }
    for (int const l : net.linesAt(point)) {
      double a[5];
      int at[5];
      int const count = engine.solvedFactors(net.directions.size() + index(l), a, at);
      add(a, at, count, engine.lineWeights[index(l)], engine.lineResiduals[index(l)], point, equations);
    }
    return equations;
  }

  void addDirection(int d, int point, PointEquations& equations) const {
    double a[5];
    int at[5];
    int const count = engine.solvedFactors(index(d), a, at);
    add(a, at, count, engine.directionWeights[index(d)], engine.directionResiduals[index(d)], point, equations);
  }

  void add(double const* a, int const* at, int count, double weight, double residual, int point,
           PointEquations& equations) const {
    for (int r = 0; r < count; ++r) {
      int const coordinate = at[r] - 2 * point;
      if (coordinate < 0 || coordinate > 1) continue;
      equations.gradient(coordinate) += weight * a[r] * residual;
      for (int c = 0; c < count; ++c) {
        int const other = at[c] - 2 * point;
        if (other >= 0 && other <= 1) {
          equations.own(coordinate, other) += weight * a[r] * a[c];
        } else if (isHeld(2 * point) && !isHeld(at[c])) {
          equations.others[index(coordinate)].emplace_back(at[c], weight * a[r] * a[c]);
        }
      }
    }
  }

  /// What the other unknowns take of the point's own equations: N_po Q_oo N_op.
  Eigen::Matrix2d acrossOthers(PointEquations const& equations) {
    std::vector<double> const q = engine.normals->products(equations.others, work, engine.poll);
    return (Eigen::Matrix2d() << q[0], 0.5 * (q[1] + q[2]), 0.5 * (q[1] + q[2]), q[3]).finished();
  }

  PlaneEngine const& engine;
  NumberedNetwork const& net;
  std::vector<double> work;
};

}  // namespace

/// Of fixed points only where the residuals as a whole are too large: then a known point may be the reason. That its
/// coordinates are observations makes the test of a point cheap, and it has residuals of its own.
void PlaneAdjustment::Data::testControl() {
  result.control.clear();
  if (isFree() || !result.hasRedundancy) return;
  bool const isTooLarge = result.unitError > result.upperBound;
  if (isTooLarge) engine.needFactor();
  ControlTest test(engine);
  bool const isAPriori = settings.unitWeight == PlaneSettings::UnitWeight::APriori;
  double const sum = result.unitError * result.unitError * result.redundancy;
  for (int n = 0; n < engine.network.known; ++n) {
    if (engine.poll) engine.poll();
    if (isFixed(n) && !isTooLarge) continue;
    ControlTest::Freed const freed = test.freed(n);
    PlaneControl control;
    control.point = pointOfNumber[index(n)];
    control.isDetermined = freed.directions > 0;
    control.directions = freed.directions;
    control.north = freed.north;
    control.east = freed.east;
    control.reduction = freed.reduction;
    control.test = std::numeric_limits<double>::quiet_NaN();
    if (control.isDetermined) {
      // Without a redundancy that is left there is no other variance factor than the a-priori one.
      int const left = isAPriori ? 0 : std::max(0, result.redundancy - freed.directions);
      double const variance = left == 0 ? 1.0 : std::max(0.0, sum - freed.reduction) / left;
      double const critical = detail::controlCriticalValue(freed.directions, left);
      control.test = freed.reduction / freed.directions / variance / critical;
    }
    result.control.push_back(control);
  }
}

/// Whether the misfits ask for the point to be free: by its own test or, where too little redundancy is left for that,
/// by the a-priori errors, if what is left is as good as they say.
bool PlaneAdjustment::Data::isExplainedBy(PlaneControl const& control) const {
  if (control.test > 1.0) return true;
  if (!control.isDetermined) return false;
  if (!(control.reduction / control.directions > detail::controlCriticalValue(control.directions, 0))) return false;
  double const squares = result.unitError * result.unitError * result.redundancy;
  detail::GlobalTest const rest = detail::globalTest(std::max(0.0, squares - control.reduction),
                                                     result.redundancy - control.directions, settings.confidence, true);
  return !rest.hasRedundancy || rest.unitError <= rest.upper;
}

/// The known points that explain the misfits about as well as any single observation does, or better, by their
/// probabilities: one, or several that cannot be told apart.
std::vector<PlaneControl const*> PlaneAdjustment::Data::suspectedControl() {
  std::vector<PlaneControl const*> suspected;
  if (!(result.unitError > result.upperBound)) return suspected;
  // -2 ln of the probability beyond: T for two degrees of freedom, about w² + ln(π w² / 2) for one.
  auto const ofOne = [](double square) { return square + std::log(std::max(1.0, 1.5708 * square)); };
  auto const ofControl = [&ofOne](PlaneControl const& control) {
    return control.directions == 1 ? ofOne(control.reduction) : control.reduction;
  };
  double largest = 0.0;
  for (PlaneControl const& control : result.control) {
    if (isExplainedBy(control)) largest = std::max(largest, ofControl(control));
  }
  double worst = 0.0;  // square of the largest residual over its own error
  for (auto const* list : {&result.directions, &result.distances}) {
    for (PlaneObservation const& o : *list) {
      if (o.weight > 0.0 && o.redundancy >= kUncheckedRedundancy)
        worst = std::max(worst, std::pow(o.residual / o.error, 2) / o.redundancy);
    }
  }
  if (largest == 0.0 || largest < ofOne(worst) - kAsProbable) return suspected;
  result.isControlAlone = largest > ofOne(worst) + kAsProbable;
  for (PlaneControl const& control : result.control) {
    if (control.isDetermined && ofControl(control) >= kAsLikely * largest) suspected.push_back(&control);
  }
  return suspected;
}

/// A known point that is far off where it is given takes good observations with it: with so many suspects at one point
/// it is more likely wrong than they.
void PlaneAdjustment::Data::findCommonControl() {
  constexpr std::size_t kFew = 3;
  constexpr double kMost = 0.75;
  result.commonControl.clear();
  if (engine.suspectNumbers.size() < kFew || !result.suspectedControl.empty()) return;
  std::vector<std::size_t> touching(index(engine.network.known), 0);
  for (int const suspect : engine.suspectNumbers) {
    double a[5];
    int at[5];
    engine.equationFactors(index(suspect), a, at);
    for (int const point : {at[0] / 2, at[2] / 2}) {
      if (point < engine.network.known) ++touching[index(point)];
    }
  }
  QStringList names;
  for (std::size_t n = 0; n < touching.size(); ++n) {
    if (static_cast<double>(touching[n]) < kMost * static_cast<double>(engine.suspectNumbers.size())) continue;
    result.commonControl.push_back(pointOfNumber[n]);
    names << QString::fromStdString(network.points[pointOfNumber[n]].name);
  }
  if (names.isEmpty() || !engine.tell) return;
  engine.tell(Messages::tr("Most of the suspected observations are those of a known point, whose coordinates may be "
                           "wrong: %1")
                  .arg(names.join(QStringLiteral(", "))),
              Warning);
}

}  // namespace kvn
