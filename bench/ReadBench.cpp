// The readers against the number of lines, and against the least that a reader of the same bytes has to do.
#include "Job.h"
#include "SyntheticNetworks.h"
#include "Timing.h"

#include <benchmark/benchmark.h>
#include <QDir>
#include <QFile>
#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>
#include <string_view>

namespace {

/// Cuts the text into lines and fields and reads every number: what no reader can do without. Returns their sum.
double bareLoop(std::string_view text) {
  double sum = 0.0;
  char const* at = text.data();
  char const* const end = at + text.size();
  while (at < end) {
    char const* const fieldEnd = std::find_if(at, end, [](char c) { return c == ',' || c == ' ' || c == '\n'; });
    double value = 0.0;
    if (std::from_chars(at, fieldEnd, value).ec == std::errc()) sum += value;
    at = fieldEnd + 1;
  }
  return sum;
}

template <typename Read>
void run(benchmark::State& state, std::string const& text, Read const& read) {
  // The best of a few runs, as the reader's time is a mean of many.
  double const bare = bench::bestSeconds(5, [&text] { benchmark::DoNotOptimize(bareLoop(text)); });
  bench::ProcessorWatch watch;
  for (auto _ : state) read();
  double const mean = watch.lap() / double(state.iterations());
  state.counters["bare_MB/s"] = double(text.size()) / bare / 1e6;
  state.counters["ratio"] = mean / bare;
  state.SetComplexityN(state.range(0));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

template <typename Collection>
std::string textOf(Collection& collection) {
  std::ostringstream text;
  collection.write(text);
  return text.str();
}

kvn::Network networkOf(int64_t points) { return bench::gridNetwork(static_cast<std::size_t>(points), 1).network(); }

/// About `lines` lines of a network: a point has one of its own, and two for each of its six sights.
std::string networkText(int64_t lines) {
  kvn::CosaCollection written;
  kvn::Network network = networkOf(lines / 13);
  written.setKnownPointList(std::move(network.knownPoints));
  written.setNetworkDataList(std::move(network.lines));
  return textOf<kvn::INetworkDataCollection>(written);
}

template <typename Collection>
void readNetwork(benchmark::State& state) {
  std::string const text = networkText(state.range(0));
  run(state, text, [&text] {
    std::istringstream stream(text);
    Collection collection;
    collection.read(stream);
    benchmark::DoNotOptimize(collection.getNetworkDataList().data());
  });
}

template <typename Collection>
void readJob(benchmark::State& state, int64_t rows) {
  Collection written;
  written.setTraverseDataList(bench::job(static_cast<int>(rows)));
  std::string const text = textOf<kvn::ITraverseDataCollcetion>(written);
  run(state, text, [&text] {
    std::istringstream stream(text);
    Collection collection;
    collection.read(stream);
    benchmark::DoNotOptimize(collection.getTraverseDataList().data());
  });
}

/// A coordinate file, which is read by its path.
class CoordinateFile {
 public:
  explicit CoordinateFile(int64_t lines) : path(QDir::temp().filePath(QStringLiteral("kelvane-read-bench.dat"))) {
    std::vector<kvn::CoordinatePointInfo> points(static_cast<std::size_t>(lines));
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i].name = "P" + std::to_string(i);
      points[i].signal = "M" + std::to_string(i % 10);
      points[i].E = 500000.0 + 0.1234 * double(i);
      points[i].N = 4000000.0 + 0.4321 * double(i);
      points[i].Z = 100.0 + 0.0003 * double(i);
    }
    kvn::CoordinateDataCollection written;
    written.setCoordinateDataList(std::move(points));
    text = textOf(written);
    std::ofstream(path.toStdString(), std::ios::binary) << text;
  }
  CoordinateFile(CoordinateFile const&) = delete;
  CoordinateFile& operator=(CoordinateFile const&) = delete;
  ~CoordinateFile() { QFile::remove(path); }

  QString const path;
  std::string text;
};

void readTraverseFile(benchmark::State& state) { readJob<kvn::VRDTraverseDataCollcetion>(state, state.range(0)); }
void readJobFile(benchmark::State& state) {
  constexpr int kLinesOfRow = 3;  // the point, its readings, its coordinates
  readJob<kvn::LQFTraverseDataCollection>(state, state.range(0) / kLinesOfRow);
}
void readNetworkFile(benchmark::State& state) { readNetwork<kvn::CosaCollection>(state); }
void readNetworkCarefully(benchmark::State& state) { readNetwork<kvn::CarefulCosaCollection>(state); }

void readCoordinateFile(benchmark::State& state) {
  CoordinateFile const file(state.range(0));
  run(state, file.text, [&file] {
    kvn::CoordinateDataCollection collection;
    collection.read(file.path);
    benchmark::DoNotOptimize(collection.getCoordinateDataList().data());
  });
}

void readCoordinatesOfOldKind(benchmark::State& state) {
  CoordinateFile const file(state.range(0));
  run(state, file.text, [&file] {
    kvn::DatFileData data;
    data.openDatFileData(file.path);
    benchmark::DoNotOptimize(data.getDatFileData().constData());
  });
}

/// A whole traverse file to face means.
void readWholeTraverseFile(benchmark::State& state) {
  std::vector<kvn::TraverseDataInfo> rows = bench::job(static_cast<int>(state.range(0)));
  for (kvn::TraverseDataInfo& row : rows) {  // the first sight is the zero of the circle here
    row.horizontal_angle = row.horizontal_angle < 3.0 ? row.horizontal_angle - 0.01 : row.horizontal_angle;
  }
  kvn::VRDTraverseDataCollcetion written;
  written.setTraverseDataList(rows);
  std::string const text = textOf<kvn::ITraverseDataCollcetion>(written);
  QString const path = QDir::temp().filePath(QStringLiteral("kelvane-read-bench.txt"));
  std::ofstream(path.toStdString(), std::ios::binary) << text;
  run(state, text, [&path] {
    kvn::FileData data("");
    data.readVRDFileData(path.toStdString());
    benchmark::DoNotOptimize(data.stations.data());
  });
  QFile::remove(path);
}

void readWholeNetworkFile(benchmark::State& state) {
  std::string const text = networkText(state.range(0));
  QString const path = QDir::temp().filePath(QStringLiteral("kelvane-read-bench.IN2"));
  std::ofstream(path.toStdString(), std::ios::binary) << text;
  run(state, text, [&path] {
    kvn::FileData data("");
    data.readCosaFileData(path.toStdString());
    benchmark::DoNotOptimize(data.stations.data());
  });
  QFile::remove(path);
}

constexpr int kLeast = 8192;
constexpr int kMost = 524288;
BENCHMARK(readTraverseFile)->RangeMultiplier(4)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(readJobFile)->RangeMultiplier(4)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(readNetworkFile)->RangeMultiplier(4)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(readNetworkCarefully)->RangeMultiplier(4)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(readCoordinateFile)->RangeMultiplier(4)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(readCoordinatesOfOldKind)
    ->RangeMultiplier(4)
    ->Range(kLeast, kMost)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(readWholeTraverseFile)->RangeMultiplier(4)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(readWholeNetworkFile)->RangeMultiplier(4)->Range(kLeast, kMost)->Complexity()->Unit(benchmark::kMillisecond);

/// From the network to the input of the calculators, and to that of the adjustment; the range is the points.
void networkToInput(benchmark::State& state) {
  kvn::Network const network = networkOf(state.range(0));
  for (auto _ : state) {
    kvn::AlgorithmData data;
    data.readNetworkData(network, kvn::MissingDirection::IsLeftOut);
    benchmark::DoNotOptimize(data.stations.data());
  }
  state.SetComplexityN(state.range(0));
}

void inputToAdjustment(benchmark::State& state) {
  kvn::AlgorithmData data;
  data.readNetworkData(networkOf(state.range(0)), kvn::MissingDirection::IsLeftOut);
  for (auto _ : state) {
    kvn::TraverseAdjust adjustment(2.0, 0.003, 3e-6, true);
    adjustment.readAlgorithmData(data);
    benchmark::DoNotOptimize(&adjustment);
  }
  state.SetComplexityN(state.range(0));
}

BENCHMARK(networkToInput)->RangeMultiplier(4)->Range(1600, 102400)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(inputToAdjustment)->RangeMultiplier(4)->Range(1600, 102400)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
