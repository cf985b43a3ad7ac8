// Engines on the same networks: the full and the sparse matrix of an adjustment, time of both and how far their results
// differ; an adjustment and the next one without one of its observations.
#include "SyntheticNetworks.h"
#include "Timing.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr std::uint64_t kSeed = 1;

kvn::TraverseAdjust adjusted(kvn::AlgorithmData const& data, int sparseFrom, double& seconds) {
  kvn::TraverseAdjust adjustment;
  adjustment.setSparseFrom(sparseFrom);
  adjustment.readAlgorithmData(data);
  bench::Watch watch;
  adjustment.calculateAdjust();
  seconds = watch.lap();
  return adjustment;
}

double relative(double a, double b) { return a == b ? 0.0 : std::abs(a - b) / std::max(std::abs(a), std::abs(b)); }

/// A matrix of 9,000 unknowns, for 3,000 points, takes a minute: only where KELVANE_ENGINE_POINTS asks for it.
void sizes(benchmark::internal::Benchmark* engines) {
  for (int const points : {16, 25, 36, 49, 64, 81, 100, 200, 400}) engines->Arg(points);
  char const* const wanted = std::getenv("KELVANE_ENGINE_POINTS");
  if (wanted != nullptr) engines->Arg(std::stol(wanted));
}

void fullAndSparse(benchmark::State& state) {
  kvn::AlgorithmData data;
  data.readNetworkData(bench::gridNetwork(static_cast<std::size_t>(state.range(0)), kSeed).network());
  double fullSeconds = std::numeric_limits<double>::infinity();
  double sparseSeconds = fullSeconds;
  double positions = 0.0;
  double errors = 0.0;
  for (auto _ : state) {
    double seconds = 0.0;
    kvn::TraverseAdjust const full = adjusted(data, std::numeric_limits<int>::max(), seconds);
    fullSeconds = std::min(fullSeconds, seconds);
    kvn::TraverseAdjust const sparse = adjusted(data, 0, seconds);
    sparseSeconds = std::min(sparseSeconds, seconds);
    std::vector<kvn::PointErrorInfo> const expected = full.getPointErrorInfo();
    std::vector<kvn::PointErrorInfo> const points = sparse.getPointErrorInfo();
    for (std::size_t i = 0; i < points.size(); ++i) {
      positions = std::max(positions, std::hypot(points[i].x - expected[i].x, points[i].y - expected[i].y));
      if (expected[i].mp > 1e-9) errors = std::max(errors, relative(points[i].mp, expected[i].mp));
    }
  }
  state.counters["full_ms"] = 1e3 * fullSeconds;
  state.counters["sparse_ms"] = 1e3 * sparseSeconds;
  state.counters["ratio"] = sparseSeconds / fullSeconds;
  state.counters["apart_m"] = positions;
  state.counters["errors_apart"] = errors;
}
BENCHMARK(fullAndSparse)->Apply(sizes)->Unit(benchmark::kMillisecond);

/// Of every observation by itself: with all its results and tests against the adjustment alone, and again after one
/// observation is taken out against the first time.
void firstAndAgain(benchmark::State& state) {
  kvn::PlaneNetwork network =
      kvn::planeNetworkOf(bench::gridNetwork(static_cast<std::size_t>(state.range(0)), kSeed).network());
  kvn::setErrors(network, kvn::ObservationErrors());
  double first = std::numeric_limits<double>::infinity();
  double again = first;
  double alone = first;
  for (auto _ : state) {
    kvn::PlaneAdjustment adjustment(network);
    bench::Watch watch;
    bench::Watch untilResults;
    bool isFirst = true;
    adjustment.setProgressCall([&](kvn::AdjustProgress const& progress) {
      if (progress.stage != kvn::AdjustProgress::Results || !isFirst) return;
      alone = std::min(alone, untilResults.lap());
      isFirst = false;
    });
    adjustment.adjust();
    first = std::min(first, watch.lap());
    adjustment.setDistanceUsed(network.distances.size() / 2, false);
    adjustment.adjustAgain();
    again = std::min(again, watch.lap());
  }
  state.counters["first_ms"] = 1e3 * first;
  state.counters["again_ms"] = 1e3 * again;
  state.counters["again_over_first"] = again / first;
  state.counters["first_over_untested"] = first / alone;
}
BENCHMARK(firstAndAgain)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
