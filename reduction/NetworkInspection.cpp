// What is doubtful in a network before it is adjusted.
#include "reduction/FieldInspection.h"

#include "adjust/NameIndex.h"
#include "adjust/input/PairKey.h"
#include "records/detail/Messages.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kvn {
namespace {

// Of two good distances one pair in 370 differs by more standard errors of their difference.
constexpr double kEndsCritical = 3.0;

// A file for a single traverse has errors of 0: any difference counts then. Square metres.
constexpr double kLeastVariance = 1e-12;

QString lengthText(double metres) { return QString::number(metres * 1000.0, 'f', 1) + " mm"; }

QString endsText(double difference) {
  return Messages::tr("the distances from both ends differ by %1").arg(lengthText(difference));
}

class NetworkInspection {
 public:
  /// @param isFree  no known point holds the network: its points have to be connected to each other.
  NetworkInspection(Network const& value, bool isFree) : network(value), hasFreeDatum(isFree) {
    for (NetworkDataInfo const& line : network.lines) {
      names.numberOf(line.start_name);
      names.numberOf(line.end_name);
    }
    isKnown.assign(static_cast<std::size_t>(names.size()), false);
    for (KnownPoint const& point : network.knownPoints) {
      int const number = names.find(point.name);
      if (number >= 0) isKnown[static_cast<std::size_t>(number)] = true;
    }
  }

  /// Behind what was found about the ends of lines.
  std::vector<FieldFinding> run(std::vector<FieldFinding> ofEnds) {
    findings = std::move(ofEnds);
    std::unordered_set<std::string> seen;
    for (KnownPoint const& point : network.knownPoints) {
      if (!seen.insert(point.name).second) {
        tell(point.name, Messages::tr("the known point stands twice"));
        findings.back().severity = FieldFinding::Error;
      }
      if (!names.contains(point.name)) tell(point.name, Messages::tr("the known point is not observed"));
    }
    lookAtConnections();
    return std::move(findings);
  }

 private:
  void tell(std::string const& target, QString const& text) {
    findings.push_back({FieldFinding::Warning, {}, {target}, text, FieldFinding::kNoRow, 0});
  }

  void lookAtConnections() {
    std::vector<std::vector<int>> neighbours(isKnown.size());
    std::vector<int> holds(isKnown.size(), 0);
    for (NetworkDataInfo const& line : network.lines) {
      auto const start = static_cast<std::size_t>(names.find(line.start_name));
      auto const end = static_cast<std::size_t>(names.find(line.end_name));
      neighbours[start].push_back(static_cast<int>(end));
      neighbours[end].push_back(static_cast<int>(start));
      int const observations = (line.horizontalAngleFlag ? 1 : 0) + (line.horizontal_distance > 0.0 ? 1 : 0);
      holds[start] += observations;
      holds[end] += observations;
    }
    std::vector<bool> const reached = hasFreeDatum ? largestPart(neighbours) : reachedFrom(isKnown, neighbours);
    QString const unreached = hasFreeDatum ? Messages::tr("nothing connects the point to most of the others")
                                           : Messages::tr("nothing connects the point to a known one");
    for (std::size_t i = 0; i < isKnown.size(); ++i) {
      if (isKnown[i] && !hasFreeDatum) continue;
      if (!reached[i]) tell(names.names()[i], unreached);
      if (reached[i] && holds[i] < 2)
        tell(names.names()[i], Messages::tr("a single observation does not fix the point"));
    }
  }

  using Neighbours = std::vector<std::vector<int>>;

  static std::vector<bool> reachedFrom(std::vector<bool> reached, Neighbours const& neighbours) {
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < reached.size(); ++i) {
      if (reached[i]) open.push_back(i);
    }
    walk(std::move(open), neighbours, reached);
    return reached;
  }

  /// @return how many points the walk adds to those that are reached.
  static std::size_t walk(std::vector<std::size_t> open, Neighbours const& neighbours, std::vector<bool>& reached) {
    std::size_t added = 0;
    while (!open.empty()) {
      std::size_t const point = open.back();
      open.pop_back();
      for (int const neighbour : neighbours[point]) {
        auto const next = static_cast<std::size_t>(neighbour);
        if (reached[next]) continue;
        reached[next] = true;
        ++added;
        open.push_back(next);
      }
    }
    return added;
  }

  /// The points of the part with most of them.
  static std::vector<bool> largestPart(Neighbours const& neighbours) {
    std::vector<bool> seen(neighbours.size(), false);
    std::size_t largest = 0;
    std::size_t member = 0;
    for (std::size_t i = 0; i < neighbours.size(); ++i) {
      if (seen[i]) continue;
      seen[i] = true;
      std::size_t const size = 1 + walk({i}, neighbours, seen);
      if (size > largest) member = i;
      largest = std::max(largest, size);
    }
    std::vector<bool> reached(neighbours.size(), false);
    if (!reached.empty()) reached[member] = true;
    return reachedFrom(std::move(reached), neighbours);
  }

  Network const& network;
  bool hasFreeDatum;
  NameIndex names;
  std::vector<bool> isKnown;
  std::vector<FieldFinding> findings;
};

/// The first distance of each way, compared by the a-priori error of one distance.
std::vector<FieldFinding> endsByOneError(Network const& network, Configure const& configure) {
  std::vector<FieldFinding> findings;
  NameIndex names;
  std::unordered_map<std::uint64_t, double> distanceOf;
  for (NetworkDataInfo const& line : network.lines) {
    if (!(line.horizontal_distance > 0.0)) continue;
    int const start = names.numberOf(line.start_name);
    int const end = names.numberOf(line.end_name);
    distanceOf.try_emplace(detail::orderedKey(start, end), line.horizontal_distance);
    auto const back = distanceOf.find(detail::orderedKey(end, start));
    if (back == distanceOf.end()) continue;
    double const error =
        double(configure.LineFixedError) / 1000.0 + double(configure.LineProportionError) * 1e-6 * back->second;
    double const difference = std::abs(line.horizontal_distance - back->second);
    if (difference <= error) continue;
    findings.push_back({FieldFinding::Warning,
                        line.start_name,
                        {line.end_name},
                        endsText(difference),
                        FieldFinding::kNoRow,
                        0,
                        0.5 * difference});
    findings.back().isOfDistance = true;
  }
  return findings;
}

/// All distances of one way, as their weighted mean.
struct Way {
  PlaneNetwork::Distance const* first = nullptr;
  double weights = 0.0;
  double weighted = 0.0;

  double mean() const { return weighted / weights; }
};

/// The means of both ways, compared by the standard error of their difference.
std::vector<FieldFinding> endsByTheirErrors(PlaneNetwork const& network, double centring) {
  std::vector<FieldFinding> findings;
  std::unordered_map<std::uint64_t, std::size_t> numberOf;
  numberOf.reserve(network.distances.size());
  std::vector<Way> ways;
  ways.reserve(network.distances.size());
  for (PlaneNetwork::Distance const& distance : network.distances) {
    std::size_t const number =
        numberOf.try_emplace(detail::orderedKey(distance.from, distance.to), ways.size()).first->second;
    if (number == ways.size()) ways.push_back({&distance});
    double const variance = distance.error * distance.error + 2.0 * centring * centring;
    double const weight = 1.0 / std::max(variance, kLeastVariance);
    ways[number].weights += weight;
    ways[number].weighted += weight * distance.value;
  }
  for (std::size_t i = 0; i < ways.size(); ++i) {
    PlaneNetwork::Distance const& first = *ways[i].first;
    auto const back = numberOf.find(detail::orderedKey(first.to, first.from));
    if (back == numberOf.end() || back->second > i) continue;
    Way const& other = ways[back->second];
    double const difference = std::abs(ways[i].mean() - other.mean());
    double const error = std::sqrt(1.0 / ways[i].weights + 1.0 / other.weights);
    if (!(difference > kEndsCritical * error)) continue;
    auto const nameOf = [&network](int point) { return network.points[static_cast<std::size_t>(point)].name; };
    std::size_t const row = first.origin.row < 0 ? FieldFinding::kNoRow : static_cast<std::size_t>(first.origin.row);
    findings.push_back({FieldFinding::Warning,
                        nameOf(first.from),
                        {nameOf(first.to)},
                        endsText(difference),
                        row,
                        first.origin.line,
                        0.5 * difference});
    findings.back().isOfDistance = true;
  }
  return findings;
}

}  // namespace

std::vector<FieldFinding> inspectNetwork(Network const& network, Configure const& configure) {
  return NetworkInspection(network, false).run(endsByOneError(network, configure));
}

std::vector<FieldFinding> inspectNetwork(Network const& network, PlaneNetwork const& observations, double centring,
                                         bool isFree) {
  return NetworkInspection(network, isFree).run(endsByTheirErrors(observations, centring));
}

}  // namespace kvn
