// A frame's places and orientations by least squares over all that lies in it.
#include "adjust/linalg/Index.h"
#include "adjust/plane/NetworkEquations.h"
#include "adjust/plane/SparseNormals.h"
#include "adjust/start/Frame.h"

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

constexpr int kRounds = 4;
// Moves below this share of the extent end the rounds; larger ones than that are no refinement.
constexpr double kSettled = 1e-6;
constexpr double kLargestMove = 0.2;

/// Weights that fall with the square of the residual, so that gross errors pull little.
std::vector<double> robustWeights(std::vector<Equation> const& equations) {
  double const scale = 3.0 * std::max(1.0, medianMisfit(equations, equations.size()));
  std::vector<double> weights;
  weights.reserve(equations.size());
  for (Equation const& e : equations) {
    double const relative = e.misclosure / (e.error * scale);
    weights.push_back(1.0 / (e.error * e.error * (1.0 + relative * relative)));
  }
  return weights;
}

}  // namespace

/// The part of the network that lies in the frame, its points in the order in which they were placed.
NumberedNetwork Frame::inside(std::vector<int>& stationsInside) const {
  NumberedNetwork part;
  std::unordered_map<int, int> numberOf;
  for (int const point : placed) numberOf.emplace(point, static_cast<int>(numberOf.size()));
  part.points = static_cast<int>(placed.size());
  part.known = anchors;
  part.directionError = net.directionError;
  part.distanceFixed = net.distanceFixed;
  part.distanceProportion = net.distanceProportion;
  part.directionStart.push_back(0);
  for (int const station : oriented) {
    if (!has(net.pointOf(station))) continue;
    auto const number = static_cast<int>(stationsInside.size());
    for (int d = net.firstDirection(station); d < net.endDirection(station); ++d) {
      if (!has(net.direction(d).target)) continue;
      NumberedNetwork::Direction const& seen = net.direction(d);
      part.directions.push_back({number, numberOf[seen.target], seen.value, seen.error});
    }
    if (static_cast<int>(part.directions.size()) == part.directionStart.back()) continue;
    part.stationPoint.push_back(numberOf[net.pointOf(station)]);
    part.directionStart.push_back(static_cast<int>(part.directions.size()));
    stationsInside.push_back(station);
  }
  for (int const point : placed) {
    for (int const l : net.linesAt(point)) {
      int const other = net.otherEnd(l, point);
      if (scaled && net.line(l).start == point && has(other)) {
        part.lines.push_back({numberOf[point], numberOf[other], net.line(l).value, net.line(l).error});
      }
    }
  }
  return part;
}

void Frame::refine(Poll const& poll) {
  refinedAt = placed.size();
  std::vector<int> stationsInside;
  NumberedNetwork const part = inside(stationsInside);
  if (part.known >= part.points || part.directions.empty()) return;
  NetworkState state;
  double extent = 0.0;
  for (int const point : placed) state.places.push_back(at(point));
  for (Place const place : state.places) extent = std::max(extent, std::abs(place - state.places.front()));
  for (int const station : stationsInside) state.orientations.push_back(orientation(station));
  std::vector<Equation> equations = equationsOf(part, state, poll);
  SparseNormals normals(part, poll);
  for (int round = 0; round < kRounds; ++round) {
    std::vector<double> const weights = robustWeights(equations);
    if (!normals.factor(equations, weights, 0.0, poll)) return;
    std::vector<double> const step = normals.correction(equations, weights, poll);
    double largest = 0.0;
    for (int i = 0; i < 2 * (part.points - part.known); ++i) largest = std::max(largest, std::abs(step[index(i)]));
    if (!(largest < kLargestMove * extent)) return;
    move(part, state, step);
    equations = equationsOf(part, state, poll);
    if (largest < kSettled * extent) break;
  }
  for (std::size_t i = 0; i < placed.size(); ++i) places[placed[i]] = state.places[i];
  for (std::size_t i = 0; i < stationsInside.size(); ++i) {
    circles.at(stationsInside[i]).azimuth = foldedAngle(state.orientations[i]);
  }
}

}  // namespace kvn::detail
