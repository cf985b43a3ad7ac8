// Error equations of a plane network.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/plane/NumberedNetwork.h"

#include <array>
#include <cstddef>
#include <vector>

namespace kvn::detail {

/// v = sum of factor times unknown + misclosure. Unknowns are x and y of each point that is not known, in metres, at
/// 2 (point - known) and one above, and after them the orientation of each station, in radians.
struct Equation {
  std::array<int, 5> unknown;
  std::array<double, 5> factor;
  int count;
  double misclosure;
  double error;  ///< a-priori standard error
};

/// Places of the points and orientations of the stations about which a network is linear.
struct NetworkState {
  std::vector<Place> places;
  std::vector<double> orientations;  ///< azimuth of each circle's zero, radians
};

int unknownsOf(NumberedNetwork const& network);
/// First unknown of a point, -1 for a known one.
int unknownOf(NumberedNetwork const& network, int point);
/// Orients every station by the angle with which most of its directions agree.
NetworkState orientedState(NumberedNetwork const& network, std::vector<Place> places, Poll const& poll = {});
/// First those of the directions, in radians, then those of the distances, in metres. An observation between points at
/// one place has an equation without unknowns.
std::vector<Equation> equationsOf(NumberedNetwork const& network, NetworkState const& state, Poll const& poll = {});
/// The upper one of two; 0 of none.
double medianOf(std::vector<double> numbers);
/// Median of the first misclosures' sizes over their a-priori errors; those that are no numbers do not count.
double medianMisfit(std::vector<Equation> const& equations, std::size_t count);
void move(NumberedNetwork const& network, NetworkState& state, std::vector<double> const& step);

}  // namespace kvn::detail
