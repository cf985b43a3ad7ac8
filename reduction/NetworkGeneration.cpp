// The two roads from observations to the lines of a network.
#include "adjust/AlgorithmData.h"
#include "adjust/NameIndex.h"
#include "adjust/input/PairKey.h"
#include "formats/INetworkDataCollection.h"
#include "records/detail/Recorded.h"
#include "reduction/NetworkDataCollection.h"

#include <utils/Degree.h>

#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

namespace kvn {
namespace {

/// The lines of one station while its occupations are added up.
///
/// They come out by the angle that each had when it was inserted, and what is added later does not move it. A line
/// whose angle is in the list already is lost, be it that of another target.
class StationLines {
 public:
  explicit StationLines(std::size_t occupations) : share(static_cast<double>(occupations)) {}

  void add(std::string const& station, TraverseDataInfo const& target) {
    double const angle = target.reduced_horizontal_angle / share;
    double const distance = target.horizontal_distance / share;
    auto const key = detail::orderedKey(names.numberOf(station), names.numberOf(target.name));
    auto const known = sumOf.find(key);
    if (known != sumOf.end()) {
      known->second->horizontal_angle += angle;
      known->second->horizontal_distance += distance;
      return;
    }
    auto const [place, isNew] = byAngle.try_emplace(angle);
    if (!isNew) return;
    NetworkDataInfo& line = place->second;
    line.start_name = station;
    line.end_name = target.name;
    line.horizontal_angle = angle;
    line.horizontal_distance = distance;
    sumOf[key] = &line;
  }

  /// The lines with directions counted from the first one. The set keeps the order of insertion: what stands in it is
  /// changed in place, as its order would otherwise be that of the sums, and equal sums would be lost.
  std::set<NetworkDataInfo> take() const {
    std::set<NetworkDataInfo> lines;
    if (byAngle.empty()) return lines;
    for (auto const& [angle, sum] : byAngle) {
      NetworkDataInfo line = sum;
      line.horizontal_angle = angle;
      lines.insert(lines.end(), std::move(line));
    }
    double const zero = byAngle.begin()->second.horizontal_angle;
    auto sum = byAngle.begin();
    for (NetworkDataInfo const& line : lines) {
      const_cast<NetworkDataInfo&>(line).horizontal_angle = (sum++)->second.horizontal_angle - zero;
    }
    return lines;
  }

 private:
  double share;
  NameIndex names;
  std::map<double, NetworkDataInfo> byAngle;
  std::unordered_map<std::uint64_t, NetworkDataInfo*> sumOf;
};

void append(LineInfo const& observation, std::string const& station, double angle, double distance,
            std::vector<NetworkDataInfo>& lines) {
  NetworkDataInfo line;
  line.start_name = station;
  line.end_name = observation.end_name;
  line.horizontal_angle = angle;
  line.horizontal_distance = distance;
  lines.push_back(std::move(line));
}

/// A line for each direction and each distance, the distances of a station behind its directions.
void appendLines(std::vector<StationInfo> const& stations, bool inDegrees, std::vector<NetworkDataInfo>& lines) {
  for (StationInfo const& station : stations) {
    for (LineInfo const& direction : station.directions) {
      double const angle = inDegrees ? double(utils::Radian(direction.value).toDegree(0)) : direction.value;
      append(direction, station.name, angle, 0.0, lines);
    }
    for (LineInfo const& distance : station.lines) append(distance, station.name, 0.0, distance.value, lines);
  }
}

/// The first line of each station and target stays and takes from the others, in order, what it lacks; the others go.
/// Lines in between give only to the first, so that one pass does what comparing all pairs would.
void joinPairs(std::vector<NetworkDataInfo>& lines) {
  NameIndex names;
  std::unordered_map<std::uint64_t, std::size_t> placeOf;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    NetworkDataInfo& line = lines[i];
    auto const key = detail::orderedKey(names.numberOf(line.start_name), names.numberOf(line.end_name));
    auto const [entry, isNew] = placeOf.try_emplace(key, kept);
    if (isNew) {
      if (kept != i) lines[kept] = std::move(line);
      ++kept;
      continue;
    }
    NetworkDataInfo& first = lines[entry->second];
    if (first.horizontal_distance <= detail::kNotRecorded) first.horizontal_distance = line.horizontal_distance;
    if (first.horizontal_angle <= detail::kNotRecorded) first.horizontal_angle = line.horizontal_angle;
  }
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(kept), lines.end());
}

AlgorithmData dataOf(std::vector<TraverseDataInfo> const& rows) {
  AlgorithmData data;
  data.initVRDData(rows, ControlPoints::AnyNumber);
  return data;
}

KnownPoint knownPointOf(TraverseDataInfo const& row) {
  KnownPoint point;
  point.name = row.name;
  point.x = row.N;
  point.y = row.E;
  return point;
}

}  // namespace

std::set<NetworkDataInfo> INetworkDataCollection::StationListToNetwork(
    std::vector<TraverseStationInfo> const& occupations) {
  StationLines lines(occupations.size());
  for (TraverseStationInfo const& occupation : occupations) {
    if (!occupation.backSightMap.empty()) lines.add(occupation.name, occupation.backSightMap.begin()->first);
    for (auto const& entry : occupation.foreSightMap) lines.add(occupation.name, entry.first);
  }
  return lines.take();
}

std::vector<NetworkDataInfo> INetworkDataCollection::TraverseMapToNetWork(StationMap const& stations) {
  std::vector<NetworkDataInfo> lines;
  for (auto const& entry : stations) {
    std::set<NetworkDataInfo> const ofStation = StationListToNetwork(entry.second);
    lines.insert(lines.end(), ofStation.begin(), ofStation.end());
  }
  return lines;
}

Network INetworkDataCollection::TraverseDataListToNetwork(std::vector<TraverseDataInfo> const& rows) {
  Network network;
  for (TraverseDataInfo const& row : rows) {
    if (row.isKnown) network.knownPoints.push_back(knownPointOf(row));
  }
  appendLines(dataOf(rows).stations, false, network.lines);
  joinPairs(network.lines);
  return network;
}

void INetworkDataCollection::read(std::vector<TraverseDataInfo> const& rows) {
  Network network = TraverseDataListToNetwork(rows);
  networkDataList = std::move(network.lines);
  knownPointList = std::move(network.knownPoints);
}

NetworkDataCollection::NetworkDataCollection() = default;

void NetworkDataCollection::readVRD(std::vector<TraverseDataInfo> const& rows) {
  appendLines(dataOf(rows).stations, true, networkDataList);
  joinPairs(networkDataList);
}

std::vector<NetworkDataInfo>& NetworkDataCollection::getNetworkDataList() { return networkDataList; }
std::vector<NetworkDataInfo> const& NetworkDataCollection::getNetworkDataList() const { return networkDataList; }

}  // namespace kvn
