// A field job from its rows to the network, against their number.
#include "Job.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace {

template <typename Step>
void run(benchmark::State& state, Step step) {
  std::vector<kvn::TraverseDataInfo> rows = bench::job(static_cast<int>(state.range(0)));
  for (auto _ : state) step(rows);
  state.SetComplexityN(state.range(0));
}

void checkRows(benchmark::State& state) {
  run(state, [](auto& rows) { benchmark::DoNotOptimize(kvn::TraverseDataManage::checkData(rows)); });
}
void rowsToNetwork(benchmark::State& state) {
  run(state, [](auto& rows) {
    benchmark::DoNotOptimize(kvn::INetworkDataCollection::TraverseDataListToNetwork(rows).lines.data());
  });
}
void jobToNetwork(benchmark::State& state) {
  run(state, [](auto& rows) {
    kvn::StationMap const map = kvn::DataManager().buildStationMap(rows);
    benchmark::DoNotOptimize(kvn::INetworkDataCollection::TraverseMapToNetWork(map).data());
  });
}
void carefulReduction(benchmark::State& state) {
  run(state, [](auto& rows) { benchmark::DoNotOptimize(kvn::reduceField(rows).network.lines.data()); });
}
void heightReduction(benchmark::State& state) {
  run(state, [](auto& rows) {
    kvn::TriangleHeightDataRead reader(kvn::ElevationAngle);
    reader.setTraverseDataList(kvn::elevationRows(rows).rows, 0.16);
    benchmark::DoNotOptimize(reader.getTriangleViewData().data());
  });
}

constexpr int kLeast = 50000;
constexpr int kMost = 200000;
BENCHMARK(checkRows)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(rowsToNetwork)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(jobToNetwork)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(carefulReduction)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(heightReduction)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
