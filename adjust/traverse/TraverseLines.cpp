#include "adjust/TraverseLines.h"

#include "adjust/NameIndex.h"
#include "adjust/input/Missing.h"
#include "adjust/input/PairKey.h"
#include "adjust/linalg/Index.h"
#include "records/detail/Recorded.h"

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kvn {
namespace {

bool hasDistance(NetworkDataInfo const& line) {
  return line.horizontal_distance > detail::kNotMeasured && line.horizontal_distance < detail::kMissingFrom;
}

/// Refused by the calculators' input, which has to see it.
bool isUnusable(NetworkDataInfo const& line) {
  return !(line.horizontal_distance >= -detail::kNotMeasured && line.horizontal_distance < detail::kMissingFrom);
}

/// Means of the distances from one point to another, one way.
class MeasuredDistances {
 public:
  explicit MeasuredDistances(std::vector<NetworkDataInfo> const& lines) {
    for (NetworkDataInfo const& line : lines) {
      int const from = names.numberOf(line.start_name);
      int const to = names.numberOf(line.end_name);
      if (!hasDistance(line)) continue;
      Sum& sum = sums[detail::orderedKey(from, to)];
      sum.total += line.horizontal_distance;
      ++sum.count;
    }
  }

  /// Mean of both ways, or the one there is; 0 without any.
  double along(NetworkDataInfo const& line) const {
    int const from = names.find(line.start_name);
    int const to = names.find(line.end_name);
    double const there = oneWay(from, to);
    double const back = oneWay(to, from);
    return there > 0.0 && back > 0.0 ? (there + back) / 2.0 : there + back;
  }

 private:
  struct Sum {
    double total = 0.0;
    int count = 0;
  };

  double oneWay(int from, int to) const {
    auto const sum = sums.find(detail::orderedKey(from, to));
    return sum == sums.end() ? 0.0 : sum->second.total / sum->second.count;
  }

  NameIndex names;
  std::unordered_map<std::uint64_t, Sum> sums;
};

/// The lines of one station.
using StationLines = std::vector<NetworkDataInfo*>;

void keepForwardDistance(StationLines const& lines, MeasuredDistances const& distances) {
  if (lines.size() < 2 || lines[0]->horizontal_angle == lines[1]->horizontal_angle) return;
  bool const isSecond = lines[0]->horizontal_angle < lines[1]->horizontal_angle;
  NetworkDataInfo* const fore = lines[isSecond ? 1 : 0];
  for (NetworkDataInfo* const line : lines) {
    if (line != fore && hasDistance(*line)) line->horizontal_distance = 0.0;
  }
  double const distance = distances.along(*fore);
  if (distance > 0.0 && !isUnusable(*fore)) fore->horizontal_distance = distance;
}

}  // namespace

Network withForwardDistances(Network const& network) {
  MeasuredDistances const distances(network.lines);
  Network result;
  result.knownPoints = network.knownPoints;
  for (NetworkDataInfo const& line : network.lines) {
    if (line.horizontalAngleFlag || isUnusable(line)) result.lines.push_back(line);
  }
  NameIndex names;
  std::vector<StationLines> stations;
  for (NetworkDataInfo& line : result.lines) {
    auto const station = detail::index(names.numberOf(line.start_name));
    if (station == stations.size()) stations.emplace_back();
    if (line.horizontalAngleFlag) stations[station].push_back(&line);
  }
  for (StationLines const& lines : stations) keepForwardDistance(lines, distances);
  return result;
}

}  // namespace kvn
