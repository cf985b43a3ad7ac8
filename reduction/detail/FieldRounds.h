// What a field book holds of each station: occupations, rounds, targets.
#pragma once

#include "adjust/NameIndex.h"
#include "adjust/PlaneNetwork.h"
#include "adjust/input/PointNumbers.h"
#include "records/Network.h"
#include "reduction/detail/JoinedCircle.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kvn::detail {

/// One target in one round.
struct SightedTarget {
  std::size_t firstRow = 0;
  double firstReading = 0.0;  ///< on the first face
  bool isTold = false;        ///< that its readings differ
  CircleMean faces[2];
  std::optional<std::size_t> rowOfFace[2];

  /// The faces count alike, however often each was read: collimation goes out of their mean only so.
  double direction() const {
    CircleMean both;
    for (CircleMean const& face : faces) {
      if (!face.isEmpty()) both.add(face.value());
    }
    return both.value();
  }

  /// As many readings as have a mean of this error. With n of one face and m of the other it is that of 4 n m / (n +
  /// m): the mean of the two means has a quarter of 1 / n + 1 / m of the variance of a reading.
  double readings() const {
    double const n = faces[0].weight();
    double const m = faces[1].weight();
    return faces[0].isEmpty() || faces[1].isEmpty() ? n + m : 4.0 * n * m / (n + m);
  }
};

struct MeanDistance {
  double sum = 0.0;
  double least = 0.0;
  double greatest = 0.0;
  int count = 0;
  std::size_t row = 0;     ///< of the first one
  int ofFace[2] = {0, 0};  ///< measurements
  std::size_t leastRow = 0;
  std::size_t greatestRow = 0;

  /// Both faces are one round.
  int rounds() const { return std::max(ofFace[0], ofFace[1]); }

  void add(double distance, std::size_t at) {
    if (count == 0 || distance < least) {
      least = distance;
      leastRow = at;
    }
    if (count == 0 || distance > greatest) {
      greatest = distance;
      greatestRow = at;
    }
    sum += distance;
    ++count;
  }
};

/// One round of an occupation: targets in the order of their first sight.
struct FieldRound {
  std::size_t occupation = 0;  ///< row of the station record
  bool isUnturned = false;     ///< the circle stands as in the round before
  NameIndex names;
  std::vector<SightedTarget> targets;
  NameIndex distanceNames;
  std::vector<MeanDistance> distances;  ///< horizontal, of both faces
};

/// All that was observed from one station name.
struct FieldStation {
  std::string name;
  std::size_t row = 0;
  std::deque<FieldRound> rounds;
  NameIndex targets;
  std::vector<MeanDistance> distances;  ///< by target
};

/// The observations of the stations, each set-up by itself. Rounds of one occupation with the same targets are one set
/// of directions: turned onto the first one by their mean difference, and averaged, by their readings both. A round
/// with other targets keeps its own orientation. The distances of an occupation to a target are averaged over its
/// rounds. What the rounds scatter by stands with the set-ups.
class StationObservations {
 public:
  explicit StationObservations(std::vector<KnownPoint> const& knownPoints);
  StationObservations(StationObservations const&) = delete;  // the numbers belong to the network
  StationObservations& operator=(StationObservations const&) = delete;

  void add(FieldStation const& station);
  PlaneNetwork take() { return std::move(network); }  ///< to be called last

 private:
  using Rounds = std::vector<FieldRound const*>;

  void addOccupation(FieldStation const& station, Rounds const& rounds);
  void addSet(FieldStation const& station, Rounds const& rounds);
  PlaneNetwork::SetUp::Scatter addDistances(FieldStation const& station, Rounds const& rounds);

  PlaneNetwork network;
  PointNumbers numbers{network.points};
};

}  // namespace kvn::detail
