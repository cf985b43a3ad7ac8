// Heights: from the rows of a field book to the heights of its points, and the two kinds of matrix against each other.
#include "SyntheticNetworks.h"
#include "SyntheticRandom.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <limits>
#include <vector>

namespace {

/// Points in rows of equal length, the last of which may be short. Each is a station that sights, on both faces, the
/// next one of its row, the one below it and the one below that to the right, the last two by chance but in the first
/// column. Lines of 50 to 150 m, 1 mm for the root of 100 m; known is the first point, and every 1000th.
std::vector<kvn::TraverseDataInfo> levellingGrid(std::size_t points) {
  constexpr std::size_t kPointsForOneKnown = 1000;
  auto const width = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(points))));
  bench::Random random(1);
  std::vector<double> heights(points);
  for (double& height : heights) height = random.between(100.0, 120.0);
  std::vector<kvn::TraverseDataInfo> rows;
  for (std::size_t i = 0; i < points; ++i) {
    kvn::TraverseDataInfo station(kvn::ElevationAngle);
    station.pointType = kvn::TraversePointType::StationPoint;
    station.name = bench::nameOf(i);
    station.isKnown = i % kPointsForOneKnown == 0;
    station.Z = station.isKnown ? heights[i] : 0.0;
    rows.push_back(station);
    bool const isLast = i % width + 1 == width;
    auto const sight = [&](std::size_t target, bool isThere) {
      if (!isThere || target >= points) return;
      double const length = random.between(50.0, 150.0);
      double const rise = heights[target] - heights[i] + 1e-4 * std::sqrt(length) * random.normal();
      kvn::TraverseDataInfo row(kvn::ElevationAngle);
      row.groupId = station.groupId;
      row.name = bench::nameOf(target);
      row.vertical_angle = std::atan2(rise, length);
      row.slant_distance = std::hypot(rise, length);
      rows.insert(rows.end(), 2, row);
    };
    sight(i + 1, !isLast);
    sight(i + width, i % width == 0 || random.uniform() < 0.8);
    sight(i + width + 1, !isLast && random.uniform() < 0.2);
  }
  return rows;
}

kvn::TriangleHeightDataConvert observed(std::vector<kvn::TraverseDataInfo> const& rows) {
  kvn::TriangleHeightDataRead reader(kvn::ElevationAngle);
  reader.setTraverseDataList(rows, 1.0);
  kvn::TriangleHeightDataConvert observations;
  observations.setTriangleHeightDataRead(reader);
  return observations;
}

void heightRoad(benchmark::State& state) {
  std::vector<kvn::TraverseDataInfo> const rows = levellingGrid(static_cast<std::size_t>(state.range(0)));
  std::vector<kvn::CoordinatePointInfo> points(static_cast<std::size_t>(state.range(0)));
  for (std::size_t i = 0; i < points.size(); ++i) points[i].name = bench::nameOf(i);
  for (auto _ : state) {
    kvn::TriangleHeightAdjust adjustment;
    adjustment.setTriangleHeightDataConvert(observed(kvn::elevationRows(rows).rows));
    adjustment.heightLSAdjust();
    adjustment.convertCoordZ(points);
    benchmark::DoNotOptimize(points.data());
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(heightRoad)->RangeMultiplier(2)->Range(16384, 131072)->Complexity()->Unit(benchmark::kMillisecond);

void heights(benchmark::State& state, int sparseFrom) {
  kvn::TriangleHeightDataConvert const observations = observed(levellingGrid(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) {
    kvn::TriangleHeightAdjust adjustment;
    adjustment.setSparseFrom(sparseFrom);
    adjustment.setTriangleHeightDataConvert(observations);
    adjustment.heightLSAdjust();
    benchmark::DoNotOptimize(adjustment.getUnitError());
  }
  state.SetComplexityN(state.range(0));
}

void heightsByFullMatrix(benchmark::State& state) { heights(state, std::numeric_limits<int>::max()); }
void heightsBySparseMatrix(benchmark::State& state) { heights(state, 0); }
BENCHMARK(heightsByFullMatrix)->RangeMultiplier(2)->Range(32, 1024)->Complexity()->Unit(benchmark::kMicrosecond);
BENCHMARK(heightsBySparseMatrix)->RangeMultiplier(2)->Range(32, 1024)->Complexity()->Unit(benchmark::kMicrosecond);

}  // namespace
