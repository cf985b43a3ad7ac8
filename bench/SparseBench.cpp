// The sparse normal equations of a grid against the number of points, and as ratios to CHOLMOD where there is one.
#include "CholmodReference.h"
#include "SyntheticNormals.h"
#include "Timing.h"
#include "adjust/linalg/SparseCholesky.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
#include <stdexcept>
#include <vector>

namespace {

using bench::CholmodReference;
using bench::Growth;
using bench::SyntheticNormals;
using kvn::sparse::SparseCholesky;

SyntheticNormals normalsOfGrid(benchmark::State const& state) {
  return SyntheticNormals(bench::gridNetwork(static_cast<std::size_t>(state.range(0)), 1));
}

void addValues(SyntheticNormals const& normals, SparseCholesky& cholesky) {
  cholesky.clear();
  for (auto const& q : normals.equations) {
    cholesky.addEquation(q.factor.data(), q.unknown.data(), q.count, q.weight);
  }
}

void requireFactor(SparseCholesky& cholesky) {
  if (!cholesky.factor()) throw std::runtime_error("the normal equations are singular");
}

/// The normal equations with their values.
struct Filled {
  explicit Filled(benchmark::State const& state)
      : normals(normalsOfGrid(state)), cholesky(normals.blockSizes, normals.cliques) {
    addValues(normals, cholesky);
  }
  SyntheticNormals normals;
  SparseCholesky cholesky;
};

/// Found once for each size.
std::optional<CholmodReference> const& referenceOf(SyntheticNormals const& normals) {
  static std::map<std::size_t, std::optional<CholmodReference>> found;
  auto const at = found.find(normals.points);
  return at != found.end() ? at->second : found[normals.points] = bench::cholmodReference(normals);
}

/// Tells the growth of the shortest time of `work`, and its ratio to a time of CHOLMOD.
template <typename Work>
void measure(benchmark::State& state, Growth& growth, SyntheticNormals const& normals,
             double CholmodReference::*referenceSeconds, Work const& work) {
  double const seconds = bench::measure(state, growth, work);
  auto const& reference = referenceOf(normals);
  if (reference) state.counters["ratio"] = seconds / (*reference).*referenceSeconds;
}

void sparseOrder(benchmark::State& state) {
  static Growth growth;
  SyntheticNormals const normals = normalsOfGrid(state);
  measure(state, growth, normals, &CholmodReference::orderSeconds, [&normals] {
    SparseCholesky const cholesky(normals.blockSizes, normals.cliques);
    benchmark::DoNotOptimize(cholesky.factorSize());
  });
}

void sparseAdd(benchmark::State& state) {
  static Growth growth;
  Filled filled(state);
  bench::measure(state, growth, [&filled] { addValues(filled.normals, filled.cholesky); });
}

void sparseFactor(benchmark::State& state) {
  static Growth growth;
  Filled filled(state);
  requireFactor(filled.cholesky);  // the first one asks the system for the memory of all
  measure(state, growth, filled.normals, &CholmodReference::factorSeconds,
          [&filled] { requireFactor(filled.cholesky); });
}

/// Of two solutions, the size of their difference over that of the second.
double relativeDifference(std::vector<double> const& x, std::vector<double> const& reference) {
  double difference = 0.0;
  double size = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    difference += (x[i] - reference[i]) * (x[i] - reference[i]);
    size += reference[i] * reference[i];
  }
  return std::sqrt(difference / size);
}

void sparseSolve(benchmark::State& state) {
  static Growth growth;
  Filled filled(state);
  requireFactor(filled.cholesky);
  std::vector<double> const right = filled.normals.rightSide();
  std::vector<double> x;
  measure(state, growth, filled.normals, &CholmodReference::solveSeconds, [&] {
    x = right;
    filled.cholesky.solve(x);
  });
  auto const& reference = referenceOf(filled.normals);
  if (reference) state.counters["difference"] = relativeDifference(x, reference->solution);
}

/// The elements of the inverse that the results of an adjustment ask for, in ratio to the factor alone.
void sparseInvert(benchmark::State& state) {
  static Growth growth;
  Filled filled(state);
  requireFactor(filled.cholesky);
  filled.cholesky.invert();
  measure(state, growth, filled.normals, &CholmodReference::factorSeconds, [&filled] { filled.cholesky.invert(); });
}

void grids(benchmark::internal::Benchmark* sparse) {
  sparse->Arg(1000)->Arg(10000)->Arg(100000)->Complexity()->Unit(benchmark::kMillisecond);
}

BENCHMARK(sparseOrder)->Apply(grids);
BENCHMARK(sparseAdd)->Apply(grids);
BENCHMARK(sparseFactor)->Apply(grids);
BENCHMARK(sparseSolve)->Apply(grids);
BENCHMARK(sparseInvert)->Apply(grids);

}  // namespace
