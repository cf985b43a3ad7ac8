// The calculator to the letter against plain loops: a dense matrix, names compared one by one, the same start.
#include "adjust/TraverseAdjust.h"

#include "Networks.h"

#include <gtest/gtest.h>
#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace kvn;
using test::kSecondsPerRadian;

constexpr double kDirectionError = 2.0;  // seconds
constexpr double kFixed = 0.003;
constexpr double kProportion = 3e-6;

/// The normal equations of the error equations v = A x + l, one observation after the other.
class LiteralLoops {
 public:
  LiteralLoops(AlgorithmData const& input, std::vector<PointInfo> start) : data(input), points(std::move(start)) {
    for (StationInfo const& station : data.stations) {
      for (LineInfo const& line : station.lines) takeDistance(line);
    }
    unknowns = 2 * static_cast<int>(points.size()) + static_cast<int>(data.stations.size());
  }

  void run() {
    for (double largest = 1.0; largest > 0.01;) {
      build();
      for (PointInfo const& known : data.knPoints) {
        Eigen::Index const n = numberOf(known.name);
        if (n >= 0) normals(2 * n, 2 * n) += 1e20;
        if (n >= 0) normals(2 * n + 1, 2 * n + 1) += 1e20;
      }
      inverse = normals.inverse();
      corrections = -inverse * right;
      largest = 0.0;
      for (std::size_t i = 0; i < points.size(); ++i) {
        auto const row = static_cast<Eigen::Index>(2 * i);
        points[i].x += corrections(row);
        points[i].y += corrections(row + 1);
        largest = std::max({largest, std::abs(corrections(row)), std::abs(corrections(row + 1))});
      }
    }
    unitError = std::sqrt(squares() / redundancy());
  }

  int redundancy() const {
    int known = 0;
    for (PointInfo const& point : data.knPoints) known += numberOf(point.name) >= 0 ? 1 : 0;
    return static_cast<int>(directions.size() + distances.size()) - (unknowns - 2 * known);
  }

  std::vector<PointInfo> const& adjustedPoints() const { return points; }
  double errorOfX(std::size_t i) const {
    auto const row = static_cast<Eigen::Index>(2 * i);
    return unitError * std::sqrt(inverse(row, row));
  }
  double unitError = 0.0;

 private:
  struct Direction {
    std::size_t station;
    int from, to;
    double l;  // at the coordinates before the last round, seconds
  };

  int numberOf(std::string const& name) const {
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (points[i].name == name) return static_cast<int>(i);
    }
    return -1;
  }

  bool isKnown(std::string const& name) const {
    return std::any_of(data.knPoints.begin(), data.knPoints.end(), [&](auto const& p) { return p.name == name; });
  }

  /// The distances of a line, from either end, are one: their mean. Between known points there are none.
  void takeDistance(LineInfo const& line) {
    if (isKnown(line.start_name) && isKnown(line.end_name)) return;
    for (LineInfo& other : distances) {
      bool const isSame = other.start_name == line.start_name && other.end_name == line.end_name;
      bool const isBack = other.start_name == line.end_name && other.end_name == line.start_name;
      if (!isSame && !isBack) continue;
      other.value = (other.value * other.count + line.value) / (other.count + 1);
      ++other.count;
      return;
    }
    distances.push_back(line);
  }

  void add(Eigen::VectorXd const& row, double weight, double l) {
    normals += weight * row * row.transpose();
    right += weight * l * row;
  }

  void build() {
    normals = Eigen::MatrixXd::Zero(unknowns, unknowns);
    right = Eigen::VectorXd::Zero(unknowns);
    directions.clear();
    for (std::size_t s = 0; s < data.stations.size(); ++s) addStation(s);
    for (LineInfo const& line : distances) {
      int const i = numberOf(line.start_name);
      int const j = numberOf(line.end_name);
      double const dx = points[std::size_t(j)].x - points[std::size_t(i)].x;
      double const dy = points[std::size_t(j)].y - points[std::size_t(i)].y;
      double const distance = std::hypot(dx, dy);
      double const error = kFixed + kProportion * line.value;
      add(rowOf(i, j, -dx / distance, -dy / distance), 1.0 / (error * error), distance - line.value);
    }
  }

  void addStation(std::size_t s) {
    StationInfo const& station = data.stations[s];
    int const i = numberOf(station.name);
    double orientation = 0.0;
    for (LineInfo const& direction : station.directions) {
      int const j = numberOf(direction.end_name);
      double const dx = points[std::size_t(j)].x - points[std::size_t(i)].x;
      double const dy = points[std::size_t(j)].y - points[std::size_t(i)].y;
      double const zero = std::atan2(dy, dx) - direction.value;
      if (&direction == station.directions.data()) orientation = zero;
      double const l = std::remainder(zero - orientation, 2.0 * std::acos(-1.0)) * kSecondsPerRadian;
      directions.push_back({s, i, j, l});
      add(rowOf(directions.back()), 1.0 / (kDirectionError * kDirectionError), l);
    }
  }

  Eigen::VectorXd rowOf(Direction const& direction) const {
    double const dx = points[std::size_t(direction.to)].x - points[std::size_t(direction.from)].x;
    double const dy = points[std::size_t(direction.to)].y - points[std::size_t(direction.from)].y;
    double const factor = kSecondsPerRadian / (dx * dx + dy * dy);
    Eigen::VectorXd row = rowOf(direction.from, direction.to, dy * factor, -dx * factor);
    row(static_cast<Eigen::Index>(2 * points.size() + direction.station)) = -1.0;
    return row;
  }

  /// The derivatives by the place of the first point; those of the second are the same with the other sign.
  Eigen::VectorXd rowOf(Eigen::Index i, Eigen::Index j, double byX, double byY) const {
    Eigen::VectorXd row = Eigen::VectorXd::Zero(unknowns);
    row(2 * i) = byX;
    row(2 * i + 1) = byY;
    row(2 * j) = -byX;
    row(2 * j + 1) = -byY;
    return row;
  }

  /// Directions by what the last round leaves, with the derivatives at the adjusted coordinates; distances by these.
  double squares() const {
    double sum = 0.0;
    for (Direction const& direction : directions) {
      double const v = rowOf(direction).dot(corrections) + direction.l;
      sum += v * v / (kDirectionError * kDirectionError);
    }
    for (LineInfo const& line : distances) {
      PointInfo const& from = points[std::size_t(numberOf(line.start_name))];
      PointInfo const& to = points[std::size_t(numberOf(line.end_name))];
      double const v = std::hypot(to.x - from.x, to.y - from.y) - line.value;
      double const error = kFixed + kProportion * line.value;
      sum += v * v / (error * error);
    }
    return sum;
  }

  AlgorithmData const& data;
  std::vector<PointInfo> points;
  std::vector<LineInfo> distances;
  std::vector<Direction> directions;
  int unknowns = 0;
  Eigen::MatrixXd normals;
  Eigen::MatrixXd inverse;
  Eigen::VectorXd right;
  Eigen::VectorXd corrections;
};

// The inverse of normal equations that hold known points by 1e20 loses digits against the others: 8e-12 m and 1e-8
// relative are the largest differences seen.
constexpr double kSameMetres = 1e-9;
constexpr double kSameRatio = 1e-6;

void expectSameAsLoops(test::SyntheticNetwork const& made, int sparseFrom) {
  AlgorithmData const data = test::loaded(made.network);
  TraverseAdjust adjustment(kDirectionError, kFixed, kProportion, true);
  adjustment.setSparseFrom(sparseFrom);
  adjustment.Adjust(data);
  LiteralLoops loops(data, adjustment.getPointX0Y0());
  loops.run();
  std::vector<PointErrorInfo> const points = adjustment.getPointErrorInfo();
  ASSERT_EQ(points.size(), loops.adjustedPoints().size());
  EXPECT_EQ(adjustment.getSummary().redundancy, loops.redundancy());
  EXPECT_NEAR(adjustment.getSummary().unitError / loops.unitError, 1.0, kSameRatio);
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_NEAR(points[i].x, loops.adjustedPoints()[i].x, kSameMetres) << points[i].name;
    EXPECT_NEAR(points[i].y, loops.adjustedPoints()[i].y, kSameMetres) << points[i].name;
    if (loops.errorOfX(i) < 1e-8) continue;  // held
    EXPECT_NEAR(points[i].mx / loops.errorOfX(i), 1.0, kSameRatio) << points[i].name;
  }
}

TEST(LiteralLoops, AreWhatTheCalculatorGivesFullAndSparse) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    std::mt19937 random(seed);
    test::NetworkPlan plan;
    plan.points = 5 + static_cast<int>(seed) % 8;
    plan.sights = 4 + static_cast<int>(seed) % 3;
    plan.known = 2 + static_cast<int>(seed) % 2;
    plan.distances = seed % 3 == 0 ? 0.6 : 1.0;
    plan.bothEnds = seed % 2 == 0;
    plan.directionNoise = kDirectionError;
    plan.distanceFixed = kFixed;
    plan.distanceProportion = kProportion;
    test::SyntheticNetwork const made =
        seed % 4 == 0 ? test::makeGrid(3 + static_cast<int>(seed) % 3, plan, random) : test::makeNetwork(plan, random);
    for (int const sparseFrom : {1, 1000}) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", sparse from " + std::to_string(sparseFrom));
      expectSameAsLoops(made, sparseFrom);
    }
  }
}

}  // namespace
