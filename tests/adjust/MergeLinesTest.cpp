// Merging of repeated distances against the plain loops.
#include "adjust/detail/MergeLines.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using kvn::LineInfo;
using Lines = std::vector<LineInfo>;

bool sameEnds(LineInfo const& a, LineInfo const& b) {
  return (a.start_name == b.start_name && a.end_name == b.end_name) ||
         (a.start_name == b.end_name && a.end_name == b.start_name);
}

void plainLoops(Lines& lines) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    for (std::size_t j = i + 1; j < lines.size(); ++j) {
      if (!sameEnds(lines[i], lines[j])) continue;
      lines[i].value += lines[j].value;
      lines[i].count += 1;
      lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(j));
    }
  }
}

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

TEST(MergeRepeatedLines, EqualsThePlainLoopsOnRandomLists) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    // Few names make many repeats, some of them neighbours; repeats of either orientation.
    std::uniform_int_distribution<int> name(0, 2 + static_cast<int>(seed % 5));
    std::uniform_int_distribution<int> length(0, 60);
    Lines lines;
    for (int i = length(random); i > 0; --i) {
      lines.push_back({std::to_string(name(random)), std::to_string(name(random)), double(i), 1});
    }
    Lines expected = lines;
    plainLoops(expected);
    kvn::detail::mergeRepeatedLines(lines);
    EXPECT_EQ(described(lines), described(expected));
  }
}

}  // namespace
