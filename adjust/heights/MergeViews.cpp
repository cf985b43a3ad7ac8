#include "adjust/heights/MergeViews.h"

#include "adjust/NameIndex.h"
#include "adjust/input/LiveList.h"
#include "adjust/input/PairKey.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <unordered_map>
#include <utility>

namespace kvn::detail {
namespace {

using Places = std::set<std::size_t>;

class OppositeMerge {
 public:
  explicit OppositeMerge(std::vector<TriangleViewData>& list) : views(list), live(list.size()), size(list.size()) {
    for (std::size_t i = 0; i < size; ++i) {
      int const start = names.numberOf(views[i].start_name);
      int const end = names.numberOf(views[i].end_name);
      opposite.push_back(orderedKey(end, start));
      placesOf[orderedKey(start, end)].insert(i);
    }
  }

  void run() {
    std::size_t a = live.begin();
    for (std::size_t position = 0; position + 1 < size; ++position) {
      a = mergeInto(a);
      if (a == live.end()) break;
      a = live.next(a);
    }
    std::size_t left = 0;
    for (std::size_t i = live.begin(); i != live.end(); i = live.next(i), ++left) {
      if (left != i) views[left] = std::move(views[i]);
    }
    views.resize(left);
  }

 private:
  /// One pass of b over the list. Every line that it stops at is erased. @return the line at the index of a afterwards.
  std::size_t mergeInto(std::size_t a) {
    std::size_t b = 0;
    while (a != live.end()) {
      auto const group = placesOf.find(opposite[a]);
      if (group == placesOf.end()) break;
      auto const place = group->second.lower_bound(b);
      if (place == group->second.end()) break;
      std::size_t const found = *place;
      views[a].heightDifference = (views[a].heightDifference - views[found].heightDifference) / 2;
      b = live.next(found) + 1;
      if (found <= a) a = live.next(a);
      live.erase(found);
      group->second.erase(place);
      --size;
    }
    return a;
  }

  std::vector<TriangleViewData>& views;
  LiveList live;
  std::size_t size;  // lines that are left
  NameIndex names;
  std::vector<std::uint64_t> opposite;                 // of each line, the key of the opposite direction
  std::unordered_map<std::uint64_t, Places> placesOf;  // of each pair of ends, the lines that are left
};

}  // namespace

void mergeOppositeViews(std::vector<TriangleViewData>& views) { OppositeMerge(views).run(); }

}  // namespace kvn::detail
