// A field job from its file to the network, against the number of its rows.
#include <Kelvane.h>
#include <benchmark/benchmark.h>
#include <sstream>
#include <string>

namespace {

constexpr int kTargets = 9;  // a station has a row of its own and two faces: 19 rows

/// Stations on a line that sight their neighbours on both faces; the first two are known.
std::vector<kvn::TraverseDataInfo> job(int rowCount) {
  int const stations = rowCount / (2 * kTargets + 1);
  auto const nameOf = [](int i) { return "P" + std::to_string(i); };
  std::vector<kvn::TraverseDataInfo> rows;
  for (int s = 0; s < stations; ++s) {
    kvn::TraverseDataInfo station;
    station.pointType = kvn::TraversePointType::StationPoint;
    station.name = nameOf(s);
    station.isKnown = s < 2;
    station.N = 50.0 * s + 1.0;
    rows.push_back(station);
    for (int i = 0; i < 2 * kTargets; ++i) {
      int const k = i < kTargets ? i : 2 * kTargets - 1 - i;
      kvn::TraverseDataInfo sight;
      sight.groupId = station.groupId;
      sight.name = nameOf(s + 1 + k);
      sight.horizontal_angle = 0.01 + 0.3 * k + (i < kTargets ? 0.0 : 3.141592653589793);
      sight.vertical_angle = i < kTargets ? 1.5 : 4.78318530717958;
      sight.slant_distance = 50.0 * (k + 1);
      sight.horizontal_distance = sight.getHorizontalDisance();
      rows.push_back(sight);
    }
  }
  return rows;
}

void readTraverseFile(benchmark::State& state) {
  kvn::VRDTraverseDataCollcetion written;
  written.setTraverseDataList(job(static_cast<int>(state.range(0))));
  std::ostringstream text;
  static_cast<kvn::ITraverseDataCollcetion&>(written).write(text);
  for (auto _ : state) {
    std::istringstream stream(text.str());
    kvn::VRDTraverseDataCollcetion collection;
    collection.read(stream);
    benchmark::DoNotOptimize(collection.getTraverseDataList().data());
  }
  state.SetComplexityN(state.range(0));
}

template <typename Step>
void run(benchmark::State& state, Step step) {
  std::vector<kvn::TraverseDataInfo> rows = job(static_cast<int>(state.range(0)));
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
BENCHMARK(readTraverseFile)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(checkRows)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(rowsToNetwork)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(jobToNetwork)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(carefulReduction)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(heightReduction)->RangeMultiplier(2)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
