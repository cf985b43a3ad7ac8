// Seconds and their growth, for benchmarks that measure by themselves.
#pragma once

#include <benchmark/benchmark.h>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <iterator>
#include <limits>
#include <map>

namespace bench {

/// Of the clock on the wall.
inline double wallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Of all threads of the process: what other programs take does not count.
inline double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

template <double (*now)()>
class Stopwatch {
 public:
  /// Seconds since the last call, or since the watch was made.
  double lap() {
    double const start = last;
    last = now();
    return last - start;
  }

 private:
  double last = now();
};

using Watch = Stopwatch<wallSeconds>;
using ProcessorWatch = Stopwatch<processorSeconds>;

/// Processor time of the shortest of some runs; there are more of them where they are done in less than `leastSeconds`.
template <typename Work>
double bestSeconds(int runs, Work const& work, double leastSeconds = 0.0) {
  double best = std::numeric_limits<double>::infinity();
  double sum = 0.0;
  for (int i = 0; i < runs || sum < leastSeconds; ++i) {
    ProcessorWatch watch;
    work();
    double const seconds = watch.lap();
    best = std::min(best, seconds);
    sum += seconds;
  }
  return best;
}

/// Times of one benchmark by size.
class Growth {
 public:
  /// Exponent of the time between the next smaller size and this one: 1 is linear. NaN for the smallest. A size that
  /// comes again, as it does while the number of iterations is being found, replaces its time.
  double exponent(std::int64_t size, double seconds) {
    auto const here = secondsOf.insert_or_assign(size, seconds).first;
    if (here == secondsOf.begin()) return std::numeric_limits<double>::quiet_NaN();
    auto const before = std::prev(here);
    return std::log(seconds / before->second) /
           std::log(static_cast<double>(size) / static_cast<double>(before->first));
  }

 private:
  std::map<std::int64_t, double> secondsOf;
};

/// Measures `work` against the size of the benchmark, and tells the growth. Returns the shortest processor time,
/// seconds.
template <typename Work>
double measure(benchmark::State& state, Growth& growth, Work const& work) {
  double best = std::numeric_limits<double>::infinity();
  for (auto _ : state) best = std::min(best, bestSeconds(1, work));
  state.counters["slope"] = growth.exponent(state.range(0), best);
  state.SetComplexityN(state.range(0));
  return best;
}

}  // namespace bench
