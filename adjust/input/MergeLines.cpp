#include "adjust/input/MergeLines.h"

#include "adjust/NameIndex.h"
#include "adjust/input/LiveList.h"
#include "adjust/input/PairKey.h"

#include <utils/detail/PlaceTable.h>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace kvn::detail {
namespace {

/// The lines with the same ends: places of `members` that stand together, in the order of the list.
struct Group {
  std::size_t begin = 0;
  std::size_t size = 0;
};

struct Grouping {
  std::vector<std::size_t> groupOf;  ///< of each line
  std::vector<Group> groups;
  std::vector<std::size_t> members;
};

/// Numbers of the ends of lines in the order of stations: the start is mostly that of the line before.
class EndNumbers {
 public:
  std::uint64_t keyOf(LineInfo const& line) {
    if (start < 0 || names.names()[static_cast<std::size_t>(start)] != line.start_name) {
      start = names.numberOf(line.start_name);
    }
    return unorderedKey(start, names.numberOf(line.end_name));
  }

 private:
  NameIndex names;
  int start = -1;
};

Grouping groupByEnds(std::vector<LineInfo> const& lines, Effort& effort) {
  Grouping result;
  EndNumbers ends;
  utils::PlaceTable groupOfEnds;
  std::vector<std::uint64_t> keys;
  result.groupOf.reserve(lines.size());
  for (LineInfo const& line : lines) {
    effort.step();
    std::uint64_t const key = ends.keyOf(line);
    auto const isAt = [&keys, key](std::size_t group) { return keys[group] == key; };
    std::size_t const group =
        groupOfEnds.findOrAdd(static_cast<std::size_t>(key ^ (key >> 32U) * 0x85EBCA6BU), keys.size(), isAt);
    if (group == keys.size()) {
      keys.push_back(key);
      result.groups.emplace_back();
    }
    ++result.groups[group].size;
    result.groupOf.push_back(group);
  }
  std::size_t next = 0;
  for (Group& group : result.groups) {
    group.begin = next;
    next += std::exchange(group.size, 0);
  }
  result.members.resize(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    Group& group = result.groups[result.groupOf[i]];
    result.members[group.begin + group.size++] = i;
  }
  return result;
}

}  // namespace

// A pass of line i visits what is left of its own group only. Of neighbours in the list every second one is passed
// over, so a pass erases at least half of the group: all passes together cost twice its size.
void mergeRepeatedLines(std::vector<LineInfo>& lines, Poll const& poll) {
  Effort effort(poll);
  Grouping grouping = groupByEnds(lines, effort);
  LiveList live(lines.size());
  std::vector<LineInfo> merged;
  merged.reserve(grouping.groups.size());
  for (std::size_t i = live.begin(); i != live.end(); i = live.next(i)) {
    effort.step();
    Group& group = grouping.groups[grouping.groupOf[i]];
    std::size_t* const members = grouping.members.data() + group.begin;
    std::size_t left = 0;
    std::size_t steppedPast = live.end();
    for (std::size_t k = 0; k < group.size; ++k) {
      std::size_t const j = members[k];
      if (j == i) continue;
      if (j == steppedPast) {
        members[left++] = j;
        continue;
      }
      lines[i].value += lines[j].value;
      lines[i].count += 1;
      steppedPast = live.next(j);
      live.erase(j);
    }
    group.size = left;
    merged.push_back(std::move(lines[i]));  // no later pass comes back to it
  }
  lines = std::move(merged);
}

}  // namespace kvn::detail
