// Approximate coordinates by the walks, and the merging of repeated distances.
#include "adjust/Networks.h"
#include "adjust/input/MergeLines.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <map>

namespace {

using kvn::TraverseAdjust;

using utils::kPi;
kvn::Network traverse(int legs) {
  kvn::Network network;
  network.knownPoints = {{"K0", 0.0, -100.0, 0.0}, {"K1", 0.0, 0.0, 0.0}};
  std::vector<std::string> names{"K0", "K1"};
  for (int i = 1; i <= legs; ++i) names.push_back("P" + std::to_string(i));
  for (std::size_t s = names.size() - 2; s >= 1; --s) {
    network.lines.push_back(test::line(names[s], names[s - 1], 0.0, 100.0));
    network.lines.push_back(test::line(names[s], names[s + 1], kPi, 100.0));
  }
  std::reverse(network.lines.begin(), network.lines.end());
  return network;
}

TEST(ApproximateCoordinates, DoNotTakeAPointBeyondAllCoordinatesForAPlacedOne) {
  // A comes out at x = 1.8e29, which stands for a missing coordinate: K2 must not be oriented by it.
  kvn::Network network;
  network.knownPoints = {{"K1", 9e28, 0.0, 0.0}, {"K2", 9e28, 1e28, 0.0}};
  network.lines = {test::line("K1", "K2", kPi / 2.0, 0.0), test::line("K1", "A", 0.0, 9e28),
                   test::line("K2", "A", 1.0, 0.0)};
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network));
  adjustment.calculateApproximate();
  EXPECT_GT(adjustment.getPointX0Y0()[2].x, 1e29);
}

TEST(ApproximateCoordinates, PassOverAFlatCorner) {
  // P lies on the line from A to B and sees both in opposite directions; with C it has a sound triangle.
  std::map<std::string, kvn::PointInfo> points;
  for (auto const& [name, x, y] :
       {std::tuple{"A", 0.0, 0.0}, {"B", 0.0, 200.0}, {"C", 100.0, 30.0}, {"P", 0.0, 100.0}}) {
    points[name].name = name;
    points[name].x = x;
    points[name].y = y;
  }
  kvn::Network network;
  for (char const* name : {"A", "B", "C"}) network.knownPoints.emplace_back(name, points[name].x, points[name].y, 0.0);
  for (std::string const from : {"A", "B", "C", "P"}) {
    for (std::string const to : {"A", "B", "C", "P"}) {
      if (from != to) network.lines.push_back(test::line(from, to, test::azimuth(points[from], points[to]), 0.0));
    }
  }
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network));
  adjustment.calculateApproximate();
  kvn::PointInfo const p = adjustment.getPointX0Y0().back();
  EXPECT_EQ(p.name, "P");
  EXPECT_NEAR(p.x, 0.0, 1e-9);
  EXPECT_NEAR(p.y, 100.0, 1e-9);
}

/// Opens the narrow walk, which places from each station only the point numbered one above it.
class NarrowWalk : public TraverseAdjust {
 public:
  using TraverseAdjust::calculateX0Y00910;
};

TEST(ApproximateCoordinates, TheNarrowWalkFollowsTheNumbers) {
  NarrowWalk walk;
  walk.readAlgorithmData(test::loaded(traverse(3)));
  walk.calculateX0Y00910();
  auto const points = walk.getPoints();
  EXPECT_EQ(points[2].name, "P1");
  EXPECT_NEAR(points[2].y, 100.0, 1e-10);
  EXPECT_NEAR(points[4].y, 300.0, 1e-10);
}

TEST(MergeRepeatedLines, LetsEverySecondOfNeighbouringRepeatsStand) {
  std::vector<kvn::LineInfo> lines{{"A", "B", 10.0, 1}, {"A", "B", 10.2, 1}, {"B", "A", 10.4, 1}, {"A", "C", 5.0, 1}};
  kvn::detail::mergeRepeatedLines(lines);
  std::string text;
  for (kvn::LineInfo const& line : lines) {
    text += line.start_name + line.end_name + std::to_string(line.value) + "/" + std::to_string(line.count) + " ";
  }
  // The second joins the first; the third moved into its place and is stepped past.
  EXPECT_EQ(text, "AB20.200000/2 BA10.400000/1 AC5.000000/1 ");
}

}  // namespace
