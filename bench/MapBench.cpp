// Building, framing, clearing and drawing a map, against its number of points; three lines for each.
#include <Kelvane.h>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Map {
  kvn::System system;
  osg::ref_ptr<mvz::ViewerManager> viewers = new mvz::ViewerManager;
  std::shared_ptr<kvn::Project> project = system.createProject();
  std::vector<kvn::DrawPoint> points;
  std::vector<kvn::DrawLine> lines;

  explicit Map(std::int64_t count) {
    system.setConfigFile(QString());
    system.setMvzViewerManager(viewers);
    auto const side = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
    for (int i = 0; i < count; ++i) {
      points.emplace_back(4000000.0 + 50 * (i / side), 500000.0 + 50 * (i % side), 0.0, "P" + std::to_string(i));
    }
    for (int i = 0; i < count; ++i) {
      for (int const step : {1, side, side + 1}) {
        lines.emplace_back(points[static_cast<std::size_t>(i)],
                           points[static_cast<std::size_t>((i + step) % static_cast<int>(count))]);
      }
    }
  }

  void build() {
    kvn::LineDataTool lineTool(project->getOrCreateMapScene());
    for (kvn::DrawLine const& line : lines) lineTool.build(line);
    kvn::PointDataTool pointTool(project->getOrCreateMapScene());
    for (kvn::DrawPoint const& point : points) pointTool.build(point);
  }
};

void buildMap(benchmark::State& state) {
  Map map(state.range(0));
  for (auto _ : state) {
    map.build();
    state.PauseTiming();
    map.project->clearMapData();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}

void clearMap(benchmark::State& state) {
  Map map(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    map.build();
    state.ResumeTiming();
    map.project->clearMapData();
  }
  state.SetComplexityN(state.range(0));
}

void frameMap(benchmark::State& state) {
  Map map(state.range(0));
  osg::ref_ptr<mvz::View> const view = new mvz::View(1200, 900);
  map.viewers->addView(view);
  map.build();
  for (auto _ : state) map.viewers->fullMapAllView(map.project->getMapScene()->getLayers());
  state.SetComplexityN(state.range(0));
}

void renderMap(benchmark::State& state) {
  Map map(state.range(0));
  osg::ref_ptr<mvz::OffscreenView> const view = new mvz::OffscreenView(1200, 900);
  map.viewers->addView(view);
  map.build();
  map.viewers->fullMapAllView(map.project->getMapScene()->getLayers());
  for (auto _ : state) benchmark::DoNotOptimize(view->render());
  state.SetComplexityN(state.range(0));
}

double heapBytes() { return static_cast<double>(mallinfo2().uordblks) + static_cast<double>(mallinfo2().hblkhd); }

/// What the heap holds more for each point, with the features of its lines: after they are made, and after a picture.
void memoryOfMap(benchmark::State& state) {
  for (auto _ : state) {
    Map map(state.range(0));
    osg::ref_ptr<mvz::OffscreenView> const view = new mvz::OffscreenView(1200, 900);
    map.viewers->addView(view);
    benchmark::DoNotOptimize(view->render());
    double const before = heapBytes();
    auto const count = static_cast<double>(state.range(0));
    map.build();
    state.counters["made_KB"] = (heapBytes() - before) / count / 1000.0;
    map.viewers->fullMapAllView(map.project->getMapScene()->getLayers());
    benchmark::DoNotOptimize(view->render());
    state.counters["drawn_KB"] = (heapBytes() - before) / count / 1000.0;
  }
}

BENCHMARK(buildMap)->Unit(benchmark::kMillisecond)->Arg(5000)->Arg(20000)->Complexity();
BENCHMARK(clearMap)->Unit(benchmark::kMillisecond)->Arg(5000)->Arg(20000)->Complexity();
BENCHMARK(frameMap)->Unit(benchmark::kMillisecond)->Arg(5000)->Arg(20000)->Complexity();
BENCHMARK(renderMap)->Unit(benchmark::kMillisecond)->Arg(5000)->Arg(20000)->Iterations(3)->Complexity();
BENCHMARK(memoryOfMap)->Unit(benchmark::kMillisecond)->Arg(5000)->Arg(20000)->Arg(100000)->Iterations(1);

}  // namespace
