#include "adjust/detail/MergeLines.h"

#include "adjust/NameIndex.h"
#include "adjust/detail/LiveList.h"
#include "adjust/detail/PairKey.h"

#include <cstddef>
#include <unordered_map>
#include <utility>

namespace kvn::detail {
namespace {

using Group = std::vector<std::size_t>;

/// For each line, the group of the lines with the same ends.
std::vector<std::size_t> groupByEnds(std::vector<LineInfo> const& lines, std::vector<Group>& groups) {
  NameIndex names;
  std::unordered_map<std::uint64_t, std::size_t> groupOfEnds;
  std::vector<std::size_t> groupOf(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    auto const key = unorderedKey(names.numberOf(lines[i].start_name), names.numberOf(lines[i].end_name));
    auto const [entry, isNew] = groupOfEnds.try_emplace(key, groups.size());
    if (isNew) groups.emplace_back();
    groups[entry->second].push_back(i);
    groupOf[i] = entry->second;
  }
  return groupOf;
}

}  // namespace

// A pass of line i visits what is left of its own group only. Of neighbours in the list every second one is passed
// over, so a pass erases at least half of the group: all passes together cost twice its size.
void mergeRepeatedLines(std::vector<LineInfo>& lines) {
  std::vector<Group> groups;
  std::vector<std::size_t> const groupOf = groupByEnds(lines, groups);
  LiveList live(lines.size());
  std::vector<LineInfo> merged;
  for (std::size_t i = live.begin(); i != live.end(); i = live.next(i)) {
    Group& group = groups[groupOf[i]];
    Group left;
    std::size_t steppedPast = live.end();
    for (std::size_t const j : group) {
      if (j == i) continue;
      if (j == steppedPast) {
        left.push_back(j);
        continue;
      }
      lines[i].value += lines[j].value;
      lines[i].count += 1;
      steppedPast = live.next(j);
      live.erase(j);
    }
    group = std::move(left);
    merged.push_back(lines[i]);
  }
  lines = std::move(merged);
}

}  // namespace kvn::detail
