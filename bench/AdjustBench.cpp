// Input, approximate coordinates and the whole adjustment against the number of points.
#include "Grid.h"

#include "adjust/detail/MergeLines.h"

#include <benchmark/benchmark.h>

namespace {

int sideOf(benchmark::State const& state) { return static_cast<int>(std::lround(std::sqrt(double(state.range(0))))); }

/// Everything before the matrix: near-linear in the number of points.
void readNetworkData(benchmark::State& state) {
  kvn::Network const network = bench::grid(sideOf(state), true);
  for (auto _ : state) {
    kvn::AlgorithmData data;
    data.readNetworkData(network);
    benchmark::DoNotOptimize(data.pointsCount);
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(readNetworkData)->RangeMultiplier(4)->Range(1024, 65536)->Complexity()->Unit(benchmark::kMillisecond);

/// Distances of a grid, every line from both ends.
void mergeRepeatedLines(benchmark::State& state) {
  kvn::AlgorithmData data;
  data.readNetworkData(bench::grid(sideOf(state), true));
  std::vector<kvn::LineInfo> lines;
  for (auto const& station : data.stations) lines.insert(lines.end(), station.lines.begin(), station.lines.end());
  for (auto _ : state) {
    std::vector<kvn::LineInfo> merged = lines;
    kvn::detail::mergeRepeatedLines(merged);
    benchmark::DoNotOptimize(merged.data());
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(mergeRepeatedLines)->RangeMultiplier(4)->Range(1024, 65536)->Complexity()->Unit(benchmark::kMillisecond);

/// The walk of a network alone; no matrix is made.
void approximate(benchmark::State& state, kvn::Network const& network) {
  kvn::AlgorithmData data;
  data.readNetworkData(network);
  kvn::TraverseAdjust read;
  read.readAlgorithmData(data);
  for (auto _ : state) {
    read.calculateApproximate();
    benchmark::DoNotOptimize(read);
  }
  state.SetComplexityN(state.range(0));
}

void approximateWithDistances(benchmark::State& state) { approximate(state, bench::grid(sideOf(state), true)); }
BENCHMARK(approximateWithDistances)
    ->RangeMultiplier(4)
    ->Range(1024, 65536)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);

void approximateWithAnglesOnly(benchmark::State& state) {
  // A band of triangles: each station sights the two before it and the two after it.
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
  approximate(state, network);
}
BENCHMARK(approximateWithAnglesOnly)
    ->RangeMultiplier(4)
    ->Range(1024, 65536)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);

/// The inversion of the full matrix rules: cubic.
void adjust(benchmark::State& state) {
  kvn::AlgorithmData data;
  data.readNetworkData(bench::grid(sideOf(state), true));
  for (auto _ : state) {
    kvn::TraverseAdjust adjustment;
    adjustment.Adjust(data);
    benchmark::DoNotOptimize(adjustment);
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(adjust)->RangeMultiplier(2)->Range(64, 512)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
