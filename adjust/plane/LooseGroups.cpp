#include "adjust/plane/LooseGroups.h"

#include "adjust/CommonFunction.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/SparseNormals.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

constexpr int kProbes = 6;
// Keeps a pivot that nothing is left of from being a division by 0.
constexpr double kRidge = 1e-13;
// What moves less than this share of the group's largest move is held.
constexpr double kMoves = 1e-6;
constexpr double kSameMotion = 1e-3;

/// Directions times their distance, so that all observations are in metres and weigh the same, whatever the a-priori
/// errors; orientations in metres at the mean distance.
std::vector<Equation> equationsInMetres(NumberedNetwork const& network, NetworkState const& state) {
  std::vector<Equation> equations = equationsOf(network, state);
  std::vector<double> lengths(network.directions.size(), 0.0);
  double sum = 0.0;
  for (std::size_t d = 0; d < lengths.size(); ++d) {
    NumberedNetwork::Direction const& sight = network.directions[d];
    lengths[d] = std::abs(state.places[index(sight.target)] - state.places[index(network.pointOf(sight.station))]);
    sum += lengths[d];
  }
  double const mean = sum > 0.0 ? sum / static_cast<double>(lengths.size()) : 1.0;
  for (std::size_t d = 0; d < lengths.size(); ++d) {
    for (int i = 0; i < equations[d].count; ++i) equations[d].factor[index(i)] *= lengths[d];
    if (equations[d].count > 0) equations[d].factor[index(equations[d].count - 1)] /= mean;
  }
  return equations;
}

/// Columns: motions at random among those that no observation feels.
Eigen::MatrixXd freeMotions(NumberedNetwork const& network, NetworkState const& state, double weakness,
                            Poll const& poll) {
  int const unknowns = unknownsOf(network);
  std::vector<Equation> const equations = equationsInMetres(network, state);
  SparseNormals normals(network, poll);
  Eigen::MatrixXd motions = Eigen::MatrixXd::Zero(unknowns, kProbes);
  if (!normals.factor(equations, std::vector<double>(equations.size(), 1.0), kRidge, poll)) return motions;
  auto const vectors = normals.freeVectors(weakness, kProbes);
  for (int probe = 0; probe < kProbes; ++probe) {
    for (int i = 0; i < unknowns; ++i) motions(i, probe) = vectors[index(probe)][index(i)];
  }
  return motions;
}

/// Joins loose points that an observation connects, or that one station sees.
class Connections {
 public:
  Connections(NumberedNetwork const& network, std::vector<bool> const& isLoose) : net(network), parent(isLoose.size()) {
    for (std::size_t i = 0; i < parent.size(); ++i) parent[i] = static_cast<int>(i);
    for (NumberedNetwork::Line const& line : net.lines) join(isLoose, line.start, line.end);
    for (int s = 0; s < net.stations(); ++s) {
      int last = net.pointOf(s);
      for (int d = net.firstDirection(s); d < net.endDirection(s); ++d) {
        int const target = net.direction(d).target;
        join(isLoose, last, target);
        if (isLoose[index(target)]) last = target;
      }
    }
  }

  int root(int point) {
    while (parent[index(point)] != point) point = parent[index(point)] = parent[index(parent[index(point)])];
    return point;
  }

 private:
  void join(std::vector<bool> const& isLoose, int a, int b) {
    if (isLoose[index(a)] && isLoose[index(b)]) parent[index(std::max(root(a), root(b)))] = std::min(root(a), root(b));
  }

  NumberedNetwork const& net;
  std::vector<int> parent;
};

double halfCircle(double azimuth) {
  double const folded = std::fmod(azimuth + 2.0 * CommonFunction::m_PI, CommonFunction::m_PI);
  return folded;
}

/// The motion of a group that has one freedom, as a similarity where it is one.
void describe(std::vector<Place> const& places, std::vector<Place> const& moves, LooseGroup& group) {
  auto const count = static_cast<double>(places.size());
  Place middle, shift;
  for (std::size_t i = 0; i < places.size(); ++i) middle += places[i] / count, shift += moves[i] / count;
  if (places.size() == 1) {
    group.motion = LooseMotion::Along;
    group.azimuth = halfCircle(std::arg(shift));
    return;
  }
  Place turn;
  double squares = 0.0;
  double size = 0.0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    turn += std::conj(places[i] - middle) * (moves[i] - shift);
    squares += std::norm(places[i] - middle);
    size = std::max(size, std::abs(moves[i]));
  }
  turn = squares > 0.0 ? turn / squares : Place();
  double worst = 0.0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    worst = std::max(worst, std::abs(moves[i] - shift - turn * (places[i] - middle)));
  }
  if (worst > kSameMotion * size) return;
  double const extent = std::sqrt(squares / count);
  if (std::abs(turn) * extent < kSameMotion * std::abs(shift)) {
    group.motion = LooseMotion::Shift;
    group.azimuth = halfCircle(std::arg(shift));
    return;
  }
  group.centre = middle - shift / turn;
  if (std::abs(turn.real()) < kSameMotion * std::abs(turn)) group.motion = LooseMotion::Turn;
  if (std::abs(turn.imag()) < kSameMotion * std::abs(turn)) group.motion = LooseMotion::Scale;
}

void describe(NumberedNetwork const& network, NetworkState const& state, Eigen::MatrixXd const& motions,
              LooseGroup& group) {
  auto const rows = static_cast<Eigen::Index>(2 * group.points.size());
  Eigen::MatrixXd own(rows, motions.cols());
  for (std::size_t i = 0; i < group.points.size(); ++i) {
    own.middleRows(static_cast<Eigen::Index>(2 * i), 2) = motions.middleRows(unknownOf(network, group.points[i]), 2);
  }
  Eigen::JacobiSVD<Eigen::MatrixXd> svd(own, Eigen::ComputeThinU);
  svd.setThreshold(1e-4);
  group.freedoms = static_cast<int>(svd.rank());
  if (group.freedoms == 2 && group.points.size() == 1) group.motion = LooseMotion::Anywhere;
  if (group.freedoms != 1) return;
  std::vector<Place> places;
  std::vector<Place> moves;
  for (std::size_t i = 0; i < group.points.size(); ++i) {
    places.push_back(state.places[index(group.points[i])]);
    auto const row = static_cast<Eigen::Index>(2 * i);
    moves.emplace_back(svd.matrixU()(row, 0), svd.matrixU()(row + 1, 0));
  }
  describe(places, moves, group);
}

}  // namespace

std::vector<LooseGroup> looseGroups(NumberedNetwork const& network, NetworkState const& state, double weakness,
                                    Poll const& poll) {
  Eigen::MatrixXd const motions = freeMotions(network, state, weakness, poll);
  std::vector<bool> isLoose(index(network.points), false);
  double const least = motions.size() > 0 ? kMoves * motions.cwiseAbs().maxCoeff() : 0.0;
  for (int p = network.known; p < network.points; ++p) {
    isLoose[index(p)] = motions.middleRows(unknownOf(network, p), 2).cwiseAbs().maxCoeff() > least;
  }
  Connections connections(network, isLoose);
  std::vector<int> groupOf(index(network.points), -1);
  std::vector<LooseGroup> groups;
  for (int p = network.known; p < network.points; ++p) {
    if (!isLoose[index(p)]) continue;
    int& group = groupOf[index(connections.root(p))];
    if (group < 0) {
      group = static_cast<int>(groups.size());
      groups.emplace_back();
    }
    groups[index(group)].points.push_back(p);
  }
  for (LooseGroup& group : groups) describe(network, state, motions, group);
  return groups;
}

}  // namespace kvn::detail
