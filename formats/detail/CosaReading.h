// CosaReading: the observations of a network file while it is read.
#pragma once

#include "adjust/NameIndex.h"
#include "records/Network.h"

#include <utils/detail/PlaceTable.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kvn::detail {

/// A line of the file is held in few bytes, and becomes a line of the network when it is known which of them stay: most
/// targets have two, a direction and a distance, of which one remains.
class CosaReading {
 public:
  enum class Kind : std::uint8_t { None, Direction, Distance };

  struct Observation {
    std::size_t targetAt = 0;
    std::uint32_t targetSize = 0;
    int station = 0;
    int block = 0;          ///< number of the station line above it, from 0 on; -1 before the first one
    int line = 0;           ///< of the file
    double angle = 0.0;     ///< radians
    double distance = 0.0;  ///< metres
    bool hasAngle = false;
    Kind planned = Kind::None;  ///< what the line names without a value
  };

  std::vector<Observation> observations;
  NameIndex knownNames;

  /// What follows belongs to this station; without any it belongs to one without a name.
  void beginStation(std::string_view name) {
    station = stations.numberOf(name);
    ++block;
  }
  /// What is added from now on stands on this line of the file.
  void beginLine(int number) { line = number; }

  Observation& add(std::string_view target) {
    Observation& observation = observations.emplace_back();
    observation.targetAt = targets.size();
    observation.targetSize = static_cast<std::uint32_t>(target.size());
    observation.station = station;
    observation.block = block;
    observation.line = line;
    targets += target;
    return observation;
  }

  std::string const& stationOf(Observation const& observation) const {
    return stations.names()[static_cast<std::size_t>(observation.station)];
  }
  std::string_view targetOf(Observation const& observation) const {
    return std::string_view(targets).substr(observation.targetAt, observation.targetSize);
  }

  /// Keeps the first observation of each station and target, at its place in the order. It takes, in order, what the
  /// later ones have, by `take(first, later)`. Those for which `isNothing` holds do not count.
  template <typename IsNothing, typename Take>
  void join(IsNothing const& isNothing, Take const& take) {
    utils::PlaceTable places;
    std::size_t kept = 0;
    for (Observation const observation : observations) {
      if (isNothing(observation)) continue;
      std::string_view const target = targetOf(observation);
      auto const isAt = [&](std::size_t place) {
        Observation const& other = observations[place];
        return other.station == observation.station && targetOf(other) == target;
      };
      // The stations are counted, so that the multiplier keeps them apart.
      std::size_t const hash = std::hash<std::string_view>()(target) +
                               static_cast<std::size_t>(std::uint64_t{0x9E3779B97F4A7C15U} *
                                                        static_cast<std::uint64_t>(observation.station));
      std::size_t const place = places.findOrAdd(hash, kept, isAt);
      if (place == kept) {
        observations[kept++] = observation;
      } else {
        take(observations[place], observation);
      }
    }
    observations.resize(kept);
  }

  std::vector<NetworkDataInfo> lines() const {
    std::vector<NetworkDataInfo> list(observations.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
      Observation const& observation = observations[i];
      list[i].start_name = stationOf(observation);
      list[i].end_name = targetOf(observation);
      list[i].horizontal_angle = observation.angle;
      list[i].horizontalAngleFlag = observation.hasAngle;
      list[i].horizontal_distance = observation.distance;
    }
    return list;
  }

 private:
  NameIndex stations;
  int station = stations.numberOf({});
  int block = -1;
  int line = 0;
  std::string targets;
};

}  // namespace kvn::detail
