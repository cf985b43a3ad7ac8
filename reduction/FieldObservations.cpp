// From the rounds of a field book to observations, each set-up by itself.
#include "reduction/detail/FieldRounds.h"

#include <utils/Circle.h>

#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace kvn::detail {
namespace {

using Origin = PlaneNetwork::Origin;
using Scatter = PlaneNetwork::SetUp::Scatter;

struct Turned {
  double direction;
  double readings;
};

SightedTarget const& targetOf(FieldRound const& round, std::string const& name) {
  return round.targets[static_cast<std::size_t>(round.names.find(name))];
}

Scatter scatterOf(double squares, std::size_t redundancy) {
  Scatter scatter;
  scatter.redundancy = static_cast<int>(redundancy);
  if (redundancy > 0) scatter.error = std::sqrt(squares / static_cast<double>(redundancy));
  return scatter;
}

/// Each round has a turn of its own and each target a mean, which share one. The scatter is that of a direction with
/// as many readings as they have in the mean of the set.
Scatter scatterOf(std::vector<Turned> const& turned, std::vector<CircleMean> const& means) {
  std::size_t const rounds = turned.size() / means.size();
  double sum = 0.0;
  double readings = 0.0;
  for (std::size_t i = 0; i < turned.size(); ++i) {
    double const v = utils::foldedAngle(turned[i].direction - means[i % means.size()].value());
    sum += turned[i].readings * v * v;
    readings += turned[i].readings;
  }
  return scatterOf(sum * static_cast<double>(turned.size()) / readings, (rounds - 1) * (means.size() - 1));
}

}  // namespace

StationObservations::StationObservations(std::vector<KnownPoint> const& knownPoints) {
  for (KnownPoint const& known : knownPoints) numbers.addKnown(known);
}

void StationObservations::add(FieldStation const& station) {
  Rounds occupation;
  for (FieldRound const& round : station.rounds) {
    if (!occupation.empty() && occupation.back()->occupation != round.occupation) {
      addOccupation(station, std::exchange(occupation, {}));
    }
    occupation.push_back(&round);
  }
  if (!occupation.empty()) addOccupation(station, occupation);
}

void StationObservations::addOccupation(FieldStation const& station, Rounds const& rounds) {
  // Rounds by the names of their targets, in the order of the first ones.
  std::map<std::set<std::string>, std::size_t> setOf;
  std::vector<Rounds> sets;
  for (FieldRound const* round : rounds) {
    if (round->targets.empty()) continue;
    std::set<std::string> targets(round->names.names().begin(), round->names.names().end());
    std::size_t const number = setOf.emplace(std::move(targets), sets.size()).first->second;
    if (number == sets.size()) sets.emplace_back();
    sets[number].push_back(round);
  }
  std::size_t const firstSetUp = network.setUps.size();
  for (Rounds const& set : sets) addSet(station, set);
  Scatter const distances = addDistances(station, rounds);
  if (firstSetUp < network.setUps.size()) network.setUps[firstSetUp].distances = distances;
}

/// One set-up: the rounds have the same targets.
void StationObservations::addSet(FieldStation const& station, Rounds const& rounds) {
  FieldRound const& first = *rounds.front();
  auto const setUp = static_cast<int>(network.setUps.size());
  network.setUps.push_back({numbers[station.name], Origin{0, static_cast<int>(first.occupation)}});
  std::vector<CircleMean> means(first.targets.size());
  std::vector<Turned> turned;  // of all rounds, target by target
  for (FieldRound const* round : rounds) {
    CircleMean turn;
    for (std::size_t i = 0; i < means.size(); ++i) {
      SightedTarget const& target = targetOf(*round, first.names.names()[i]);
      turn.add(first.targets[i].direction() - target.direction(),
               weightOfDifference(first.targets[i].readings(), target.readings()));
    }
    for (std::size_t i = 0; i < means.size(); ++i) {
      SightedTarget const& target = targetOf(*round, first.names.names()[i]);
      turned.push_back({target.direction() + turn.value(), target.readings()});
      means[i].add(turned.back().direction, turned.back().readings);
    }
  }
  for (std::size_t i = 0; i < means.size(); ++i) {
    int const target = numbers[first.names.names()[i]];
    Origin const origin{0, static_cast<int>(first.targets[i].firstRow)};
    network.directions.push_back({setUp, target, utils::onCircle(means[i].value()), 0.0, means[i].weight(), origin});
  }
  network.setUps.back().directions = scatterOf(turned, means);
}

Scatter StationObservations::addDistances(FieldStation const& station, Rounds const& rounds) {
  NameIndex targets;
  std::vector<PlaneNetwork::Distance> distances;
  struct Repeated {
    std::size_t target;
    double mean;
    int rounds;
  };
  std::vector<Repeated> all;
  for (FieldRound const* round : rounds) {
    for (std::size_t i = 0; i < round->distances.size(); ++i) {
      std::string const& name = round->distanceNames.names()[i];
      MeanDistance const& measured = round->distances[i];
      auto const number = static_cast<std::size_t>(targets.numberOf(name));
      if (number == distances.size()) {
        Origin const origin{0, static_cast<int>(measured.row)};
        distances.push_back({numbers[station.name], numbers[name], 0.0, 0.0, 0, origin});
      }
      all.push_back({number, measured.sum / measured.count, measured.rounds()});
      distances[number].value += all.back().mean * all.back().rounds;
      distances[number].rounds += all.back().rounds;
    }
  }
  for (PlaneNetwork::Distance& distance : distances) {
    distance.value /= distance.rounds;
    network.distances.push_back(distance);
  }
  double sum = 0.0;
  for (Repeated const& one : all) {
    double const v = one.mean - distances[one.target].value;
    sum += one.rounds * v * v;
  }
  return scatterOf(sum, all.size() - distances.size());
}

}  // namespace kvn::detail
