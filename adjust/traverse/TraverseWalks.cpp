#include "adjust/traverse/TraverseWalks.h"

#include "adjust/NameIndex.h"
#include "adjust/input/PairKey.h"
#include "adjust/linalg/Index.h"
#include "adjust/traverse/Azimuth.h"
#include "adjust/traverse/TraverseStations.h"
#include "core/AlgorithmException.h"
#include "records/detail/Recorded.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kvn::detail {
namespace {

enum Method { Any, Open, Connect, Closed };
constexpr int kNobody = -1;

struct Sight {
  int target = 0;
  double reading = 0.0;
};

/// Points by number, the sights of the stations and the distances.
class SightGraph {
 public:
  explicit SightGraph(Network const& network) {
    for (KnownPoint const& point : network.knownPoints) {
      addPoint(point.name);
      known.resize(points.size(), nullptr);
      known.back() = &point;
    }
    for (NetworkDataInfo const& line : network.lines) {
      int const from = addPoint(line.start_name);
      int const to = addPoint(line.end_name);
      if (line.horizontalAngleFlag) {
        if (sights[index(from)].empty()) stations.push_back(from);
        sights[index(from)].push_back({to, line.horizontal_angle});
        readings.emplace(orderedKey(from, to), line.horizontal_angle);
      }
      if (line.horizontal_distance > kNotMeasured) distances[orderedKey(from, to)].push_back(line.horizontal_distance);
    }
    known.resize(points.size(), nullptr);
    findBlindEnds();
  }

  bool isKnown(int p) const { return known[index(p)] != nullptr; }
  bool isStation(int p) const { return !sights[index(p)].empty(); }
  bool sees(int from, int to) const { return readings.count(orderedKey(from, to)) != 0; }
  double reading(int from, int to) const { return readings.at(orderedKey(from, to)); }
  bool isBlind(int p) const { return blind[index(p)]; }
  std::vector<Sight> const& sightsOf(int p) const { return sights[index(p)]; }
  std::vector<int> const& allStations() const { return stations; }

  double angle(int at, int from, int to) const {
    double const turn = std::fmod(reading(at, to) - reading(at, from), utils::kFullCircle);
    return turn < 0.0 ? turn + utils::kFullCircle : turn;
  }
  double oneWay(int from, int to) const {
    auto const found = distances.find(orderedKey(from, to));
    if (found == distances.end()) return 0.0;
    double sum = 0.0;
    for (double const distance : found->second) sum += distance;
    return sum / static_cast<double>(found->second.size());
  }
  double distance(int from, int to) const {
    double const there = oneWay(from, to);
    double const back = oneWay(to, from);
    return there > 0.0 && back > 0.0 ? (there + back) / 2.0 : there + back;
  }
  PointInfo point(int p) const {
    PointInfo result;
    result.name = points[index(p)];
    if (!isKnown(p)) return result;
    result.x = known[index(p)]->x;
    result.y = known[index(p)]->y;
    return result;
  }

  /// Stations at the other ends of legs.
  std::vector<int> neighbours(int p) const {
    std::vector<int> list;
    for (Sight const& sight : sights[index(p)]) {
      if (isStation(sight.target) && sees(sight.target, p)) list.push_back(sight.target);
    }
    return list;
  }

 private:
  int addPoint(std::string const& name) {
    int const number = names.numberOf(name);
    if (index(number) == points.size()) {
      points.push_back(name);
      sights.emplace_back();
    }
    return number;
  }

  /// Takes unknown stations off that have one leg left, as long as there are some.
  void findBlindEnds() {
    blind.assign(points.size(), false);
    std::vector<std::size_t> left(points.size(), 0);
    std::vector<int> ends;
    for (int const station : stations) {
      left[index(station)] = neighbours(station).size();
      if (!isKnown(station) && left[index(station)] <= 1) ends.push_back(station);
    }
    while (!ends.empty()) {
      int const end = ends.back();
      ends.pop_back();
      if (std::exchange(blind[index(end)], true)) continue;
      for (int const next : neighbours(end)) {
        if (--left[index(next)] == 1 && !isKnown(next)) ends.push_back(next);
      }
    }
  }

  NameIndex names;
  std::vector<std::string> points;
  std::vector<KnownPoint const*> known;
  std::vector<std::vector<Sight>> sights;
  std::vector<int> stations;
  std::vector<char> blind;
  std::unordered_map<std::uint64_t, double> readings;
  std::unordered_map<std::uint64_t, std::vector<double>> distances;
};

/// Goes along the legs of one network.
class Walker {
 public:
  Walker(Network const& network, int kind) : graph(network), method(kind) {}

  std::vector<TraverseWalk> found() {
    for (bool const isOpen : {false, true}) {
      // An open one that ends on a known station without a mark does not end blindly.
      if (isOpen && method != Any && method != Open) continue;
      // As long as it is free, a walk goes the way in which the circle reads less on the back point.
      for (bool const isByReading : {true, false}) {
        for (int const start : graph.allStations()) {
          if (graph.isKnown(start)) beginAt(start, isOpen, isByReading);
        }
      }
    }
    if (method == Any || method == Open) addPolarStations();
    for (TraverseWalk& walk : walks) addSideSights(walk);
    return std::move(walks);
  }

 private:
  void beginAt(int start, bool isOpen, bool isByReading) {
    for (int const next : graph.neighbours(start)) {
      if (graph.isKnown(next) || used.count(orderedKey(start, next)) != 0) continue;
      int const back = mark(start);
      if (back == kNobody || (isByReading && graph.reading(start, back) > graph.reading(start, next))) continue;
      if (graph.isBlind(next) == isOpen) follow(start, next, isOpen);
    }
  }

  /// The known point that gives a station its orientation: the first that is not the other end of its chain.
  int mark(int station, int otherEnd = kNobody) const {
    int last = kNobody;
    for (Sight const& sight : graph.sightsOf(station)) {
      if (!graph.isKnown(sight.target)) continue;
      if (sight.target != otherEnd) return sight.target;
      last = otherEnd;
    }
    return last;
  }

  void follow(int start, int first, bool isOpen) {
    std::vector<int> chain{start, first};
    std::unordered_set<int> inChain{start, first};
    while (!graph.isKnown(chain.back())) {
      int const next = nextOf(chain, isOpen);
      if (next == kNobody) break;
      chain.push_back(next);
      // Without another known point the way may run in a circle.
      if (!inChain.insert(next).second) break;
    }
    int const end = chain.back();
    if (isOpen) {
      if (!graph.isKnown(end)) addOpen(chain);
    } else if (end == start && chain.size() > 3) {
      if (method == Any || method == Closed) addLoop(chain);
    } else if (graph.isKnown(end) && end != start) {
      addBetweenKnown(chain);
    }
  }

  int nextOf(std::vector<int> const& chain, bool isOpen) const {
    int const at = chain.back();
    std::vector<int> ways;
    for (int const next : graph.neighbours(at)) {
      if (next != chain[chain.size() - 2] && (isOpen || !graph.isBlind(next))) ways.push_back(next);
    }
    if (ways.empty()) return kNobody;
    // What the network beside open ones is, is another question.
    if (ways.size() > 1 && method == Open && !isOpen) return kNobody;
    if (ways.size() > 1) throw AlgorithmException(AlgorithmException::DataError, graph.point(at).name);
    return ways.front();
  }

  void use(std::vector<int> const& chain) {
    used.insert(orderedKey(chain[0], chain[1]));
    used.insert(orderedKey(chain.back(), chain[chain.size() - 2]));
    occupied.insert(chain.begin(), chain.end());
  }

  void addBetweenKnown(std::vector<int> const& chain) {
    int const start = chain.front();
    int const end = chain.back();
    bool const isPolygon = graph.sees(start, end) && graph.sees(end, start);
    if (method == Closed) {
      if (isPolygon) addClosing(chain, Closed, end, start);
      return;
    }
    int const back = mark(start, end);
    int const fore = mark(end, start);
    if (fore == kNobody) {
      if (method != Connect) addToKnownStation(chain);
    } else if (fore != start) {
      if (method != Open) addClosing(chain, Connect, back, fore);
    } else if (back == end && isPolygon) {
      if (method == Any) addClosing(chain, Closed, back, fore);
    }
    // What has its own start for the mark of its end is walked from there.
  }

  void addClosing(std::vector<int> const& chain, Method kind, int back, int fore) {
    use(chain);
    TraverseWalk walk;
    walk.method = kind;
    addStations(walk, chain, back, fore);
    addMarkDistance(walk, 0, back);
    addMarkDistance(walk, chain.size() - 1, fore);
    walks.push_back(std::move(walk));
  }

  void addToKnownStation(std::vector<int> chain) {
    use(chain);
    TraverseWalk walk;
    walk.method = Open;
    walk.isEndStation = true;
    int const end = chain.back();
    chain.pop_back();
    int const back = mark(chain[0], end);
    addStations(walk, chain, back, end);
    addMarkDistance(walk, 0, back);
    walks.push_back(std::move(walk));
  }

  void addStations(TraverseWalk& walk, std::vector<int> const& chain, int back, int fore) const {
    for (std::size_t i = 0; i < chain.size(); ++i) {
      add(walk, chain[i], i == 0 ? back : chain[i - 1], i + 1 < chain.size() ? chain[i + 1] : fore);
    }
  }

  void addMarkDistance(TraverseWalk& walk, std::size_t station, int target) const {
    int const at = walk.stations[station].stationPoint.number;
    double const distance = graph.oneWay(at, target);
    if (distance > 0.0) walk.markDistances.push_back({station, graph.point(target).name, 0.0, distance});
  }

  void addLoop(std::vector<int> const& chain) {
    use(chain);
    TraverseWalk walk;
    walk.method = Closed;
    walk.closing = TraverseClosing::OnItself;
    int const start = chain.front();
    // The back sight of a loop is a mark outside of it.
    int const back = mark(start);
    add(walk, start, back, chain[1]);
    for (std::size_t i = 1; i + 1 < chain.size(); ++i) add(walk, chain[i], chain[i - 1], chain[i + 1]);
    add(walk, start, chain[chain.size() - 2], chain[1]);
    addMarkDistance(walk, 0, back);
    walks.push_back(std::move(walk));
  }

  void addOpen(std::vector<int> chain) {
    use(chain);
    TraverseWalk walk;
    walk.method = Open;
    int fore = lastForePoint(chain.back(), chain[chain.size() - 2]);
    if (fore == kNobody) {
      fore = chain.back();
      chain.pop_back();
    }
    int const back = mark(chain[0]);
    addStations(walk, chain, back, fore);
    addMarkDistance(walk, 0, back);
    walks.push_back(std::move(walk));
  }

  /// A known point first: it checks.
  int lastForePoint(int station, int back) const {
    int unknown = kNobody;
    for (Sight const& sight : graph.sightsOf(station)) {
      if (sight.target == back || graph.oneWay(station, sight.target) <= 0.0) continue;
      if (graph.isKnown(sight.target)) return sight.target;
      if (unknown == kNobody) unknown = sight.target;
    }
    return unknown;
  }

  /// Known stations that only shoot points around them.
  void addPolarStations() {
    for (int const station : graph.allStations()) {
      if (!graph.isKnown(station) || occupied.count(station) != 0) continue;
      int const back = mark(station);
      if (back == kNobody) continue;
      for (Sight const& sight : graph.sightsOf(station)) {
        if (graph.isKnown(sight.target) || graph.oneWay(station, sight.target) <= 0.0) continue;
        TraverseWalk walk;
        walk.method = Open;
        add(walk, station, back, sight.target);
        addMarkDistance(walk, 0, back);
        walks.push_back(std::move(walk));
        break;
      }
    }
  }

  void add(TraverseWalk& walk, int at, int back, int fore) const {
    TraverseInfo station;
    station.stationPoint = graph.point(at);
    station.backPoint = graph.point(back);
    station.forePoints = {graph.point(fore)};
    station.stationPoint.number = at;
    station.backPoint.number = back;
    station.forePoints.front().number = fore;
    station.angle = graph.angle(at, back, fore);
    station.distance = graph.distance(at, fore);
    // A mark may lie behind the first point of a loop.
    walk.stations.push_back(std::move(station));
  }

  /// What is no leg and no back sight, once for each station.
  void addSideSights(TraverseWalk& walk) {
    for (std::size_t i = 0; i < walk.stations.size(); ++i) {
      addSideSightsAt(walk, i, walk.stations[i].stationPoint.number, walk.stations[i].backPoint.number,
                      walk.stations[i].forePoints.front().number);
    }
    if (!walk.isEndStation) return;
    TraverseInfo const& last = walk.stations.back();
    addSideSightsAt(walk, walk.stations.size(), last.forePoints.front().number, last.stationPoint.number, kNobody);
  }

  void addSideSightsAt(TraverseWalk& walk, std::size_t place, int at, int back, int fore) {
    if (!shot.insert(at).second) return;
    for (Sight const& sight : graph.sightsOf(at)) {
      if (sight.target == back || sight.target == fore) continue;
      if (used.count(orderedKey(at, sight.target)) != 0) continue;
      walk.sideSights.push_back(
          {place, graph.point(sight.target).name, graph.angle(at, back, sight.target), graph.oneWay(at, sight.target)});
    }
  }

  SightGraph graph;
  int method;
  std::vector<TraverseWalk> walks;
  std::unordered_set<std::uint64_t> used;  // first and last legs, from their known ends
  std::unordered_set<int> occupied;
  std::unordered_set<int> shot;
};

}  // namespace

std::vector<TraverseWalk> traverseWalks(Network const& network, int method) { return Walker(network, method).found(); }

TraverseResult adjustedLoop(TraverseWalk const& walk) {
  TraverseResult result;
  result.method = walk.method;
  result.closing = TraverseClosing::OnItself;
  result.stations = walk.stations;
  std::vector<TraverseInfo>& list = result.stations;
  TraverseSummary& summary = result.summary;
  summary.hasMisclosure = true;
  std::size_t const legs = list.size() - 1;
  double turn = 0.0;
  for (std::size_t i = 1; i < list.size(); ++i) turn += list[i].angle - utils::kPi;
  double const misclosure = std::remainder(turn, utils::kFullCircle);
  summary.angleCorrection = -misclosure / static_cast<double>(legs);
  PointInfo const start = list.front().stationPoint;
  PointInfo const& mark = list.front().backPoint;
  summary.azimuths = {azimuthOf(start.x - mark.x, start.y - mark.y)};
  for (std::size_t i = 0; i < list.size(); ++i) {
    list[i].adjustedAngle = list[i].angle + (i > 0 ? summary.angleCorrection : 0.0);
    summary.azimuths.push_back(ontoCircle(summary.azimuths.back() + list[i].adjustedAngle - utils::kPi));
    if (i == legs) break;
    list[i].deltaX = list[i].distance * std::cos(summary.azimuths.back());
    list[i].deltaY = list[i].distance * std::sin(summary.azimuths.back());
    summary.sumDistance += list[i].distance;
    summary.fx += list[i].deltaX;
    summary.fy += list[i].deltaY;
  }
  summary.fs = std::hypot(summary.fx, summary.fy);
  summary.relativeError = summary.sumDistance > 0.0 ? summary.fs / summary.sumDistance : 0.0;
  PointInfo at = start;
  result.points = {mark, start};
  for (std::size_t i = 0; i < legs; ++i) {
    double const share = summary.sumDistance > 0.0 ? list[i].distance / summary.sumDistance : 0.0;
    list[i].adjustedDeltaX = list[i].deltaX - share * summary.fx;
    list[i].adjustedDeltaY = list[i].deltaY - share * summary.fy;
    PointInfo next = i + 1 < legs ? list[i].forePoints.front() : start;
    if (i + 1 < legs) {
      next.x = at.x + list[i].adjustedDeltaX;
      next.y = at.y + list[i].adjustedDeltaY;
      result.points.push_back(next);
    }
    list[i].forePoints = {next};
    list[i + 1].backPoint = at;
    list[i + 1].stationPoint = next;
    at = next;
  }
  list.back().forePoints = {list[1].stationPoint};
  return result;
}

TraverseResult openChain(TraverseWalk const& walk) {
  TraverseResult result;
  result.method = walk.method;
  result.stations = walk.stations;
  PointInfo const& mark = walk.stations.front().backPoint;
  PointInfo const& start = walk.stations.front().stationPoint;
  std::vector<double>& azimuths = result.summary.azimuths;
  azimuths = {azimuthOf(start.x - mark.x, start.y - mark.y)};
  result.points = {mark, start};
  for (std::size_t i = 0; i < result.stations.size(); ++i) {
    TraverseInfo& station = result.stations[i];
    if (!(station.distance > 0.0)) refuseWithoutDistance(station);
    if (i > 0) station.backPoint = result.stations[i - 1].stationPoint;
    if (i > 0) station.stationPoint = result.stations[i - 1].forePoints.front();
    azimuths.push_back(ontoCircle(azimuths.back() + station.angle - utils::kPi));
    station.deltaX = station.distance * std::cos(azimuths.back());
    station.deltaY = station.distance * std::sin(azimuths.back());
    PointInfo& fore = station.forePoints.front();
    fore.x = station.stationPoint.x + station.deltaX;
    fore.y = station.stationPoint.y + station.deltaY;
    result.points.push_back(fore);
  }
  return result;
}

void takeCheckShot(TraverseResult& result, std::vector<KnownPoint> const& known) {
  PointInfo& fore = result.stations.back().forePoints.front();
  auto const isFore = [&fore](KnownPoint const& point) { return point.name == fore.name; };
  auto const point = std::find_if(known.begin(), known.end(), isFore);
  if (point == known.end()) return;
  TraverseSummary& summary = result.summary;
  result.closing = TraverseClosing::AtForePoint;
  summary.hasMisclosure = true;
  for (TraverseInfo const& station : result.stations) summary.sumDistance += station.distance;
  summary.fx = fore.x - point->x;
  summary.fy = fore.y - point->y;
  summary.fs = std::hypot(summary.fx, summary.fy);
  summary.relativeError = summary.sumDistance > 0.0 ? summary.fs / summary.sumDistance : 0.0;
  for (PointInfo* held : {&fore, &result.points.back()}) {
    held->x = point->x;
    held->y = point->y;
  }
  // The mark or the first station, which are there already.
  if (result.endsOnOwnPoint()) result.points.pop_back();
}

Network networkOf(TraverseWalk const& walk, std::vector<KnownPoint> const& known) {
  Network network;
  std::unordered_set<std::string> names;
  for (TraverseInfo const& station : walk.stations) {
    NetworkDataInfo back;
    back.start_name = station.stationPoint.name;
    back.end_name = station.backPoint.name;
    NetworkDataInfo fore = back;
    fore.end_name = station.forePoints.front().name;
    fore.horizontal_angle = station.angle;
    fore.horizontal_distance = station.distance;
    for (NetworkDataInfo* line : {&back, &fore}) {
      line->horizontalAngleFlag = true;
      names.insert(line->start_name);
      names.insert(line->end_name);
      network.lines.push_back(*line);
    }
  }
  for (KnownPoint const& point : known) {
    if (names.count(point.name) != 0) network.knownPoints.push_back(point);
  }
  return network;
}

}  // namespace kvn::detail
