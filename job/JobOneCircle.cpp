// The lines of a job on one circle a station, for what knows no set-ups: single traverses and project files.
#include "adjust/NameIndex.h"
#include "adjust/input/PairKey.h"
#include "adjust/plane/Quantiles.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"
#include "records/detail/Recorded.h"
#include "reduction/detail/JoinedCircle.h"
#include "reduction/detail/RoundOrder.h"

#include <utils/Circle.h>

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kvn {
namespace {

using detail::orderedKey;
using Directions = std::vector<std::size_t>;  // places in the list of the network

/// What stands in the set-ups of a station; those without a direction do not count.
struct StationSetUps {
  std::vector<int> numbers;
  std::vector<Directions> directions;
};

/// By station, in the order of the set-ups. Directions that are still to be measured do not count.
std::vector<std::pair<int, StationSetUps>> setUpsByStation(PlaneNetwork const& network) {
  std::vector<Directions> ofSetUp(network.setUps.size());
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    if (std::isnan(network.directions[d].value)) continue;
    ofSetUp[static_cast<std::size_t>(network.directions[d].setUp)].push_back(d);
  }
  std::vector<std::pair<int, StationSetUps>> stations;
  std::unordered_map<int, std::size_t> placeOf;
  for (std::size_t s = 0; s < ofSetUp.size(); ++s) {
    if (ofSetUp[s].empty()) continue;
    int const station = network.setUps[s].station;
    std::size_t const place = placeOf.emplace(station, stations.size()).first->second;
    if (place == stations.size()) stations.push_back({station, {}});
    stations[place].second.numbers.push_back(static_cast<int>(s));
    stations[place].second.directions.push_back(std::move(ofSetUp[s]));
  }
  return stations;
}

class Joiner {
 public:
  Joiner(PlaneNetwork const& all, ObservationErrors const& given) : network(all), errors(given) {}

  detail::OneCircle run(Network lines) {
    for (auto const& [station, setUps] : setUpsByStation(network)) join(station, setUps);
    addDistances();
    NameIndex numbers;
    for (PlaneNetwork::Point const& point : network.points) numbers.numberOf(point.name);
    // A line that a host has added beside one of the same points is one with it.
    std::unordered_map<std::uint64_t, std::size_t> placeOf;
    std::vector<NetworkDataInfo> kept;
    kept.reserve(lines.lines.size());
    for (NetworkDataInfo& line : lines.lines) {
      std::uint64_t const key = orderedKey(numbers.find(line.start_name), numbers.find(line.end_name));
      auto const direction = directionOf.find(key);
      if (line.horizontalAngleFlag && direction != directionOf.end()) line.horizontal_angle = direction->second;
      auto const distance = distanceOf.find(key);
      if (distance != distanceOf.end()) line.horizontal_distance = distance->second;
      auto const [place, isNew] = placeOf.emplace(key, kept.size());
      if (isNew) {
        kept.push_back(std::move(line));
        continue;
      }
      NetworkDataInfo& first = kept[place->second];
      if (line.horizontalAngleFlag && !first.horizontalAngleFlag) {
        first.horizontalAngleFlag = true;
        first.horizontal_angle = line.horizontal_angle;
      }
      if (!(first.horizontal_distance > detail::kNotMeasured)) first.horizontal_distance = line.horizontal_distance;
    }
    lines.lines = std::move(kept);
    result.network = std::move(lines);
    return std::move(result);
  }

 private:
  std::string const& nameOf(int point) const { return network.points[static_cast<std::size_t>(point)].name; }

  void join(int station, StationSetUps const& setUps) {
    std::unordered_map<int, std::size_t> placeOf;
    std::vector<int> targets;
    std::vector<detail::CirclePart> parts(setUps.directions.size());
    std::map<std::pair<std::size_t, std::size_t>, double> firstOf;  // by part and target
    std::size_t count = 0;
    for (std::size_t p = 0; p < parts.size(); ++p) {
      for (std::size_t const d : setUps.directions[p]) {
        PlaneNetwork::Direction const& direction = network.directions[d];
        std::size_t const place = placeOf.emplace(direction.target, targets.size()).first->second;
        if (place == targets.size()) targets.push_back(direction.target);
        parts[p].directions.push_back({place, direction.value});
        ++count;
        auto const [first, isNew] = firstOf.emplace(std::make_pair(p, place), direction.value);
        if (isNew || std::abs(utils::foldedAngle(direction.value - first->second)) <= detail::kSameReading) continue;
        add(result.lost, station, {nameOf(direction.target)},
            Messages::tr("the directions to the target, read in one set-up, do not belong together"), direction.origin);
      }
    }
    if (count == targets.size() && parts.size() == 1) return;  // the lines are as they were read
    auto const tell = [&](std::size_t p, std::size_t i) {
      PlaneNetwork::Direction const& direction = network.directions[setUps.directions[p][i]];
      add(result.findings, station, {nameOf(direction.target)},
          Messages::tr("the direction differs by more than 30\" from that of the set-ups before"), direction.origin);
    };
    detail::JoinedCircle const joined = detail::joinedCircle(parts, targets.size(), tell);
    for (std::size_t t = 0; t < targets.size(); ++t) {
      if (joined.means[t].isEmpty()) continue;
      directionOf[orderedKey(station, targets[t])] = utils::onCircle(joined.means[t].value());
    }
    if (parts.size() > 1) result.stations.push_back(nameOf(station));
    for (std::size_t p = 0; p < parts.size(); ++p) {
      if (joined.isJoined[p]) continue;
      std::vector<std::string> names;
      for (std::size_t const d : setUps.directions[p]) names.push_back(nameOf(network.directions[d].target));
      add(result.lost, station, std::move(names),
          Messages::tr("the set-up has no target in common with the others of its station"),
          network.setUps[static_cast<std::size_t>(setUps.numbers[p])].origin);
    }
  }

  void add(std::vector<FieldFinding>& list, int station, std::vector<std::string> targets, QString const& text,
           PlaneNetwork::Origin const& origin) const {
    FieldFinding finding;
    finding.station = nameOf(station);
    finding.targets = std::move(targets);
    finding.text = text;
    finding.line = origin.line;
    list.push_back(std::move(finding));
  }

  /// The mean of the distances of a line that is given more than once.
  void addDistances() {
    struct Sum {
      double sum = 0.0;
      int count = 0;
      double least = 0.0;
      double greatest = 0.0;
      PlaneNetwork::Distance const* last = nullptr;
    };
    std::unordered_map<std::uint64_t, Sum> sums;
    for (PlaneNetwork::Distance const& distance : network.distances) {
      if (std::isnan(distance.value)) continue;
      Sum& sum = sums[orderedKey(distance.from, distance.to)];
      sum.least = sum.count == 0 ? distance.value : std::min(sum.least, distance.value);
      sum.greatest = std::max(sum.greatest, distance.value);
      sum.sum += distance.value;
      sum.last = &distance;
      ++sum.count;
    }
    for (auto const& [key, sum] : sums) {
      if (sum.count < 2) continue;
      double const mean = sum.sum / sum.count;
      distanceOf[key] = mean;
      double const error = errors.distanceFixed + errors.distanceProportional * mean;
      if (!(sum.greatest - sum.least > detail::rangeCriticalValue(sum.count) * error)) continue;
      add(result.findings, sum.last->from, {nameOf(sum.last->to)},
          Messages::tr("the distances given for the line differ by %1 mm, and their mean counts")
              .arg(1000.0 * (sum.greatest - sum.least), 0, 'f', 1),
          sum.last->origin);
    }
  }

  PlaneNetwork const& network;
  ObservationErrors const& errors;
  std::unordered_map<std::uint64_t, double> directionOf;  // by station and target, of stations that are joined
  std::unordered_map<std::uint64_t, double> distanceOf;   // means, of what is given more than once
  detail::OneCircle result;
};

/// The lines of rows are joined already.
detail::OneCircle circleOfRows(detail::JobState const& state, PlaneNetwork const& observations) {
  detail::OneCircle circle;
  circle.network = state.project->getNetwork();
  for (auto const& [station, setUps] : setUpsByStation(observations)) {
    if (setUps.numbers.size() < 2) continue;
    circle.stations.push_back(observations.points[static_cast<std::size_t>(station)].name);
  }
  FieldReduction const& reduction = state.opened.reduction;
  if (reduction.lostRound) circle.lost = state.opened.placed({reduction.findings[*reduction.lostRound]});
  return circle;
}

}  // namespace

detail::OneCircle detail::oneCircle(JobState const& state) {
  if (!hasObservationsOfFile(state)) return {state.project->getNetwork(), {}, {}, {}};
  std::shared_ptr<PlaneNetwork const> const observations = observationsNow(state);
  if (state.opened.areLinesJoined) return circleOfRows(state, *observations);
  ObservationErrors const errors = observationErrors(state);
  return Joiner(*observations, errors).run(state.project->getNetwork());
}

Network detail::networkOnOneCircle(JobState const& state) {
  OneCircle circle = oneCircle(state);
  requireOneCircle(state.file, circle);
  return std::move(circle.network);
}

void detail::requireOneCircle(QString const& file, OneCircle const& circle) {
  if (circle.lost.empty()) return;
  throw JobException(file, worded(circle.lost.front()), circle.lost.front().line);
}

void detail::groupByStation(Network& network) {
  NameIndex stations;
  std::vector<std::pair<int, std::size_t>> order;
  for (NetworkDataInfo const& line : network.lines) {
    order.emplace_back(stations.numberOf(line.start_name), order.size());
  }
  if (std::is_sorted(order.begin(), order.end())) return;
  std::sort(order.begin(), order.end());
  std::vector<NetworkDataInfo> lines;
  lines.reserve(order.size());
  for (auto const& [station, place] : order) lines.push_back(std::move(network.lines[place]));
  network.lines = std::move(lines);
}

QString detail::textOfRepeated(JobState const& state) {
  Project const& project = *state.project;
  bool const isOfFile = hasObservationsOfFile(state);
  // A host may have put lines of its own in the place of those of the file, or another file.
  bool const isOfItsName =
      project.getFileType() == Project::CosaFile && project.getName() == QFileInfo(state.file).completeBaseName();
  if (!project.getTraverseDataList().empty() || !(isOfFile || isOfItsName)) return {};
  std::shared_ptr<PlaneNetwork const> const ofJob = isOfFile ? observationsNow(state) : state.opened.observations;
  PlaneNetwork const& observations = *ofJob;
  QStringList lines;
  std::set<std::tuple<bool, int, int>> known;
  auto const look = [&](bool isDirection, int from, int to, PlaneNetwork::Origin const& origin) {
    if (known.emplace(isDirection, from, to).second) return;
    lines << (origin.line > 0 ? Messages::tr("line %1").arg(origin.line)
                              : Messages::tr("%1 to %2")
                                    .arg(recordText(observations.points[static_cast<std::size_t>(from)].name),
                                         recordText(observations.points[static_cast<std::size_t>(to)].name)));
  };
  for (PlaneNetwork::Direction const& direction : observations.directions) {
    look(true, observations.setUps[static_cast<std::size_t>(direction.setUp)].station, direction.target,
         direction.origin);
  }
  for (PlaneNetwork::Distance const& distance : observations.distances) {
    look(false, distance.from, distance.to, distance.origin);
  }
  if (lines.isEmpty()) return {};
  QString const text =
      isOfFile
          ? Messages::tr(
                "%1 of %2 observations are given more than once from a station and count once, by their mean: %3")
          : Messages::tr("%1 of %2 observations are given more than once from a station; the first ones count: %3");
  return text.arg(lines.size())
      .arg(observations.directions.size() + observations.distances.size())
      .arg(listedNames(lines));
}

}  // namespace kvn
