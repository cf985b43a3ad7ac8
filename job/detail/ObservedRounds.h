// ObservedRounds: how often a job observes what the angles and legs of its traverses are the means of.
#pragma once

#include "adjust/NameIndex.h"
#include "adjust/TraverseJudgement.h"
#include "job/detail/JobState.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kvn::detail {

/// A single traverse averages the rounds of a field book and what a network file gives more than once. Lines that the
/// host has edited have each direction and distance once.
class ObservedRounds {
 public:
  explicit ObservedRounds(JobState const& state);

  /// Of the angle and the leg of a station.
  TraverseRounds at(TraverseInfo const& station) const;
  /// Rounds of the directions to two targets in which both were sighted.
  std::pair<double, double> directions(std::string const& station, std::string const& first,
                                       std::string const& second) const;
  double distancesOneWay(std::string const& from, std::string const& to) const;  ///< 0 for none

 private:
  std::uint64_t keyOf(std::string const& from, std::string const& to);
  void takeSetUps(PlaneNetwork const& network);

  NameIndex names;
  std::unordered_map<int, std::vector<std::size_t>> setUpsAt;  // by the number of the station
  std::vector<std::unordered_map<int, double>> setUps;         // rounds by the number of the target
  std::unordered_map<std::uint64_t, double> distances;
};

}  // namespace kvn::detail
