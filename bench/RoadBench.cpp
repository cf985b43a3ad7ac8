// The whole road of `kelvane adjust`: network file, input, least squares, results, coordinate file.
#include "SyntheticNetworks.h"
#include "Timing.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Points of the networks, unless KELVANE_ROAD_POINTS lists others.
constexpr char kSizes[] = "100,1000,10000";

constexpr std::uint64_t kSeed = 1;
constexpr int kIterationLimit = 50;  // as `kelvane adjust`

/// What one run tells, in one piece for the pipe.
struct Road {
  double read = 0.0;  // seconds, each of the stages
  double input = 0.0;
  double adjust = 0.0;
  double results = 0.0;
  double write = 0.0;
  double longestWait = 0.0;  // seconds between two questions whether to go on
  double unitError = 0.0;
  double iterations = 0.0;
  double trueErrorMm = 0.0;      // root mean square of the errors against the truth
  double promisedErrorMm = 0.0;  // root mean square of the point errors that the adjustment gives
  double peakMegabytes = 0.0;    // of the process of the run
  char failure[200] = "";
};

/// The peak memory is one of a whole process and never falls, so that each run has a process of its own. The parent
/// stays small, since a child begins with what its parent holds.
template <typename Work>
Road inChild(Work const& work) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  std::fflush(nullptr);
  pid_t const child = fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    Road road;
    try {
      work(road);
    } catch (std::exception const& failure) {
      std::strncpy(road.failure, failure.what(), sizeof road.failure - 1);
    }
    bool const sent = write(ends[1], &road, sizeof road) == static_cast<ssize_t>(sizeof road);
    _exit(sent ? 0 : 1);
  }
  close(ends[1]);
  Road road;
  bool const received = read(ends[0], &road, sizeof road) == static_cast<ssize_t>(sizeof road);
  close(ends[0]);
  rusage usage{};
  int status = 0;
  if (wait4(child, &status, 0, &usage) != child || !received) {
    throw std::runtime_error("the run ended without a result; out of memory?");
  }
  road.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024.0;
  return road;
}

/// A folder that goes with the object.
class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kelvane-road-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path = pattern;
  }
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::string file(char const* name) const { return (path / name).string(); }

 private:
  std::filesystem::path path;
};

void writeNetwork(bench::SyntheticNetwork const& synthetic, std::string const& path) {
  kvn::Network network = synthetic.network();
  kvn::CarefulCosaCollection collection;
  collection.setKnownPointList(std::move(network.knownPoints));
  collection.setNetworkDataList(std::move(network.lines));
  std::ofstream stream(path, std::ios::binary);
  collection.write(stream);
  stream.close();
  if (!stream) throw std::runtime_error("the network cannot be written");
}

double promisedErrorMm(std::vector<kvn::PointErrorInfo> const& points) {
  double sum = 0.0;
  for (kvn::PointErrorInfo const& point : points) sum += point.mp * point.mp;
  return 1e3 * std::sqrt(sum / static_cast<double>(points.size()));
}

void travel(Folder const& folder, Road& road) {
  kvn::System system;
  system.init();
  auto const project = system.createProject();
  bench::Watch watch;
  project->read(QString::fromStdString(folder.file("network.in2")));
  road.read = watch.lap();

  auto adjustment = std::make_unique<kvn::AlgorithmAdjust>();
  adjustment->setConfigure(project->getConfigure());
  adjustment->setCountControlDistances(true);
  adjustment->setIterationLimit(kIterationLimit);
  bench::Watch sinceAsked;
  adjustment->setCancelCall([&sinceAsked, &road] {
    road.longestWait = std::max(road.longestWait, sinceAsked.lap());
    return false;
  });
  adjustment->setNetworkData(project->getNetwork(), kvn::MissingDirection::IsLeftOut);
  road.input = watch.lap();
  sinceAsked.lap();
  adjustment->calculateAdjust();
  road.longestWait = std::max(road.longestWait, sinceAsked.lap());
  adjustment->setCancelCall({});
  road.adjust = watch.lap();

  road.unitError = adjustment->getSummary().unitError;
  road.iterations = adjustment->getSummary().iterations;
  road.promisedErrorMm = promisedErrorMm(adjustment->getPointErrorInfoList());
  watch.lap();  // what is asked here is no part of the road
  project->setAlgorithmAdjust(std::move(adjustment));
  project->algorithmPointConvertCoord();
  road.results = watch.lap();

  kvn::CoordinateDataCollection coordinates;
  coordinates.setCoordinateDataList(project->getCoordinatePointList());
  coordinates.write(folder.file("adjusted.dat"));
  road.write = watch.lap();
}

/// In a child of its own, so that the peak of the run is its own: the truth is made anew from the seed.
void compare(std::vector<bench::TruePoint> const& truth, Folder const& folder, Road& road) {
  kvn::CoordinateDataCollection adjusted;
  adjusted.read(QString::fromStdString(folder.file("adjusted.dat")));
  if (adjusted.getCoordinateDataList().size() != truth.size())
    throw std::runtime_error("points are missing in the result");
  std::vector<kvn::PointErrorInfo> positions;
  for (kvn::CoordinatePointInfo const& coordinate : adjusted.getCoordinateDataList()) {
    kvn::PointErrorInfo point;
    point.name = coordinate.name;
    point.x = coordinate.N;
    point.y = coordinate.E;
    positions.push_back(std::move(point));
  }
  road.trueErrorMm = 1e3 * bench::positionError(positions, truth);
}

using MakeNetwork = bench::SyntheticNetwork (*)(std::size_t points, std::uint64_t seed);

void run(benchmark::State& state, bench::Growth& growth, MakeNetwork make) {
  auto const points = static_cast<std::size_t>(state.range(0));
  try {
    Folder const folder;
    Road const made = inChild([&](Road&) { writeNetwork(make(points, kSeed), folder.file("network.in2")); });
    if (made.failure[0] != '\0') throw std::runtime_error(made.failure);
    Road road;
    double seconds = 0.0;
    for (auto _ : state) {
      road = inChild([&](Road& result) { travel(folder, result); });
      if (road.failure[0] != '\0') throw std::runtime_error(road.failure);
      seconds = road.read + road.input + road.adjust + road.results + road.write;
      state.SetIterationTime(seconds);
    }
    Road const compared = inChild([&](Road& result) { compare(make(points, kSeed).points, folder, result); });
    if (compared.failure[0] != '\0') throw std::runtime_error(compared.failure);
    state.counters["1_read_s"] = road.read;
    state.counters["2_input_s"] = road.input;
    state.counters["3_adjust_s"] = road.adjust;
    state.counters["4_results_s"] = road.results;
    state.counters["5_write_s"] = road.write;
    state.counters["longest_wait_s"] = road.longestWait;
    state.counters["peak_MB"] = road.peakMegabytes;
    state.counters["unitError"] = road.unitError;
    state.counters["iterations"] = road.iterations;
    state.counters["error_mm"] = compared.trueErrorMm;
    state.counters["error_over_mp"] = compared.trueErrorMm / road.promisedErrorMm;
    state.counters["slope"] = growth.exponent(state.range(0), seconds);
    state.SetComplexityN(state.range(0));
  } catch (std::exception const& failure) {
    state.SkipWithError(failure.what());
  }
}

void wholeRoad(benchmark::State& state) {
  static bench::Growth growth;
  run(state, growth, bench::gridNetwork);
}

void wholeRoadOfChain(benchmark::State& state) {
  static bench::Growth growth;
  run(state, growth, bench::chainNetwork);
}

void sizes(benchmark::internal::Benchmark* road) {
  char const* const wanted = std::getenv("KELVANE_ROAD_POINTS");
  std::istringstream list(wanted != nullptr ? wanted : kSizes);
  for (std::string size; std::getline(list, size, ',');) road->Arg(std::stol(size));
  road->Iterations(1)->UseManualTime()->Complexity()->Unit(benchmark::kMillisecond);
}

BENCHMARK(wholeRoad)->Apply(sizes);
BENCHMARK(wholeRoadOfChain)->Apply(sizes);

}  // namespace
