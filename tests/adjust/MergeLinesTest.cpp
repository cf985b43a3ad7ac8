// Merging of repeated distances.
#include "adjust/detail/MergeLines.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using kvn::LineInfo;
using Lines = std::vector<LineInfo>;

std::string described(Lines const& lines) {
  std::string text;
  for (LineInfo const& line : lines) {
    text += line.start_name + ">" + line.end_name + " " + std::to_string(line.value) + "/" +
            std::to_string(line.count) + "\n";
  }
  return text;
}

TEST(MergeRepeatedLines, LetsEverySecondOfNeighbouringRepeatsStand) {
  Lines lines{{"A", "B", 10.0, 1}, {"A", "B", 10.2, 1}, {"B", "A", 10.4, 1}, {"A", "C", 5.0, 1}};
  kvn::detail::mergeRepeatedLines(lines);
  // The second joins the first; the third moved into its place and is stepped past.
  EXPECT_EQ(described(lines), described({{"A", "B", 20.2, 2}, {"B", "A", 10.4, 1}, {"A", "C", 5.0, 1}}));
}

}  // namespace
