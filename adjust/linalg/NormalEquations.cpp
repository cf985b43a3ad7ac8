#include "adjust/linalg/NormalEquations.h"

#include "adjust/linalg/Index.h"
#include "adjust/linalg/SparseCholesky.h"

#include <algorithm>
#include <limits>

namespace kvn::detail {
namespace {

/// Place of the element (i, j) of a symmetric matrix in the packed lower triangle.
std::size_t packedIndex(int i, int j) {
  std::size_t const larger = index(std::max(i, j));
  return larger * (larger + 1) / 2 + index(std::min(i, j));
}

class FullNormals : public NormalEquations {
 public:
  FullNormals(int unknowns, Soundness limits)
      : NormalEquations(index(unknowns)), n(index(unknowns)), soundness(limits), packed(n * (n + 1) / 2, 0.0) {}

  std::unique_ptr<NormalEquations> clone() const override { return std::make_unique<FullNormals>(*this); }

  void clear() override {
    std::fill(packed.begin(), packed.end(), 0.0);
    std::fill(right.begin(), right.end(), 0.0);
  }

  void add(int i, int j, double value) override { packed[packedIndex(i, j)] += value; }

  bool factor(Poll const&) override {
    std::vector<double> diagonal(n);
    for (std::size_t i = 0; i < n; ++i) diagonal[i] = packed[i * (i + 3) / 2];
    if (!invertPacked(packed.data(), n, soundness.rule)) return false;
    if (soundness.lostPivot == std::numeric_limits<double>::infinity()) return true;
    for (std::size_t i = 0; i < n; ++i) {
      double const q = packed[i * (i + 3) / 2];
      if (!(q > 0.0) || !(q * diagonal[i] < soundness.lostPivot)) return false;
    }
    return true;
  }

  /// Each row of the packed triangle read once: it serves as the row and as the column of the square matrix.
  std::vector<double> solved(std::vector<double> b, Poll const&) const override {
    std::vector<double> x(n, 0.0);
    double const* q = packed.data();
    for (std::size_t r = 0; r < n; ++r) {
      double sum = 0.0;
      for (std::size_t c = 0; c < r; ++c) {
        sum += q[c] * b[c];
        x[c] += q[c] * b[r];
      }
      x[r] += sum + q[r] * b[r];
      q += r + 1;
    }
    return x;
  }

  std::vector<double> products(std::vector<sparse::SparseVector> const& b, std::vector<double>&,
                               Poll const&) const override {
    std::vector<double> result;
    for (sparse::SparseVector const& row : b) {
      for (sparse::SparseVector const& column : b) {
        double sum = 0.0;
        for (auto const& [i, first] : row) {
          for (auto const& [j, second] : column) sum += first * inverse(i, j) * second;
        }
        result.push_back(sum);
      }
    }
    return result;
  }

  bool invert(Poll const&) override { return true; }
  double inverse(int i, int j) const override { return packed[packedIndex(i, j)]; }

 private:
  std::size_t n;
  Soundness soundness;
  std::vector<double> packed;  // after `factor` the inverse
};

class SparseSystem : public NormalEquations {
 public:
  SparseSystem(Pattern const& pattern, Soundness limits, Poll const& poll)
      : SparseSystem(sparse::SparseCholesky(pattern.blockSizes, pattern.cliques, pattern.blockOrder, poll), limits) {}

  std::unique_ptr<NormalEquations> clone() const override { return std::make_unique<SparseSystem>(*this); }

  void clear() override {
    cholesky.clear();
    apart.clear();
    isFactored = isReleased = false;
    std::fill(right.begin(), right.end(), 0.0);
  }

  void add(int i, int j, double value) override { cholesky.add(i, j, value); }

  bool factor(Poll const& poll) override {
    takeApart(poll);
    // 2^-53, the largest p with p + 1.0 == 1.0.
    double const least = soundness.rule == PivotRule::ChangesOne ? 0.5 * std::numeric_limits<double>::epsilon() : 0.0;
    isFactored = cholesky.factor({least, 1.0 / soundness.lostPivot}, poll);
    return isFactored;
  }

  std::vector<double> solved(std::vector<double> b, Poll const& poll) const override {
    cholesky.solve(b, poll);
    return b;
  }

  std::vector<double> products(std::vector<sparse::SparseVector> const& b, std::vector<double>& work,
                               Poll const& poll) const override {
    return cholesky.products(b, work, poll);
  }

  void forgetFactor() override { cholesky.forgetFactor(); }
  void needFactor(Poll const& poll) override {
    if (isFactored && !cholesky.hasFactor()) factor(poll);
  }

  void block(int const* at, int count, double* q) const override { cholesky.block(at, count, q); }

  void releaseElements() override { isReleased = true; }
  bool restartElements() override {
    if (!isFactored || cholesky.hasFactor() || cholesky.hasElements()) return false;
    cholesky.restart();
    isReleased = false;
    return true;
  }

  bool invert(Poll const& poll) override {
    Effort effort(poll);
    std::vector<double> diagonal;
    diagonal.reserve(index(cholesky.unknowns()));
    for (int i = 0; i < cholesky.unknowns(); ++i) {
      effort.step();
      diagonal.push_back(cholesky.diagonal(i));
    }
    if (isReleased) {
      cholesky.invertInPlace(poll);
    } else {
      cholesky.invert(poll);
    }
    for (int i = 0; i < cholesky.unknowns(); ++i) {
      effort.step();
      double const q = cholesky.inverse(i, i);
      if (!(q > 0.0) || !(q * diagonal[index(i)] < soundness.lostPivot)) return false;
    }
    return true;
  }

  void addEquation(double const* a, int const* at, int count, double p, double l) override {
    for (int r = 0; r < count; ++r) addRight(at[r], -p * a[r] * l);
    cholesky.addEquation(a, at, count, p);
  }

  void addAnyEquation(double const* a, int const* at, int count, double p, double l) override {
    if (cholesky.holdsAll(at, count)) return addEquation(a, at, count, p, l);
    for (int r = 0; r < count; ++r) addRight(at[r], -p * a[r] * l);
    apart.push_back({{a, a + count}, {at, at + count}, p});
  }

  double inverse(int i, int j) const override { return cholesky.inverse(i, j); }

  double cofactor(double const* a, int const* at, int count) const override { return cholesky.cofactor(a, at, count); }

  double anyCofactor(double const* a, int const* at, int count) const override {
    if (!isFactored) return cholesky.cofactor(a, at, count) + cofactorApart(a, at, count);
    if (cholesky.holdsAll(at, count)) return cholesky.cofactor(a, at, count);
    std::vector<double> x(index(cholesky.unknowns()), 0.0);
    for (int r = 0; r < count; ++r) x[index(at[r])] += a[r];
    cholesky.solve(x);
    double q = 0.0;
    for (int r = 0; r < count; ++r) q += a[r] * x[index(at[r])];
    return q;
  }

 private:
  SparseSystem(sparse::SparseCholesky system, Soundness limits)
      : NormalEquations(index(system.unknowns())), soundness(limits), cholesky(std::move(system)) {}

  /// An equation of unknowns that no clique brings together.
  struct Equation {
    std::vector<double> a;
    std::vector<int> at;
    double p;
  };

  /// All at once, so that the elements find their places only once.
  void takeApart(Poll const& poll) {
    if (apart.empty()) return;
    std::vector<sparse::Clique> pairs;
    for (Equation const& equation : apart) {
      for (int const i : equation.at) {
        for (int const j : equation.at) pairs.push_back({i, j, -1});
      }
    }
    cholesky = cholesky.withPairs(std::move(pairs), poll);
    for (Equation const& equation : apart) {
      cholesky.addEquation(equation.a.data(), equation.at.data(), static_cast<int>(equation.at.size()), equation.p);
    }
    apart.clear();
  }

  double cofactorApart(double const* a, int const* at, int count) const {
    double sum = 0.0;
    for (Equation const& equation : apart) {
      double product = 0.0;
      for (int r = 0; r < count; ++r) {
        for (std::size_t k = 0; k < equation.at.size(); ++k)
          product += equation.at[k] == at[r] ? a[r] * equation.a[k] : 0.0;
      }
      sum += equation.p * product * product;
    }
    return sum;
  }

  Soundness soundness;
  sparse::SparseCholesky cholesky;
  std::vector<Equation> apart;  // since the last factorisation
  bool isFactored = false;
  bool isReleased = false;
};

}  // namespace

NormalEquations::~NormalEquations() = default;

void NormalEquations::addEquation(double const* a, int const* at, int count, double p, double l) {
  for (int r = 0; r < count; ++r) {
    addRight(at[r], -p * a[r] * l);
    for (int c = 0; c <= r; ++c) add(at[r], at[c], p * a[r] * a[c]);
  }
}

void NormalEquations::block(int const* at, int count, double* q) const {
  for (int r = 0; r < count; ++r) {
    for (int c = 0; c < count; ++c) q[r * count + c] = inverse(at[r], at[c]);
  }
}

double NormalEquations::cofactor(double const* a, int const* at, int count) const {
  double q = 0.0;
  for (int r = 0; r < count; ++r) {
    for (int c = 0; c < count; ++c) q += inverse(at[r], at[c]) * a[r] * a[c];
  }
  return q;
}

std::unique_ptr<NormalEquations> fullNormals(int unknowns, NormalEquations::Soundness soundness) {
  return std::make_unique<FullNormals>(unknowns, soundness);
}

std::unique_ptr<NormalEquations> sparseNormals(NormalEquations::Pattern const& pattern,
                                               NormalEquations::Soundness soundness, Poll const& poll) {
  return std::make_unique<SparseSystem>(pattern, soundness, poll);
}

}  // namespace kvn::detail
