// Reading a COSA file against the number of its lines.
#include "Grid.h"

#include <benchmark/benchmark.h>
#include <sstream>

namespace {

void readCosa(benchmark::State& state) {
  int const side = static_cast<int>(std::lround(std::sqrt(double(state.range(0)) / 8.0)));
  kvn::CosaCollection written;
  kvn::Network const network = bench::grid(side, true);
  written.setKnownPointList(network.knownPoints);
  written.setNetworkDataList(network.lines);
  std::ostringstream text;
  written.write(text);
  for (auto _ : state) {
    std::istringstream stream(text.str());
    kvn::CosaCollection collection;
    collection.read(stream);
    benchmark::DoNotOptimize(collection.getNetworkDataList().data());
  }
  state.SetComplexityN(state.range(0));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.str().size()));
}
BENCHMARK(readCosa)->RangeMultiplier(4)->Range(1024, 262144)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
