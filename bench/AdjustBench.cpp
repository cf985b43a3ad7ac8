// Input, approximate coordinates and the whole adjustment against the number of points.
#include "SyntheticNetworks.h"
#include "Timing.h"
#include "adjust/input/MergeLines.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

kvn::Network gridOf(benchmark::State const& state) {
  return bench::gridNetwork(static_cast<std::size_t>(state.range(0)), 1).network();
}

kvn::Network chainOf(benchmark::State const& state) {
  return bench::chainNetwork(static_cast<std::size_t>(state.range(0)), 1).network();
}

/// Everything before the matrix: near-linear in the number of points.
void readNetworkData(benchmark::State& state) {
  static bench::Growth growth;
  kvn::Network const network = gridOf(state);
  bench::measure(state, growth, [&network] {
    kvn::AlgorithmData data;
    data.readNetworkData(network);
    benchmark::DoNotOptimize(data.pointsCount);
  });
}

/// Distances of a grid, every line from both ends.
void mergeRepeatedLines(benchmark::State& state) {
  static bench::Growth growth;
  kvn::AlgorithmData data;
  data.readNetworkData(gridOf(state));
  std::vector<kvn::LineInfo> lines;
  for (auto const& station : data.stations) lines.insert(lines.end(), station.lines.begin(), station.lines.end());
  bench::measure(state, growth, [&lines] {
    std::vector<kvn::LineInfo> merged = lines;
    kvn::detail::mergeRepeatedLines(merged);
    benchmark::DoNotOptimize(merged.data());
  });
}

/// The coordinates from which an adjustment starts.
template <kvn::Network (*make)(benchmark::State const&)>
void approximate(benchmark::State& state) {
  static bench::Growth growth;
  kvn::AlgorithmData data;
  data.readNetworkData(make(state));
  kvn::TraverseAdjust read;
  read.readAlgorithmData(data);
  double best = std::numeric_limits<double>::infinity();
  for (auto _ : state) {
    state.PauseTiming();
    kvn::TraverseAdjust adjustment = read;  // one that has run keeps what is the same for a second run
    state.ResumeTiming();
    best = std::min(best, bench::bestSeconds(1, [&adjustment] { adjustment.calculateApproximate(); }));
    benchmark::DoNotOptimize(adjustment);
  }
  state.counters["slope"] = growth.exponent(state.range(0), best);
  state.SetComplexityN(state.range(0));
}

/// A band of triangles: each station sights the two before it and the two after it, by directions alone.
kvn::Network bandOf(benchmark::State const& state) {
  int const points = static_cast<int>(state.range(0));
  kvn::Network network;
  double const fullCircle = 2.0 * std::acos(-1.0);
  auto const x = [](int i) { return 50.0 * i; };
  auto const y = [](int i) { return i % 2 == 0 ? 0.0 : 80.0; };
  for (int const i : {0, 1}) network.knownPoints.emplace_back("P" + std::to_string(i), x(i), y(i), 0.0);
  for (int i = 0; i < points; ++i) {
    for (int const j : {i - 2, i - 1, i + 1, i + 2}) {
      if (j < 0 || j >= points) continue;
      double const azimuth = std::atan2(y(j) - y(i), x(j) - x(i));
      kvn::NetworkDataInfo line;
      line.start_name = "P" + std::to_string(i);
      line.end_name = "P" + std::to_string(j);
      line.horizontal_angle = azimuth < 0.0 ? azimuth + fullCircle : azimuth;
      network.lines.push_back(line);
    }
  }
  return network;
}

/// From the input to the precision results.
template <kvn::Network (*make)(benchmark::State const&)>
void adjust(benchmark::State& state) {
  static bench::Growth growth;
  kvn::AlgorithmData data;
  data.readNetworkData(make(state));
  bench::measure(state, growth, [&data] {
    kvn::TraverseAdjust adjustment(bench::kDirectionErrorSeconds, bench::kDistanceErrorMm * 1e-3,
                                   bench::kDistanceErrorPpm * 1e-6, true);
    adjustment.Adjust(data);
    benchmark::DoNotOptimize(adjustment);
  });
}

void inputs(benchmark::internal::Benchmark* input) {
  input->RangeMultiplier(4)->Range(1024, 65536)->Complexity()->Unit(benchmark::kMillisecond);
}

void networks(benchmark::internal::Benchmark* network) {
  network->RangeMultiplier(4)->Range(64, 16384)->Complexity()->Unit(benchmark::kMillisecond);
}

BENCHMARK(readNetworkData)->Apply(inputs);
BENCHMARK(mergeRepeatedLines)->Apply(inputs);
BENCHMARK_TEMPLATE(approximate, gridOf)->Apply(inputs);
BENCHMARK_TEMPLATE(approximate, chainOf)->Apply(inputs);
BENCHMARK_TEMPLATE(approximate, bandOf)->Apply(inputs);
BENCHMARK_TEMPLATE(adjust, gridOf)->Apply(networks);
BENCHMARK_TEMPLATE(adjust, chainOf)->Apply(networks);

}  // namespace
