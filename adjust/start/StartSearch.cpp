#include "adjust/start/StartSearch.h"

#include "adjust/linalg/Index.h"
#include "adjust/start/FrameFit.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

namespace kvn::detail {
namespace {

constexpr std::size_t kMostBodies = 12;
constexpr std::size_t kLeastPoints = 3;
constexpr std::ptrdiff_t kMostPartners = 12;
// Starts times the cube of the unknowns.
constexpr double kEffort = 2e7;
constexpr double kEffortOfPoint = 1e4;
constexpr double kEffortOfSpot = 10.0;

}  // namespace

StartSearch::StartSearch(NumberedNetwork const& network, Poll call)
    : net(network),
      poll(std::move(call)),
      owner(index(network.stations()), -1),
      root(network, owner, 0, true),
      seeded(index(network.stations()), false) {}

bool StartSearch::run() {
  root.grow(poll);
  while (!isComplete()) {
    buildFrames();
    if (joinToRoot() || joinFrames() || solveBodies()) continue;
    break;
  }
  return isComplete();
}

// ---- Groups of stations in frames of their own.

void StartSearch::buildFrames() {
  if (around.empty()) findNeighbours();
  for (int s = 0; s < net.stations(); ++s) {
    if (seeded[index(s)] || owner[index(s)] >= 0) continue;
    seeded[index(s)] = true;
    auto frame = std::make_unique<Frame>(net, owner, ++lastFrame, false);
    bool const begun = seed(*frame, s);
    if (begun) frame->grow(poll);
    if (frame->points().size() >= kLeastPoints) {
      frames.push_back(std::move(frame));
    } else {
      frame->release();
    }
  }
}

void StartSearch::findNeighbours() {
  around.resize(index(net.points));
  for (NumberedNetwork::Direction const& d : net.directions) {
    around[index(d.target)].push_back(net.pointOf(d.station));
    around[index(net.pointOf(d.station))].push_back(d.target);
  }
  for (std::vector<int>& list : around) std::sort(list.begin(), list.end());
}

/// Whether a third point is observed with both: without one nothing follows from two points that see each other.
bool StartSearch::hasThird(int a, int b) const {
  std::vector<int> const& fewer = around[index(around[index(a)].size() < around[index(b)].size() ? a : b)];
  std::vector<int> const& more = around[index(around[index(a)].size() < around[index(b)].size() ? b : a)];
  return std::any_of(fewer.begin(), fewer.end(), [&](int point) {
    return point != a && point != b && std::binary_search(more.begin(), more.end(), point);
  });
}

/// The station at the origin, its circle's zero to the north, and its first target with a distance; failing that, the
/// first target that sees the station back, at the distance 1.
bool StartSearch::seed(Frame& frame, int station) const {
  int const point = net.pointOf(station);
  frame.place(point, Place());
  frame.orient(station, 0.0);
  std::set<int> measured;
  for (int const l : net.linesAt(point)) measured.insert(net.otherEnd(l, point));
  int partner = -1;
  for (int d = net.firstDirection(station); d < net.endDirection(station); ++d) {
    int const target = net.direction(d).target;
    if (target == point) continue;
    if (measured.count(target) != 0) {
      frame.place(target, polar(1.0, net.direction(d).value));
      return true;
    }
    for (int const back : net.stationsAt(target)) {
      bool const isPartner = partner < 0 && owner[index(back)] < 0 && net.directionTo(back, point) >= 0;
      if (isPartner && hasThird(point, target)) partner = d;
    }
  }
  if (partner < 0) return false;
  frame.place(net.direction(partner).target, polar(1.0, net.direction(partner).value));
  return true;
}

// ---- Frames that share points.

bool StartSearch::joinToRoot() {
  bool joined = false;
  for (auto& frame : frames) {
    std::optional<Similarity> const motion = similarityOf(commonPlaces(*frame, root), frame->hasScale());
    if (!motion) continue;
    transfer(*frame, root, *motion);
    frame.reset();
    joined = true;
  }
  frames.erase(std::remove(frames.begin(), frames.end(), nullptr), frames.end());
  if (joined) root.grow(poll);
  return joined;
}

bool StartSearch::joinFrames() {
  std::unordered_map<int, std::vector<std::size_t>> framesAt;
  for (std::size_t f = 0; f < frames.size(); ++f) {
    for (int const point : frames[f]->points()) framesAt[point].push_back(f);
  }
  std::map<std::pair<std::size_t, std::size_t>, int> shared;
  for (std::size_t f = 0; f < frames.size(); ++f) {
    for (int const point : frames[f]->points()) {
      // A point that many frames see does not make pairs of all of them.
      std::vector<std::size_t> const& here = framesAt[point];
      auto const self = std::lower_bound(here.begin(), here.end(), f);
      for (auto other = self + 1; other != here.end() && other - self <= kMostPartners; ++other) ++shared[{f, *other}];
    }
  }
  bool joined = false;
  for (auto const& [pair, count] : shared) {
    if (count >= 2 && frames[pair.first] && frames[pair.second]) joined = joinPair(pair.first, pair.second) || joined;
  }
  frames.erase(std::remove(frames.begin(), frames.end(), nullptr), frames.end());
  return joined;
}

/// The smaller frame goes into the larger one; one without a scale takes that of the other.
bool StartSearch::joinPair(std::size_t a, std::size_t b) {
  bool const swap = frames[a]->hasScale() == frames[b]->hasScale()
                        ? frames[a]->points().size() < frames[b]->points().size()
                        : !frames[a]->hasScale();
  auto& into = frames[swap ? b : a];
  auto& from = frames[swap ? a : b];
  std::optional<Similarity> const motion = similarityOf(commonPlaces(*from, *into), from->hasScale());
  if (!motion) return false;
  from->release();
  transfer(*from, *into, *motion);
  from.reset();
  into->grow(poll);
  return true;
}

// ---- Several bodies at once.

bool StartSearch::solveBodies() {
  collectBodies();
  linkBodies();
  ambiguous.clear();
  triedSets.clear();
  bool solved = false;
  for (std::size_t b = 0; b < bodies.size(); ++b) {
    if (poll) poll();
    if (isTaken(bodies[b]) || !solveFrom(b)) continue;
    root.grow(poll);
    solved = true;
  }
  frames.erase(std::remove(frames.begin(), frames.end(), nullptr), frames.end());
  return solved;
}

/// Whether the body has been brought in since the bodies were collected.
bool StartSearch::isTaken(BodySolver::Body const& body) const {
  if (body.frame == nullptr) return root.has(body.point);
  return std::none_of(frames.begin(), frames.end(), [&body](auto const& frame) { return frame.get() == body.frame; });
}

void StartSearch::collectBodies() {
  bodies.clear();
  bodiesAt.assign(index(net.points), {});
  for (auto const& frame : frames) {
    for (int const point : frame->points()) bodiesAt[index(point)].push_back(static_cast<int>(bodies.size()));
    bodies.push_back({frame.get(), -1});
  }
  for (int point = 0; point < net.points; ++point) {
    if (root.has(point) || !bodiesAt[index(point)].empty()) continue;
    bodiesAt[index(point)].push_back(static_cast<int>(bodies.size()));
    bodies.push_back({nullptr, point});
  }
}

void StartSearch::linkBodies() {
  neighbours.assign(bodies.size(), {});
  for (NumberedNetwork::Line const& line : net.lines) link({line.start, line.end});
  for (NumberedNetwork::Direction const& d : net.directions) link({net.pointOf(d.station), d.target});
  for (int s = 0; s < net.stations(); ++s) {
    if (root.isOriented(s)) continue;
    std::vector<int> targets;
    for (int d = net.firstDirection(s); d < net.endDirection(s); ++d) targets.push_back(net.direction(d).target);
    link(targets);
  }
  for (int point = 0; point < net.points; ++point) {
    if (bodiesAt[index(point)].size() > 1) link({point, point});
  }
}

/// The bodies of neighbouring points of the list become neighbours.
void StartSearch::link(std::vector<int> const& points) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    std::vector<int> const& here = bodiesAt[index(points[i])];
    std::vector<int> const& there = bodiesAt[index(points[i + 1])];
    for (std::size_t a = 0; a < here.size(); ++a) {
      for (std::size_t b = 0; b < there.size(); ++b) {
        auto const apart = static_cast<std::ptrdiff_t>(a) - static_cast<std::ptrdiff_t>(b);
        if (here[a] == there[b] || std::abs(apart) > kMostPartners) continue;
        neighbours[index(here[a])].push_back(there[b]);
        neighbours[index(there[b])].push_back(here[a]);
      }
    }
  }
}

/// Takes in the neighbour with the most observations to those chosen, until they are determined.
bool StartSearch::solveFrom(std::size_t first) {
  std::vector<int> chosen{static_cast<int>(first)};
  std::map<int, int> candidates;
  std::size_t tried = 0;
  for (;;) {
    if (chosen.size() > tried) {
      tried = chosen.size();
      std::vector<int> sorted = chosen;
      std::sort(sorted.begin(), sorted.end());
      if (triedSets.insert(sorted).second && solve(sorted)) return true;
      for (int const b : neighbours[index(chosen.back())]) ++candidates[b];
      for (int const b : chosen) candidates.erase(b);
    }
    if (candidates.empty() || chosen.size() == kMostBodies) return false;
    auto const next = std::max_element(candidates.begin(), candidates.end(),
                                       [](auto const& a, auto const& b) { return a.second < b.second; });
    if (!isTaken(bodies[index(next->first)])) chosen.push_back(next->first);
    candidates.erase(next);
  }
}

/// Bodies that are hard to solve are not worth more than some seconds, and more in a larger network.
bool StartSearch::isExhausted() const { return effort > kEffort + kEffortOfPoint * net.points; }

bool StartSearch::solve(std::vector<int> const& chosen) {
  if (isExhausted()) return false;
  Bodies together;
  for (int const b : chosen) together.push_back(bodies[index(b)]);
  BodySolver solver(net, root, together);
  solver.setHints(hints);
  BodySolver::Outcome const outcome = solver.solve(poll);
  effort += solver.effort() + kEffortOfSpot * solver.size();
  if (outcome == BodySolver::Outcome::Ambiguous) {
    for (BodySolver::Body const& body : together) {
      if (body.frame == nullptr)
        ambiguous.push_back(body.point);
      else
        ambiguous.insert(ambiguous.end(), body.frame->points().begin(), body.frame->points().end());
    }
  }
  if (outcome != BodySolver::Outcome::Solved) return false;
  for (std::size_t i = 0; i < together.size(); ++i) {
    BodySolver::Pose const& pose = solver.poses()[i];
    if (together[i].frame == nullptr) {
      root.place(together[i].point, pose.shift);
      continue;
    }
    transfer(*together[i].frame, root, {pose.factor, pose.shift});
    for (auto& frame : frames) {
      if (frame.get() == together[i].frame) frame.reset();
    }
  }
  return true;
}

}  // namespace kvn::detail
