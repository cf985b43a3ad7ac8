// JoinedCircle: directions of several positions of a circle, turned onto the first one.
#pragma once

#include <utils/Circle.h>

#include <cstddef>
#include <functional>
#include <vector>

namespace kvn::detail {

/// Mean of readings on the circle, all near the first one, by their weights.
class CircleMean {
 public:
  void add(double angle, double weight = 1.0) {
    if (isEmpty()) first = angle;
    sum += weight * utils::foldedAngle(angle - first);
    weights += weight;
  }
  bool isEmpty() const { return weights == 0.0; }
  double value() const { return first + sum / weights; }
  double weight() const { return weights; }

 private:
  double first = 0.0;
  double sum = 0.0;
  double weights = 0.0;
};

/// What a difference of two means counts in the turn of rounds, by the readings of each.
inline double weightOfDifference(double readings, double others) { return readings * others / (readings + others); }

/// What was read in one position of the circle: a round of a field book, a set-up of a network.
struct CirclePart {
  struct Direction {
    std::size_t target = 0;
    double value = 0.0;     ///< radians
    double readings = 1.0;  ///< its weight
  };
  std::vector<Direction> directions;
};

struct JoinedCircle {
  std::vector<CircleMean> means;  ///< by target, on the circle of the first part; empty where no joined part has it
  std::vector<bool> isJoined;     ///< by part; false where no common target leads to the first one
};

/// Turns each part of a station onto those before by the mean difference of their common targets, by the readings of
/// both, which are the weights in the means too. Near-linear in the number of directions.
///
/// @param tell  part and place in it of a direction that differs from the mean of those before by more than
///              `kRoundTolerance`.
JoinedCircle joinedCircle(std::vector<CirclePart> const& parts, std::size_t targets,
                          std::function<void(std::size_t part, std::size_t place)> const& tell);

/// Directions to one target that differ by more from their mean, 30", are told; radians.
constexpr double kRoundTolerance = 30.0 / 3600.0 * utils::kPi / 180.0;

}  // namespace kvn::detail
