// The inversion of the normal equations against their number, and as a ratio to LAPACK where there is one.
#include "Timing.h"
#include "adjust/linalg/PackedInverse.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#if defined(KELVANE_BENCH_LAPACK)
extern "C" {
void dpftrf_(char const* transposed, char const* triangle, int const* n, double* a, int* info);
void dpftri_(char const* transposed, char const* triangle, int const* n, double* a, int* info);
void dtpttf_(char const* transposed, char const* triangle, int const* n, double const* packed, double* a, int* info);
}
#endif

namespace {

using Packed = std::vector<double>;

/// Positive definite and well conditioned; lower triangle by rows.
Packed normalMatrix(std::size_t n) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  Packed a(n * (n + 1) / 2);
  for (double& element : a) element = value(random);
  for (std::size_t i = 0; i < n; ++i) a[i * (i + 1) / 2 + i] += double(n);
  return a;
}

#if defined(KELVANE_BENCH_LAPACK)
/// Seconds of the Cholesky factor and the inverse in packed blocks, the best of three. The library decides on its
/// threads: OPENBLAS_NUM_THREADS=1 compares one with one.
double lapackSeconds(Packed const& a, int n) {
  double best = std::numeric_limits<double>::infinity();
  for (int round = 0; round < 3; ++round) {
    Packed packed(a.size());
    int info = 0;
    dtpttf_("N", "U", &n, a.data(), packed.data(), &info);
    bench::ProcessorWatch watch;
    dpftrf_("N", "U", &n, packed.data(), &info);
    dpftri_("N", "U", &n, packed.data(), &info);
    best = std::min(best, watch.lap());
  }
  return best;
}
#endif

void invertPacked(benchmark::State& state) {
  auto const n = static_cast<std::size_t>(state.range(0));
  Packed const a = normalMatrix(n);
  double best = std::numeric_limits<double>::infinity();
  for (auto _ : state) {
    Packed q = a;
    bench::ProcessorWatch watch;
    benchmark::DoNotOptimize(kvn::detail::invertPacked(q.data(), n, kvn::detail::PivotRule::NotZero));
    double const seconds = watch.lap();
    state.SetIterationTime(seconds);
    best = std::min(best, seconds);
  }
#if defined(KELVANE_BENCH_LAPACK)
  state.counters["to_lapack"] = best / lapackSeconds(a, static_cast<int>(n));
#endif
  state.SetComplexityN(state.range(0));
}
BENCHMARK(invertPacked)
    ->Arg(100)
    ->Arg(300)
    ->Arg(1000)
    ->Arg(1500)
    ->Arg(3000)
    ->UseManualTime()
    ->Complexity(benchmark::oNCubed)
    ->Unit(benchmark::kMillisecond);

}  // namespace
