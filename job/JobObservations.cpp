// The observations of a job as they are now: those of its file, and in the place of edited lines what these say.
#include "adjust/input/PointNumbers.h"
#include "core/AlgorithmException.h"
#include "core/Project.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"
#include "records/detail/Recorded.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kvn {
namespace {

using detail::LineMark;

/// A number that tells one list of words from another, but for a chance of one in 2^64.
class Mark {
 public:
  void add(std::string const& name) { add(std::uint64_t{std::hash<std::string>()(name)}); }
  void add(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    add(bits);
  }
  void add(std::uint64_t word) {
    // The finalizer of MurmurHash3 (Appleby 2011) on a running state.
    std::uint64_t h = state * 31U + word;
    h ^= h >> 33U;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33U;
    h *= 0xc4ceb9fe1a85ec53ULL;
    state = h ^ (h >> 33U);
  }
  std::uint64_t value() const { return state; }

 private:
  std::uint64_t state = 0;
};

template <typename... Words>
std::uint64_t markOf(Words const&... words) {
  Mark mark;
  (mark.add(words), ...);
  return mark.value();
}

/// All but the id.
LineMark markOfReadings(NetworkDataInfo const& line) {
  LineMark mark;
  mark.ends = markOf(line.start_name, line.end_name);
  mark.direction = markOf(mark.ends, line.horizontalAngleFlag ? line.horizontal_angle : -1000.0);
  mark.distance = markOf(mark.ends, line.horizontal_distance);
  return mark;
}

LineMark markOfLine(NetworkDataInfo const& line) {
  LineMark mark = markOfReadings(line);
  mark.id = markOf(line.id);
  return mark;
}

std::vector<LineMark> marksOfLines(Network const& network) {
  std::vector<LineMark> marks;
  marks.reserve(network.lines.size());
  for (NetworkDataInfo const& line : network.lines) marks.push_back(markOfLine(line));
  return marks;
}

std::uint64_t markOfKnown(Network const& network) {
  Mark mark;
  for (KnownPoint const& point : network.knownPoints) {
    mark.add(point.name);
    mark.add(point.x);
    mark.add(point.y);
  }
  return mark.value();
}

bool isSameLine(LineMark const& a, LineMark const& b) { return a.direction == b.direction && a.distance == b.distance; }

bool hasSome(PlaneNetwork const& observations) {
  return !observations.directions.empty() || !observations.distances.empty();
}

/// @throws AlgorithmException with the number of a line whose numbers are none.
void requireSoundLine(Network const& network, std::size_t i) {
  NetworkDataInfo const& line = network.lines[i];
  bool const isSound = std::isfinite(line.horizontal_angle + line.horizontal_distance) &&
                       line.horizontal_distance >= -detail::kNotRecorded;
  if (!isSound) throw AlgorithmException(static_cast<int>(i), AlgorithmException::DataError);
}

PlaneNetwork observationsOfLines(Network const& network) {
  for (std::size_t i = 0; i < network.lines.size(); ++i) requireSoundLine(network, i);
  return planeNetworkOf(network);
}

/// Puts what edited lines say in the place of the observations that they stood for.
class Editing {
 public:
  Editing(detail::OpenedFile const& file, Network const& lines, std::vector<LineMark> const& marksOfNow,
          std::vector<FieldFinding>* told)
      : opened(file), now(lines), marks(marksOfNow), findings(told) {}

  PlaneNetwork run() {
    detail::PointNumbers numbers(result.points);
    numbers.addDistinct(now.knownPoints);
    for (PlaneNetwork::Point const& point : old.points) newNumber.push_back(numbers[point.name]);
    for (LineMark const& mark : opened.lineMarks) keptOf[mark.ends];
    compareLines();
    takeKept();
    for (std::size_t i = 0; i < marks.size(); ++i) replace(i, numbers);
    return std::move(result);
  }

 private:
  struct Kept {
    bool direction = false;
    bool distance = false;
  };
  struct Replaced {
    int directions = 0;
    int distances = 0;
  };
  static constexpr std::size_t kNew = static_cast<std::size_t>(-1);

  static int& at(std::vector<int>& list, int number) { return list[static_cast<std::size_t>(number)]; }

  /// A line is known by its id. Of one with an id of its own, which a host has made anew, the ends tell.
  void compareLines() {
    std::unordered_map<std::uint64_t, std::size_t> placeOfId;
    std::unordered_map<std::uint64_t, std::size_t> placeOfEnds;
    for (std::size_t o = 0; o < opened.lineMarks.size(); ++o) {
      placeOfId.emplace(opened.lineMarks[o].id, o);
      placeOfEnds.emplace(opened.lineMarks[o].ends, o);
    }
    std::vector<bool> isTaken(opened.lineMarks.size(), false);
    original.assign(marks.size(), kNew);
    keeps.resize(marks.size());
    auto const take = [&](std::size_t i, std::unordered_map<std::uint64_t, std::size_t> const& places,
                          std::uint64_t key) {
      auto const found = places.find(key);
      if (original[i] != kNew || found == places.end() || isTaken[found->second]) return;
      isTaken[found->second] = true;
      original[i] = found->second;
      LineMark const& before = opened.lineMarks[found->second];
      keeps[i] = {before.direction == marks[i].direction, before.distance == marks[i].distance};
      if (keeps[i].direction) keptOf[before.ends].direction = true;
      if (keeps[i].distance) keptOf[before.ends].distance = true;
    };
    for (std::size_t i = 0; i < marks.size(); ++i) take(i, placeOfId, marks[i].id);
    for (std::size_t i = 0; i < marks.size(); ++i) take(i, placeOfEnds, marks[i].ends);
  }

  /// Observations that no line of the file stood for, as those that are still to be measured, are kept as well.
  void takeKept() {
    std::vector<std::uint64_t> nameMarks;
    for (PlaneNetwork::Point const& point : old.points) nameMarks.push_back(std::hash<std::string>()(point.name));
    auto const endsOf = [&nameMarks](int from, int to) {
      return markOf(nameMarks[static_cast<std::size_t>(from)], nameMarks[static_cast<std::size_t>(to)]);
    };
    for (PlaneNetwork::SetUp setUp : old.setUps) {
      setUp.station = at(newNumber, setUp.station);
      result.setUps.push_back(setUp);
    }
    directionsOf.resize(old.setUps.size(), 0);
    for (PlaneNetwork::Direction direction : old.directions) {
      ++at(directionsOf, direction.setUp);
      std::uint64_t const ends =
          endsOf(old.setUps[static_cast<std::size_t>(direction.setUp)].station, direction.target);
      firstSetUp.emplace(ends, direction.setUp);
      auto const found = keptOf.find(ends);
      if (found != keptOf.end() && !found->second.direction) {
        ++replacedOf[ends].directions;
        continue;
      }
      direction.target = at(newNumber, direction.target);
      result.directions.push_back(direction);
    }
    for (PlaneNetwork::Distance distance : old.distances) {
      std::uint64_t const ends = endsOf(distance.from, distance.to);
      auto const found = keptOf.find(ends);
      if (found != keptOf.end() && !found->second.distance) {
        ++replacedOf[ends].distances;
        continue;
      }
      distance.from = at(newNumber, distance.from);
      distance.to = at(newNumber, distance.to);
      result.distances.push_back(distance);
    }
    for (std::size_t s = 0; s < old.setUps.size(); ++s)
      setUpsAt[result.setUps[s].station].push_back(static_cast<int>(s));
  }

  /// The set-up that an edited direction was read in. Lines of a field book are on the circle of the first one.
  int setUpFor(std::size_t i, int station) {
    std::vector<int>& list = setUpsAt[station];
    if (!opened.areLinesJoined && original[i] != kNew) {
      auto const first = firstSetUp.find(opened.lineMarks[original[i]].ends);
      if (first != firstSetUp.end() && result.setUps[static_cast<std::size_t>(first->second)].station == station) {
        return first->second;
      }
    }
    auto const hasDirections = [this](int setUp) { return directionsOf[static_cast<std::size_t>(setUp)] > 0; };
    auto const read = std::find_if(list.begin(), list.end(), hasDirections);
    if (read != list.end()) return *read;
    if (list.empty()) {
      list.push_back(static_cast<int>(result.setUps.size()));
      result.setUps.push_back({station});
      directionsOf.push_back(0);
    }
    return list.front();
  }

  void replace(std::size_t i, detail::PointNumbers& numbers) {
    NetworkDataInfo const& line = now.lines[i];
    if (keeps[i].direction && keeps[i].distance) return;
    requireSoundLine(now, i);
    int const station = numbers[line.start_name];
    int const target = numbers[line.end_name];
    tellReplaced(i);
    if (!keeps[i].direction && line.horizontalAngleFlag) {
      int const setUp = setUpFor(i, station);
      result.directions.push_back({setUp, target, line.horizontal_angle});
      tellSetUp(line, station, setUp);
    }
    if (!keeps[i].distance && line.horizontal_distance > detail::kNotRecorded) {
      result.distances.push_back({station, target, line.horizontal_distance});
    }
  }

  /// Repetitions are lost with the value that stood for them.
  void tellReplaced(std::size_t i) {
    if (findings == nullptr || original[i] == kNew) return;
    auto const found = replacedOf.find(opened.lineMarks[original[i]].ends);
    if (found == replacedOf.end()) return;
    int const most = std::max(found->second.directions, found->second.distances);
    if (most < 2) return;
    FieldFinding finding;
    finding.severity = FieldFinding::Warning;
    finding.station = now.lines[i].start_name;
    finding.targets = {now.lines[i].end_name};
    finding.text = Messages::tr("the edited line counts once in the place of %1 observations that it had").arg(most);
    findings->push_back(std::move(finding));
  }

  void tellSetUp(NetworkDataInfo const& line, int station, int setUp) {
    int count = 0;
    int place = 0;
    for (int const other : setUpsAt[station]) {
      if (directionsOf[static_cast<std::size_t>(other)] == 0) continue;
      ++count;
      if (other == setUp) place = count;
    }
    if (findings == nullptr || count < 2) return;
    FieldFinding finding;
    finding.severity = FieldFinding::Warning;
    finding.station = line.start_name;
    finding.targets = {line.end_name};
    finding.text =
        Messages::tr("the edited direction counts once, in set-up %1 of %2 of its station").arg(place).arg(count);
    findings->push_back(std::move(finding));
  }

  detail::OpenedFile const& opened;
  Network const& now;
  std::vector<LineMark> const& marks;
  std::vector<FieldFinding>* findings;
  PlaneNetwork const& old = *opened.observations;
  PlaneNetwork result;
  std::vector<int> newNumber;                              // of the points of the file
  std::unordered_map<std::uint64_t, Kept> keptOf;          // by the ends of the lines that the file had
  std::unordered_map<std::uint64_t, Replaced> replacedOf;  // by the same, what edited lines stand for
  std::vector<std::size_t> original;                       // of each line of now, its place in the file, or kNew
  std::vector<Kept> keeps;                                 // of each line of now
  std::unordered_map<std::uint64_t, int> firstSetUp;       // by the ends of its directions
  std::unordered_map<int, std::vector<int>> setUpsAt;      // by station
  std::vector<int> directionsOf;                           // of each set-up, in the file
};

bool areAsRead(detail::OpenedFile const& opened, std::vector<NetworkDataInfo> const& lines) {
  std::vector<LineMark> const& marks = opened.lineMarks;
  auto const isSame = [](NetworkDataInfo const& line, LineMark const& mark) {
    return isSameLine(markOfReadings(line), mark);
  };
  return hasSome(*opened.observations) && std::equal(lines.begin(), lines.end(), marks.begin(), marks.end(), isSame);
}

/// Lines of another file that a host has put into the project have ids of their own.
bool areForeign(detail::OpenedFile const& opened, std::vector<NetworkDataInfo> const& lines) {
  if (!hasSome(*opened.observations)) return true;
  std::unordered_set<std::uint64_t> ids;
  for (LineMark const& mark : opened.lineMarks) ids.insert(mark.id);
  auto const isKnown = [&ids](NetworkDataInfo const& line) { return ids.count(markOf(line.id)) > 0; };
  return std::none_of(lines.begin(), lines.end(), isKnown);
}

}  // namespace

void detail::OpenedFile::takeReduction(FieldReduction&& made, Project& project) {
  reduction = std::move(made);
  project.setNetwork(std::move(reduction.network));
  reduction.network = Network();
  PlaneNetwork& found = reduction.observations;
  for (PlaneNetwork::SetUp& setUp : found.setUps) placeLine(setUp.origin);
  for (PlaneNetwork::Direction& direction : found.directions) placeLine(direction.origin);
  for (PlaneNetwork::Distance& distance : found.distances) placeLine(distance.origin);
  takeObservations(std::exchange(found, {}), project.getNetwork());
  areLinesJoined = true;
}

void detail::OpenedFile::placeLine(PlaneNetwork::Origin& origin) const {
  auto const row = static_cast<std::size_t>(origin.row);
  if (origin.row >= 0 && row < text.rowLines.size()) origin.line = text.rowLines[row];
}

void detail::OpenedFile::takeObservations(PlaneNetwork&& made, Network const& network) {
  observations = std::make_shared<PlaneNetwork>(std::move(made));
  lineMarks = marksOfLines(network);
  knownMark = markOfKnown(network);
  areLinesJoined = false;
}

bool detail::hasObservationsOfFile(JobState const& state) {
  std::vector<NetworkDataInfo> const& lines = state.project->getNetwork().lines;
  return areAsRead(state.opened, lines) || !areForeign(state.opened, lines);
}

std::shared_ptr<PlaneNetwork const> detail::observationsNow(JobState const& state,
                                                            std::vector<FieldFinding>* findings) {
  Network const& network = state.project->getNetwork();
  bool const isAsRead = areAsRead(state.opened, network.lines);
  if (isAsRead && markOfKnown(network) == state.opened.knownMark) return state.opened.observations;
  if (!isAsRead && areForeign(state.opened, network.lines)) {
    return std::make_shared<PlaneNetwork const>(observationsOfLines(network));
  }
  std::vector<LineMark> const marks = marksOfLines(network);
  return std::make_shared<PlaneNetwork const>(Editing(state.opened, network, marks, findings).run());
}

std::vector<FieldFinding> detail::findingsOnEdits(JobState const& state) {
  std::vector<FieldFinding> findings;
  observationsNow(state, &findings);
  return findings;
}

}  // namespace kvn
