#include "adjust/plane/NetworkEquations.h"

#include "adjust/linalg/Index.h"
#include "adjust/plane/CommonAngle.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn::detail {
namespace {

void add(Equation& equation, int unknown, double factor) {
  equation.unknown[index(equation.count)] = unknown;
  equation.factor[index(equation.count)] = factor;
  ++equation.count;
}

void addPoint(NumberedNetwork const& network, int point, Place factor, Equation& equation) {
  int const first = unknownOf(network, point);
  if (first < 0) return;
  add(equation, first, factor.real());
  add(equation, first + 1, factor.imag());
}

Equation directionEquation(NumberedNetwork const& network, NetworkState const& state,
                           NumberedNetwork::Direction const& d) {
  Equation equation{{}, {}, 0, 0.0, d.error};
  int const from = network.pointOf(d.station);
  Place const sight = state.places[index(d.target)] - state.places[index(from)];
  if (sight == Place()) return equation;
  Place const across = sight * Place(0.0, 1.0) / std::norm(sight);
  addPoint(network, d.target, across, equation);
  addPoint(network, from, -across, equation);
  add(equation, 2 * (network.points - network.known) + d.station, -1.0);
  equation.misclosure = foldedAngle(std::arg(sight) - state.orientations[index(d.station)] - d.value);
  return equation;
}

Equation lineEquation(NumberedNetwork const& network, NetworkState const& state, NumberedNetwork::Line const& line) {
  Equation equation{{}, {}, 0, 0.0, line.error};
  Place const between = state.places[index(line.end)] - state.places[index(line.start)];
  double const length = std::abs(between);
  if (length == 0.0) return equation;
  addPoint(network, line.end, between / length, equation);
  addPoint(network, line.start, -between / length, equation);
  equation.misclosure = length - line.value;
  return equation;
}

}  // namespace

int unknownsOf(NumberedNetwork const& network) { return 2 * (network.points - network.known) + network.stations(); }

int unknownOf(NumberedNetwork const& network, int point) {
  return point < network.known ? -1 : 2 * (point - network.known);
}

NetworkState orientedState(NumberedNetwork const& network, std::vector<Place> places, Poll const& poll) {
  Effort effort(poll);
  NetworkState state{std::move(places), std::vector<double>(index(network.stations()), 0.0)};
  std::vector<SeenAngle> seen;
  for (int s = 0; s < network.stations(); ++s) {
    seen.clear();
    for (int d = network.firstDirection(s); d < network.endDirection(s); ++d) {
      effort.step();
      Place const sight = state.places[index(network.direction(d).target)] - state.places[index(network.pointOf(s))];
      if (sight != Place()) seen.push_back({std::arg(sight) - network.direction(d).value, std::abs(sight)});
    }
    state.orientations[index(s)] = commonAngle(seen);
  }
  return state;
}

std::vector<Equation> equationsOf(NumberedNetwork const& network, NetworkState const& state, Poll const& poll) {
  Effort effort(poll);
  std::vector<Equation> equations;
  equations.reserve(network.directions.size() + network.lines.size());
  for (NumberedNetwork::Direction const& d : network.directions) {
    effort.step();
    equations.push_back(directionEquation(network, state, d));
  }
  for (NumberedNetwork::Line const& line : network.lines) {
    effort.step();
    equations.push_back(lineEquation(network, state, line));
  }
  return equations;
}

double medianOf(std::vector<double> numbers) {
  if (numbers.empty()) return 0.0;
  auto const middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  return *middle;
}

double medianMisfit(std::vector<Equation> const& equations, std::size_t count) {
  std::vector<double> sizes;
  sizes.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    double const size = std::abs(equations[i].misclosure) / equations[i].error;
    if (std::isfinite(size)) sizes.push_back(size);
  }
  return medianOf(std::move(sizes));
}

void move(NumberedNetwork const& network, NetworkState& state, std::vector<double> const& step) {
  int const moving = network.points - network.known;
  for (int i = 0; i < moving; ++i) {
    state.places[index(network.known + i)] += Place(step[index(2 * i)], step[index(2 * i + 1)]);
  }
  for (int s = 0; s < network.stations(); ++s) state.orientations[index(s)] += step[index(2 * moving + s)];
}

}  // namespace kvn::detail
