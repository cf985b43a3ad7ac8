// Of how many rounds and distances the angles and legs of a traverse are the means.
#include "adjust/input/PairKey.h"
#include "core/Project.h"
#include "job/detail/JobSteps.h"
#include "job/detail/ObservedRounds.h"
#include "records/detail/Recorded.h"

#include <cstddef>
#include <tuple>

namespace kvn::detail {

ObservedRounds::ObservedRounds(JobState const& state) {
  Project const& project = *state.project;
  if (hasObservationsOfFile(state)) {
    takeSetUps(*observationsNow(state));
    return;
  }
  for (NetworkDataInfo const& line : project.getNetwork().lines) {
    if (line.horizontal_distance > kNotMeasured) distances[keyOf(line.start_name, line.end_name)] = 1.0;
  }
}

std::uint64_t ObservedRounds::keyOf(std::string const& from, std::string const& to) {
  return orderedKey(names.numberOf(from), names.numberOf(to));
}

void ObservedRounds::takeSetUps(PlaneNetwork const& network) {
  auto const nameOf = [&network](int point) { return network.points[static_cast<std::size_t>(point)].name; };
  setUps.resize(network.setUps.size());
  for (std::size_t s = 0; s < setUps.size(); ++s) {
    setUpsAt[names.numberOf(nameOf(network.setUps[s].station))].push_back(s);
  }
  for (PlaneNetwork::Direction const& direction : network.directions) {
    // Two readings, one on each face, are a round.
    setUps[static_cast<std::size_t>(direction.setUp)][names.numberOf(nameOf(direction.target))] +=
        0.5 * direction.readings;
  }
  for (PlaneNetwork::Distance const& distance : network.distances) {
    distances[keyOf(nameOf(distance.from), nameOf(distance.to))] += distance.rounds;
  }
}

std::pair<double, double> ObservedRounds::directions(std::string const& station, std::string const& first,
                                                     std::string const& second) const {
  auto const found = setUpsAt.find(names.find(station));
  if (found == setUpsAt.end()) return {1.0, 1.0};
  double ofFirst = 0.0;
  double ofSecond = 0.0;
  for (std::size_t const s : found->second) {
    auto const one = setUps[s].find(names.find(first));
    auto const other = setUps[s].find(names.find(second));
    if (one == setUps[s].end() || other == setUps[s].end()) continue;
    ofFirst += one->second;
    ofSecond += other->second;
  }
  // Two set-ups turned onto each other by a third target: four directions make the angle.
  if (ofFirst == 0.0) return {0.5, 0.5};
  return {ofFirst, ofSecond};
}

double ObservedRounds::distancesOneWay(std::string const& from, std::string const& to) const {
  int const start = names.find(from);
  int const end = names.find(to);
  if (start < 0 || end < 0) return 0.0;
  auto const found = distances.find(orderedKey(start, end));
  return found == distances.end() ? 0.0 : found->second;
}

TraverseRounds ObservedRounds::at(TraverseInfo const& station) const {
  std::string const& name = station.stationPoint.name;
  std::string const& fore = station.forePoints.front().name;
  TraverseRounds rounds;
  std::tie(rounds.back, rounds.fore) = directions(name, station.backPoint.name, fore);
  double const there = distancesOneWay(name, fore);
  double const back = distancesOneWay(fore, name);
  // The mean of both ways has a quarter of the variances of both.
  if (there > 0.0 && back > 0.0) {
    rounds.leg = 4.0 / (1.0 / there + 1.0 / back);
  } else if (there + back > 0.0) {
    rounds.leg = there + back;
  }
  return rounds;
}

TraverseErrors traverseErrors(JobState const& state, std::vector<TraverseInfo> const& stations,
                              ObservedRounds const& observed) {
  TraverseErrors errors;
  errors.observations = observationErrors(state);
  errors.centring = state.plane.centring;
  for (TraverseInfo const& station : stations) errors.rounds.push_back(observed.at(station));
  return errors;
}

}  // namespace kvn::detail
