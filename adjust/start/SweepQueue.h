// SweepQueue: the order in which repeated sweeps over a list of stations reach those that can make progress.
#pragma once

#include <functional>
#include <queue>
#include <tuple>
#include <utility>
#include <vector>

namespace kvn::detail {

/// A literal walk sweeps over all stations again and again. Only stations that can make progress matter, and they are
/// reached in this order: a station that becomes able to while the sweep stands before it, in the same sweep; one that
/// the sweep has passed, in the next. The queue gives just these, in just this order.
class SweepQueue {
 public:
  explicit SweepQueue(std::size_t stations) : waiting(stations, false) {}

  /// The station can make progress from now on; a station that waits already is not queued twice.
  void schedule(int station);

  /// The next station; false when no station can make progress any more.
  bool next(int& station);

 private:
  using Visit = std::pair<int, int>;  // sweep, station

  std::priority_queue<Visit, std::vector<Visit>, std::greater<>> visits;
  std::vector<bool> waiting;
  int sweep = 0;
  int position = -1;
};

}  // namespace kvn::detail
