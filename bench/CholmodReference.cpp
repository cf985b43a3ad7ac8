#include "CholmodReference.h"

#include "Timing.h"

#if defined(KELVANE_BENCH_CHOLMOD)
#include <cholmod.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#endif

namespace bench {

#if defined(KELVANE_BENCH_CHOLMOD)

namespace {

bool isOne(char const* variable) {
  char const* const value = std::getenv(variable);
  return value != nullptr && std::strcmp(value, "1") == 0;
}

/// As many runs as one of our own benchmarks has, and at least three: the first one asks the system for its memory.
template <typename Work>
double secondsOf(Work const& work) {
  constexpr double kSecondsOfBenchmark = 0.5;
  return bestSeconds(3, work, kSecondsOfBenchmark);
}

/// Settings and workspace, and what was made with them.
class Cholmod {
 public:
  Cholmod() {
    cholmod_start(&common);
    common.nmethods = 1;
    common.method[0].ordering = CHOLMOD_METIS;
    common.postorder = 1;
    common.supernodal = CHOLMOD_SUPERNODAL;
  }
  Cholmod(Cholmod const&) = delete;
  Cholmod& operator=(Cholmod const&) = delete;
  ~Cholmod() {
    cholmod_free_dense(&x, &common);
    cholmod_free_factor(&factor, &common);
    cholmod_free_sparse(&matrix, &common);
    cholmod_finish(&common);
  }

  void assemble(SyntheticNormals const& normals);
  void analyze() {
    cholmod_free_factor(&factor, &common);
    factor = cholmod_analyze(matrix, &common);
  }
  void factorize() { cholmod_factorize(matrix, factor, &common); }
  void solve(std::vector<double>& right) {
    cholmod_free_dense(&x, &common);
    cholmod_dense b{};
    b.nrow = b.nzmax = b.d = right.size();
    b.ncol = 1;
    b.x = right.data();
    b.xtype = CHOLMOD_REAL;
    b.dtype = CHOLMOD_DOUBLE;
    x = cholmod_solve(CHOLMOD_A, factor, &b, &common);
  }
  std::vector<double> solution() const {
    auto const* const first = static_cast<double const*>(x->x);
    return {first, first + x->nrow};
  }
  void requireSuccess(void const* made) const {
    if (common.status != CHOLMOD_OK || made == nullptr) throw std::runtime_error("CHOLMOD finds no factor");
  }

  cholmod_common common;
  cholmod_sparse* matrix = nullptr;
  cholmod_factor* factor = nullptr;
  cholmod_dense* x = nullptr;
};

/// The lower triangle. The parts of an element are joined when the triplets are made a matrix.
void Cholmod::assemble(SyntheticNormals const& normals) {
  std::size_t count = 0;
  for (auto const& q : normals.equations) count += static_cast<std::size_t>(q.count * (q.count + 1) / 2);
  std::size_t const n = normals.unknowns();
  constexpr int kLowerTriangle = -1;
  cholmod_triplet* parts = cholmod_allocate_triplet(n, n, count, kLowerTriangle, CHOLMOD_REAL, &common);
  requireSuccess(parts);
  auto* const rows = static_cast<int*>(parts->i);
  auto* const columns = static_cast<int*>(parts->j);
  auto* const values = static_cast<double*>(parts->x);
  for (auto const& q : normals.equations) {
    for (std::size_t r = 0; r < static_cast<std::size_t>(q.count); ++r) {
      for (std::size_t c = 0; c <= r; ++c) {
        auto const [column, row] = std::minmax(q.unknown[r], q.unknown[c]);
        rows[parts->nnz] = row;
        columns[parts->nnz] = column;
        values[parts->nnz] = q.weight * q.factor[r] * q.factor[c];
        ++parts->nnz;
      }
    }
  }
  matrix = cholmod_triplet_to_sparse(parts, count, &common);
  cholmod_free_triplet(&parts, &common);
  requireSuccess(matrix);
}

}  // namespace

std::optional<CholmodReference> cholmodReference(SyntheticNormals const& normals) {
  if (!isOne("OPENBLAS_NUM_THREADS") || !isOne("OMP_THREAD_LIMIT")) return std::nullopt;
  Cholmod cholmod;
  CholmodReference result{};
  cholmod.assemble(normals);
  result.orderSeconds = secondsOf([&cholmod] { cholmod.analyze(); });
  cholmod.requireSuccess(cholmod.factor);
  result.factorSeconds = secondsOf([&cholmod] { cholmod.factorize(); });
  cholmod.requireSuccess(cholmod.factor);
  std::vector<double> right = normals.rightSide();
  result.solveSeconds = secondsOf([&cholmod, &right] { cholmod.solve(right); });
  cholmod.requireSuccess(cholmod.x);
  result.solution = cholmod.solution();
  return result;
}

#else

std::optional<CholmodReference> cholmodReference(SyntheticNormals const&) { return std::nullopt; }

#endif

}  // namespace bench
