#include "adjust/start/SweepQueue.h"

namespace kvn::detail {

void SweepQueue::schedule(int station) {
  auto const index = static_cast<std::size_t>(station);
  if (waiting[index]) return;
  waiting[index] = true;
  visits.emplace(station > position ? sweep : sweep + 1, station);
}

bool SweepQueue::next(int& station) {
  if (visits.empty()) return false;
  std::tie(sweep, position) = visits.top();
  visits.pop();
  station = position;
  waiting[static_cast<std::size_t>(station)] = false;
  return true;
}

}  // namespace kvn::detail
