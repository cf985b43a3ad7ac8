#include "adjust/plane/PairTable.h"

#include "adjust/linalg/Index.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace kvn::detail {

PairTable::PairTable(int count, std::vector<int> const& firsts, std::vector<int> const& seconds, Poll const& poll)
    : starts(index(count) + 1, 0), entries(firsts.size()) {
  Effort effort(poll);
  for (int const first : firsts) ++starts[index(first) + 1];
  for (std::size_t f = 1; f < starts.size(); ++f) starts[f] += starts[f - 1];
  std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
  for (std::size_t i = 0; i < firsts.size(); ++i) {
    effort.step();
    entries[next[index(firsts[i])]++] = {seconds[i], static_cast<int>(i)};
  }
  for (std::size_t f = 0; f + 1 < starts.size(); ++f) {
    effort.step();
    auto const begin = entries.begin();
    std::sort(begin + static_cast<std::ptrdiff_t>(starts[f]), begin + static_cast<std::ptrdiff_t>(starts[f + 1]));
  }
}

std::pair<PairTable::Iterator, PairTable::Iterator> PairTable::of(int first) const {
  if (first < 0 || index(first) + 1 >= starts.size()) return {entries.end(), entries.end()};
  return {entries.begin() + static_cast<std::ptrdiff_t>(starts[index(first)]),
          entries.begin() + static_cast<std::ptrdiff_t>(starts[index(first) + 1])};
}

int PairTable::firstOf(int first, int second) const {
  auto const [begin, end] = of(first);
  auto const found = std::lower_bound(begin, end, Entry(second, 0));
  return found == end || found->first != second ? -1 : found->second;
}

int PairTable::lastOf(int first, int second) const {
  auto const [begin, end] = of(first);
  auto const behind = std::upper_bound(begin, end, Entry(second, std::numeric_limits<int>::max()));
  return behind == begin || std::prev(behind)->first != second ? -1 : std::prev(behind)->second;
}

}  // namespace kvn::detail
