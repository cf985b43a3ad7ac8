// The project file, and the commands that walk whole lists, against the number of rows.
#include <Kelvane.h>
#include <benchmark/benchmark.h>
#include <json/value.h>
#include <QTemporaryDir>
#include <memory>

namespace {

/// Stations with ten targets each, and a coordinate for every tenth row.
std::vector<kvn::TraverseDataInfo> rowsOf(std::size_t count) {
  std::vector<kvn::TraverseDataInfo> rows(count);
  for (std::size_t i = 0; i < count; ++i) {
    bool const isStation = i % 11 == 0;
    rows[i].name = (isStation ? "S" : "P") + std::to_string(i);
    rows[i].pointType = isStation ? kvn::TraversePointType::StationPoint : kvn::TraversePointType::PrismPoint;
    if (!isStation) rows[i].groupId = rows[i - i % 11].id;
    rows[i].horizontal_angle = 0.000123 * double(i % 40000);
    rows[i].vertical_angle = 1.57;
    rows[i].slant_distance = 10.0 + double(i % 977) / 7.0;
  }
  return rows;
}

struct Fixture {
  explicit Fixture(std::size_t rows) {
    system.setConfigFile(QString());
    project = system.createProject();
    project->setTraverseDataList(rowsOf(rows));
    project->setFileType(kvn::Project::CosaFile);  // reading makes no network: the file alone is measured
    project->setCoordinatePointList(std::vector<kvn::CoordinatePointInfo>(rows / 10));
  }

  kvn::System system;
  std::shared_ptr<kvn::Project> project;
  QTemporaryDir folder;
  QString path = folder.filePath("job.kvn");
};

void saveProject(benchmark::State& state) {
  Fixture fixture(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) fixture.project->saveAs(fixture.path);
  state.SetComplexityN(state.range(0));
}
BENCHMARK(saveProject)->Arg(12500)->Arg(50000)->Arg(200000)->Complexity()->Unit(benchmark::kMillisecond);

void readProject(benchmark::State& state) {
  Fixture fixture(static_cast<std::size_t>(state.range(0)));
  fixture.project->saveAs(fixture.path);
  for (auto _ : state) fixture.project->read(fixture.path);
  state.SetComplexityN(state.range(0));
}
BENCHMARK(readProject)->Arg(12500)->Arg(50000)->Arg(200000)->Complexity()->Unit(benchmark::kMillisecond);

/// Every second coordinate is removed in one command.
void removeCoordinates(benchmark::State& state) {
  auto const count = static_cast<std::size_t>(state.range(0));
  Fixture fixture(0);
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<kvn::CoordinatePointInfo> points(count);
    Json::Value in;
    for (std::size_t i = 0; i < count; i += 2) in["data"]["ids"].append(points[i].id);
    fixture.project->setCoordinatePointList(std::move(points));
    Json::Value out;
    state.ResumeTiming();
    fixture.project->getCommandManager()->execute("RemoveCoordinateDataCMD", in, out, [] { return true; });
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(removeCoordinates)->Arg(12500)->Arg(50000)->Arg(200000)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
