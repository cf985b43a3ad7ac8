#include "adjust/linalg/StraightCut.h"

#include "adjust/linalg/Index.h"
#include "adjust/linalg/MaximumFlow.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvn::sparse {
namespace {

using detail::index;

// Each side of a line has at least this share of the unknowns.
constexpr double kLeastSide = 0.2;
// A cut is moved by so many blocks at most.
constexpr int kReach = 5;
// A cut by this many times more than are few may come down to few.
constexpr double kMovable = 1.5;
// Lines of one direction that are tried, for each block on an edge of a square network, and extremes.
constexpr double kLinesPerBlock = 16.0;
constexpr int kLeastLines = 64;
constexpr int kMostLines = 1 << 16;
// Directions that are tried where none is expected, and blocks that tell which is the best.
constexpr int kDirections = 12;
constexpr int kSample = 50000;
constexpr double kHalfTurn = 0.5 * utils::kFullCircle;
// Of places, metres: beyond there is nothing to cut.
constexpr double kLargestExtent = 1e12;

/// Blocks whose number is `last` or less lie on side 0.
struct Line {
  BlockPlace across;
  double cost = std::numeric_limits<double>::infinity();
  std::vector<int> numbers;
  int last = 0;
};

/// Along the network.
BlockPlace principalDirection(std::vector<BlockPlace> const& places) {
  BlockPlace mean;
  for (BlockPlace const place : places) mean += place / static_cast<double>(places.size());
  // The square of e^(i a) has twice the azimuth, so that opposite ones add up.
  BlockPlace sum;
  for (BlockPlace const place : places) sum += (place - mean) * (place - mean);
  return std::polar(1.0, 0.5 * std::arg(sum));
}

/// Numbers of the blocks along a direction, from 0 to lines - 1; nothing where they have no extent.
std::vector<int> numbersAlong(std::vector<BlockPlace> const& places, BlockPlace direction, int lines) {
  std::vector<double> along;
  along.reserve(places.size());
  for (BlockPlace const place : places) along.push_back((place * std::conj(direction)).real());
  auto const [least, most] = std::minmax_element(along.begin(), along.end());
  double const begin = *least;
  double const extent = *most - begin;
  if (!(extent > 0.0 && extent < kLargestExtent)) return {};
  std::vector<int> numbers;
  numbers.reserve(places.size());
  for (double const at : along) numbers.push_back(static_cast<int>((at - begin) / extent * (lines - 1)));
  return numbers;
}

/// The best line across a direction, as one block of each `step` has it. What separates are the blocks before it that
/// meet one behind it.
Line bestLine(BlockGraph const& graph, std::vector<int> numbers, int lines, int step) {
  std::vector<double> sizes(index(lines), 0.0);  // of the blocks with each number
  std::vector<double> steps(index(lines), 0.0);  // of what separates, from the line before to this one
  double total = 0.0;
  for (int b = 0; b < graph.blocks(); b += step) {
    int const number = numbers[index(b)];
    int farthest = number;
    for (std::size_t p = graph.starts[index(b)]; p < graph.starts[index(b) + 1]; ++p) {
      farthest = std::max(farthest, numbers[index(graph.neighbours[p])]);
    }
    double const size = graph.sizes[index(b)];
    total += size;
    sizes[index(number)] += size;
    steps[index(number)] += size;
    steps[index(farthest)] -= size;
  }
  Line best;
  double before = 0.0;
  double separating = 0.0;
  for (int number = 0; number < lines; ++number) {
    before += sizes[index(number)];
    separating += steps[index(number)];
    double const first = before - separating;
    double const second = total - before;
    if (std::min(first, second) < kLeastSide * total) continue;
    double const unevenness = (first - second) / total;
    double const cost = separating * (1.0 + 4.0 * unevenness * unevenness);
    if (cost >= best.cost) continue;
    best.cost = cost;
    best.last = number;
  }
  best.numbers = std::move(numbers);
  return best;
}

std::vector<int> sidesOf(BlockGraph const& graph, Line const& line) {
  std::vector<int> sides;
  sides.reserve(line.numbers.size());
  for (int b = 0; b < graph.blocks(); ++b) {
    auto const isBehind = [&](int block) { return line.numbers[index(block)] > line.last; };
    auto const begin = graph.neighbours.begin() + static_cast<std::ptrdiff_t>(graph.starts[index(b)]);
    auto const end = graph.neighbours.begin() + static_cast<std::ptrdiff_t>(graph.starts[index(b) + 1]);
    if (isBehind(b)) {
      sides.push_back(1);
    } else {
      sides.push_back(std::any_of(begin, end, isBehind) ? 2 : 0);
    }
  }
  return sides;
}

/// The blocks that separate, and those no more than kReach blocks from them.
std::vector<int> bandAbout(BlockGraph const& graph, std::vector<int> const& sides) {
  std::vector<int> band;
  std::vector<bool> isIn(sides.size(), false);
  for (int b = 0; b < graph.blocks(); ++b) {
    isIn[index(b)] = sides[index(b)] == 2;
    if (isIn[index(b)]) band.push_back(b);
  }
  std::size_t next = 0;
  for (int distance = 0; distance < kReach; ++distance) {
    for (std::size_t const end = band.size(); next < end; ++next) {
      int const b = band[next];
      for (std::size_t p = graph.starts[index(b)]; p < graph.starts[index(b) + 1]; ++p) {
        int const other = graph.neighbours[p];
        if (isIn[index(other)]) continue;
        isIn[index(other)] = true;
        band.push_back(other);
      }
    }
  }
  return band;
}

/// The fewest unknowns that separate the sides, by the theorem of Menger: a flow through the band in which each block
/// lets pass as much as it has unknowns. Node 2 i leads into block i of the band, node 2 i + 1 out of it.
void moveToFewest(BlockGraph const& graph, std::vector<int>& sides, Poll const& poll) {
  std::vector<int> const band = bandAbout(graph, sides);
  auto const size = static_cast<int>(band.size());
  std::vector<int> numberOf(sides.size(), -1);
  std::size_t arcs = 3 * band.size();
  for (int i = 0; i < size; ++i) {
    int const b = band[index(i)];
    numberOf[index(b)] = i;
    arcs += graph.starts[index(b) + 1] - graph.starts[index(b)];
  }
  int const source = 2 * size;
  int const sink = source + 1;
  MaximumFlow flow(sink + 1);
  flow.reserve(arcs);
  bool meets[2] = {false, false};
  for (int i = 0; i < size; ++i) {
    int const b = band[index(i)];
    flow.addArc(2 * i, 2 * i + 1, graph.sizes[index(b)]);
    bool isAtEdge[2] = {false, false};
    for (std::size_t p = graph.starts[index(b)]; p < graph.starts[index(b) + 1]; ++p) {
      int const other = graph.neighbours[p];
      if (numberOf[index(other)] >= 0) {
        flow.addArc(2 * i + 1, 2 * numberOf[index(other)], MaximumFlow::kUnlimited);
      } else {
        isAtEdge[index(sides[index(other)])] = true;
      }
    }
    if (isAtEdge[0]) flow.addArc(source, 2 * i, MaximumFlow::kUnlimited);
    if (isAtEdge[1]) flow.addArc(2 * i + 1, sink, MaximumFlow::kUnlimited);
    meets[0] = meets[0] || isAtEdge[0];
    meets[1] = meets[1] || isAtEdge[1];
  }
  if (!meets[0] || !meets[1]) return;
  flow.send(source, sink, poll);
  for (int i = 0; i < size; ++i) {
    int& side = sides[index(band[index(i)])];
    if (flow.isBeforeCut(2 * i + 1)) {
      side = 0;
    } else {
      side = flow.isBeforeCut(2 * i) ? 2 : 1;
    }
  }
}

/// No more blocks than `times` what a square network of as many edges has on a line across.
bool areFew(BlockGraph const& graph, std::vector<int> const& sides, double times) {
  auto const separating = static_cast<double>(std::count(sides.begin(), sides.end(), 2));
  return separating <= times * std::sqrt(static_cast<double>(graph.neighbours.size()) / 2.0);
}

}  // namespace

StraightCut straightCut(BlockGraph const& graph, std::vector<BlockPlace> const& places, BlockPlace expected,
                        Poll const& poll) {
  double const edge = std::sqrt(static_cast<double>(graph.blocks()));
  int const lines = std::min(kMostLines, std::max(kLeastLines, static_cast<int>(kLinesPerBlock * edge)));
  auto const bestOf = [&](std::vector<BlockPlace> const& directions, int step) {
    Line best;
    for (BlockPlace const direction : directions) {
      std::vector<int> numbers = numbersAlong(places, direction, lines);
      if (numbers.empty()) continue;
      Line line = bestLine(graph, std::move(numbers), lines, step);
      if (!(line.cost < best.cost)) continue;
      best = std::move(line);
      best.across = direction;
    }
    return best;
  };
  BlockPlace const along = principalDirection(places);
  if (expected == BlockPlace()) {
    std::vector<BlockPlace> directions;
    directions.reserve(index(kDirections));
    for (int i = 0; i < kDirections; ++i) directions.push_back(along * std::polar(1.0, kHalfTurn * i / kDirections));
    expected = bestOf(directions, std::max(1, graph.blocks() / kSample)).across;
  }
  Line const best = bestOf({expected, expected * BlockPlace(0.0, 1.0), along}, 1);
  if (best.numbers.empty()) return {};
  std::vector<int> sides = sidesOf(graph, best);
  // Where far too many separate the band is most of the network, and moving through it takes long for little.
  if (!areFew(graph, sides, kMovable)) return {};
  moveToFewest(graph, sides, poll);
  if (!areFew(graph, sides, 1.0)) return {};
  return {std::move(sides), best.across};
}

}  // namespace kvn::sparse
